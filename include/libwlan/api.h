// SPDX-License-Identifier: MIT
/// @file
/// Marks what libwlan exports. The library is built with hidden visibility: a declaration without
/// this mark stays inside it.

#pragma once

/// Exports a declaration.
#define LIBWLAN_API __attribute__((visibility("default")))
