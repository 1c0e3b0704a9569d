/* SPDX-License-Identifier: MIT OR GPL-2.0-only */
/* The survey table of the MediaTek/Ralink driver. C, like the radio. */

#pragma once

#include "vcamera/model/air.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Prints the table of these access points: a header, then as many whole lines as there is room for.
   Returns its length; there is no NUL at its end. */
size_t mtk_survey_table(const struct access_point* points, int count, int layout, char* text,
                        size_t room);

#ifdef __cplusplus
}
#endif
