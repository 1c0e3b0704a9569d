#pragma once

/// @file
/// The whole public interface of libwlan.

#include "libwlan/access_point.h"
#include "libwlan/baseband.h"
#include "libwlan/clock.h"
#include "libwlan/debug_print.h"
#include "libwlan/files.h"
#include "libwlan/link_status.h"
#include "libwlan/modes.h"
#include "libwlan/process.h"
#include "libwlan/scan.h"
#include "libwlan/settings.h"
#include "libwlan/sites.h"
#include "libwlan/store.h"
#include "libwlan/survey.h"
#include "libwlan/version.h"
#include "libwlan/wext.h"
#include "libwlan/wlan.h"
