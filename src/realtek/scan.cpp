// SPDX-License-Identifier: MIT
// Raw scan results: the security elements in them, and a dump of any bytes.

#include "realtek/scan.h"

#include <cstdio>
#include <cstring>

#include "base/message.h"
#include "libwlan/debug_print.h"
#include "libwlan/scan.h"

using namespace libwlan;
using namespace libwlan::realtek;

namespace {

// Level of the element dumps. It shares no bit with the shipped debug mask.
constexpr unsigned int dump_level = 4;

template <typename... Values>
void dump([[maybe_unused]] const char* format, [[maybe_unused]] Values... values) {
    if constexpr ((dump_level & debug_mask) != 0)
        PRINTDEBUGMSG(dump_level, format, values...);
}

constexpr std::size_t suite_size = 4;
constexpr std::size_t oui_size = 3;
constexpr std::size_t count_size = 2; // of which the low byte counts

constexpr unsigned char wpa_oui[] = {0x00, 0x50, 0xF2};
constexpr unsigned char rsn_oui[] = {0x00, 0x0F, 0xAC};
constexpr int rsn_shift = 8; // from a WPA bit to the RSN bit of the same cipher

enum suite_kind { group_suite = 0, pairwise_suite = 1, suite_kinds };

struct cipher_suite {
    unsigned char type;
    char name[8];
    unsigned int wpa_bits[suite_kinds];
};

constexpr cipher_suite ciphers[] = {
    {1, "WEP-40", {WPA_GROUP_WEP40, WPA_PAIRWISE_WEP40}},
    {2, "TKIP", {WPA_GROUP_TKIP, WPA_PAIRWISE_TKIP}},
    {4, "CCMP", {WPA_GROUP_CCMP, WPA_PAIRWISE_CCMP}},
    {5, "WEP-104", {WPA_GROUP_WEP104, WPA_PAIRWISE_WEP104}},
};

constexpr char unknown_cipher[8] = "UnKnown";

const cipher_suite* find_cipher(const unsigned char* suite, const unsigned char (&oui)[oui_size]) {
    if (std::memcmp(suite, oui, oui_size) != 0)
        return nullptr;
    for (const cipher_suite& cipher : ciphers) {
        if (cipher.type == suite[oui_size])
            return &cipher;
    }
    return nullptr;
}

int name_suite(const unsigned char* suite, const unsigned char (&oui)[oui_size], int shift,
               int kind, unsigned int* bits, char* name) {
    const cipher_suite* cipher = find_cipher(suite, oui);
    std::memcpy(name, cipher != nullptr ? cipher->name : unknown_cipher, sizeof unknown_cipher);
    if (cipher == nullptr)
        return -1;
    if (kind == group_suite || kind == pairwise_suite)
        *bits |= cipher->wpa_bits[kind] << shift;
    return 0;
}

/// What tells a WPA from an RSN element. The texts' spellings are part of the interface.
struct element_family {
    const unsigned char (&oui)[oui_size];
    int shift;
    std::size_t group_position;
    const char* group;
    const char* pairwise_count;
    const char* pairwise_list;
    const char* pairwise;
    const char* key_management_count;
    const char* key_management_list;
    const char* key_management;
};

constexpr element_family wpa = {
    wpa_oui,
    0,
    8,
    "\tGroup Cipher:\t\t\t0x%02X-0x%02X-0x%02X-%02X %s\n",
    "\tPairwise count:\t\t\t%d\n",
    "\tPairwise Cipher List\n",
    "\tPairwise cipher OUI:\t\t0x%02X-0x%02X-0x%02X-%02X %s\n",
    "\tNumber of Auths:\t\t%d\n",
    "\tAuthKey Mngmnt Suite List\n",
    "\tAuth OUI:\t\t\t0x%02X-0x%02X-0x%02X-%02X\n",
};

constexpr element_family rsn = {
    rsn_oui,
    rsn_shift,
    4,
    "\tGroup Cipher:\t\t\t0x%02X-0x%02X-0x%02X-%02X %s\n",
    "\tPairewise count:\t\t%d\n",
    "\tPariewise Cipher List\n",
    "\tParewise Key cipher:\t\t0x%02X-0x%02X-0x%02X-%02X %s\n",
    "\tAuthentication Suite Count:\t%d\n",
    "\tAuthentication Suite List\n",
    "\tAuthentication Suite:\t\t0x%02X-0x%02X-0x%02X-%02X\n",
};

/// Reads the front of an element, byte by byte, and stays at its end once it is reached.
class suite_reader {
public:
    suite_reader(byte_reader element, const element_family& family)
        : element_(element), family_(family), at_(family.group_position) {}

    unsigned int bits() const { return bits_; }

    void cipher(suite_kind kind, const char* format) {
        const unsigned char* suite = take(suite_size);
        if (suite == nullptr)
            return;
        char name[8];
        name_suite(suite, family_.oui, family_.shift, kind, &bits_, name);
        dump(format, suite[0], suite[1], suite[2], suite[3], name);
    }

    void key_management() {
        if (const unsigned char* suite = take(suite_size))
            dump(family_.key_management, suite[0], suite[1], suite[2], suite[3]);
    }

    /// The number of suites that follow, as far as the element claims.
    int count(const char* format, const char* list) {
        const unsigned char* bytes = take(count_size);
        if (bytes == nullptr)
            return 0;
        dump(format, bytes[0]);
        dump("%s", list);
        return bytes[0];
    }

    const unsigned char* take(std::size_t length) {
        const auto bytes = element_.part(at_, length);
        at_ = bytes ? at_ + length : element_.size();
        return bytes ? bytes->data() : nullptr;
    }

private:
    byte_reader element_;
    const element_family& family_;
    std::size_t at_;
    unsigned int bits_ = 0;
};

void read_suites(suite_reader& reader, const element_family& family) {
    reader.cipher(group_suite, family.group);
    for (int left = reader.count(family.pairwise_count, family.pairwise_list); left > 0; --left)
        reader.cipher(pairwise_suite, family.pairwise);
    for (int left = reader.count(family.key_management_count, family.key_management_list); left > 0;
         --left)
        reader.key_management();
}

void print_head(byte_reader element) {
    const auto head = element.part(0, 2);
    if (!head)
        return;
    dump("\tElement ID:\t\t\t%d\n", head->data()[0]);
    dump("\tLength:\t\t\t\t%d\n", head->data()[1]);
}

constexpr int row_size = 16;
constexpr const char* separator =
    "-----------+-------------------------------------------------+-----------------\n";

void write_characters(FILE* out, const char* row, int length) {
    std::fputs("| ", out);
    for (int i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(row[i]);
        std::fputc(byte < 32 || byte > 127 ? ' ' : byte, out);
    }
    std::fputc('\n', out);
}

} // namespace

namespace libwlan::realtek {

unsigned int read_wpa_element(byte_reader element) {
    dump("%s", "WPA Information\n");
    print_head(element);
    if (const auto tag = element.part(2, 4)) {
        dump("\tWPA tag:\t\t\t0x%02X-0x%02X-0x%02X-0x%02X\n", tag->data()[0], tag->data()[1],
             tag->data()[2], tag->data()[3]);
    }
    if (const auto version = element.part(6, 2))
        dump("\tVersion:\t\t\t%d\n", version->data()[0]);
    suite_reader reader(element, wpa);
    read_suites(reader, wpa);
    dump("%s", "\n");
    return reader.bits() | WPA_PARSED;
}

unsigned int read_rsn_element(byte_reader element) {
    dump("%s", "RSN Information\n");
    print_head(element);
    if (const auto version = element.part(2, 2))
        dump("\tVersion:\t\t\t%d\n", version->data()[0]);
    suite_reader reader(element, rsn);
    read_suites(reader, rsn);
    if (const unsigned char* capabilities = reader.take(2))
        dump("\tRSN Capabilities:\t\t0x%02X%02X\n\n", capabilities[0], capabilities[1]);
    return reader.bits() | RSN_PARSED;
}

} // namespace libwlan::realtek

int parse_wpa_oui(unsigned char* suite, int kind, unsigned int* bits, char* name) {
    return name_suite(suite, wpa_oui, 0, kind, bits, name);
}

void parse_rsn_oui(unsigned char* suite, int kind, unsigned int* bits, char* name) {
    name_suite(suite, rsn_oui, rsn_shift, kind, bits, name);
}

int parse_wpa_ie(unsigned char* ie, int* bits) {
    return *bits |= static_cast<int>(read_wpa_element({ie, ie[1] + 2U}));
}

int parse_rsn_ie(unsigned char* ie, int* bits) {
    return *bits |= static_cast<int>(read_rsn_element({ie, ie[1] + 2U}));
}

int dumpHexData(FILE* out, char* title, char* data, int length) {
    std::fprintf(out, "--- Hex Dump (%s) ---\n", title);
    std::fputs(separator, out);
    for (int i = 0; i < length; ++i) {
        const int column = i % row_size;
        if (column == 0) {
            std::fprintf(out, "0x%08X | ",
                         static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(data + i)));
        }
        std::fprintf(out, "%02x ", static_cast<unsigned char>(data[i]));
        const bool last = i == length - 1;
        if (column != row_size - 1 && !last)
            continue;
        for (int filler = column + 1; filler < row_size; ++filler)
            std::fputs("   ", out);
        write_characters(out, data + i - column, column + 1);
    }
    return std::fprintf(out, "%s", separator);
}
