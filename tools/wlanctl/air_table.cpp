// SPDX-License-Identifier: MIT
// Lists of networks, drawn to fit where they are shown.

#include "air_table.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "escape.h"
#include "layout.h"
#include "whereabouts.h"

namespace {

constexpr std::size_t gap = 2;          // between columns
constexpr std::size_t enough_name = 32; // before other columns are given up for it
constexpr std::size_t least_name = 6;

/// How much is told about each network.
struct detail {
    bool bssid;
    bool band;
    enum { none, brief, full } security;
    bool bar;
};

/// From much to little; the first that fits is taken.
constexpr detail of_names[] = {
    {true, true, detail::full, true},     {true, false, detail::full, true},
    {true, false, detail::brief, true},   {false, false, detail::brief, true},
    {false, false, detail::brief, false},
};
constexpr detail of_all[] = {
    {true, true, detail::full, true},   {true, true, detail::brief, true},
    {true, false, detail::brief, true}, {true, false, detail::brief, false},
    {true, false, detail::none, false},
};

/// "WPA/WPA2" of "WPA-PSK/WPA2-PSK TKIP/AES".
std::string in_brief(std::string security) {
    security.resize(std::min(security.find(' '), security.size()));
    for (const std::string part : {"-PSK", "PSK", "AUTO"}) {
        for (std::size_t at = 0; (at = security.find(part)) != std::string::npos;)
            security.erase(at, part.size());
    }
    return security;
}

std::string name_cell(const answer& network) {
    return network.at("name").is_null() ? "(hidden)" : escape(network.at("name").text());
}

/// Cells of a line but the name, which is cut to what they leave.
text_row cells(const answer& network, const detail& detail, const display& display) {
    text_row row;
    if (detail.bssid)
        row.push_back(escape(network.at("bssid").cell()));
    row.push_back(network.at("channel").cell());
    if (detail.band) {
        const answer& mhz = network.at("frequency_mhz");
        row.push_back(mhz.is_null() ? network.at("band").cell() : mhz.cell() + " MHz");
    }
    const std::string security = escape(network.at("security").cell());
    if (detail.security != detail::none)
        row.push_back(detail.security == detail::full ? security : in_brief(security));
    const std::string signal = signal_text(network);
    const int share = signal_share(network);
    row.push_back(detail.bar && share >= 0 ? signal_bar(display, share) + " " + signal : signal);
    return row;
}

text_row titles(const detail& detail, bool all) {
    text_row row;
    if (detail.bssid)
        row.push_back("bssid");
    row.push_back("ch");
    if (detail.band)
        row.push_back(all ? "frequency" : "band");
    if (detail.security != detail::none)
        row.push_back("security");
    row.push_back("signal");
    return row;
}

/// What it is on a screen: colours take no place.
std::size_t shown_width(const std::string& text) {
    std::size_t colours = 0;
    for (std::size_t at = text.find('\033'); at != std::string::npos;
         at = text.find('\033', at + 1))
        colours += text.find('m', at) - at + 1;
    return width(text) - colours;
}

std::size_t width_of(const std::vector<text_row>& rows) {
    std::size_t sum = 0;
    for (std::size_t i = 0; i < rows.front().size(); ++i) {
        std::size_t widest = 0;
        for (const text_row& row : rows)
            widest = std::max(widest, shown_width(row[i]));
        sum += gap + widest;
    }
    return sum;
}

} // namespace

std::string draw_networks(const answer& networks, bool all, const display& display) {
    std::vector<std::string> names = {"name"};
    std::size_t longest = 0;
    for (const auto& [unnamed, network] : networks.fields()) {
        names.push_back(name_cell(network));
        longest = std::max(longest, width(names.back()));
    }
    std::vector<text_row> rows;
    std::size_t room = 0;
    for (const detail& detail : all ? of_all : of_names) {
        rows = {titles(detail, all)};
        for (const auto& [unnamed, network] : networks.fields())
            rows.push_back(cells(network, detail, display));
        const std::size_t taken = width_of(rows);
        room =
            display.columns == 0 ? longest : std::max(display.columns, taken + least_name) - taken;
        if (room >= std::min(longest, enough_name))
            break;
    }
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i].insert(rows[i].begin(), cut(names[i], room));
    return aligned(rows);
}
