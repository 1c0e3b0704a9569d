// SPDX-License-Identifier: MIT
// How scenes are put together.

#include "tests/support/scene.h"

#include <algorithm>
#include <cstdio>

namespace scene_builder {

access_point access_point::key(text name, const json& value) const {
    access_point changed = *this;
    changed.json_[name] = value;
    return changed;
}

stored_settings stored_settings::dhcp_server(text address) const {
    const std::string network = address.substr(0, address.rfind('.'));
    return value("dhcp_server", "address", address)
        .value("dhcp_server", "pool_start", network + ".100")
        .value("dhcp_server", "pool_end", network + ".200")
        .value("dhcp_server", "netmask", "255.255.255.0");
}

stored_settings stored_settings::value(text section, text key, text value) const {
    stored_settings changed = *this;
    auto& sections = changed.sections_;
    auto found = std::find_if(sections.begin(), sections.end(), [&](const auto& one) { return one.first == section; });
    if (found == sections.end())
        found = sections.insert(sections.end(), {section, {}});
    found->second.push_back(key + " = " + value);
    return changed;
}

std::vector<std::string> stored_settings::lines() const {
    std::vector<std::string> lines;
    for (const auto& [section, values] : sections_) {
        lines.push_back("[" + section + "]");
        lines.insert(lines.end(), values.begin(), values.end());
    }
    return lines;
}

scene scene::air(const class access_point& point) const {
    const std::size_t number = json_.contains("air") ? json_["air"].size() + 1 : 1;
    char address[18];
    std::snprintf(address, sizeof address, "02:00:00:00:00:%02zx", number & 0xFFU);
    json added = {{"bssid", address}};
    added.update(point.json_);
    return with("/air/-", added);
}

scene scene::file(text path, const std::vector<std::string>& lines) const {
    scene changed = *this;
    changed.json_["files"][path] = lines;
    return changed;
}

scene scene::interface_down(text name) const {
    scene changed = *this;
    json& interfaces = changed.json_["interfaces"]; // naming one takes the others away
    const bool mediatek = json_["adapter"] == "mediatek";
    for (const char* each : mediatek ? std::vector{"ra0", "wlan0", "apclii0"} : std::vector{"wlan0", "wlan1"})
        interfaces[each].emplace("state", "up");
    interfaces[name]["state"] = "down";
    return changed;
}

scene scene::with(text pointer, const json& value) const {
    scene changed = *this;
    changed.json_[json::json_pointer(pointer)] = value;
    return changed;
}

} // namespace scene_builder
