// SPDX-License-Identifier: MIT
// Why a request did not lead to what it was for.

#include "reasons.h"

#include <cstddef>

namespace {

struct reason_text {
    const char* word;
    const char* sentence;
    const char* next;
};

/// In the order of the enumeration.
constexpr reason_text texts[] = {
    {"not_heard", "the network is not in range",
     "see what is: wlanctl survey --all; a hidden network needs --auth and its exact name"},
    {"wrong_key", "the key is wrong", "join again with the right key"},
    {"refused", "the access point refused the camera",
     "look at the router: its list of permitted devices, its limit of devices, its security mode"},
    {"no_address", "linked, but without an address",
     "see whether a DHCP client runs on the interface, and whether the router gives addresses out"},
    {"daemon_refused", "the daemon refused its settings or ended",
     "its own lines tell why; see also: wlanctl doctor"},
    {"program_missing", "a program is missing on the camera", "see which: wlanctl doctor"},
    {"no_adapter", "no Wi-Fi adapter",
     "plug the adapter in and load its driver, then look again with: wlanctl adapter"},
    {"driver_refused", "the driver refused",
     "see what it said with --verbose, and the adapter with: wlanctl adapter"},
    {"busy", "another request is being carried out",
     "wait for it, or give --lock-wait more seconds"},
    {"timed_out", "nothing decided it in time",
     "give --wait more seconds, or see how it is doing with: wlanctl status"},
    {"cancelled", "cancelled, and stopped what had been started",
     "go back to the stored network with: wlanctl join --stored"},
    {"store_failed", "the stored settings cannot be read or written",
     "correct what the store's own message names, then look with: wlanctl store show"},
    {"wrong_usage", "wrong usage", "see: wlanctl --help"},
};

const reason_text& text_of(reason why) {
    return texts[static_cast<std::size_t>(why)];
}

} // namespace

const char* word_of(reason why) {
    return text_of(why).word;
}

failure because(const setback& setback, const std::string& tried) {
    const reason_text& text = text_of(setback.why);
    std::string error = tried + ": ";
    if (!setback.detail.empty()) {
        error += setback.detail;
    } else {
        error += setback.certain ? text.sentence : std::string("probably ") + text.sentence;
    }
    failure told(error, text.next, setback.found);
    told.reason = text.word;
    told.certain = setback.certain;
    return told;
}
