// SPDX-License-Identifier: MIT
// The file-backed configuration store: what it reads, what it refuses, what a write leaves behind.

#include "tests/support/store_files.h"

#include <csignal>
#include <cstring>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;

const std::string good = R"([access_point]
ssid = Yard
key = "quoted \"key\""
auth = wpa2psk
enc = 4
[client]
  enabled = yes
ssid: Office  ; first floor
bssid = 00:11:22:aa:bb:cc
auth = mixed
enc = tkip
join = bssid
channel = 149
key_index = 3
owner = "kept as it is
[dhcp_server]
address = 192.168.1.1
pool_start = 192.168.1.100
pool_end = 192.168.1.200
netmask = 255.255.255.0
[system]
model = Eye 2
manufacturer = Example
[region]
band_2g = 5
band_5g = 7
)";

class store : public store_files {
protected:
    store() { write(good); }

    /// Expects the call to fail with this one line behind the file name and to change nothing.
    void expect_failure(const std::function<int()>& call, const std::string& line) const {
        const std::string before = read();
        testing::internal::CaptureStderr();
        EXPECT_NE(call(), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), path.string() + line + "\n");
        EXPECT_EQ(read(), before);
        EXPECT_FALSE(left_copy());
    }
};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

template <typename Record, int (*get)(Record*)>
int call() {
    Record filled;
    return get(&filled);
}
constexpr auto get_ap = call<_wireless_setting, cam_get_ap>;
constexpr auto get_client = call<_wireless_setting, cam_get_client>;
constexpr auto get_dhcp = call<_dhcp_server_setting, cam_get_dhcp_server>;
constexpr auto get_system = call<_system_setting, cam_get_system>;

int get_region() {
    return PIB().init();
}

template <typename Record>
void expect_record(int (*get)(Record*), const Record& wanted) {
    Record found;
    std::memset(&found, 0xff, sizeof found);
    ASSERT_EQ(get(&found), 0);
    EXPECT_EQ(std::memcmp(&found, &wanted, sizeof found), 0);
}

// First, since a process keeps the last region that it has read.
TEST_F(store, region_is_0_until_it_can_be_read) {
    fs::remove(path);
    PIB pib;
    EXPECT_EQ(pib.init(), -1);
    EXPECT_EQ(pib.getRegion(), 0);
    EXPECT_EQ(pib.getRegionABand(), 0);
}

TEST_F(store, every_field_lands_in_its_place) {
    // clang-format off
    const _wireless_setting wireless = {
        1, {}, AUTH_MIXED_PSK, {}, ENC_TKIP, APCLI_BY_BSSID, {}, 149, "Office", "00:11:22:aa:bb:cc",
        "", 3, {}, "Yard", "quoted \"key\"", AUTH_WPA2PSK, ENC_TKIP_AES, {}};
    // clang-format on
    expect_record(cam_get_ap, wireless);
    expect_record(cam_get_client, wireless);
    expect_record(cam_get_dhcp_server, {"192.168.1.1", "192.168.1.100", "192.168.1.200", "255.255.255.0"});
    expect_record(cam_get_system, {{}, "Eye 2", "Example"});
    PIB pib;
    EXPECT_EQ(pib.init(), 0);
    EXPECT_EQ(pib.getRegion(), 5);
    EXPECT_EQ(pib.getRegionABand(), 7);
}

TEST_F(store, example_file_is_complete) {
    fs::remove(path);
    fs::copy_file(EXAMPLE_FILE, path);
    EXPECT_EQ(get_ap(), 0);
    EXPECT_EQ(get_client(), 0);
    EXPECT_EQ(get_dhcp(), 0);
    EXPECT_EQ(get_system(), 0);
    EXPECT_EQ(set_client("First", "12345678"), 0);
}

TEST_F(store, longest_identity_is_what_wpa_supplicant_takes) {
    const std::string model(32, 'm');
    const std::string manufacturer(64, 'f');
    write("[system]\nmodel = " + model + "\nmanufacturer = " + manufacturer + "\n");
    _system_setting record;
    ASSERT_EQ(cam_get_system(&record), 0);
    EXPECT_EQ(record.model_name, model);
    EXPECT_EQ(record.manufacturer, manufacturer);
}

TEST_F(store, wrong_file_is_refused_with_its_line) {
    const std::string number = " is no whole number of 32 bits";
    const std::string enc = " is none of none, wep, tkip, aes, tkipaes and no whole number from 0 to 255";
    const std::string bssid = " is no BSSID like 00:11:22:aa:bb:cc";
    const std::string quotes = R"(is no text in quotes with only \" \\ \n and \xHH as escapes)";
    const std::string syntax = "is no [section], no key = value and no comment";
    const struct {
        const char* from;
        std::string to;
        int (*read)();
        std::string line;
    } rows[] = {
        // clang-format off
        {"149",            "1\x1b 1",                get_client, R"(:13: client.channel: "1\x1b 1")" + number},
        {"149",            "2147483648",             get_client, ":13: client.channel: \"2147483648\"" + number},
        {"149",            "",                       get_client, ":13: client.channel: \"\"" + number},
        {"tkip",           "AES",                    get_client, ":11: client.enc: \"AES\"" + enc},
        {":cc",            ":cg",                    get_client, ":9: client.bssid: \"00:11:22:aa:bb:cg\"" + bssid},
        {":cc",            "",                       get_client, ":9: client.bssid: \"00:11:22:aa:bb\"" + bssid},
        {"= 7",            "= -1",                   get_region, ":26: region.band_5g: \"-1\" is no whole number from 0 to 255"},
        {"1.100",          "1.100;reboot",           get_dhcp,   ":18: dhcp_server.pool_start: \"192.168.1.100;reboot\" is no IPv4 address like 192.168.1.1"},
        {"netmask",        "mask",                   get_dhcp,   ": dhcp_server.netmask: is missing"},
        {"model",          "modell",                 get_system, ": system.model: is missing"},
        {"ssid: Office",   "",                       get_client, ": client.ssid: is missing"},
        {"Yard",           std::string(33, 'x'),     get_client, ":2: access_point.ssid: is longer than 32 bytes"},
        {"Eye 2",          std::string(33, 'x'),     get_system, ":22: system.model: is longer than 32 bytes"},
        {"= Example",      "= " + std::string(65, 'x'), get_system, ":23: system.manufacturer: is longer than 64 bytes"},
        {R"(\"key\"")",    "",                       get_ap,     ":3: access_point.key: " + quotes},
        {R"(\"key)",       "\"key",                  get_ap,     ":3: access_point.key: " + quotes},
        {R"(\"key)",       "\\x00",                  get_ap,     ":3: access_point.key: " + quotes},
        {R"(key\"")",      "\\x1\"",                 get_ap,     ":3: access_point.key: " + quotes},
        {R"(\"key)",       "\\key",                  get_ap,     ":3: access_point.key: " + quotes},
        {R"(\"key)",       "key\"\n\n \"",           get_ap,     ":5: " + syntax},
        {"[access_point]", R"("of" = "nothing")",   get_region, ":1: " + syntax},
        {"enc = 4",        "enc",                    get_region, ":5: " + syntax},
        {"enc = 4",        "key = again",            get_ap,     ":5: access_point.key: stands on line 3 already"},
        {"owner",          std::string(200, 'x'),    get_region, ":15: is too long for a line"},
        {"owner",          std::string(1, '\0'),     get_region, ": holds a NUL byte and is no text"},
        {"owner",          std::string(65536, '\n'), get_region, ": is longer than 65536 bytes"},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        write(replaced(good, row.from, row.to));
        expect_failure(row.read, row.line); // which is all: no passphrase stands in it
    }
}

TEST_F(store, unreadable_file_is_refused) {
    write("one line without an end");
    expect_failure(get_ap, ":1: is no [section], no key = value and no comment");
    fs::remove(path);
    expect_failure(get_ap, ": cannot open: No such file or directory");
    expect_failure([] { return set_client("a", ""); }, ": cannot open: No such file or directory");
}

TEST_F(store, file_of_another_kind_is_refused) {
    fs::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    testing::internal::CaptureStderr();
    EXPECT_NE(get_ap(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), path.string() + ": is no regular file\n");
}

TEST_F(store, empty_path_means_the_camera_s_file) {
    ::setenv("CAMSTORE_FILE", "", 1);
    testing::internal::CaptureStderr();
    EXPECT_NE(cam_get_ap(nullptr), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "/etc/camera.conf: no record to fill was given\n");
}

TEST_F(store, section_not_asked_for_may_be_absent) {
    write("[access_point]\nssid = a\nauth = 200\nenc = none");
    _wireless_setting record;
    ASSERT_EQ(cam_get_ap(&record), 0);
    EXPECT_EQ(record.ap_auth, 200);
    EXPECT_EQ(record.client_key_index, 1);
    ASSERT_EQ(set_client("b", ""), 0);
    ASSERT_EQ(cam_get_client(&record), 0);
    EXPECT_STREQ(record.client_ssid, "b");
}

TEST_F(store, hostile_texts_come_back_as_stored) {
    std::string every_byte;
    for (int byte = 1; byte < 256; ++byte)
        every_byte += static_cast<char>(byte);
    for (const std::string& text :
         {every_byte, every_byte.substr(223), std::string(255, '\xff'), std::string(255, 'k'), ""s, " a "s, "\""s,
          "\\"s, "[x]"s, "a ; b # c"s, "key = value"s, "\\x41"s, "caf\xc3\xa9\r\n"s}) {
        SCOPED_TRACE(text);
        _wireless_setting stored = client_record(text.substr(0, 32), text);
        stored.client_auth = AUTH_RESERVED_6;
        stored.client_channel = -122;
        _wireless_setting found;
        ASSERT_EQ(set_client(stored), 0);
        ASSERT_EQ(cam_get_client(&found), 0);
        EXPECT_EQ(std::memcmp(&found, &stored, offsetof(_wireless_setting, ap_ssid)), 0);
    }
}

TEST_F(store, write_changes_what_changed_alone) {
    fs::rename(path, folder + "/real.conf");
    fs::create_symlink("real.conf", path);
    ::chmod(path.c_str(), 0640);
    const std::string dos = "# top\r\n[client]\r\n\tssid=Old ; note\r\nauth = 5\r\nkey = \"a\"\r\n"
                            "  \"b\"\r\nenc = aes\r\nodd=\"x\r\n\r\n# end\r\n[other]\r\nssid = x";
    write(dos);
    ASSERT_EQ(set_client("A b", std::string(121, 'k')), 0);
    EXPECT_EQ(read(), "# top\r\n[client]\r\n\tssid=\"A b\" ; note\r\nauth = 5\r\nkey = \"" + std::string(120, 'k') +
                          "\"\r\n    \"k\"\r\nenc = aes\r\nodd=\"x\r\n" +
                          "enabled = no\r\nbssid = \"\"\r\njoin = ssid\r\nchannel = 0\r\n" +
                          "key_index = 0\r\n\r\n# end\r\n[other]\r\nssid = x\r\n");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}

TEST_F(store, failed_write_leaves_the_file_alone) {
    _wireless_setting wrong_bssid = client_record("a", "");
    std::memset(wrong_bssid.client_bssid, 'a', sizeof wrong_bssid.client_bssid);
    expect_failure([&] { return set_client(wrong_bssid); }, " (not written):9: client.bssid: is longer than 31 bytes");
    expect_failure([] { return set_client(std::string(64, 's'), ""); },
                   " (not written):8: client.ssid: is longer than 32 bytes");
    expect_failure([] { return set_client("a", std::string(256, 'k')); },
                   " (not written):16: client.key: is longer than 255 bytes");
    expect_failure([] { return cam_set_client(nullptr, nullptr, 0, 0); }, ": no record to store was given");

    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {300, RLIM_INFINITY};
    const rlimit large = {RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &small);
    expect_failure([] { return set_client("a", ""); }, ".new: cannot write: File too large");
    ::setrlimit(RLIMIT_FSIZE, &large);

    write(replaced(good, "149", "eleven"));
    expect_failure([] { return set_client("a", ""); }, ":13: client.channel: \"eleven\" is no whole number of 32 bits");
}

TEST_F(store, two_writers_leave_one_whole_state) {
    const auto write_again_and_again = [](char name) {
        int failures = 0;
        for (int i = 0; i < 100; ++i)
            failures += set_client(std::string(32, name), std::string(255, name)) == 0 ? 0 : 1;
        return failures;
    };
    const pid_t other = ::fork();
    if (other == 0)
        ::_exit(write_again_and_again('b'));
    EXPECT_EQ(write_again_and_again('a'), 0);
    int status = -1;
    ::waitpid(other, &status, 0);
    EXPECT_EQ(status, 0);
    _wireless_setting record;
    ASSERT_EQ(cam_get_client(&record), 0);
    EXPECT_EQ(record.client_key, std::string(255, record.client_ssid[0]));
}

TEST_F(store, last_region_stays_without_its_file) {
    PIB first;
    ASSERT_EQ(first.init(), 0);
    fs::remove(path);

    PIB without_file;
    EXPECT_EQ(without_file.init(), -1);
    EXPECT_EQ(without_file.getRegion(), first.getRegion());
    EXPECT_EQ(without_file.getRegionABand(), first.getRegionABand());

    write("[region]\nband_2g = 1\n");
    PIB other_file;
    EXPECT_EQ(other_file.init(), 0);
    EXPECT_EQ(other_file.getRegion(), 1);
    EXPECT_EQ(other_file.getRegionABand(), 0);
}

} // namespace
