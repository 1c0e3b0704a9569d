#pragma once

/// @file
/// The mark of everything that libwlan exports. The library is built with hidden visibility, so a
/// declaration without this mark stays inside it.

/// Exports a declaration.
#define LIBWLAN_API __attribute__((visibility("default")))
