// SPDX-License-Identifier: MIT
// What a MediaTek AP-client joins after the library's requests, and after the same commands in another order, on
// another interface or incomplete.

#include "tests/support/camera_test.h"
#include "tests/support/mtk_driver.h"

#include <algorithm>
#include <functional>

#include "libwlan/libwlan.h"

namespace {

const std::string raw_key(64, 'a');

const std::string near = "02:00:00:00:00:01", far = "02:00:00:00:00:02", any = "00:00:00:00:00:00";

/// "Net" is in both bands.
const scene camera = scene("mediatek")
                         .air(access_point("Net").bssid(near).channel(6).wpa2("passphrase"))
                         .air(access_point("Net").bssid(far).channel(36).wpa2("passphrase"))
                         .air(access_point("Other").channel(11).wpa2("passphrase"))
                         .air(access_point("Raw").channel(6).wpa2(raw_key))
                         .air(access_point("Wep").channel(6).key("security", "wep").key("key", "abcde"));

/// A station for "Net".
stored_settings stored(const std::string& join, int channel) {
    return stored_settings()
        .access_point("Camera", "open", "none")
        .client("Net", "wpa2psk", "aes", "passphrase")
        .value("client", "bssid", near)
        .value("client", "join", join)
        .value("client", "channel", std::to_string(channel));
}

struct channels {
    int near; // of wlan0, -1 when it has not joined
    int far;  // of apclii0
};
bool operator==(const channels& one, const channels& other) {
    return one.near == other.near && one.far == other.far;
}
std::ostream& operator<<(std::ostream& stream, const channels& channels) {
    return stream << "wlan0 on " << channels.near << ", apclii0 on " << channels.far;
}

constexpr channels none = {-1, -1};

class mtk_join : public camera_test {
protected:
    static channels joined() {
        channels found{};
        watch([&] { return found.near = get_wifi_channel("wlan0"); });
        watch([&] { return found.far = get_wifi_channel("apclii0"); });
        return found;
    }
};

auto join(int channel, const std::string& bssid = any) {
    return
        [=] { return run_infra_mode(text("Net"), text(bssid), AUTH_WPA2PSK, ENC_AES, text("passphrase"), channel, 1); };
}

auto repeat(int channel) {
    return [=] {
        return run_repeater_mode(text("Camera"), AUTH_OPEN, ENC_NONE, nullptr, text("Net"), text(any), AUTH_WPA2PSK,
                                 ENC_AES, text("passphrase"), channel);
    };
}

int join_by_raw_key() {
    return run_infra_mode(text("Raw"), text(any), AUTH_WPA2PSK, ENC_AES, text(raw_key), 6, 1);
}

int join_by_third_wep_key() {
    return run_infra_mode(text("Wep"), text(any), AUTH_SHARED, ENC_WEP, text("abcde"), 6, 3);
}

TEST_F(mtk_join, requests_join_where_the_network_is) {
    const struct {
        const char* name;
        std::vector<std::function<int()>> requests;
        channels joined;
        stored_settings settings = stored("ssid", 0);
    } rows[] = {
        {"on its channel", {join(6)}, {6, -1}},
        {"on its channel, by address", {join(6, near)}, {6, -1}},
        {"on its channel, by the address of another", {join(6, far)}, none},
        {"on another channel", {join(11)}, none},
        {"on its 5 GHz channel", {join(36)}, {-1, 36}},
        {"on another 5 GHz channel", {join(40)}, none},
        {"on an automatic channel", {join(0)}, {6, 36}},
        {"on an automatic channel, by address", {join(0, far)}, {-1, 36}},
        {"on an automatic channel after a fixed one", {join(11), join(0)}, {6, 36}},
        {"on another channel after an automatic one", {join(0), join(11)}, {-1, 36}},
        {"with a key that is no passphrase", {join_by_raw_key}, {6, -1}},
        {"with the third WEP key", {join_by_third_wep_key}, {6, -1}},
        {"as a repeater", {repeat(6)}, {6, -1}},
        {"as a repeater on another channel", {repeat(1)}, none},
        {"as a repeater on an automatic channel", {repeat(0)}, {6, 36}},
        {"stored, by name", {run_infra_mode_base_db}, {6, -1}, stored("ssid", 11)},
        {"stored, by name in any band", {run_infra_mode_base_db}, {6, 36}, stored("ssid", 0)},
        {"stored, by address", {run_infra_mode_base_db}, {6, -1}, stored("bssid", 6)},
        {"stored, by address on another channel", {run_infra_mode_base_db}, none, stored("bssid", 11)},
        {"another channel after a name", {run_infra_mode_base_db, join(11)}, none, stored("ssid", 6)},
        {"stored repeater, by name", {run_repeater_mode_base_db}, {-1, 36}, stored("ssid", 44)},
        {"stored repeater, by address", {run_repeater_mode_base_db}, none, stored("bssid", 44)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera.stored(row.settings));
        for (const auto& request : row.requests)
            EXPECT_EQ(watch(request).result, 0);
        EXPECT_EQ(joined(), row.joined);
    }
}

/// Commands that join; those without an interface are for wlan0.
const lines commands = {"ApCliEnable=0",          "ApCliAuthMode=WPA2PSK", "ApCliEncrypType=AES", "ApCliSsid=Net",
                        "ApCliWPAPSK=passphrase", "ApCliBssid=" + near,    "ApCliEnable=1",       "Channel=6"};

lines without(const std::string& command, lines rest = commands) {
    rest.erase(std::remove(rest.begin(), rest.end(), command), rest.end());
    return rest;
}

lines with(const std::string& command, const std::string& replacement) {
    lines changed = commands;
    std::replace(changed.begin(), changed.end(), command, replacement);
    return changed;
}

lines swapped(const std::string& one, const std::string& other) {
    lines changed = commands;
    std::iter_swap(std::find(changed.begin(), changed.end(), one), std::find(changed.begin(), changed.end(), other));
    return changed;
}

TEST_F(mtk_join, every_command_counts_where_it_stands) {
    const lines automatic = with("Channel=6", "ApCliAutoConnect=1");
    const lines another = {"ApCliSsid=Other", "ApCliWPAPSK=passphrase", "ApCliBssid=" + any, "ApCliEnable=1"};
    const lines keyed_for_another = with("ApCliSsid=Net", "ApCliSsid=Old") + lines{"ApCliSsid=Net", "Channel=6"};
    const struct {
        const char* name;
        lines commands;
        channels joined;
    } rows[] = {
        {"in order", commands, {6, -1}},
        {"automatic connecting ends with a channel", automatic + lines{"Channel=1"}, none},
        {"passphrase before the first SSID", swapped("ApCliSsid=Net", "ApCliWPAPSK=passphrase"), none},
        {"passphrase under another SSID", keyed_for_another, none},
        {"passphrase once more", keyed_for_another + lines{"ApCliWPAPSK=passphrase", "Channel=6"}, {6, -1}},
        {"raw key before its SSID",
         {"ApCliAuthMode=WPA2PSK", "ApCliEncrypType=AES", "ApCliWPAPSK=" + raw_key, "ApCliSsid=Raw", "ApCliEnable=1",
          "Channel=6"},
         {6, -1}},
        {"no passphrase", without("ApCliWPAPSK=passphrase"), none},
        {"not enabled", without("ApCliEnable=1"), none},
        {"no channel", without("Channel=6"), none},
        {"another channel", with("Channel=6", "Channel=11"), none},
        {"a channel of the other band", with("Channel=6", "Channel=36"), none},
        {"no number", with("Channel=6", "Channel=-3"), none},
        {"a number beyond all channels", with("Channel=6", "Channel=999"), {6, -1}},
        {"channel of the other AP-client", with("Channel=6", "apclii0 Channel=6"), none},
        {"channel of the access point, which is on the same radio", with("Channel=6", "ra0 Channel=6"), {6, -1}},
        {"left by a later channel", commands + lines{"Channel=1"}, none},
        {"automatic connecting", with("Channel=6", "ApCliAutoConnect=1"), {6, -1}},
        {"automatic connecting before enabling",
         without("Channel=6", with("ApCliEnable=1", "ApCliAutoConnect=1")) + lines{"ApCliEnable=1"}, none},
        {"automatic connecting of the other AP-client", with("Channel=6", "apclii0 ApCliAutoConnect=1"), none},
        {"automatic connecting goes on to another network", automatic + another, {11, -1}},
        {"automatic connecting ends with disabling", automatic + lines{"ApCliEnable=0"} + another, none},
        {"automatic connecting taken back", automatic + lines{"ApCliAutoConnect=0"} + another, none},
        {"the other AP-client enabled", with("ApCliEnable=1", "apclii0 ApCliEnable=1"), none},
        {"radio off", commands + lines{"RadioOn=0"}, none},
        {"radio on again", commands + lines{"RadioOn=0", "RadioOn=1"}, {6, -1}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera);
        const mtk_driver driver;
        for (const std::string& command : row.commands) {
            const std::size_t blank = command.find(' ');
            const std::string interface = blank == std::string::npos ? "wlan0" : command.substr(0, blank);
            EXPECT_EQ(driver.set(interface, command.substr(blank + 1)), 0) << command;
        }
        EXPECT_EQ(joined(), row.joined);
    }
}

} // namespace
