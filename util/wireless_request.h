#pragma once

// Wireless Extensions requests, named for an interface.

// linux/wireless.h pulls in linux/if.h, which only gets along with net/if.h in this order.
#include <net/if.h>
#include <sys/socket.h>

#include <linux/wireless.h>

/// Names the interface that `request` is for. A name of 16 characters or more reaches the kernel
/// without a terminator.
void name_request(iwreq& request, const char* ifname);

/// A request that is zero but for the interface.
iwreq named_request(const char* ifname);
