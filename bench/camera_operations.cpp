// SPDX-License-Identifier: MIT
// Operations on the virtual camera. Its own part is in these times; waits take none on it.

#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "libwlan/libwlan.h"
#include "vcamera/scene/camera.h"

namespace {

void plug_in(const std::string& adapter) {
    const std::string settings = R"(["[system]", "model = M", "manufacturer = F"])";
    vcamera::start(R"({"adapter": ")" + adapter + R"(", "files": {"/etc/camera.conf": )" +
                       settings + "}}",
                   std::filesystem::temp_directory_path() / "libwlan-bench");
}

void list_file(benchmark::State& state) {
    plug_in("mediatek");
    const sites site{
        "Guests of room 1234", "02:00:00:00:00:01", "AES", "WPA2-PSK", "Infra", 11, -60, 0};
    std::vector<sites> list(64, site);
    wlan radio;
    while (state.KeepRunning())
        radio.store_ap_list(list);
    state.SetItemsProcessed(state.iterations() * 64);
}

void mode_change(benchmark::State& state, const char* adapter) {
    plug_in(adapter);
    char ssid[] = "Camera";
    char key[] = "camera setup";
    while (state.KeepRunning()) {
        if (run_ap_mode(ssid, AUTH_WPA2PSK, ENC_AES, key) != 0)
            state.SkipWithError("the mode was refused");
    }
    state.SetItemsProcessed(state.iterations());
}

// Each mode change leaves streams of the console open, as many as it has commands: a process has
// descriptors for some thousands of changes.
constexpr int changes = 40;

BENCHMARK(list_file);
BENCHMARK_CAPTURE(mode_change, mediatek, "mediatek")->Iterations(changes);
BENCHMARK_CAPTURE(mode_change, realtek, "realtek")->Iterations(changes);

} // namespace
