#pragma once

// Whom a station is associated with.

#include "util/wireless_request.h"

/// What the driver said about the access point of a station.
struct access_point_answer {
    int sock = -1; ///< left open for further requests; -1 when nothing could be asked
    iwreq request{};
    bool associated = false;
};

/// Asks the driver for the access point of `name`. Failures are told on standard error as
/// `caller`'s.
access_point_answer ask_access_point(const char* caller, const char* name);

/// Closes a query's socket; a descriptor of 0 counts as none.
void close_query(int sock);
