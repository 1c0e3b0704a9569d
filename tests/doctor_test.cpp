// `wlanctl doctor` on virtual cameras whose programs are those of a folder.

#include "folder_test.h"

#include <sys/wait.h>

#include <nlohmann/json.hpp>

using Doctor = folder_test;

TEST_F(Doctor, names_the_programs_that_the_plugged_in_adapter_lacks) {
    const struct {
        std::string adapter, absent, stock, broken; // stock: knows nothing of this camera
    } cases[] = {
        {"realtek", "", "", ""},
        {"realtek", "hostapd", "", "hostapd "},
        {"realtek", "", "hostapd", "hostapd "},
        {"realtek", "", "udhcpd", "udhcpd udhcpd "},
        {"realtek", "iwpriv", "", ""},
        {"mediatek", "hostapd", "", ""},
        {"mediatek", "iwpriv", "", "iwpriv "},
        {"mediatek", "lsusb", "", "lsusb "},
    };
    fs::current_path(folder);
    setenv("PATH", (folder + "/bin").c_str(), 1);
    for (const auto& test : cases) {
        for (const std::string name :
             {"ifconfig", "ifdown", "mii_mgr", "udhcpd", "iwpriv", "iwgetid", "wpa_supplicant", "hostapd", "lsusb"}) {
            write("/bin/" + name, name == test.stock ? "" : "rtl871xdrv /tmp/udhcpd.conf /tmp/udhcpd.pid");
            fs::permissions("bin/" + name, fs::perms(name == test.absent ? 0600 : 0700));
        }
        write("/scene", R"({"usb": "lsusb", "files": {"/etc/camera.conf": ["[access_point]", "ssid = Camera",
            "auth = open", "enc = none", "[client]", "ssid = Net", "auth = open", "enc = none"]}, "adapter": ")" +
                            test.adapter + "\"}");
        const int status =
            std::system(VCAMERA " --scene scene --scratch world -- " WLANCTL " --json doctor >told 2>err");
        const auto told = nlohmann::json::parse(read("/told"));
        std::string broken;
        for (const auto& check : told["checks"])
            if (const std::string what = check["what"]; !check["breaks"].is_null() && what[0] != '/' && what != "root")
                broken += what + " "; // the files and the user are those of this machine
        EXPECT_EQ(broken, test.broken) << test.adapter << " without " << test.absent << test.stock;
        EXPECT_EQ(WEXITSTATUS(status), told["missing"] == 0 ? 0 : 1);
    }
}
