#include "util/wireless_request.h"

#include "util/text_field.h"

void name_request(iwreq& request, const char* ifname) {
    fill_field(request.ifr_name, ifname == nullptr ? "" : ifname);
}

iwreq named_request(const char* ifname) {
    iwreq request{};
    name_request(request, ifname);
    return request;
}
