#pragma once

/// @file
/// The version of libwlan. The library's file name, its packages and `wlanctl --version` take it
/// from here.

/// Major, minor and patch number.
#define LIBWLAN_VERSION "1.0.0"
