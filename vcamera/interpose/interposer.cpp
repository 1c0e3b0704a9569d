// SPDX-License-Identifier: MIT
// How a function of libc is interposed.

#include "vcamera/interpose/interposer.h"

#include "include/libwlan/version.h"

/// By which the launcher knows the library.
INTERPOSE const char vcamera_version[];
const char vcamera_version[] = LIBWLAN_VERSION;

namespace {

[[gnu::constructor]] void start() {
    keep_scratch_folder();
}

} // namespace
