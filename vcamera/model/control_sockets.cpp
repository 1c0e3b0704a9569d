// SPDX-License-Identifier: MIT
// The sockets on which hostapd and wpa_supplicant are asked and tell.

#include "vcamera/model/control_sockets.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "src/base/unique_fd.h"
#include "vcamera/model/camera_state.h"
#include "vcamera/model/control_commands.h"
#include "vcamera/model/daemons.h"
#include "vcamera/model/paths.h"

namespace {

constexpr int info_level = 3; // of all events here
constexpr int flood_size = 5000;
constexpr int flood_part = 5; // leaves room for an answer: the kernel may queue no more than 10

/// @return 0 or an errno.
int send_to(const sockaddr_un& address, std::uint32_t size, const std::string& text) {
    const libwlan::unique_fd socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket)
        return errno;
    const ssize_t sent =
        sendto(socket.get(), text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
               reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size));
    return sent < 0 ? errno : 0;
}

/// A client that is gone is forgotten; one that does not read misses it.
/// @return whether it got the text.
bool send_event(control_client& client, const std::string& text) {
    const int error = send_to(client.address, client.address_size, text);
    if (error == ENOENT || error == ECONNREFUSED || error == EPERM)
        client = {};
    return error == 0;
}

/// What no daemon says, in turn.
std::string lie(control_state& control) {
    const std::string lies[] = {
        std::string("\xff\xfe\x00\x01wpa_state=", 14),
        "wpa_state=" + std::string(9000, 'A') + "\n",
        "",
        "bssid=zz:zz\nfreq=-99999999999999999999\nssid=\nwpa_state=\nid=\n=\n==\n",
        "<",
        "<3>",
        "<99999999999999999999>CTRL-EVENT-CONNECTED - Connection to ",
        "bssid / frequency\n\t\t\t\t\n" + std::string(40, '\t') + "\n",
        "wpa_state=COMPLETED",
    };
    return lies[control.lies_told++ % std::size(lies)];
}

control_client* find_client(control_state& control, const fake_daemon& daemon,
                            const sockaddr_un& address, std::uint32_t size) {
    for (control_client& client : control.clients) {
        if (client.daemon == daemon.pid && client.address_size == size &&
            std::memcmp(&client.address, &address, size) == 0)
            return &client;
    }
    return nullptr;
}

std::string attach(control_state& control, const fake_daemon& daemon, const sockaddr_un& address,
                   std::uint32_t size) {
    for (control_client& client : control.clients) {
        if (client.daemon != 0)
            continue;
        client = {daemon.pid, info_level, 0, size, address};
        if (control.manner == control_manner::floods)
            client.flood_left = flood_size;
        return "OK\n";
    }
    return "FAIL\n";
}

std::string answer(camera_state& state, fake_daemon& daemon, const std::string& command,
                   const sockaddr_un& address, std::uint32_t size) {
    control_client* client = find_client(state.control, daemon, address, size);
    if (command == "PING")
        return "PONG\n";
    if (command == "ATTACH")
        return attach(state.control, daemon, address, size);
    if (command == "DETACH") {
        if (client == nullptr)
            return "FAIL\n";
        *client = {};
        return "OK\n";
    }
    if (command.rfind("LEVEL ", 0) == 0) {
        if (client == nullptr)
            return "FAIL\n";
        client->level = std::atoi(command.c_str() + 6);
        return "OK\n";
    }
    if (command == "TERMINATE") {
        terminate_daemon(state, daemon);
        return "OK\n";
    }
    const bool is_hostapd = daemon.name == std::string("hostapd");
    const command_answer known = is_hostapd ? hostapd_command(state, daemon, command)
                                            : wpa_supplicant_command(state, daemon, command);
    return known.value_or("UNKNOWN COMMAND\n");
}

void forget_clients(control_state& control, const fake_daemon& daemon) {
    for (control_client& client : control.clients) {
        if (client.daemon == daemon.pid)
            client = {};
    }
}

} // namespace

std::string plain_control_path(const std::string& path) {
    return path.rfind("/var/run/", 0) == 0 ? path.substr(4) : path;
}

void open_control(camera_state& state, fake_daemon& daemon, const std::string& setting) {
    const std::size_t begin = setting.rfind("DIR=", 0) == 0 ? 4 : 0;
    const std::size_t end = begin == 0 ? std::string::npos : setting.find(" GROUP=");
    const std::string path = plain_control_path(setting.substr(begin, end - begin)) + "/" +
                             state.interfaces[daemon.interface];
    if (setting.empty() || !belongs_to_camera(path) || path.size() >= sizeof daemon.control)
        return;
    std::snprintf(daemon.control, sizeof daemon.control, "%s", path.c_str());
    const std::filesystem::path entry = in_scratch(path);
    std::filesystem::create_directories(entry.parent_path());
    std::filesystem::remove(entry); // that a killed daemon left
    mknod(entry.c_str(), S_IFSOCK | 0770, 0);
}

void close_control(camera_state& state, fake_daemon& daemon) {
    tell_clients(state, daemon.name, daemon.interface, "CTRL-EVENT-TERMINATING ");
    forget_clients(state.control, daemon);
    if (daemon.control[0] != '\0')
        unlink(in_scratch(daemon.control).c_str());
}

void abandon_control(camera_state& state, const fake_daemon& daemon) {
    forget_clients(state.control, daemon);
}

fake_daemon* listening_daemon(camera_state& state, const std::string& path) {
    const std::string plain = plain_control_path(path);
    for (fake_daemon& daemon : state.daemons) {
        if (daemon.pid != 0 && daemon.control[0] != '\0' && plain == daemon.control)
            return &daemon;
    }
    return nullptr;
}

void take_command(camera_state& state, fake_daemon& daemon, const std::string& command,
                  const sockaddr_un& client, std::uint32_t client_size) {
    control_state& control = state.control;
    if (control.manner == control_manner::silent)
        return;
    const bool lies = control.manner == control_manner::lies && command != "ATTACH";
    send_to(client, client_size,
            lies ? lie(control) : answer(state, daemon, command, client, client_size));
}

void tell_clients(camera_state& state, const char* daemon, int interface, const std::string& text) {
    const auto speaks = [&](const control_client& client) {
        return std::any_of(std::begin(state.daemons), std::end(state.daemons),
                           [&](const fake_daemon& one) {
                               return one.pid != 0 && one.pid == client.daemon &&
                                      one.interface == interface && one.name == std::string(daemon);
                           });
    };
    for (control_client& client : state.control.clients) {
        if (client.daemon == 0 || client.level > info_level || !speaks(client))
            continue;
        if (state.control.manner == control_manner::lies)
            send_event(client, "<3>CTRL-EVENT-" + std::string(9000, 'B'));
        send_event(client, "<3>" + text);
    }
}

void flood_clients(camera_state& state) {
    for (control_client& client : state.control.clients) {
        for (int i = 0; i < flood_part && client.flood_left > 0; ++i) {
            if (!send_event(client, "<3>CTRL-EVENT-SIGNAL-CHANGE above=1 signal=-60 noise=-95"))
                break;
            --client.flood_left;
        }
    }
}
