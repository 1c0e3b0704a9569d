// SPDX-License-Identifier: MIT
// wlanctl wps.

#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "libwlan/store.h"
#include "libwlan/wlan.h"

#include "adapter.h"
#include "commands.h"
#include "security.h"

namespace {

constexpr int store_failed = -13; // the number is part of the interface

volatile std::sig_atomic_t asked_to_end = 0;

void note_end(int /*signal*/) {
    asked_to_end = 1;
}

/// From here on these end the wait and not the command, which has the driver to tell.
void take_ending_signals() {
    struct sigaction action {};
    action.sa_handler = note_end; // without SA_RESTART: what waits, ends
    for (const int signal : {SIGHUP, SIGINT, SIGPIPE, SIGQUIT, SIGTERM})
        sigaction(signal, &action, nullptr);
}

/// A session of the driver, which is not left running however the command ends.
class wps_session {
public:
    wps_session() {
        if (radio_.init_wps() != 0)
            throw failure("push-button session: not prepared", "the system's message stands above");
    }
    ~wps_session() {
        if (!obtained_)
            radio_.stop_wps(0);
        radio_.release_wps();
    }
    wps_session(const wps_session&) = delete;
    wps_session& operator=(const wps_session&) = delete;

    void start() {
        if (radio_.do_wps(0) != 0) {
            throw failure("push-button session: not started",
                          "the message of the failing step stands above; see: wlanctl adapter");
        }
    }

    /// The library prints the driver's status at every look, one line; a terminal shows the last.
    /// @return whether the network was obtained in time.
    bool wait(int seconds) {
        const char* over_last = isatty(STDERR_FILENO) == 1 ? "\033[A\033[K" : "";
        for (int waited = 0; waited < seconds && asked_to_end == 0; ++waited) {
            std::fputs(waited > 0 ? over_last : "", stderr);
            obtained_ = radio_.does_it_finish(0) == 1;
            if (obtained_)
                return true;
            sleep(1);
        }
        return false;
    }

    void store() {
        char interface[] = "wlan0";
        const int result = radio_.update_wsc_to_db_and_action(interface);
        if (result == store_failed) {
            throw failure("network obtained, but not stored: the store failed (-13)",
                          "correct what the store's message above names, then run: wlanctl wps");
        }
        if (result != 0) {
            throw failure("network obtained, but not stored: the driver's profile of it is missing "
                          "or makes no sense (" +
                              std::to_string(result) + ")",
                          "run again: wlanctl wps; or join it by name: wlanctl join");
        }
        radio_.does_network_need_to_act();
    }

private:
    wlan radio_;
    bool obtained_ = false;
};

failure not_obtained(int timeout) {
    if (asked_to_end != 0) {
        return {"push-button session: ended by a signal",
                "nothing is stored; go back to the stored network with: wlanctl join --stored"};
    }
    return {"push-button session: no network obtained in " + std::to_string(timeout) + " s",
            "the driver's last status stands above, and nothing is stored; press the button of one "
            "router, then run again: wlanctl wps"};
}

answer describe_stored() {
    _wireless_setting stored{};
    if (cam_get_client(&stored) != 0) {
        throw failure("network stored, but the store cannot be read back",
                      "the store's own message stands above; correct what it names");
    }
    return {
        {"done", "network obtained and stored"},
        {"ssid",
         std::string(stored.client_ssid, strnlen(stored.client_ssid, sizeof stored.client_ssid))},
        {"auth", word_of(stored.client_auth)},
        {"enc", word_of(stored.client_enc)},
        {"channel", stored.client_channel},
        {"next", "see how it is doing with: wlanctl status"},
    };
}

answer obtain(int timeout) {
    if (!find_adapter().mediatek)
        throw CLI::ValidationError("a Realtek adapter does no push-button WPS", "use wlanctl join");
    take_ending_signals();
    wps_session session;
    session.start();
    if (isatty(STDERR_FILENO) == 1)
        std::fprintf(stderr, "Press the router's WPS button; waiting for up to %d s.\n", timeout);
    if (!session.wait(timeout))
        throw not_obtained(timeout);
    session.store();
    return describe_stored();
}

} // namespace

void add_wps_command(CLI::App& wlanctl, answer& result) {
    const auto timeout = std::make_shared<int>(120); // a router listens for two minutes
    auto& command = *wlanctl.add_subcommand("wps", "Obtain a network by the router's WPS button");
    command.add_option("--timeout", *timeout, "How long to wait")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 3600, "1-3600"))
        ->capture_default_str();
    command.footer("Stores the network for the station mode, and has the camera join it unless its "
                   "cable is plugged in\n(MediaTek). With --json: done, ssid, auth, enc, channel "
                   "(0: not known), next.");
    command.callback([timeout, &result] { result = obtain(*timeout); });
}
