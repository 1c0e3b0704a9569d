#include "tests/camera_test.h"

#include <tuple>

#include "libwlan/libwlan.h"
#include "sim/camera.h"

namespace {

const char failure[] = "\nrtuser::error::get bbp register\n\n";

class baseband : public camera_test {
protected:
    outcome set(int value, int mask, const std::string& interface = "wlan0", const std::string& reg = "66") {
        return watch([&] { return run_set_bbp(text(interface), text(reg), value, mask); });
    }
};

TEST_F(baseband, puts_the_masked_bits_into_what_the_driver_holds) {
    const std::tuple<std::string, int, int, std::string> rows[] = {
        // clang-format off
        {"1f",       0x40, 0xf0, "66=4f"},
        {"1f",       0xff, 0,    "66=1f"},
        {"8000001f", 0x40, -1,   "66=40"},
        {"8000001f", -1,   0xf0, "66=800000ff"},
        {"01",       0,    1,    "66=0"},
        // clang-format on
    };
    for (const auto& [current, value, mask, written] : rows) {
        plug_in(R"({"adapter": "mediatek", "registers": {"66": ")" + current + R"("}})");
        EXPECT_EQ(set(value, mask), (outcome{0, "", ""})) << written;
        EXPECT_EQ(said(), (lines{"wlan0 register 66", "wlan0 register " + written}));
        for (const vcamera::line& line : vcamera::journal(folder)) // the terminator goes along
            EXPECT_TRUE(line.request != "register" || line.length == std::to_string(line.text.size() + 1)) << line.text;
    }
}

TEST_F(baseband, tells_a_failed_read_or_write_and_writes_nothing_without_a_reading) {
    const std::pair<std::string, lines> rows[] = {
        {R"("faults": [{"call": "socket", "errno": "EMFILE"}])", {}},
        {R"("faults": [{"call": "ioctl", "errno": "EIO"}])", {"wlan0 register 66 = EIO"}},
        {R"("faults": [{"call": "ioctl", "nth": 2, "errno": "EIO"}])",
         {"wlan0 register 66", "wlan0 register 66=1 = EIO"}},
        {R"("answers": {"register": ["", "BBP[0x0042]:none"]})", {"wlan0 register 66"}},
        {R"("answers": {"register": [""]})", {"wlan0 register 66"}},
    };
    for (const auto& [scene, expected] : rows) {
        plug_in(R"({"adapter": "mediatek", )" + scene + "}");
        const outcome failed = set(1, 1);
        EXPECT_EQ(failed.result, -1) << scene;
        EXPECT_EQ(failed.out, expected.empty() ? "" : failure);
        EXPECT_EQ(said(), expected);
    }
}

TEST_F(baseband, sends_nothing_for_names_that_do_not_fit) {
    plug_in(R"({"adapter": "mediatek"})");
    EXPECT_EQ(set(1, 1, std::string(16, 'n')).result, -1);
    EXPECT_EQ(set(1, 1, "wlan0", std::string(256, '6')).result, -1);
    EXPECT_EQ(run_set_bbp(nullptr, nullptr, 1, 1), -1);
    EXPECT_EQ(said(), lines{});
}

} // namespace
