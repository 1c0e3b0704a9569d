// SPDX-License-Identifier: MIT
// The camera's state: plain data in the scratch folder's file "state", which every process of the
// camera maps, so that a second command sees what the first one did.

#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "src/base/unique_fd.h"
#include "vcamera/model/addresses.h"
#include "vcamera/model/control_sockets.h"
#include "vcamera/model/hostapd_settings.h"
#include "vcamera/model/mtk_radio.h"
#include "vcamera/model/realtek_radio.h"
#include "vcamera/model/supplicant.h"
#include "vcamera/model/visitors.h"

enum class adapter_family : std::uint8_t { none, mediatek, realtek };
enum class usb_listing : std::uint8_t { proc, lsusb, absent };

using short_text = char[64];

struct fake_daemon {
    std::int32_t pid;         // 0 when the place is free
    std::int32_t interface;   // the vif's number
    bool raised;              // whether it was down before
    std::int64_t pid_file_at; // when it writes the file, by the camera's clock; 0 once it has
    std::int64_t gone_at;     // when it will have ended; 0 before it was asked to
    short_text name;
    short_text pid_file;
    short_text control; // path of its control socket; empty without
};

struct scene_fault {
    short_text call;
    short_text match;
    std::int32_t nth;
    std::int32_t times; // 0 lasts for ever
    std::int32_t error;
    std::int32_t seen;
};

struct camera_state {
    char layout[16]; // tells a state of another version
    std::uint32_t size;

    std::int64_t clock_us; // the camera's clock when the host's stood at host_us
    std::int64_t host_us;
    std::int32_t speed; // 0 does not wait at all

    adapter_family adapter;
    usb_listing usb;
    bool wired;
    short_text interfaces[MTK_VIFS]; // in the order of the driver's vifs; empty is absent
    struct air air;
    mtk_radio mtk;
    realtek_radio realtek;
    struct supplicant supplicant;
    hosted_network hosted;
    std::int32_t visitors_expected;
    visitor visitors[16];
    interface_addresses addresses[MTK_VIFS];
    control_state control;

    hostapd_build hostapd;
    std::int32_t daemons_started;
    fake_daemon daemons[8];
    short_text missing_programs[16];
    short_text stubborn[8]; // daemons that ignore signals
    scene_fault faults[8];
};

/// Of the interface with this number.
std::uint8_t& up_flag(camera_state& state, int interface);

/// Writes the interface's /sys/class/net/NAME/operstate below `scratch`.
void show_operstate(camera_state& state, int interface, const std::string& scratch);

constexpr char state_layout[16] = "vcamera 2";

template <std::size_t most>
bool lists(const short_text (&names)[most], const std::string& name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// The scratch folder of the camera that this process runs on, or null without a camera.
const char* scratch_folder();

/// Keeps this process on its camera even when it clears its environment.
void keep_scratch_folder();

/// A path of the camera as a path of the host.
std::string in_scratch(const std::string& path);

/// Locks the camera: one process at a time looks at its state.
class locked_camera {
public:
    locked_camera();
    ~locked_camera();
    locked_camera(const locked_camera&) = delete;
    locked_camera& operator=(const locked_camera&) = delete;

    camera_state& operator*() const;

private:
    libwlan::unique_fd file_;
};
