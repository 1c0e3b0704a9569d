// SPDX-License-Identifier: MIT
// How full the channels are.

#include "channel_load.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>
#include <utility>

#include "layout.h"

namespace {

constexpr int first_channel = 1;
constexpr int last_usual_channel = 13;
constexpr int last_2ghz = 14;
constexpr int reach_mhz = 22; // of one network, as 802.11b sends

int mhz_of(int channel) {
    constexpr int mhz_14 = 2484;
    return channel == last_2ghz ? mhz_14 : (channel < last_2ghz ? 2407 : 5000) + 5 * channel;
}

/// How far two channels lie apart; one of 5 GHz never reaches into another.
bool overlaps(int channel, int other) {
    return channel != other && channel <= last_2ghz && other <= last_2ghz &&
           std::abs(mhz_of(channel) - mhz_of(other)) < reach_mhz;
}

struct load {
    int networks = 0;
    int overlapping = 0;
    const beacon* strongest = nullptr;
};

std::map<int, load> count(const std::vector<beacon>& list) {
    std::map<int, load> channels;
    for (int channel = first_channel; channel <= last_usual_channel; ++channel)
        channels[channel] = {};
    for (const beacon& heard : list) {
        if (heard.channel < first_channel)
            continue;
        load& load = channels[heard.channel];
        ++load.networks;
        if (load.strongest == nullptr || strength(heard) > strength(*load.strongest))
            load.strongest = &heard;
    }
    for (auto& [channel, load] : channels) {
        for (const beacon& heard : list)
            load.overlapping += heard.channel >= first_channel && overlaps(channel, heard.channel);
    }
    return channels;
}

int find_clearest(const std::vector<beacon>& list) {
    int clearest = 0;
    int least = 0;
    for (const int channel : {1, 6, 11}) {
        int weight = 0;
        for (const beacon& heard : list) {
            if (heard.channel == channel || overlaps(channel, heard.channel)) {
                weight += strength(heard) *
                          (reach_mhz - std::abs(mhz_of(channel) - mhz_of(heard.channel)));
            }
        }
        if (clearest == 0 || weight < least) {
            clearest = channel;
            least = weight;
        }
    }
    return clearest;
}

std::string strongest_text(const answer& channel) {
    for (const auto& [name, unit] :
         {std::pair("strongest_dbm", " dBm"), {"strongest_percent", " %"}}) {
        const answer& value = channel.at(name);
        if (!value.is_null())
            return value.cell() + unit;
    }
    return "";
}

/// How the bars fit: a network takes some marks, or a mark stands for some networks.
struct scale {
    int marks = 1;
    int networks = 1;

    std::size_t length(int number) const {
        return static_cast<std::size_t>((number + networks - 1) / networks * marks);
    }
};

scale scale_of(const answer& channels, std::size_t room) {
    constexpr int most_marks = 3;
    int longest = 1;
    for (const auto& [unnamed, channel] : channels.fields())
        longest =
            std::max(longest, channel.at("networks").number() + channel.at("overlapping").number());
    const int columns = static_cast<int>(room);
    return {std::clamp(columns / longest, 1, most_marks), (longest + columns - 1) / columns};
}

text_row row_of(const answer& channel, const scale& scale, const marks& marks, bool brief) {
    const int networks = channel.at("networks").number();
    const std::string number = channel.at("channel").cell();
    text_row row = {std::string(number.size() < 5 ? 5 - number.size() : 0, ' ') + number,
                    repeated(marks.full, scale.length(networks)) +
                        repeated(marks.half, scale.length(channel.at("overlapping").number())),
                    networks == 0 ? "" : std::to_string(networks), strongest_text(channel)};
    if (!brief && networks > 0) {
        row[2] += networks == 1 ? " network" : " networks";
        row[3] = "strongest " + row[3];
    }
    return row;
}

} // namespace

answer load_of_channels(const std::vector<beacon>& list) {
    answer channels = answer::list();
    for (const auto& [channel, load] : count(list)) {
        answer told = {{"channel", channel},
                       {"band", channel <= last_2ghz ? "2.4 GHz" : "5 GHz"},
                       {"networks", load.networks},
                       {"overlapping", load.overlapping}};
        const bool in_percent = load.strongest != nullptr && load.strongest->dbm == not_told;
        const int signal = load.strongest == nullptr ? not_told
                           : in_percent              ? load.strongest->percent
                                                     : load.strongest->dbm;
        told.set(in_percent ? "strongest_percent" : "strongest_dbm",
                 signal == not_told ? answer() : answer(signal));
        channels.push_back(told);
    }
    return {{"clearest", find_clearest(list)}, {"channels", channels}};
}

std::string draw_channels(const answer& load, const display& display) {
    constexpr std::size_t beside = 42;       // columns that channel and figures take
    constexpr std::size_t beside_brief = 24; // on a narrow display
    constexpr std::size_t narrow = 60;
    const std::size_t columns = display.columns == 0 ? 80 : display.columns;
    const bool brief = columns < narrow;
    const answer& channels = load.at("channels");
    const scale scale =
        scale_of(channels, std::max(columns, 2 * beside_brief) - (brief ? beside_brief : beside));
    const marks& marks = marks_of(display);
    std::vector<text_row> rows;
    for (const auto& [unnamed, channel] : channels.fields())
        rows.push_back(row_of(channel, scale, marks, brief));
    std::istringstream lines(aligned(rows));
    std::string text;
    std::string band;
    for (const auto& [unnamed, channel] : channels.fields()) {
        std::string line;
        std::getline(lines, line);
        if (channel.at("band").text() != band) {
            band = channel.at("band").text();
            text += band + "\n";
        }
        text += line + "\n";
    }
    text += std::string(marks.full) + " on the channel, " + marks.half + " reaching into it";
    text +=
        scale.networks > 1 ? "; " + std::to_string(scale.networks) + " networks a mark\n" : "\n";
    return text + "Clearest of 1, 6 and 11: " + load.at("clearest").cell() + "\n";
}
