// SPDX-License-Identifier: MIT
// The control socket of hostapd or wpa_supplicant.

#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

struct wpa_ctrl;

/// Nothing here waits: a daemon may never answer. Without libwpa-client it stays closed.
class control_socket {
public:
#ifdef WLANCTL_WPA_CTRL
    static constexpr bool is_built_in = true;
#else
    static constexpr bool is_built_in = false;
#endif

    /// @param path of the daemon's socket for one interface.
    explicit control_socket(std::string path);
    ~control_socket();
    control_socket(const control_socket&) = delete;
    control_socket& operator=(const control_socket&) = delete;

    /// Opens it, unless it is open, and has the daemon send its events.
    /// @return whether it is open.
    bool open();

    /// Sends a command; replies come in the order of asking.
    void ask(const std::string& command);

    enum class kind { none, event, reply };
    struct message {
        kind what = kind::none;
        std::string command = {}; ///< that this replies to
        std::string text = {};    ///< of an event, without its level
    };

    /// Takes what has come in, of a flood a part only.
    void take_in(const std::function<void(const message&)>& take);

    /// Asks and waits for the reply, for half a second at most.
    /// @return empty when there is none.
    std::string reply_to(const std::string& command);

private:
    /// Takes the next message that has come in.
    message next();

    std::string path_;
#ifdef WLANCTL_WPA_CTRL
    wpa_ctrl* control_ = nullptr;
#endif
    std::deque<std::string> asked_; ///< and not replied to yet
};

/// @return the value of "name=" in a reply of such lines; empty when there is none.
std::string value_in(const std::string& reply, const std::string& name);

/// @return the bytes of a name as the daemons print it: those that are not printable stand as \xHH.
std::string plain_name(const std::string& printed);

constexpr char supplicant_control[] = "/var/run/wpa_supplicant/wlan0";
constexpr char hostapd_control[] = "/var/run/hostapd/wlan1";
