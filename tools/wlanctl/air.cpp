// SPDX-License-Identifier: MIT
// What is in the air.

#include "air.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <unistd.h>

#include "cancelling.h"
#include "diagnostics.h"
#include "field.h"
#include "libwlan/survey.h"
#include "libwlan/wlan.h"
#include "progress.h"
#include "reasons.h"
#include "worker.h"

namespace {

constexpr std::size_t longest_name = 32;
constexpr int busy_patience = 10; // seconds
constexpr int second_ms = 1000;

/// Only a version-1 table of the MediaTek driver tells dBm, and nothing but them.
bool tells_dbm(const sites& site) {
    return site.rssi < 0;
}

/// A list that left out lines of the driver's table is as good as any: it cannot be told which.
int survey_mediatek(std::vector<sites>& list, bool trigger) {
    wlan radio;
    if (radio.init() != 0)
        return -1;
    radio.do_site_survey(list, trigger);
    radio.release();
    return 0;
}

bool write_all(int descriptor, const void* data, std::size_t length) {
    const auto* from = static_cast<const char*>(data);
    while (length > 0) {
        const ssize_t count = write(descriptor, from, length);
        if (count < 0 && errno != EINTR)
            return false;
        const auto written = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        from += written;
        length -= written;
    }
    return true;
}

struct surveyed {
    bool answered;
    std::string found;
};

surveyed survey_once(const std::function<int(std::string&)>& survey) {
    const work_done done = run_in_child([&](int results) {
        std::string found;
        const int result = survey(found);
        return write_all(results, found.data(), found.size()) ? result : -1;
    });
    if (asked_to_end())
        throw because({reason::cancelled}, "survey of the air");
    return {done.finished && done.result == 0, done.wrote};
}

bool driver_was_busy() {
    return diagnostics::printed().find(std::strerror(EBUSY)) != std::string::npos;
}

} // namespace

std::string survey_bytes(const std::function<int(std::string&)>& survey, bool trigger) {
    if (trigger)
        tell_progress("scanning");
    for (int tries = 0;; ++tries) {
        diagnostics::forget();
        const surveyed once = survey_once(survey);
        if (once.answered || !once.found.empty())
            return once.found;
        if (!driver_was_busy()) {
            throw because({reason::driver_refused, true,
                           "the driver gave no list, as one does that hears nobody"},
                          "survey of the air");
        }
        if (tries >= busy_patience) {
            throw because({reason::busy, true, "the driver is still busy with another scan"},
                          "survey of the air");
        }
        tell_progress("busy");
        pause_ms(second_ms);
    }
}

std::vector<sites> survey_air(bool mediatek, bool trigger) {
    return survey_list<sites>(
        [&](std::vector<sites>& list) {
            return mediatek ? survey_mediatek(list, trigger) : run_site_survey_realtek(list);
        },
        trigger);
}

answer band_of(int channel) {
    constexpr int last_2ghz = 14;
    return channel == 0 ? answer() : answer(channel <= last_2ghz ? "2.4 GHz" : "5 GHz");
}

std::string name_of(const sites& site) {
    return text_of(site.ssid).substr(0, longest_name);
}

/// The library reckons the channels of a Realtek adapter from the frequency, in steps of 5 MHz from
/// channel 1 on, wherever they really are.
int channel_of(const sites& site, bool mediatek) {
    constexpr int reckoned_14 = 15;
    constexpr int reckoned_5ghz = 518; // for channel 0 of that band
    if (mediatek || site.channel < reckoned_14)
        return std::max(site.channel, 0);
    return site.channel == reckoned_14 ? 14 : std::max(site.channel - reckoned_5ghz, 0);
}

std::string security_of(const sites& site) {
    const std::string cipher = text_of(site.encryption);
    const std::string authentication = text_of(site.authentication);
    return cipher == "NONE" ? authentication : authentication + " " + cipher;
}

int strength(const sites& site) {
    return tells_dbm(site) ? site.rssi : site.signal;
}

answer describe(const sites& site, bool mediatek) {
    const int channel = channel_of(site, mediatek);
    answer told = {{"name", name_of(site)},
                   {"bssid", address_text(text_of(site.bssid))},
                   {"channel", channel == 0 ? answer() : answer(channel)},
                   {"band", band_of(channel)},
                   {"security", security_of(site)}};
    told.set(tells_dbm(site) ? "signal_dbm" : "signal_percent", strength(site));
    return told;
}

const sites* find_strongest(const std::vector<sites>& list, const std::string& name) {
    const sites* found = nullptr;
    for (const sites& site : list) {
        if (name_of(site) == name && (found == nullptr || strength(site) > strength(*found)))
            found = &site;
    }
    return found;
}
