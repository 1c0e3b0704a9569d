// SPDX-License-Identifier: MIT
// Calls of the library's own that concern no camera. A scene's faults strike them, too, as "alloc"
// and "read"; what any other part of the program calls is passed on.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <link.h>

#include "vcamera/interpose/intercepted_call.h"
#include "vcamera/interpose/interposer.h"

#define CALLER __builtin_return_address(0)

namespace {

/// @return whether the call is the library's and is to fail, with errno set.
bool injected_failure(void* caller, const char* call, std::size_t size) {
    dl_find_object object{};
    return _dl_find_object(caller, &object) == 0 &&
           std::strstr(object.dlfo_link_map->l_name, "/libwlan.so") != nullptr &&
           scratch_folder() != nullptr && injects_fault({call, "-", call, std::to_string(size)});
}

} // namespace

INTERPOSE std::size_t fread(void* ptr, std::size_t size, std::size_t n, FILE* stream) {
    static const auto next = NEXT(fread);
    return injected_failure(CALLER, "read", size * n) ? 0 : next(ptr, size, n, stream);
}

INTERPOSE char* fgets(char* s, int n, FILE* stream) {
    static const auto next = NEXT(fgets);
    return injected_failure(CALLER, "read", static_cast<std::size_t>(n)) ? nullptr
                                                                         : next(s, n, stream);
}

// What the two become in a library that is built with _FORTIFY_SOURCE.
INTERPOSE std::size_t __fread_chk(void* ptr, std::size_t room, std::size_t size, std::size_t n,
                                  FILE* stream) {
    static const auto next = NEXT(__fread_chk);
    return injected_failure(CALLER, "read", size * n) ? 0 : next(ptr, room, size, n, stream);
}

INTERPOSE char* __fgets_chk(char* s, std::size_t room, int n, FILE* stream) {
    static const auto next = NEXT(__fgets_chk);
    return injected_failure(CALLER, "read", static_cast<std::size_t>(n)) ? nullptr
                                                                         : next(s, room, n, stream);
}

#ifndef __SANITIZE_ADDRESS__ // it interposes an allocator of its own

INTERPOSE void* calloc(std::size_t nmemb, std::size_t size) noexcept {
    static const auto next = NEXT(calloc);
    return injected_failure(CALLER, "alloc", nmemb * size) ? nullptr : next(nmemb, size);
}

INTERPOSE void* realloc(void* ptr, std::size_t size) noexcept {
    static const auto next = NEXT(realloc);
    return injected_failure(CALLER, "alloc", size) ? nullptr : next(ptr, size);
}

#endif
