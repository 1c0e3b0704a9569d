// SPDX-License-Identifier: MIT
// `wlanctl doctor` on virtual cameras whose programs are those of a folder.

#include "tests/support/folder_test.h"
#include "tests/support/scene.h"

#include <sys/wait.h>

namespace {

class doctor : public folder_test {
protected:
    /// Makes the programs of a camera, of which one is absent and one a stock one, which knows nothing of this camera.
    void install_programs(const std::string& absent, const std::string& stock) const {
        for (const std::string name :
             {"ifconfig", "ifdown", "mii_mgr", "udhcpd", "iwpriv", "iwgetid", "wpa_supplicant", "hostapd", "lsusb"}) {
            write("/bin/" + name, name == stock ? "" : "rtl871xdrv /tmp/udhcpd.conf /tmp/udhcpd.pid");
            fs::permissions("bin/" + name, fs::perms(name == absent ? 0600 : 0700));
        }
    }
};

TEST_F(doctor, names_the_programs_that_are_lacking) {
    const struct {
        const char* adapter;
        std::string absent, stock;
        std::vector<std::string> broken;
    } rows[] = {
        {"realtek", "", "", {}},
        {"realtek", "hostapd", "", {"hostapd"}},
        {"realtek", "", "hostapd", {"hostapd"}},
        {"realtek", "", "udhcpd", {"udhcpd", "udhcpd"}},
        {"realtek", "iwpriv", "", {}},
        {"mediatek", "hostapd", "", {}},
        {"mediatek", "iwpriv", "", {"iwpriv"}},
        {"mediatek", "lsusb", "", {"lsusb"}},
    };
    fs::current_path(folder);
    setenv("PATH", (folder + "/bin").c_str(), 1);
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.adapter) + " without " + row.absent + row.stock);
        install_programs(row.absent, row.stock);
        const stored_settings stored =
            stored_settings().access_point("Camera", "open", "none").client("Net", "open", "none");
        write("/scene", scene(row.adapter).key("usb", "lsusb").stored(stored).json_text());
        const int status =
            std::system("'" VCAMERA "' --scene scene --scratch world -- '" WLANCTL "' --json doctor >told 2>err");
        const auto told = nlohmann::json::parse(read("/told"));
        std::vector<std::string> broken;
        for (const auto& check : told["checks"]) {
            const std::string what = check["what"];
            const bool is_host_s = what[0] == '/' || what == "root" || what.find("descriptors") == 0;
            if (!check["breaks"].is_null() && !is_host_s)
                broken.push_back(what);
        }
        EXPECT_EQ(broken, row.broken);
        EXPECT_EQ(WEXITSTATUS(status), told["missing"] == 0 ? 0 : 1);
    }
}

TEST_F(doctor, knows_hostapd_s_configuration) {
    const std::string script = "#!/bin/sh\n# rtl871xdrv, [HT40+]: taken out\n";
    const struct {
        const char* name;
        std::string hostapd; // its bytes
        const char* driver;
        int channel;
        std::vector<std::string> broken;
    } rows[] = {
        {"the adapter's own", "\177ELF rtl871xdrv nl80211", "rtl871xdrv", 11, {}},
        {"stock, unchanged file", "\177ELF nl80211", "rtl871xdrv", 7, {"hostapd", "driver in /tmp/hostapd.conf"}},
        {"stock, low channel", "\177ELF nl80211", "nl80211", 7, {"hostapd"}},
        {"stock, high channel", "\177ELF nl80211", "nl80211", 8, {"hostapd", "40 MHz above the channel"}},
        {"behind a script that knows", script, "rtl871xdrv", 11, {}},
        {"behind one that does not", "#!/bin/sh\n# rtl871xdrv\n", "rtl871xdrv", 13, {"40 MHz above the channel"}},
    };
    fs::current_path(folder);
    setenv("PATH", (folder + "/bin").c_str(), 1);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        install_programs("", "");
        write("/bin/hostapd", row.hostapd);
        const std::vector<std::string> lines = {"driver=" + std::string(row.driver),
                                                "channel=" + std::to_string(row.channel),
                                                "ht_capab=[SHORT-GI-20][HT40+]"};
        write("/scene", scene("realtek").key("usb", "lsusb").file("/tmp/hostapd.conf", lines).json_text());
        static_cast<void>(
            std::system("'" VCAMERA "' --scene scene --scratch world -- '" WLANCTL "' --json doctor >told 2>err"));
        std::vector<std::string> broken;
        const auto told = nlohmann::json::parse(read("/told"));
        for (const auto& check : told["checks"]) {
            const std::string what = check["what"];
            if (!check["breaks"].is_null() && (what == "hostapd" || what.find("driver") == 0 || what.find("40") == 0))
                broken.push_back(what);
        }
        EXPECT_EQ(broken, row.broken);
    }
}

} // namespace
