// SPDX-License-Identifier: MIT
// What tests on a virtual camera share.

#include "tests/support/camera_test.h"

#include <algorithm>
#include <ostream>
#include <set>

#include <unistd.h>

#include "libwlan/sites.h"
#include "vcamera/scene/camera.h"

namespace {

// Housekeeping, which no driver, program or daemon hears of.
const std::set<std::string> housekeeping = {"access", "open", "socket", "unlink"};

} // namespace

bool operator==(const outcome& one, const outcome& other) {
    return one.result == other.result && one.out == other.out && one.err == other.err && one.opened == other.opened;
}

std::ostream& operator<<(std::ostream& stream, const outcome& outcome) {
    return stream << outcome.result << ", out \"" << outcome.out << "\", err \"" << outcome.err << "\", "
                  << outcome.opened << " opened";
}

void camera_test::plug_in(const scene& camera) const {
    plug_in(camera.json_text());
}

void camera_test::plug_in(const std::string& scene) const {
    vcamera::start(scene, folder);
}

void camera_test::let_daemons_start() {
    usleep(10000);
}

lines camera_test::said(std::size_t last) const {
    lines said;
    for (const vcamera::line& line : vcamera::journal(folder)) {
        if (housekeeping.count(line.request) != 0)
            continue;
        std::string sentence = line.request;
        if (line.request != "system" && line.request != "popen")
            sentence.insert(0, line.subject + " ");
        if (!line.text.empty())
            sentence += " " + line.text;
        if (line.answer != "ok" && line.answer != "0")
            sentence += " = " + line.answer;
        said.push_back(sentence);
    }
    return {said.end() - static_cast<std::ptrdiff_t>(std::min(last, said.size())), said.end()};
}

int open_descriptors() {
    return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

lines names(const std::vector<sites>& list) {
    lines names;
    for (const sites& site : list)
        names.emplace_back(site.ssid);
    return names;
}

lines told(const std::vector<sites>& list) {
    lines told;
    for (const sites& site : list) {
        told.push_back(print("%s|%s|%s|%s|%s|%d|%d|%d", site.ssid, site.bssid, site.encryption, site.authentication,
                             site.network_type, site.channel, site.rssi, site.signal));
    }
    return told;
}
