#pragma once

// The camera's state: plain data in the scratch folder's file "state", which every process of the
// camera maps, so that a second command sees what the first one did.

#include <algorithm>
#include <cstdint>
#include <string>

#include "sim/mtk_radio.h"
#include "sim/realtek_radio.h"

enum class adapter_family : std::uint8_t { none, mediatek, realtek };
enum class usb_listing : std::uint8_t { proc, lsusb, absent };

using short_text = char[64];

struct pretend_daemon {
    std::int32_t pid; // 0 when the place is free
    short_text name;
    short_text pid_file;
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

    std::int32_t daemons_started;
    pretend_daemon daemons[8];
    short_text missing_programs[16];
    short_text stubborn[8]; // daemons that ignore signals
    scene_fault faults[8];
};

/// Of the interface with this number.
std::uint8_t& up_flag(camera_state& state, int interface);

/// Writes the interface's /sys/class/net/NAME/operstate below `scratch`.
void show_operstate(camera_state& state, int interface, const std::string& scratch);

constexpr char state_layout[16] = "vcamera 1";

template <std::size_t most>
bool lists(const short_text (&names)[most], const std::string& name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

/// The scratch folder of the camera that this process runs on, or null without a camera.
const char* scratch_folder();

/// A path of the camera as a path of the host.
std::string in_scratch(const std::string& path);

/// Holds the camera: one process at a time looks at its state.
class held_camera {
public:
    held_camera();
    ~held_camera();
    held_camera(const held_camera&) = delete;
    held_camera& operator=(const held_camera&) = delete;

    camera_state& operator*() const;

private:
    int file_;
};
