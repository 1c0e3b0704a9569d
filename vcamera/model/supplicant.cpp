// SPDX-License-Identifier: MIT
// wpa_supplicant's search for its networks.

#include "vcamera/model/supplicant.h"

#include <algorithm>
#include <iterator>

#include "vcamera/model/camera_state.h"
#include "vcamera/model/clock.h"
#include "vcamera/model/control_sockets.h"
#include "vcamera/model/texts.h"

namespace {

// Microseconds, measured on wpa_supplicant 2.10 with a simulated radio of both bands.
constexpr std::int64_t scan_time = 3700000;
constexpr std::int64_t association_time = 50000;
constexpr std::int64_t pause_time = 5050000; // between two scans
constexpr std::int64_t handshake_time = 50000;
constexpr std::int64_t failed_handshake_time = 4000000;
constexpr std::int64_t restart_time = 100000;

constexpr std::int64_t second = 1000000;

/// Before the next scan after so many refused associations in a row.
std::int64_t back_off_time(int refusals) {
    constexpr std::int64_t times[] = {second / 10, second / 2, second, 5 * second, 10 * second};
    return times[std::clamp(refusals, 1, static_cast<int>(std::size(times))) - 1];
}
constexpr int refusals_until_failure = 4;

/// For how many seconds a network that failed so often is left out.
int disabled_seconds(int failures) {
    constexpr struct {
        int above;
        int seconds;
    } table[] = {{50, 300}, {10, 120}, {5, 90}, {3, 60}, {2, 30}, {1, 20}};
    for (const auto& row : table) {
        if (failures > row.above)
            return row.seconds;
    }
    return 10;
}

std::int32_t& joined_point(camera_state& state) {
    return state.realtek.vifs[REALTEK_STATION].joined;
}

const access_point& target_of(const camera_state& state) {
    return state.air.points[state.supplicant.target - 1];
}

void tell(camera_state& state, const std::string& text) {
    tell_clients(state, "wpa_supplicant", REALTEK_STATION, text);
}

void go(supplicant& supplicant, supplicant_step step, std::int64_t over) {
    supplicant.step = step;
    supplicant.step_over = over;
}

void start_scan(camera_state& state, std::int64_t now) {
    state.supplicant.target = 0;
    go(state.supplicant, supplicant_step::scanning, now + scan_time);
    tell(state, "CTRL-EVENT-SCAN-STARTED ");
}

std::string number_and_name(const supplicant& supplicant) {
    return "id=" + std::to_string(supplicant.network) + " ssid=\"" +
           printable(supplicant.wanted[supplicant.network].ssid) + "\"";
}

void disable_network(camera_state& state, const char* reason, std::int64_t now) {
    supplicant& supplicant = state.supplicant;
    wanted_network& network = supplicant.wanted[supplicant.network];
    const int seconds = disabled_seconds(++network.failures);
    network.disabled_until = now + seconds * second;
    tell(state, "CTRL-EVENT-SSID-TEMP-DISABLED " + number_and_name(supplicant) +
                    " auth_failures=" + std::to_string(network.failures) +
                    " duration=" + std::to_string(seconds) + " reason=" + reason);
}

bool has_key(const access_point& point, const wanted_network& network) {
    return point.security == AIR_OPEN || air_same_text(point.key, network.key) != 0;
}

bool offers(const access_point& point, const wanted_network& network) {
    const std::string ssid(reinterpret_cast<const char*>(point.ssid), point.ssid_length);
    return point.gone == 0 && ssid == network.ssid && (point.security & network.security) != 0 &&
           (point.security & AIR_SERVER) == 0;
}

/// @return the number, from 1, of the access point that the station would try; 0 for none. Among
/// several it is the strongest of those that let it in, if any.
int find_target(const camera_state& state, const wanted_network& network) {
    int best = 0;
    const auto better = [&](const access_point& point) {
        const access_point& other = state.air.points[best - 1];
        if (has_key(point, network) != has_key(other, network))
            return has_key(point, network);
        return point.level > other.level;
    };
    for (int i = 0; i < state.air.count; ++i) {
        const access_point& point = state.air.points[i];
        if (offers(point, network) && (best == 0 || better(point)))
            best = i + 1;
    }
    return best;
}

/// Chooses a network among those that are not disabled, and tells of those that no longer are.
void choose_target(camera_state& state, std::int64_t now) {
    supplicant& supplicant = state.supplicant;
    supplicant.target = 0;
    for (int i = 0; i < supplicant.networks && supplicant.target == 0; ++i) {
        wanted_network& network = supplicant.wanted[i];
        if (network.left_out != 0 || now < network.disabled_until)
            continue;
        const int previous = supplicant.network;
        supplicant.network = i;
        if (network.disabled_until != 0) {
            network.disabled_until = 0;
            tell(state, "CTRL-EVENT-SSID-REENABLED " + number_and_name(supplicant));
        }
        supplicant.target = find_target(state, network);
        if (supplicant.target == 0)
            supplicant.network = previous;
    }
}

bool any_disabled(const supplicant& supplicant) {
    return std::any_of(supplicant.wanted, supplicant.wanted + supplicant.networks,
                       [](const wanted_network& network) { return network.disabled_until != 0; });
}

void associate(camera_state& state, std::int64_t now) {
    const access_point& point = target_of(state);
    const std::string there = address_text(point.bssid) + " (SSID='" + ssid_text(point) +
                              "' freq=" + std::to_string(point.mhz) + " MHz)";
    tell(state, "SME: Trying to authenticate with " + there);
    tell(state, "Trying to associate with " + there);
    go(state.supplicant, supplicant_step::associating, now + association_time);
}

void finish_scan(camera_state& state, std::int64_t now) {
    state.supplicant.scanned = 1;
    tell(state, "CTRL-EVENT-SCAN-RESULTS ");
    choose_target(state, now);
    if (state.supplicant.target != 0) {
        associate(state, now);
        return;
    }
    if (!any_disabled(state.supplicant))
        tell(state, "CTRL-EVENT-NETWORK-NOT-FOUND ");
    go(state.supplicant, supplicant_step::pausing, now + pause_time);
}

void refuse(camera_state& state, std::int64_t now) {
    supplicant& supplicant = state.supplicant;
    tell(state, "CTRL-EVENT-ASSOC-REJECT bssid=" + address_text(target_of(state).bssid) +
                    " status_code=" + std::to_string(target_of(state).rejects));
    if (++supplicant.refusals >= refusals_until_failure)
        disable_network(state, "CONN_FAILED", now);
    go(supplicant, supplicant_step::backing_off, now + back_off_time(supplicant.refusals));
}

void complete(camera_state& state) {
    supplicant& supplicant = state.supplicant;
    const access_point& point = target_of(state);
    const std::string bssid = address_text(point.bssid);
    if (point.security != AIR_OPEN) {
        tell(state, "WPA: Key negotiation completed with " + bssid +
                        " [PTK=" + pairwise_name(point) + " GTK=" + group_name(point) + "]");
    }
    supplicant.wanted[supplicant.network].failures = 0;
    supplicant.refusals = 0;
    go(supplicant, supplicant_step::completed, 0);
    tell(state, "CTRL-EVENT-CONNECTED - Connection to " + bssid +
                    " completed [id=" + std::to_string(supplicant.network) + " id_str=]");
}

void finish_association(camera_state& state, std::int64_t now) {
    supplicant& supplicant = state.supplicant;
    const access_point& point = target_of(state);
    if (point.gone != 0) {
        start_scan(state, now);
        return;
    }
    if (point.rejects != 0) {
        refuse(state, now);
        return;
    }
    joined_point(state) = supplicant.target;
    tell(state, "Associated with " + address_text(point.bssid));
    const std::string subnet = "CTRL-EVENT-SUBNET-STATUS-UPDATE status=0";
    if (point.security == AIR_OPEN) {
        complete(state);
        tell(state, subnet);
        return;
    }
    tell(state, subnet);
    const bool fits = has_key(point, supplicant.wanted[supplicant.network]);
    go(supplicant, supplicant_step::handshake,
       now + (fits ? handshake_time : failed_handshake_time));
}

void finish_handshake(camera_state& state, std::int64_t now) {
    const access_point& point = target_of(state);
    if (has_key(point, state.supplicant.wanted[state.supplicant.network])) {
        complete(state);
        return;
    }
    joined_point(state) = 0;
    tell(state, "CTRL-EVENT-DISCONNECTED bssid=" + address_text(point.bssid) + " reason=15");
    tell(state, "WPA: 4-Way Handshake failed - pre-shared key may be incorrect");
    disable_network(state, "WRONG_KEY", now);
    state.supplicant.target = 0;
    go(state.supplicant, supplicant_step::pausing, now + restart_time);
}

void finish_step(camera_state& state, std::int64_t now) {
    switch (state.supplicant.step) {
    case supplicant_step::scanning:
        finish_scan(state, now);
        break;
    case supplicant_step::pausing:
    case supplicant_step::backing_off:
        start_scan(state, now);
        break;
    case supplicant_step::associating:
        finish_association(state, now);
        break;
    case supplicant_step::handshake:
        finish_handshake(state, now);
        break;
    default:
        state.supplicant.step_over = 0;
        break;
    }
}

/// @param how the disconnection is told, after its address.
void leave(camera_state& state, const std::string& how) {
    std::int32_t& joined = joined_point(state);
    if (joined != 0) {
        tell(state, "CTRL-EVENT-DISCONNECTED bssid=" +
                        address_text(state.air.points[joined - 1].bssid) + how);
    }
    joined = 0;
    state.supplicant.target = 0;
}

constexpr const char* by_own_choice = " reason=3 locally_generated=1";

} // namespace

void supplicant_start(camera_state& state) {
    start_scan(state, camera_time(state));
}

void supplicant_stop(camera_state& state) {
    leave(state, by_own_choice);
    state.supplicant = {};
}

void supplicant_bring(camera_state& state, bool up) {
    supplicant& supplicant = state.supplicant;
    if (supplicant.step == supplicant_step::off)
        return;
    if (!up) {
        leave(state, by_own_choice);
        go(supplicant, supplicant_step::disabled, 0);
    } else if (supplicant.step == supplicant_step::disabled) {
        start_scan(state, camera_time(state));
    }
}

void supplicant_disconnect(camera_state& state) {
    if (state.supplicant.step == supplicant_step::disabled)
        return;
    leave(state, by_own_choice);
    tell(state, "CTRL-EVENT-DSCP-POLICY clear_all");
    go(state.supplicant, supplicant_step::disconnected, 0);
}

void supplicant_reconnect(camera_state& state, bool even_joined) {
    const supplicant_step step = state.supplicant.step;
    const std::int64_t now = camera_time(state);
    if (step == supplicant_step::disconnected) {
        start_scan(state, now);
    } else if (step == supplicant_step::completed && even_joined) {
        joined_point(state) = 0;
        associate(state, now);
    }
}

bool supplicant_scan(camera_state& state) {
    supplicant& supplicant = state.supplicant;
    if (supplicant_busy(supplicant) || supplicant.step == supplicant_step::disabled)
        return false;
    const std::int64_t now = camera_time(state);
    if (supplicant.step == supplicant_step::pausing ||
        supplicant.step == supplicant_step::backing_off) {
        start_scan(state, now);
    } else {
        supplicant.scan_over = now + scan_time;
        tell(state, "CTRL-EVENT-SCAN-STARTED ");
    }
    return true;
}

bool supplicant_busy(const supplicant& supplicant) {
    return supplicant.step == supplicant_step::scanning ||
           supplicant.step == supplicant_step::associating || supplicant.scan_over != 0;
}

std::int64_t supplicant_due(const supplicant& supplicant) {
    if (supplicant.scan_over == 0 || supplicant.step_over == 0)
        return std::max(supplicant.scan_over, supplicant.step_over);
    return std::min(supplicant.scan_over, supplicant.step_over);
}

void supplicant_advance(camera_state& state, std::int64_t now) {
    supplicant& supplicant = state.supplicant;
    if (supplicant.scan_over != 0 && now >= supplicant.scan_over) {
        supplicant.scan_over = 0;
        supplicant.scanned = 1;
        tell(state, "CTRL-EVENT-SCAN-RESULTS ");
    }
    if (supplicant.step_over != 0 && now >= supplicant.step_over)
        finish_step(state, now);
}

void supplicant_lose(camera_state& state, std::int64_t now) {
    if (state.supplicant.step == supplicant_step::off)
        return;
    tell(state, "CTRL-EVENT-BEACON-LOSS ");
    leave(state, " reason=4 locally_generated=1");
    go(state.supplicant, supplicant_step::pausing, now + restart_time);
}

std::string supplicant_state_name(const camera_state& state) {
    switch (state.supplicant.step) {
    case supplicant_step::associating:
        return "ASSOCIATING";
    case supplicant_step::handshake:
        return "4WAY_HANDSHAKE";
    case supplicant_step::completed:
        return "COMPLETED";
    case supplicant_step::backing_off:
    case supplicant_step::disconnected:
        return "DISCONNECTED";
    case supplicant_step::disabled:
        return "INTERFACE_DISABLED";
    default:
        return state.supplicant.networks == 0 ? "INACTIVE" : "SCANNING";
    }
}
