// SPDX-License-Identifier: MIT
// What the library and the programs that it runs print, kept apart from what wlanctl says.

#pragma once

#include <cstdio>
#include <string>

/// Standard output and standard error of the library and its programs lead here; wlanctl's own have
/// streams of their own, which no program inherits.
class diagnostics {
public:
    /// To be called once, before anything is printed.
    /// @param verbose pass what is printed on to standard error.
    static void collect(bool verbose);

    /// Where the answer goes; null when the caller closed it.
    static FILE* answers();

    /// wlanctl's own standard error.
    static FILE* messages();

    /// The end to wait on for what is printed.
    static int descriptor();

    /// Takes in what was printed since the last call.
    static void take_in();

    /// What was printed from the beginning on, of which the last 8 KiB are kept.
    static const std::string& printed();

    /// Forgets what was printed.
    static void forget();
};
