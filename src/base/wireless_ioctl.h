// SPDX-License-Identifier: MIT
// Requests to the kernel about an interface: Wireless Extensions, and the interface's flags.

#pragma once

#include <cstddef>

// linux/wireless.h pulls in linux/if.h, which only gets along with net/if.h in this order.
#include <net/if.h>
#include <sys/socket.h>

#include <linux/wireless.h>

namespace libwlan {

/// Opens the datagram socket that requests are made through.
/// @return its descriptor, or -1 with errno set.
int open_request_socket();

/// Closes such a socket, unless its number is 0 or less, and marks it as closed.
void close_request_socket(int& sock);

/// Names the interface that `request` is for. A name of 16 characters or more reaches the kernel
/// without a terminator.
void name_request(iwreq& request, const char* ifname);

/// A request that is zero but for the interface.
iwreq named_request(const char* ifname);

/// A request that carries `size` bytes of data.
iwreq data_request(const char* ifname, void* data, std::size_t size, __u16 flags = 0);

/// Makes a Wireless Extensions or private request.
/// @return the result of the ioctl.
int wireless_ioctl(int sock, unsigned long code, iwreq& request);

/// Reads the flags of `ifname` into `request`. A name that is too long for any interface fails as
/// one that the kernel does not know.
/// @return the result of the ioctl.
int read_interface_flags(int sock, const char* ifname, ifreq& request);

/// Sets the flags that `request` holds.
/// @return the result of the ioctl.
int write_interface_flags(int sock, ifreq& request);

} // namespace libwlan
