// SPDX-License-Identifier: MIT
// Watching an access point come up.

#include "access_point_watch.h"

#include "daemons.h"
#include "libwlan/link_status.h"
#include "link.h"

namespace {

constexpr int looks_between = 5;        // questions for its state
constexpr int looks_without_state = 10; // that hostapd has to last when it tells nothing

int number_in(const std::string& reply, const std::string& name) {
    return std::atoi(value_in(reply, name).c_str());
}

} // namespace

sight access_point_watch::look() {
    return mediatek_ ? look_at_driver() : look_at_daemon();
}

sight access_point_watch::look_at_driver() {
    constexpr char interface[] = "ra0";
    return does_ifup(interface) == 1 ? up(interface, ask_channel(interface)) : sight{};
}

sight access_point_watch::look_at_daemon() {
    constexpr char interface[] = "wlan1";
    if (!is_running(hostapd_daemon))
        return {sight::state::lost, {reason::daemon_refused, true, "hostapd has ended"}};
    if (control_.open() && looks_ % looks_between == 0)
        control_.ask("STATUS");
    ++looks_;
    control_.take_in([this](const control_socket::message& message) {
        if (message.what == control_socket::kind::reply && message.command == "STATUS") {
            state_ = value_in(message.text, "state");
            channel_ = number_in(message.text, "channel");
        }
    });
    if (state_ == "DISABLED")
        return {sight::state::lost, {reason::daemon_refused, true, "hostapd could not start it"}};
    const bool enabled = state_ == "ENABLED" || (state_.empty() && looks_ >= looks_without_state);
    return enabled && does_ifup(interface) == 1 ? up(interface, channel_) : sight{};
}

sight access_point_watch::up(const char* interface, int channel) const {
    const bool dhcp = is_running(dhcp_daemon);
    if (dhcp_server_ && !dhcp)
        return {};
    return {sight::state::reached,
            {reason::timed_out},
            {{"interface", interface},
             {"ssid", ssid_},
             {"channel", channel > 0 ? answer(channel) : answer()},
             {"dhcp_server", dhcp}}};
}

setback access_point_watch::give_up() {
    if (dhcp_server_ && !is_running(dhcp_daemon))
        return {reason::daemon_refused, true, "the DHCP server does not run"};
    return {reason::timed_out};
}
