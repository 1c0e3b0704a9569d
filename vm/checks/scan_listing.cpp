// SPDX-License-Identifier: MIT
// What iw and iwlist print of a scan, to compare with.

#include "scan_listing.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

/// Both tools print bytes that they do not trust as \xHH.
std::string unescape(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "\\x") == 0 && i + 3 < text.size()) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return bytes.find_first_not_of('\0') == std::string::npos ? "" : bytes;
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// Cuts leading blanks and `head` off a line.
/// @return whether the line began so.
bool begins(const std::string& line, const std::string& head, std::string& rest) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos || line.compare(first, head.size(), head) != 0)
        return false;
    rest = line.substr(first + head.size());
    return true;
}

} // namespace

std::vector<listed_point> read_listing(const std::string& listing) {
    std::vector<listed_point> points;
    std::istringstream lines(listing);
    for (std::string line, rest; std::getline(lines, line);) {
        if (line.rfind("BSS ", 0) == 0) {
            points.push_back({upper(line.substr(4, 17)), {}});
        } else if (const std::size_t at = line.find("- Address: "); at != std::string::npos) {
            points.push_back({line.substr(at + 11, 17), {}});
        } else if (points.empty()) {
            continue;
        } else if (begins(line, "SSID: ", rest)) {
            points.back().name = unescape(rest);
        } else if (begins(line, "ESSID:\"", rest)) {
            points.back().name = unescape(rest.substr(0, rest.rfind('"')));
        } else if (begins(line, "DS Parameter set: channel ", rest) ||
                   begins(line, "Channel:", rest)) {
            points.back().channel = std::stoi(rest);
        } else if (begins(line, "RSN:", rest) || begins(line, "IE: IEEE 802.11i/WPA2", rest)) {
            points.back().security = "WPA2-PSK";
        } else if ((begins(line, "WPA:", rest) || begins(line, "IE: WPA Version 1", rest)) &&
                   points.back().security == "OPEN") {
            points.back().security = "WPA-PSK";
        }
    }
    return points;
}
