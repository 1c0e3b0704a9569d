// SPDX-License-Identifier: MIT
// What a test's camera is made of, put together piece by piece. Each piece is a value, and adding to
// it gives another:
//
//     const scene camera = scene("mediatek")
//                              .air(access_point("Office").channel(6).wpa2("correct horse"))
//                              .stored(stored_settings().region(5, 7));
//     plug_in(camera.fault("ioctl", "EIO").match("ApCliEnable").nth(2));

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace scene_builder {

using text = const std::string&;
using nlohmann::json;

/// An access point in the air: open, on channel 1 and at -60 dBm unless told otherwise.
class access_point {
public:
    explicit access_point(text ssid = "") : json_({{"ssid", ssid}}) {}

    /// Its address; by default 02:00:00:00:00:01 for the first one in the air, and so on.
    access_point bssid(text address) const { return key("bssid", address); }
    access_point channel(int number) const { return key("channel", number); }
    access_point level(int dbm) const { return key("level", dbm); }
    /// WPA2 with AES.
    access_point wpa2(text passphrase = "") const { return key("security", "wpa2").key("key", passphrase); }
    /// Waits for whoever pushes the camera's button.
    access_point pressed_button() const { return key("button", true); }
    /// Any other of an access point's keys.
    access_point key(text name, const json& value) const;

private:
    friend class scene;
    json json_;
};

/// What /etc/camera.conf holds.
class stored_settings {
public:
    stored_settings access_point(text ssid, text auth, text enc, text key = "") const {
        return network("access_point", ssid, auth, enc, key);
    }
    stored_settings client(text ssid, text auth, text enc, text key = "") const {
        return network("client", ssid, auth, enc, key);
    }
    /// At an address like "192.168.8.1", giving out those from 100 to 200 of its network.
    stored_settings dhcp_server(text address) const;
    stored_settings system(text model, text manufacturer) const {
        return value("system", "model", model).value("system", "manufacturer", manufacturer);
    }
    stored_settings region(int band_2g, int band_5g = 0) const {
        return value("region", "band_2g", std::to_string(band_2g)).value("region", "band_5g", std::to_string(band_5g));
    }
    /// Any other value.
    stored_settings value(text section, text key, text value) const;

    std::vector<std::string> lines() const;

private:
    stored_settings network(text section, text ssid, text auth, text enc, text key) const {
        return value(section, "ssid", ssid)
            .value(section, "auth", auth)
            .value(section, "enc", enc)
            .value(section, "key", key);
    }

    std::vector<std::pair<std::string, std::vector<std::string>>> sections_;
};

class scene {
public:
    /// @param adapter that is plugged in: "none", "mediatek" or "realtek".
    explicit scene(text adapter) : json_({{"adapter", adapter}}) {}

    /// One more access point in the air.
    scene air(const access_point& point) const;
    scene stored(const stored_settings& settings) const { return file("/etc/camera.conf", settings.lines()); }
    /// Another file that is there at the start.
    scene file(text path, const std::vector<std::string>& lines) const;

    /// One more call that fails: the first one, and once, unless match(), nth() and times(), which are about the last
    /// fault(), say otherwise.
    scene fault(text call, text error) const { return with("/faults/-", {{"call", call}, {"errno", error}}); }
    /// Only calls with this in their subject, request or text.
    scene match(text part) const { return with(last_fault() + "/match", part); }
    scene nth(int first) const { return with(last_fault() + "/nth", first); }
    /// @param count 0 is for ever.
    scene times(int count) const { return with(last_fault() + "/times", count); }

    /// One of the adapter's interfaces is down; the others are up.
    scene interface_down(text name) const;
    scene missing_program(text name) const { return with("/missing_programs/-", name); }
    /// A daemon that only SIGKILL ends.
    scene stubborn(text daemon) const { return with("/stubborn/-", daemon); }
    scene wired() const { return key("wired", true); }
    /// Any other of a scene's keys.
    scene key(text name, const json& value) const { return with("/" + name, value); }

    /// @return the scene as the virtual camera reads it.
    std::string json_text() const { return json_.dump(); }

private:
    std::string last_fault() const { return "/faults/" + std::to_string(json_.at("faults").size() - 1); }
    scene with(text pointer, const json& value) const;

    json json_;
};

} // namespace scene_builder

using scene_builder::access_point;
using scene_builder::scene;
using scene_builder::stored_settings;
