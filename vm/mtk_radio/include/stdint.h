/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* The model's <stdint.h>, inside a kernel. */

#include <linux/types.h>
