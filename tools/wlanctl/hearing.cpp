// SPDX-License-Identifier: MIT
// Looking a network up in the air before it is joined.

#include "hearing.h"

#include <algorithm>
#include <iterator>

#include "air.h"
#include "answer.h"
#include "cancelling.h"
#include "progress.h"

namespace {

/// What to join with, by the words of a survey; the first row that fits counts.
constexpr struct {
    const char* authentication; ///< part of the survey's word
    const char* cipher;         ///< likewise
    const char* auth;
    const char* enc;
} choices[] = {
    {"WPA2", "AES", "wpa2psk", "aes"},
    {"WPA2", "TKIP", "wpa2psk", "tkip"},
    {"WPA", "AES", "wpapsk", "aes"},
    {"WPA", "TKIP", "wpapsk", "tkip"},
    {"", "WEP", "", "wep"},
    {"OPEN", "", "open", "none"},
};

void choose(const std::string& security, heard_network& heard) {
    const auto has = [&](const char* part) { return security.find(part) != std::string::npos; };
    const auto* found =
        std::find_if(std::begin(choices), std::end(choices), [&](const auto& choice) {
            return has(choice.authentication) && has(choice.cipher);
        });
    if (found == std::end(choices))
        return;
    heard.auth = found->auth;
    heard.enc = found->enc;
}

} // namespace

heard_network hear(const std::string& ssid, bool mediatek) {
    heard_network heard;
    std::vector<sites> list;
    try {
        list = survey_air(mediatek, true);
    } catch (const failure&) { // the driver's own search may hear it all the same
        if (asked_to_end())
            throw;
        heard.certain = false;
    }
    const sites* site = find_strongest(list, ssid);
    if (site == nullptr)
        return heard;
    heard.heard = true;
    heard.channel = channel_of(*site, mediatek);
    choose(security_of(*site), heard);
    answer told = describe(*site, mediatek);
    answer event = {{"ssid", ssid}};
    for (const auto& [name, value] : told.fields()) {
        if (std::string(name) != "name")
            event.set(name, value);
    }
    tell_progress("heard", event);
    return heard;
}
