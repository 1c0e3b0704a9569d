// SPDX-License-Identifier: MIT
// wlanctl wps.

#include <cstring>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "libwlan/link_status.h"
#include "libwlan/store.h"
#include "libwlan/wlan.h"

#include "adapter.h"
#include "cancelling.h"
#include "commands.h"
#include "diagnostics.h"
#include "field.h"
#include "mode_request.h"
#include "progress.h"
#include "request_lock.h"
#include "security.h"
#include "watch.h"

namespace {

constexpr int store_failed = -13; // the number is part of the interface

struct wps_options {
    request_options request;
    int timeout = 120; ///< seconds; a router listens for two minutes
};

constexpr char what[] = "push-button session";

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

    /// @return whether the network was obtained in time.
    bool wait(int seconds) {
        constexpr int second_ms = 1000;
        for (int waited = 0; waited < seconds && !asked_to_end(); ++waited) {
            diagnostics::forget();
            obtained_ = radio_.does_it_finish(0) == 1;
            tell_status();
            if (obtained_)
                return true;
            pause_ms(second_ms);
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
    /// The library prints the driver's status at every look, in brackets at the end of a line, and
    /// gives it nowhere else.
    void tell_status() {
        diagnostics::take_in();
        const std::string& line = diagnostics::printed();
        const std::size_t start = line.rfind('[');
        const std::size_t end = line.rfind(']');
        if (start == std::string::npos || end == std::string::npos || end < start)
            return;
        const std::string status = line.substr(start + 1, end - start - 1);
        if (status != status_)
            tell_progress("wps", {{"status", status}});
        status_ = status;
        if (status == "STATUS_WSC_PBC_SESSION_OVERLAP") {
            throw because({reason::refused, true, "two routers are in push-button mode at once"},
                          what);
        }
    }

    wlan radio_;
    bool obtained_ = false;
    std::string status_;
};

failure not_obtained(int timeout) {
    if (asked_to_end())
        return because({reason::cancelled}, what);
    return because({reason::timed_out, true,
                    "no network obtained in " + std::to_string(timeout) +
                        " s, and nothing stored; "
                        "press the button of one router"},
                   what);
}

/// What is obtained can be stored: the same settings are written back.
void check_store() {
    _wireless_setting stored{};
    _cam_actions no_actions{};
    if (cam_get_client(&stored) != 0 || cam_set_client(&stored, &no_actions, 0, 0) != 0)
        throw because({reason::store_failed}, what);
}

answer describe_stored() {
    _wireless_setting stored{};
    if (cam_get_client(&stored) != 0) {
        throw failure("network stored, but the store cannot be read back",
                      "the store's own message stands above; correct what it names");
    }
    return {
        {"outcome", "obtained"},
        {"done", "network obtained and stored"},
        {"ssid", text_of(stored.client_ssid)},
        {"auth", word_of(stored.client_auth)},
        {"enc", word_of(stored.client_enc)},
        {"channel", stored.client_channel},
        {"next", "see how it is doing with: wlanctl status"},
    };
}

/// Waits until the image's own script has joined what was stored.
void await_link(answer& told, const request_options& options) {
    if (options.wait == 0 || probe_link() == 1)
        return; // with the cable plugged in it is not joined
    tell_progress("associating", {{"ssid", told.at("ssid")}});
    const target target = {told.at("ssid").text(), told.at("enc").text() != "none", true};
    const sight sight = await(*watch_join(target, true, options.address), options.wait);
    if (sight.now != sight::state::reached) {
        setback why = sight.why;
        for (const auto& [name, value] : told.fields()) {
            if (std::strcmp(name, "outcome") != 0 && std::strcmp(name, "next") != 0)
                why.found.set(name, value);
        }
        throw because(why, "network obtained and stored, but not joined");
    }
    told.set("outcome", "joined");
    told.set("done", "network obtained, stored and joined");
    for (const auto& [name, value] : sight.found.fields())
        told.set(name, value);
    told.set("seconds", options.seconds());
}

answer obtain(const wps_options& options) {
    if (!find_adapter().mediatek)
        throw CLI::ValidationError("a Realtek adapter does no push-button WPS", "use wlanctl join");
    const request_lock lock("wps", options.request.lock_wait);
    check_store();
    wps_session session;
    session.start();
    tell_progress("press", {{"seconds", options.timeout}});
    if (!session.wait(options.timeout))
        throw not_obtained(options.timeout);
    session.store();
    answer told = describe_stored();
    await_link(told, options.request);
    return told;
}

} // namespace

void add_wps_command(CLI::App& wlanctl, answer& result) {
    const auto options = std::make_shared<wps_options>();
    auto& command = *wlanctl.add_subcommand("wps", "Obtain a network by the router's WPS button");
    command.add_option("--timeout", options->timeout, "How long to wait for the button")
        ->type_name("SECONDS")
        ->check(CLI::Range(1, 3600, "1-3600"))
        ->capture_default_str();
    add_request_options(command, options->request);
    command.footer("Stores the network for the station mode, and has the camera join it unless its "
                   "cable is plugged in\n(MediaTek). With --json: outcome (joined, or obtained), "
                   "done, ssid, auth, enc, channel (0: not known),\nnext, and once joined bssid, "
                   "signal_dbm or signal_percent, interface, address.");
    command.callback([options, &result] { result = obtain(*options); });
}
