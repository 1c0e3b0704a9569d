// SPDX-License-Identifier: MIT
// The control socket of hostapd or wpa_supplicant.

#include "control_socket.h"

#include <cstdlib>
#include <optional>
#include <utility>

#include "cancelling.h"

#ifdef WLANCTL_WPA_CTRL

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <wpa_ctrl.h>

namespace {

constexpr std::size_t most_asked = 8; // and not replied to

/// "<3>CTRL-EVENT-..."
bool is_event(const std::string& text) {
    return text.size() >= 3 && text[0] == '<' && text[2] == '>';
}

} // namespace

control_socket::control_socket(std::string path) : path_(std::move(path)) {}

control_socket::~control_socket() {
    if (control_ != nullptr)
        wpa_ctrl_close(control_);
}

bool control_socket::open() {
    if (control_ != nullptr)
        return true;
    if (access(path_.c_str(), F_OK) != 0)
        return false;
    control_ = wpa_ctrl_open(path_.c_str());
    if (control_ == nullptr)
        return false;
    fcntl(wpa_ctrl_get_fd(control_), F_SETFD, FD_CLOEXEC);
    ask("ATTACH");
    return true;
}

void control_socket::ask(const std::string& command) {
    if (control_ == nullptr || asked_.size() >= most_asked)
        return;
    const int socket = wpa_ctrl_get_fd(control_);
    if (send(socket, command.data(), command.size(), MSG_DONTWAIT | MSG_NOSIGNAL) > 0)
        asked_.push_back(command);
}

control_socket::message control_socket::next() {
    if (control_ == nullptr)
        return {};
    char text[4096];
    const ssize_t length = recv(wpa_ctrl_get_fd(control_), text, sizeof text, MSG_DONTWAIT);
    if (length <= 0)
        return {};
    std::string told(text, static_cast<std::size_t>(length));
    if (is_event(told))
        return {kind::event, {}, told.substr(3)};
    if (asked_.empty())
        return next(); // nobody asked for it
    message reply = {kind::reply, asked_.front(), std::move(told)};
    asked_.pop_front();
    return reply;
}

#else

control_socket::control_socket(std::string path) : path_(std::move(path)) {}

control_socket::~control_socket() = default;

bool control_socket::open() {
    return false;
}

void control_socket::ask(const std::string& /*command*/) {}

control_socket::message control_socket::next() {
    return {};
}

#endif

void control_socket::take_in(const std::function<void(const message&)>& take) {
    constexpr int most = 200;
    for (int taken = 0; taken < most; ++taken) {
        const message told = next();
        if (told.what == kind::none)
            return;
        take(told);
    }
}

std::string control_socket::reply_to(const std::string& command) {
    constexpr int look_ms = 10;
    constexpr int patience = 50; // looks
    ask(command);
    std::optional<std::string> reply;
    for (int looks = 0; open() && looks < patience && !asked_to_end(); ++looks) {
        take_in([&](const message& told) {
            if (!reply && told.what == kind::reply && told.command == command)
                reply = told.text;
        });
        if (reply)
            return *reply;
        pause_ms(look_ms);
    }
    return "";
}

std::string plain_name(const std::string& printed) {
    std::string name;
    for (std::size_t i = 0; i < printed.size(); ++i) {
        const bool escaped = printed[i] == '\\' && i + 1 < printed.size();
        if (escaped && printed[i + 1] == 'x' && i + 3 < printed.size()) {
            name += static_cast<char>(std::strtol(printed.substr(i + 2, 2).c_str(), nullptr, 16));
            i += 3;
        } else if (escaped) {
            name += printed[++i] == 'e' ? '\033' : printed[i];
        } else {
            name += printed[i];
        }
    }
    return name;
}

std::string value_in(const std::string& reply, const std::string& name) {
    const std::string text = "\n" + reply;
    const std::size_t start = text.find("\n" + name + "=");
    if (start == std::string::npos)
        return "";
    const std::size_t value = start + name.size() + 2;
    return text.substr(value, text.find('\n', value) - value);
}
