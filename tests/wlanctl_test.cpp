// The command as a person or a script meets it: each run is the real program on a virtual camera.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>

#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace {

constexpr char air[] = R"("air": [{"ssid": "Office", "bssid": "02:00:5e:00:00:01", "channel": 6,
    "security": "wpa2", "cipher": "aes", "level": -40, "key": "office-key"}]})";
const std::string mediatek = std::string(R"({"adapter": "mediatek", "wired": true, )") + air;
const std::string realtek = std::string(R"({"adapter": "realtek", )") + air;
const std::string none = R"({"adapter": "none"})";

void write(const std::string& name, const std::string& text) {
    std::ofstream(name) << text;
}

std::string read(const std::string& name) {
    std::ifstream file(name);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A camera in a folder of its own, in which the test works.
class camera {
public:
    explicit camera(const std::string& scene) {
        std::string folder = testing::TempDir() + "wlanctl-XXXXXX";
        fs::current_path(mkdtemp(folder.data()));
        setenv("CAMSTORE_FILE", (folder + "/camera.conf").c_str(), 1);
        write("scene.json", scene);
        write("camera.conf", "[system]\nmodel = Camera\nmanufacturer = Example\n");
    }
    ~camera() { fs::remove_all(fs::current_path()); }
    camera(const camera&) = delete;
    camera& operator=(const camera&) = delete;

    /// Runs wlanctl with arguments as a shell reads them.
    /// @return its exit status; what it printed is in `out` and `err`.
    int wlanctl(const std::string& arguments, const std::string& input = "") {
        write("in", input);
        return shell(command(arguments) + " <in");
    }

    /// @param speed of the camera's clock; 0 does not wait at all.
    static std::string command(const std::string& arguments, const std::string& speed = "0") {
        return VCAMERA " --scene scene.json --speed " + speed + " --scratch world -- " WLANCTL " " + arguments;
    }

    /// @return all that has crossed between the programs and the driver, daemons and files.
    std::string journal() {
        shell(VCAMERA " log --scratch world");
        return out;
    }

    std::string out;
    std::string err;

private:
    int shell(const std::string& command) {
        const int status = std::system((command + " >out 2>err").c_str());
        out = read("out");
        err = read("err");
        return WEXITSTATUS(status);
    }
};

/// A command in a terminal of its own.
class terminal {
public:
    explicit terminal(const std::string& command) : child_(forkpty(&side_, nullptr, nullptr, nullptr)) {
        if (child_ == 0) {
            alarm(60); // so that nobody waits for ever
            execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
            _exit(127);
        }
    }
    ~terminal() { close(side_); }
    terminal(const terminal&) = delete;
    terminal& operator=(const terminal&) = delete;

    /// @return what it shows from here on, to this part or to its end.
    std::string show(const std::string& part) const {
        std::string shown;
        for (char byte = 0; shown.find(part) == std::string::npos && ::read(side_, &byte, 1) == 1;)
            shown += byte;
        return shown;
    }

    void press_ctrl_c() const { EXPECT_EQ(::write(side_, "\x03", 1), 1); }

    [[nodiscard]] bool shows_typing() const {
        termios settings{};
        tcgetattr(side_, &settings);
        return (settings.c_lflag & ECHO) != 0;
    }

    /// @return the status with which it ended.
    [[nodiscard]] int wait() const {
        int status = -1;
        EXPECT_EQ(waitpid(child_, &status, 0), child_);
        return status;
    }

private:
    int side_ = -1;
    pid_t child_;
};

testing::AssertionResult has(const std::string& text, const std::string& part) {
    return testing::AssertionResult(text.find(part) != std::string::npos) << '"' << part << "\" in:\n" << text;
}

void expect_refused(camera& camera, const std::string& arguments, const std::string& input, const std::string& why) {
    SCOPED_TRACE(arguments);
    EXPECT_EQ(camera.wlanctl(arguments, input), 2);
    EXPECT_EQ(camera.out, "");
    EXPECT_TRUE(has(camera.err, why));
}

TEST(Wlanctl, RefusesWhatCannotWorkBeforeAnythingIsTouched) {
    const struct {
        const char* arguments;
        const char* why;
        std::string input = {};
    } rows[] = {
        {"join", "SSID or --stored is required"},
        {"join Office --stored", "--stored excludes SSID"},
        {"join 123456789012345678901234567890123", "1 to 32 bytes"},
        {"join 'a\nb'", "no line feed"},
        {"join Office --bssid 02:00:5e:00:00:1", "six two-digit"},
        {"join Office --channel 197", "range 0 to 196"},
        {"join Office --auth open --enc aes", "open does not work with the cipher aes"},
        {"join Office --auth wpa2psk --enc none", "does not work with the cipher none"},
        {"join Office --auth open --key office-key", "takes no key"},
        {"join Office --auth wpa2psk", "--key-file", "office-key\n"}, // no terminal to ask on
        {"join Office --key-file -", "8 to 63 characters", "1234567\n"},
        {"join Office --key-file -", "8 to 63 characters", std::string(1000, 'a')},
        {"join Office --key-file -", "control characters", "office\nkey\n"},
        {"join Office --key-file -", "control characters", {"office\0key", 10}},
        {"join Office --enc wep --key-file -", "5 or 13 characters", "123456"},
        {"bbp ra0 66=1 1 1", "a register is a number"},
        {"ap start --ssid 'a\033b\\' --key short", R"("a\x1bb\x5c")"},
    };
    camera camera(mediatek);
    for (const auto& row : rows)
        expect_refused(camera, row.arguments, row.input, row.why);
    EXPECT_EQ(camera.journal(), "");
}

TEST(Wlanctl, RefusesWhatTheAdapterCannotDo) {
    camera camera(realtek);
    for (const char* arguments : {"ap start --ssid Camera --enc wep --key 12345", "join Office --channel 6", "wps",
                                  "join Office --auth mixed --key 12345678", "survey --no-trigger", "bbp wlan0 66 1 1",
                                  "join Office --bssid 02:00:5e:00:00:01"})
        expect_refused(camera, arguments, "", "Realtek");
    EXPECT_FALSE(has(camera.journal(), "conf"));
}

TEST(Wlanctl, FailsWithoutAnAdapterAndChangesNothing) {
    camera camera(none);
    for (const std::string arguments : {"adapter", "status", "survey", "wps", "ap start --stored", "ap stop",
                                        "join Office", "repeat --ssid Office --ap-ssid Camera"}) {
        EXPECT_EQ(camera.wlanctl("--json " + arguments), 1);
        const auto answer = nlohmann::json::parse(camera.out);
        EXPECT_FALSE(answer.value("ok", true)) << arguments;
        EXPECT_TRUE(has(answer.value("error", ""), "no Wi-Fi adapter"));
        EXPECT_TRUE(has(answer.value("next", ""), "plug the adapter in"));
    }
    const std::string journal = camera.journal();
    for (const char* change : {"system", "set", "kill", "w+"})
        EXPECT_FALSE(has(journal, change));
}

TEST(Wlanctl, JoinsAndTellsInOneObjectHowItIs) {
    camera camera(mediatek);
    EXPECT_EQ(camera.wlanctl("join Office --key-file - --channel 6", "office-key\r\n"), 0);
    EXPECT_EQ(camera.out, "done  station for \"Office\" (wpa2psk, aes): configured\n"
                          "next  see how it is doing with: wlanctl status\n");
    EXPECT_TRUE(has(camera.journal(), "ApCliWPAPSK=office-key  -> ok"));

    EXPECT_EQ(camera.wlanctl("status --json"), 0);
    const auto answer = nlohmann::json::parse(camera.out); // with nothing of the library's around it
    EXPECT_EQ(answer["family"], "mediatek");
    EXPECT_EQ(answer["wired_link"], "up");
    EXPECT_EQ(answer["interfaces"][1]["associated"], true);
    EXPECT_EQ(answer["interfaces"][1]["channel"], 6);
    EXPECT_EQ(answer["interfaces"][2]["channel"], nullptr);
}

TEST(Wlanctl, KeepsThePassphraseOfTheDaemonsToTheOwner) {
    camera camera(realtek);
    EXPECT_EQ(camera.wlanctl("ap start --ssid Camera --key camera-key"), 0);
    EXPECT_TRUE(has(read("world/tmp/hostapd.conf"), "wpa_passphrase=camera-key\n"));
    EXPECT_EQ(fs::status("world/tmp/hostapd.conf").permissions(), fs::perms(0600));
    EXPECT_EQ(camera.wlanctl("status"), 0);
    EXPECT_TRUE(has(camera.out, "hostapd         /tmp/hostapd.pid         yes\n"));
    EXPECT_EQ(camera.wlanctl("ap stop"), 0);
    EXPECT_TRUE(has(camera.journal(), "ifdown wlan1"));
}

TEST(Wlanctl, SaysWhatFailedAndWhatNext) {
    const std::string busy = R"({"adapter": "realtek", "faults": [{"call": "ioctl", "match": "SIOCSIWSCAN",
        "errno": "EBUSY"}]})";
    const std::string rows[][3] = {
        {realtek, "ap start --stored", "wlanctl: access point from the stored settings: not set up\n"},
        {realtek, "ap start --stored", "camera.conf"}, // which has no access point
        {busy, "survey", "SIOCSIWSCAN: Device or resource busy\nwlanctl: survey"},
    };
    for (const auto& [scene, arguments, err] : rows) {
        camera camera(scene);
        EXPECT_EQ(camera.wlanctl(arguments), 1);
        EXPECT_EQ(camera.out, "");
        EXPECT_TRUE(has(camera.err, err));
    }
}

TEST(Wlanctl, ShowsTheStoreWithoutKeysAndWithoutSteeringTheTerminal) {
    camera camera(none);
    write("camera.conf", "[access_point]\nssid = \"Caf\xc3\xa9\\x1b[31m\\xff\xe2\x80\xae\\\\\"\n"
                         "key = camera-key\nauth = wpa2psk\nenc = aes\n");
    EXPECT_EQ(camera.wlanctl("store show"), 1); // the other sections are missing
    EXPECT_TRUE(has(camera.out, "  ssid  Caf\xc3\xa9\\x1b[31m\\xff\\xe2\\x80\\xae\\x5c\n"));
    EXPECT_TRUE(has(camera.out, "  key   (set, 10 characters)\n"));
    EXPECT_TRUE(has(camera.out, "dhcp server  -\n"));
    EXPECT_FALSE(has(camera.out + camera.err, "camera-key"));
}

const std::string survey_air = R"("air": [
    {"ssid": "office", "bssid": "02:00:5e:00:00:01", "channel": 36, "security": "wpa2", "level": -90},
    {"ssid_hex": "1b5b41ff5c20", "bssid": "02:00:5e:00:00:02", "channel": 14, "level": -60}]})";

TEST(Wlanctl, SurveysWithTheFiguresOfTheDriverAndNamesThatCannotSteerTheTerminal) {
    const std::tuple<std::string, const char*, const char*> rows[] = {
        {R"({"adapter": "mediatek", )", "survey", R"(listed  2

name                bssid              channel  band     security      signal
\x1b[A\xff\x5c\x20  02:00:5e:00:00:02  14       2.4 GHz  OPEN          ####.  80 %
office              02:00:5e:00:00:01  36       5 GHz    WPA2-PSK AES  #....  20 %
)"},
        {R"({"adapter": "mediatek", "survey_table": 1, )", "survey", R"(listed  2

name                bssid              channel  band     security     signal
\x1b[A\xff\x5c\x20  02:00:5e:00:00:02  14       2.4 GHz  OPEN         ####. -60 dBm
office              02:00:5e:00:00:01  36       5 GHz    WPA2PSK AES  #.... -90 dBm
)"},
        {R"({"adapter": "realtek", "scan": {"max_quality": 80}, )", "survey --sort name", R"(listed  2

name                bssid              channel  band     security      signal
\x1b[A\xff\x5c\x20  02:00:5E:00:00:02  14       2.4 GHz  OPEN          ##### 100 %
office              02:00:5E:00:00:01  36       5 GHz    WPA2-PSK AES  #....  25 %
)"},
    };
    for (const auto& [scene, arguments, list] : rows) {
        camera camera(scene + survey_air);
        EXPECT_EQ(camera.wlanctl(arguments), 0);
        EXPECT_EQ(camera.out, list);
        EXPECT_EQ(camera.err, ""); // no progress where there is no terminal
    }
}

TEST(Wlanctl, ReadsTheDriversLastTableWithoutAScan) {
    camera camera(mediatek);
    EXPECT_EQ(camera.wlanctl("survey --no-trigger"), 0);
    EXPECT_TRUE(has(camera.out, "listed  0\n"));
    EXPECT_EQ(camera.wlanctl("survey"), 0);
    EXPECT_EQ(camera.wlanctl("survey --no-trigger --json"), 0);
    const auto answer = nlohmann::json::parse(camera.out);
    EXPECT_EQ(answer["networks"][0]["name"], "Office");
    EXPECT_EQ(answer["networks"][0]["signal_percent"], 100);
}

TEST(Wlanctl, HidesTheKeyAsItIsTypedAndShowsTypingAgainAfterCtrlC) {
    const terminal terminal(WLANCTL " join Office --auth wpa2psk");
    EXPECT_TRUE(has(terminal.show(": "), "Key for "));
    EXPECT_FALSE(terminal.shows_typing());
    terminal.press_ctrl_c();
    const int status = terminal.wait();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT);
    EXPECT_TRUE(terminal.shows_typing());
}

// Push-button WPS
// --------------------------------------------------------------------------------------------------------------------

const std::string router = R"({"ssid": "home", "bssid": "02:00:5e:00:00:01", "channel": 6, "security": "wpa2",
    "key": "home-key-1", "button": true})";

std::string button_scene(const std::string& routers, const std::string& more = "") {
    return R"({"adapter": "mediatek", "wired": true, )" + more + R"("air": [)" + routers + "]}";
}

const std::string settings = "# kept\n[client] ; note\nssid = Old ; too\nkey = old-key-1\nauth = open\nenc = none\n"
                             "odd = 1\nenabled = no\nbssid =\njoin = ssid\nchannel = 0\nkey_index = 1\n";
const std::string obtained = "# kept\n[client] ; note\nssid = home ; too\nkey = home-key-1\nauth = wpa2psk\nenc = aes\n"
                             "odd = 1\nenabled = yes\nbssid =\njoin = ssid\nchannel = 6\nkey_index = 1\n";

TEST(Wlanctl, ObtainsANetworkByTheButtonAndKeepsTheRestOfTheStore) {
    camera camera(button_scene(router));
    write("camera.conf", settings);
    EXPECT_EQ(camera.wlanctl("wps"), 0);
    EXPECT_EQ(camera.out, "done     network obtained and stored\nssid     home\nauth     wpa2psk\nenc      aes\n"
                          "channel  6\nnext     see how it is doing with: wlanctl status\n");
    EXPECT_TRUE(has(camera.err, "M8_RECEIVED]\nwlan0: WSC status:[STATUS_WSC_EAP_RSP_DONE_SENT]\n"));
    EXPECT_FALSE(has(camera.out + camera.err, "home-key"));
    EXPECT_EQ(read("camera.conf"), obtained);
    EXPECT_FALSE(has(camera.journal(), "WscStop"));
    EXPECT_TRUE(has(camera.out, "mii_mgr -g -p 0 -r 01  -> 0\n"));
}

TEST(Wlanctl, SaysWhyTheButtonObtainedNothingAndLeavesTheStore) {
    const struct {
        std::string scene;
        const char* arguments;
        const char* err;
        bool stopped = true;
    } rows[] = {
        {button_scene(""), "wps", "[STATUS_WSC_PBC_NO_AP]\nwlanctl: push-button session: no network obtained in 120 s"},
        {button_scene(router + "," + router), "wps", "[STATUS_WSC_PBC_SESSION_OVERLAP]\nwlanctl: "},
        {button_scene(router, R"("wps": "fails", )"), "wps", "[STATUS_WSC_FAIL]\nwlanctl: "},
        {button_scene(router, R"("wps": "stalls", )"), "wps --timeout 3", "[STATUS_WSC_SCAN_AP]\nwlanctl: "},
        {button_scene(router, R"("faults": [{"call": "ioctl", "match": "WscMode", "errno": "EIO"}], )"), "wps",
         "set wsc failed\nwlanctl: push-button session: not started"},
        {button_scene(router, R"("answers": {"profile": ["SSID=home"]}, )"), "wps", "makes no sense (-22)", false},
        {button_scene(router), "wps",
         "set client failed\nwlanctl: network obtained, but not stored: the store failed (-13)", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.err);
        camera camera(row.scene);
        write("camera.conf", settings);
        fs::create_directories("camera.conf.new/in the way"); // no write succeeds
        EXPECT_EQ(camera.wlanctl(row.arguments), 1);
        EXPECT_EQ(camera.out, "");
        EXPECT_TRUE(has(camera.err, row.err));
        EXPECT_EQ(read("camera.conf"), settings);
        EXPECT_EQ(has(camera.journal(), "WscStop=1  -> ok"), row.stopped);
    }
}

TEST(Wlanctl, StopsTheButtonsSessionOnCtrlC) {
    camera plugged(button_scene(router, R"("wps": "stalls", )"));
    const terminal terminal(camera::command("wps", "1"));
    EXPECT_TRUE(
        has(terminal.show("\033[A\033[Kwlan0: WSC status:[STATUS_WSC_SCAN_AP]"), "Press the router's WPS button"));
    terminal.press_ctrl_c();
    EXPECT_TRUE(has(terminal.show("--stored"), "ended by a signal"));
    EXPECT_EQ(WEXITSTATUS(terminal.wait()), 1);
    EXPECT_TRUE(has(plugged.journal(), "WscStop=1  -> ok"));
}

TEST(Wlanctl, ChangesBitsOfABasebandRegister) {
    camera camera(R"({"adapter": "mediatek", "registers": {"66": "1f"}})");
    EXPECT_EQ(camera.wlanctl("bbp wlan0 66 0x40 240"), 0);
    EXPECT_EQ(camera.out, "done  register 66 of wlan0: changed\n");
    EXPECT_TRUE(has(camera.journal(), "66=4f  -> ok"));
    EXPECT_EQ(camera.wlanctl("bbp wlan0 fff 1 0xffffffff"), 1); // no register of the chip
    EXPECT_TRUE(has(camera.err, "wlanctl: register fff of wlan0: not changed"));
}

} // namespace
