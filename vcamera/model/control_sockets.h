// SPDX-License-Identifier: MIT
// The sockets on which hostapd and wpa_supplicant are asked and tell. The daemons are no processes:
// whichever program finds something due on the camera's clock sends it to the clients, at the
// addresses that they have bound on the host.

#pragma once

#include <cstdint>
#include <string>

#include <sys/un.h>

struct camera_state;
struct fake_daemon;

/// How the control sockets behave.
enum class control_manner : std::uint8_t { good, lies, floods, silent };

/// Who gets a daemon's events.
struct control_client {
    std::int32_t daemon; // its pid; 0 when the place is free
    std::int32_t level;  // the least that it is told
    std::int32_t flood_left;
    std::uint32_t address_size;
    sockaddr_un address;
};

/// The daemon's part of the camera's state.
struct control_state {
    control_manner manner;
    std::uint32_t lies_told;
    control_client clients[16];
};

/// @return the path without what is a symbolic link on the camera: /var/run is /run.
std::string plain_control_path(const std::string& path);

/// Opens a daemon's socket for its interface.
/// @param setting value of "ctrl_interface": a folder, or DIR=FOLDER with GROUP=NAME behind it.
void open_control(camera_state& state, fake_daemon& daemon, const std::string& setting);

/// The daemon ends: its clients are told, and the socket goes.
void close_control(camera_state& state, fake_daemon& daemon);

/// It is killed: the socket stays, and nobody answers.
void abandon_control(camera_state& state, const fake_daemon& daemon);

/// @return the daemon that listens there, or null.
fake_daemon* listening_daemon(camera_state& state, const std::string& path);

/// @param client address to which the answer goes.
void take_command(camera_state& state, fake_daemon& daemon, const std::string& command,
                  const sockaddr_un& client, std::uint32_t client_size);

/// Sends an event to the clients of an interface's daemon.
void tell_clients(camera_state& state, const char* daemon, int interface, const std::string& text);

/// Sends what a scene floods clients with, as far as they have read.
void flood_clients(camera_state& state);
