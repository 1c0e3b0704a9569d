// SPDX-License-Identifier: MIT
// The camera's state, which all programs on it share.

#include "vcamera/model/camera_state.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// Plain data: calls come before constructors have run and after destructors.
camera_state* mapped;
struct stat mapped_file;
char first_scratch_folder[PATH_MAX];

[[noreturn]] void give_up(const char* reason) {
    std::fprintf(stderr, "vcamera: cannot use %s/state: %s\n", scratch_folder(), reason);
    std::_Exit(127);
}

/// @return a descriptor out of the way: the program's own keep the numbers that they would have.
int open_state() {
    const libwlan::unique_fd low(open(in_scratch("/state").c_str(), O_RDWR | O_CLOEXEC));
    if (!low)
        give_up(std::strerror(errno));
    return fcntl(low.get(), F_DUPFD_CLOEXEC, 200);
}

void map_state(int file) {
    struct stat about {};
    if (fstat(file, &about) != 0)
        give_up(std::strerror(errno));
    if (mapped != nullptr && mapped_file.st_dev == about.st_dev &&
        mapped_file.st_ino == about.st_ino)
        return;
    if (mapped != nullptr)
        munmap(mapped, sizeof *mapped);
    if (about.st_size != static_cast<off_t>(sizeof *mapped))
        give_up("made by another version of vcamera (--fresh starts over)");
    void* memory = mmap(nullptr, sizeof *mapped, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED)
        give_up(std::strerror(errno));
    mapped = static_cast<camera_state*>(memory);
    mapped_file = about;
    if (std::memcmp(mapped->layout, state_layout, sizeof state_layout) != 0 ||
        mapped->size != sizeof *mapped)
        give_up("made by another version of vcamera (--fresh starts over)");
}

} // namespace

std::uint8_t& up_flag(camera_state& state, int interface) {
    return state.adapter == adapter_family::mediatek ? state.mtk.vifs[interface].up
                                                     : state.realtek.vifs[interface].up;
}

void show_operstate(camera_state& state, int interface, const std::string& scratch) {
    const fs::path folder = scratch + "/sys/class/net/" + state.interfaces[interface];
    fs::create_directories(folder);
    std::ofstream(folder / "operstate") << (up_flag(state, interface) != 0 ? "up\n" : "down\n");
}

const char* scratch_folder() {
    const char* folder = std::getenv("VCAMERA_SCRATCH");
    if (folder == nullptr || *folder == '\0')
        folder = first_scratch_folder;
    return *folder != '\0' ? folder : nullptr;
}

void keep_scratch_folder() {
    if (const char* folder = scratch_folder())
        std::snprintf(first_scratch_folder, sizeof first_scratch_folder, "%s", folder);
}

std::string in_scratch(const std::string& path) {
    return scratch_folder() + path;
}

locked_camera::locked_camera() : file_(open_state()) {
    while (flock(file_.get(), LOCK_EX) != 0 && errno == EINTR) {
    }
    map_state(file_.get());
}

locked_camera::~locked_camera() {
    flock(file_.get(), LOCK_UN); // closing alone does not unlock a file that is mapped
}

camera_state& locked_camera::operator*() const {
    return *mapped;
}
