// SPDX-License-Identifier: MIT
// The interposed functions of the network: interfaces are the camera's.

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <ifaddrs.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "vcamera/interpose/address_requests.h"
#include "vcamera/interpose/control_table.h"
#include "vcamera/interpose/host_path.h"
#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"
#include "vcamera/interpose/network_requests.h"
#include "vcamera/model/daemons.h"
#include "vcamera/model/interfaces.h"

namespace {

/// Others see frames of the host's interfaces (AF_PACKET, SOCK_RAW) or set them up (AF_NETLINK).
bool carries_data(int domain, int type) {
    const int kind = type & ~(SOCK_CLOEXEC | SOCK_NONBLOCK);
    return domain == AF_UNIX || ((domain == AF_INET || domain == AF_INET6) &&
                                 (kind == SOCK_STREAM || kind == SOCK_DGRAM));
}

/// @return the name that is bound to, which a program may give without a terminator.
std::string device_name(const void* value, socklen_t length) {
    const auto* name = static_cast<const char*>(value);
    return {name, strnlen(name, std::min<std::size_t>(length, IFNAMSIZ))};
}

// Lists are memory of C, since the program frees them.

struct index_list {
    struct if_nameindex entries[MTK_VIFS + 1]; // with a zeroed one behind the last
    char names[MTK_VIFS][IF_NAMESIZE];
};

/// One entry for each interface, and behind them one for each address.
struct address_list {
    ifaddrs entries[2 * MTK_VIFS];
    char names[MTK_VIFS][IF_NAMESIZE];
    sockaddr addresses[MTK_VIFS][3]; // its own, the mask, the broadcast address

    ifaddrs* add(ifaddrs* last, int interface, unsigned flags) {
        ifaddrs* entry = last == nullptr ? entries : last + 1;
        entry->ifa_name = names[interface];
        entry->ifa_flags = flags;
        if (last != nullptr)
            last->ifa_next = entry;
        return entry;
    }
};

void fill_addresses(address_list& list, const camera_state& state, ifaddrs*& last) {
    for (int i = 0; i < MTK_VIFS; ++i) {
        const std::uint32_t address = address_of_interface(state, i);
        if (address == 0)
            continue;
        const auto flags = static_cast<unsigned short>(interface_flags(state, i));
        last = list.add(last, i, flags);
        auto& [own, mask, broadcast] = list.addresses[i];
        own = socket_address(address);
        mask = socket_address(netmask());
        broadcast = socket_address(broadcast_of(address));
        last->ifa_addr = &own;
        last->ifa_netmask = &mask;
        last->ifa_broadaddr = &broadcast;
    }
}

} // namespace

INTERPOSE int socket(int domain, int type, int protocol) noexcept {
    if (!on_camera())
        return NEXT(socket)(domain, type, protocol);
    if (!carries_data(domain, type)) {
        char text[64];
        std::snprintf(text, sizeof text, "domain %d type %d", domain, type);
        const int error = domain == AF_INET || domain == AF_INET6 ? EPERM : EAFNOSUPPORT;
        return intercept({"socket", "-", "socket", text}, [&](camera_state&) { return -error; });
    }
    if (domain != AF_INET || type != SOCK_DGRAM)
        return NEXT(socket)(domain, type, protocol);
    return intercept({"socket", "-", "socket", "AF_INET SOCK_DGRAM"}, [&](camera_state&) {
        const int descriptor = NEXT(socket)(domain, type, protocol);
        return descriptor < 0 ? -errno : descriptor;
    });
}

/// The control sockets that there are are those of the camera's daemons.
INTERPOSE int connect(int fd, const sockaddr* addr, socklen_t len) {
    char path[sizeof(sockaddr_un::sun_path) + 1] = "";
    constexpr std::size_t head = offsetof(sockaddr_un, sun_path);
    if (on_camera() && addr != nullptr && len > head && addr->sa_family == AF_UNIX) {
        const auto* there = reinterpret_cast<const sockaddr_un*>(addr);
        std::memcpy(path, there->sun_path, std::min(len - head, sizeof there->sun_path));
    }
    if (host_path(path).of_camera() == nullptr)
        return NEXT(connect)(fd, addr, len);
    return intercept({"connect", path, "connect", ""}, [&](camera_state& state) {
        return connect_control(state, fd, host_path(path).of_camera());
    });
}

INTERPOSE int setsockopt(int fd, int level, int optname, const void* optval,
                         socklen_t optlen) noexcept {
    if (!on_camera() || level != SOL_SOCKET || optname != SO_BINDTODEVICE || optval == nullptr)
        return NEXT(setsockopt)(fd, level, optname, optval, optlen);
    if (find_interface(*locked_camera(), device_name(optval, optlen)) != no_interface)
        return 0;
    errno = ENODEV;
    return -1;
}

INTERPOSE int ioctl(int fd, unsigned long request, ...) noexcept {
    va_list arguments;
    va_start(arguments, request);
    void* argument = va_arg(arguments, void*);
    va_end(arguments);
    if (!on_camera() || !is_network_request(request))
        return NEXT(ioctl)(fd, request, argument);
    auto* data = static_cast<iwreq*>(argument);
    return intercept(describe_request(request, data),
                     [&](camera_state& state) { return answer_request(state, fd, request, data); });
}

// Lists of interfaces ---------------------------------------------------------------------------

INTERPOSE unsigned if_nametoindex(const char* name) noexcept {
    if (!on_camera())
        return NEXT(if_nametoindex)(name);
    const int interface = find_interface(*locked_camera(), name);
    if (interface == no_interface)
        errno = ENODEV;
    return interface == no_interface ? 0 : static_cast<unsigned>(index_of(interface));
}

INTERPOSE char* if_indextoname(unsigned index, char* name) noexcept {
    if (!on_camera())
        return NEXT(if_indextoname)(index, name);
    const locked_camera camera;
    const char* known = name_of_index(*camera, index);
    if (known == nullptr) {
        errno = ENXIO;
        return nullptr;
    }
    std::snprintf(name, IF_NAMESIZE, "%s", known);
    return name;
}

INTERPOSE struct if_nameindex* if_nameindex() noexcept {
    if (!on_camera())
        return NEXT(if_nameindex)();
    auto* list = static_cast<index_list*>(std::calloc(1, sizeof(index_list)));
    if (list == nullptr)
        return nullptr;
    const locked_camera camera;
    std::size_t count = 0;
    for (int i = 0; i < MTK_VIFS; ++i) {
        const auto index = static_cast<unsigned>(index_of(i));
        const char* name = name_of_index(*camera, index);
        if (name == nullptr)
            continue;
        std::snprintf(list->names[i], IF_NAMESIZE, "%s", name);
        list->entries[count++] = {index, list->names[i]};
    }
    return list->entries;
}

INTERPOSE void if_freenameindex(struct if_nameindex* ptr) noexcept {
    if (!on_camera())
        return NEXT(if_freenameindex)(ptr);
    std::free(ptr);
}

INTERPOSE int getifaddrs(ifaddrs** ifap) noexcept {
    if (!on_camera())
        return NEXT(getifaddrs)(ifap);
    *ifap = nullptr;
    auto* list = static_cast<address_list*>(std::calloc(1, sizeof(address_list)));
    if (list == nullptr)
        return -1;
    const locked_camera camera;
    advance_daemons(*camera);
    ifaddrs* last = nullptr;
    for (int i = 0; i < MTK_VIFS; ++i) {
        const char* name = name_of_index(*camera, static_cast<unsigned>(index_of(i)));
        if (name == nullptr)
            continue;
        std::snprintf(list->names[i], IF_NAMESIZE, "%s", name);
        last = list->add(last, i, static_cast<unsigned short>(interface_flags(*camera, i)));
    }
    if (last == nullptr) {
        std::free(list); // an empty list
        return 0;
    }
    fill_addresses(*list, *camera, last);
    *ifap = list->entries;
    return 0;
}

INTERPOSE void freeifaddrs(ifaddrs* ifa) noexcept {
    if (!on_camera())
        return NEXT(freeifaddrs)(ifa);
    std::free(ifa);
}
