// SPDX-License-Identifier: MIT
/// @file
/// The version of libwlan. The library's file name, its packages and `wlanctl --version` take it
/// from here.

#pragma once

/// Major, minor and patch number of these headers.
#define LIBWLAN_VERSION "1.0.0"
