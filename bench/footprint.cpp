// SPDX-License-Identifier: MIT
// What the library costs in memory: pages of its own that loading it takes, and the heap of a
// survey of 256 networks. Runs as the camera's architecture.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>

#include <dlfcn.h>
#include <link.h>
#include <malloc.h>

#include "libwlan/libwlan.h"
#include "vcamera/scene/camera.h"

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
extern "C" void __libc_free(void* memory);

namespace {

long held;
long peak;

/// Counts what the library itself asks for; the virtual camera shares this process.
void* counted(void* memory, std::size_t before, void* caller) {
    dl_find_object object{};
    if (_dl_find_object(caller, &object) == 0 &&
        std::strstr(object.dlfo_link_map->l_name, "/libwlan.so") != nullptr) {
        held += static_cast<long>(malloc_usable_size(memory)) - static_cast<long>(before);
        peak = held > peak ? held : peak;
    }
    return memory;
}

/// Of the writable pages: the emulator, unlike a kernel, owns those of the code, too.
long private_dirty_kib() {
    std::ifstream maps("/proc/self/smaps");
    bool counts = false;
    long kib = 0;
    for (std::string line; std::getline(maps, line);) {
        if (line.find(':') > line.find(' ')) {
            counts = line.find("/libwlan.so") != std::string::npos &&
                     line.find(" rw-p ") != std::string::npos;
        } else if (counts && line.rfind("Private_Dirty:", 0) == 0) {
            kib += std::strtol(line.c_str() + std::strlen("Private_Dirty:"), nullptr, 10);
        }
    }
    return kib;
}

std::string crowded_scene() {
    std::string air;
    for (int i = 0; i < 256; ++i) {
        char point[128];
        std::snprintf(point, sizeof point,
                      R"(%s{"ssid": "Network %d", "bssid": "02:00:00:00:00:%02x"})",
                      i == 0 ? "" : ",", i, static_cast<unsigned int>(i));
        air += point;
    }
    return R"({"adapter": "realtek", "air": [)" + air + "]}";
}

} // namespace

extern "C" void* malloc(std::size_t size) noexcept {
    return counted(__libc_malloc(size), 0, __builtin_return_address(0));
}

extern "C" void* calloc(std::size_t nmemb, std::size_t size) noexcept {
    return counted(__libc_calloc(nmemb, size), 0, __builtin_return_address(0));
}

extern "C" void* realloc(void* ptr, std::size_t size) noexcept {
    const std::size_t before = malloc_usable_size(ptr);
    return counted(__libc_realloc(ptr, size), before, __builtin_return_address(0));
}

extern "C" void free(void* ptr) noexcept {
    counted(nullptr, malloc_usable_size(ptr), __builtin_return_address(0));
    __libc_free(ptr);
}

void* operator new(std::size_t size) {
    return counted(__libc_malloc(size), 0, __builtin_return_address(0));
}

void* operator new[](std::size_t size) {
    return counted(__libc_malloc(size), 0, __builtin_return_address(0));
}

void* operator new[](std::size_t size, const std::nothrow_t& /*no_throw*/) noexcept {
    return counted(__libc_malloc(size), 0, __builtin_return_address(0));
}

void operator delete(void* memory) noexcept {
    counted(nullptr, malloc_usable_size(memory), __builtin_return_address(0));
    __libc_free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    counted(nullptr, malloc_usable_size(memory), __builtin_return_address(0));
    __libc_free(memory);
}

void operator delete[](void* memory) noexcept {
    counted(nullptr, malloc_usable_size(memory), __builtin_return_address(0));
    __libc_free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    counted(nullptr, malloc_usable_size(memory), __builtin_return_address(0));
    __libc_free(memory);
}

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    const long dirty = private_dirty_kib();
    vcamera::start(crowded_scene(), argv[1]);
    std::vector<sites> list;
    const int result = run_site_survey(list);
    std::printf("private dirty memory after load  %6ld bytes\n", dirty * 1024);
    std::printf("heap of a survey of %zu networks %6ld bytes\n", list.size(), peak);
    return result == 0 && list.size() == 256 && peak > 0 ? 0 : 1;
}
