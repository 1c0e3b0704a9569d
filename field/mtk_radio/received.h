#pragma once

/* Keeps what the driver was sent, for debugfs: one line "INTERFACE REQUEST LENGTH TEXT" a request.
 */

#include <linux/fs.h>

void received(const char* interface, const char* request, size_t length, const char* text);

extern const struct file_operations received_file; /* writing to it empties it */
