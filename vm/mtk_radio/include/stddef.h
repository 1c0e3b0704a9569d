/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* The model's <stddef.h>, inside a kernel. */

#include <linux/stddef.h>
