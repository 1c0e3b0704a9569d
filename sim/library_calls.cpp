// Calls of the library's own that concern no camera. A scene's faults strike them, too, as "alloc"
// and "read"; what any other part of the program calls is passed on.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <link.h>

#include "sim/crossing.h"
#include "sim/surface.h"

#define CALLER __builtin_return_address(0)

namespace {

/// @return whether the call is the library's and is to fail, with errno set.
bool struck(void* caller, const char* call, std::size_t size) {
    dl_find_object object{};
    return _dl_find_object(caller, &object) == 0 &&
           std::strstr(object.dlfo_link_map->l_name, "/libwlan.so") != nullptr &&
           scratch_folder() != nullptr && meets_fault({call, "-", call, std::to_string(size)});
}

} // namespace

SURFACE std::size_t fread(void* ptr, std::size_t size, std::size_t n, FILE* stream) {
    static const auto next = NEXT(fread);
    return struck(CALLER, "read", size * n) ? 0 : next(ptr, size, n, stream);
}

SURFACE char* fgets(char* s, int n, FILE* stream) {
    static const auto next = NEXT(fgets);
    return struck(CALLER, "read", static_cast<std::size_t>(n)) ? nullptr : next(s, n, stream);
}

#ifndef __SANITIZE_ADDRESS__ // it brings an allocator that stands in front of every other

SURFACE void* calloc(std::size_t nmemb, std::size_t size) noexcept {
    static const auto next = NEXT(calloc);
    return struck(CALLER, "alloc", nmemb * size) ? nullptr : next(nmemb, size);
}

SURFACE void* realloc(void* ptr, std::size_t size) noexcept {
    static const auto next = NEXT(realloc);
    return struck(CALLER, "alloc", size) ? nullptr : next(ptr, size);
}

#endif
