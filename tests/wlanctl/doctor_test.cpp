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
            std::system(VCAMERA " --scene scene --scratch world -- " WLANCTL " --json doctor >told 2>err");
        const auto told = nlohmann::json::parse(read("/told"));
        std::vector<std::string> broken;
        for (const auto& check : told["checks"]) {
            if (const std::string what = check["what"]; !check["breaks"].is_null() && what[0] != '/' && what != "root")
                broken.push_back(what); // the files and the user are those of this machine
        }
        EXPECT_EQ(broken, row.broken);
        EXPECT_EQ(WEXITSTATUS(status), told["missing"] == 0 ? 0 : 1);
    }
}

} // namespace
