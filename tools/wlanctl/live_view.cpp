// SPDX-License-Identifier: MIT
// The link as it changes, drawn in a terminal or told a line at a time.

#include "live_view.h"

#include <algorithm>
#include <cstdio>

#include "escape.h"
#include "layout.h"
#include "whereabouts.h"

namespace {

constexpr std::size_t axis_width = 6; // "-100 |"

std::string time_text(int seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%d:%02d:%02d", seconds / 3600, seconds / 60 % 60,
                  seconds % 60);
    return text;
}

std::string name_in(const answer& network) {
    const answer& name = network.at("ssid");
    return name.is_null() ? "(name not told)" : escape(name.text());
}

/// "wlan0, channel 6, WPA2-PSK AES, 192.168.8.20": what is told of it.
std::string facts_of(const answer& network) {
    std::string text = network.at("interface").text();
    if (const answer& channel = network.at("channel"); !channel.is_null())
        text += ", channel " + channel.cell();
    for (const char* name : {"security", "address", "bssid"}) {
        if (const answer& value = network.at(name); !value.is_null())
            text += ", " + escape(value.text());
    }
    return text;
}

std::string stations_text(const answer& point) {
    const answer& stations = point.at("stations");
    if (stations.is_null())
        return "";
    const std::string count = stations.at("count").cell();
    return count + (count == "1" ? " station" : " stations");
}

void add_wrapped(std::vector<std::string>& lines, const std::string& text, std::size_t columns) {
    for (const std::string& line : wrapped(text, columns))
        lines.push_back(line);
}

void add_station(std::vector<std::string>& lines, const live_state& state,
                 const signal_history& history, const display& display, std::size_t rows) {
    const answer& station = state.station;
    if (station.is_null()) {
        lines.emplace_back("Not joined");
    } else {
        lines.push_back(cut("Joined " + name_in(station), display.columns));
        add_wrapped(lines, facts_of(station), display.columns);
        const int share = signal_share(station);
        if (share >= 0)
            lines.push_back(signal_bar(display, share) + " " + signal_text(station));
    }
    const bool in_dbm = station.is_null() || station.at("signal_percent").is_null();
    for (const std::string& row : history.draw(display, rows, in_dbm))
        lines.push_back(row);
}

void add_access_point(std::vector<std::string>& lines, const answer& point,
                      const display& display) {
    lines.emplace_back();
    if (point.is_null()) {
        lines.emplace_back("Access point not up");
        return;
    }
    const std::string stations = stations_text(point);
    lines.push_back(cut("Access point " + name_in(point), display.columns));
    add_wrapped(lines, facts_of(point) + (stations.empty() ? "" : ", " + stations),
                display.columns);
    std::string addresses;
    for (const auto& [unnamed, address] : point.at("stations").at("addresses").fields())
        addresses += address.text() + " ";
    add_wrapped(lines, addresses, display.columns);
}

/// At the top, in the middle and at the bottom.
std::string axis_label(std::size_t row, std::size_t rows, bool in_dbm) {
    const bool is_middle = rows > 2 && 2 * row == rows;
    if (row != 0 && row + 1 != rows && !is_middle)
        return "";
    const int percent = row == 0 ? 100 : is_middle ? 50 : 0;
    return std::to_string(in_dbm ? percent / 2 - 100 : percent);
}

} // namespace

void signal_history::add(int share) {
    constexpr std::size_t most = 1000; // more than any terminal shows
    shares_.push_back(share);
    if (shares_.size() > most)
        shares_.pop_front();
}

std::vector<std::string> signal_history::draw(const display& display, std::size_t rows,
                                              bool in_dbm) const {
    constexpr int levels = 8; // in a row
    const marks& marks = marks_of(display);
    const std::size_t room = display.columns - axis_width;
    const std::size_t first = shares_.size() > room ? shares_.size() - room : 0;
    std::vector<std::string> lines;
    for (std::size_t row = 0; row < rows; ++row) {
        const auto below = static_cast<int>(rows - 1 - row) * levels;
        const auto height = static_cast<int>(rows) * levels;
        const std::string label = axis_label(row, rows, in_dbm);
        std::string line =
            std::string(axis_width - 2 - label.size(), ' ') + label + " " + marks.axis;
        for (std::size_t i = first; i < shares_.size(); ++i) {
            const int share = shares_[i];
            const int level = std::clamp(share * height / 100, 1, height) - below;
            if (share < 0)
                line += row + 1 == rows ? marks.gap : " ";
            else
                line += marks.levels[std::clamp(level, 0, levels)];
        }
        lines.push_back(line);
    }
    return lines;
}

std::string line_of(const live_state& state) {
    std::string line = time_text(state.seconds) + "  ";
    if (!state.problem.empty())
        return line + escape(state.problem);
    const answer& station = state.station;
    line += station.is_null()
                ? "not joined"
                : name_in(station) + " " + signal_text(station) + " (" + facts_of(station) + ")";
    const answer& point = state.access_point;
    if (!point.is_null()) {
        const std::string stations = stations_text(point);
        line += "; access point " + name_in(point) + (stations.empty() ? "" : " with " + stations) +
                " (" + facts_of(point) + ")";
    }
    return line;
}

std::vector<std::string> draw_state(const live_state& state, const signal_history& history,
                                    const display& display) {
    constexpr std::size_t most_rows = 6;
    constexpr std::size_t other_rows = 12;
    const std::size_t rows =
        display.rows > other_rows ? std::min(display.rows - other_rows, most_rows) : 0;
    std::vector<std::string> lines;
    if (state.problem.empty()) {
        add_station(lines, state, history, display, rows);
        add_access_point(lines, state.access_point, display);
    } else {
        add_wrapped(lines, escape(state.problem), display.columns);
    }
    lines.emplace_back();
    lines.push_back(time_text(state.seconds) + ", Ctrl-C ends");
    return lines;
}
