// SPDX-License-Identifier: MIT
// The MediaTek driver's requests as they are, for tests that say to it what the library does not.

#pragma once

#include <cerrno>
#include <string>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "libwlan/wlan.h"

class mtk_driver {
public:
    mtk_driver() = default;
    ~mtk_driver() { close(sock_); }
    mtk_driver(const mtk_driver&) = delete;
    mtk_driver& operator=(const mtk_driver&) = delete;

    /// Key=Value, without its NUL unless the length says otherwise.
    /// @return 0 or the errno, as all of these.
    int set(const std::string& interface, const std::string& text) const { return set(interface, text, text.size()); }
    int set(const std::string& interface, const std::string& text, std::size_t length) const {
        return ask(sock_, interface, 2, const_cast<char*>(text.c_str()), length);
    }

    /// @return the WPS status, or the errno as a negative number.
    int wps_status(const std::string& interface) const {
        int status = -1;
        const int error = ask(sock_, interface, 1, &status, sizeof status, 0x0751);
        return error == 0 ? status : -error;
    }

    /// @return the text of a survey (13) or a profile (9), or "errno NUMBER".
    std::string text(const std::string& interface, int request) const {
        std::string text(8192, '\0');
        const int error = ask(sock_, interface, request, text.data(), text.size());
        return error == 0 ? text.substr(0, text.find('\0')) : "errno " + std::to_string(error);
    }

    /// @param request from the first private one on.
    static int ask(int file, const std::string& interface, int request, void* data, std::size_t length, int flags = 0) {
        iwreq asked{};
        interface.copy(asked.ifr_name, IFNAMSIZ);
        asked.u.data.pointer = data;
        asked.u.data.length = static_cast<__u16>(length);
        asked.u.data.flags = static_cast<__u16>(flags);
        return ioctl(file, SIOCIWFIRSTPRIV + static_cast<unsigned>(request), &asked) < 0 ? errno : 0;
    }

private:
    int sock_ = socket(AF_INET, SOCK_DGRAM, 0);
};
