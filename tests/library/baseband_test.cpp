// SPDX-License-Identifier: MIT
// Baseband registers: what is read, what is written back, and what is refused.

#include "tests/support/camera_test.h"

#include "libwlan/libwlan.h"
#include "tests/support/driver_hook.h"
#include "vcamera/scene/camera.h"

namespace {

const scene camera = scene("mediatek");
const char failure[] = "\nrtuser::error::get bbp register\n\n";

class baseband : public camera_test {
protected:
    ~baseband() override { driver_hook = nullptr; }

    static outcome set(int value, int mask, const std::string& interface = "wlan0", const std::string& reg = "66") {
        return watch([&] { return run_set_bbp(text(interface), text(reg), value, mask); });
    }
};

TEST_F(baseband, masked_bits_go_into_what_is_there) {
    const struct {
        const char* name;
        const char* current;
        int value, mask;
        std::string written;
    } rows[] = {
        {"some bits", "1f", 0x40, 0xf0, "66=4f"},
        {"none", "1f", 0xff, 0, "66=1f"},
        {"all", "8000001f", 0x40, -1, "66=40"},
        {"not the highest", "8000001f", -1, 0xf0, "66=800000ff"},
        {"to 0", "01", 0, 1, "66=0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera.key("registers", {{"66", row.current}}));
        EXPECT_EQ(set(row.value, row.mask), (outcome{0, "", ""}));
        EXPECT_EQ(said(), (lines{"wlan0 register 66", "wlan0 register " + row.written}));
    }
}

TEST_F(baseband, terminator_goes_along) {
    plug_in(camera);
    EXPECT_EQ(set(1, 1).result, 0);
    lines lengths;
    for (const vcamera::line& line : vcamera::journal(folder)) {
        if (line.request == "register")
            lengths.push_back(line.text + ": " + line.length);
    }
    EXPECT_EQ(lengths, (lines{"66: 3", "66=1: 5"}));
}

TEST_F(baseband, failures_are_told_and_write_nothing) {
    const struct {
        const char* name;
        scene camera;
        outcome answer;
        lines said;
    } rows[] = {
        {"no socket", camera.fault("socket", "EMFILE"), {-1, "", "iw_socket: Too many open files\n"}, {}},
        {"refused reading", camera.fault("ioctl", "EIO"), {-1, failure, "", 1}, {"wlan0 register 66 = EIO"}},
        {"refused writing",
         camera.fault("ioctl", "EIO").nth(2),
         {-1, failure, "", 1},
         {"wlan0 register 66", "wlan0 register 66=1 = EIO"}},
        {"answer without a value",
         camera.key("answers", {{"register", {"", "BBP[0x0042]:none"}}}),
         {-1, failure, "", 1},
         {"wlan0 register 66"}},
        {"empty answer", camera.key("answers", {{"register", {""}}}), {-1, failure, "", 1}, {"wlan0 register 66"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(row.camera);
        EXPECT_EQ(set(1, 1), row.answer);
        EXPECT_EQ(said(), row.said);
    }
}

TEST_F(baseband, driver_s_result_above_0_is_a_failure) {
    plug_in(camera);
    driver_hook = [](unsigned long /*number*/, iwreq& /*request*/, int /*result*/) { return 1; };
    EXPECT_EQ(set(1, 1), (outcome{-1, failure, "", 1}));
    EXPECT_EQ(said(), lines{"wlan0 register 66"}); // nothing is written
}

TEST_F(baseband, operation_passes_the_driver_s_result_on) {
    const struct {
        const char* name;
        const char* answer; // to the reading
        int driver;
        int result;
    } rows[] = {
        {"done", "BBP[0x0042]:1f ", 0, 0},
        {"the driver's own", "BBP[0x0042]:1f ", 3, 3},
        {"answer without a value", "BBP[0x0042]:none", 0, -1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        plug_in(camera.key("answers", {{"register", {row.answer}}}));
        wlan radio;
        ASSERT_EQ(radio.init(), 0);
        driver_hook = [=](unsigned long /*number*/, iwreq& /*request*/, int /*result*/) { return row.driver; };
        EXPECT_EQ(watch([&] { return radio.do_set_bbp(text("wlan0"), text("66"), 1, 1); }).result, row.result);
        radio.release();
    }
}

TEST_F(baseband, names_that_do_not_fit_send_nothing) {
    plug_in(camera);
    EXPECT_EQ(set(1, 1, "name_of_16_bytes").result, -1);
    EXPECT_EQ(set(1, 1, "wlan0", std::string(256, '6')).result, -1);
    EXPECT_EQ(run_set_bbp(nullptr, text("66"), 1, 1), -1);
    EXPECT_EQ(run_set_bbp(text("wlan0"), nullptr, 1, 1), -1);
    EXPECT_EQ(said(), lines{});
}

} // namespace
