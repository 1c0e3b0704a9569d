/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* Keeps what the driver was sent, for debugfs: one line "INTERFACE REQUEST LENGTH TEXT" a request.
 */

#pragma once

#include <linux/fs.h>

void received(const char* interface, const char* request, size_t length, const char* text);

extern const struct file_operations received_file; /* writing to it empties it */
