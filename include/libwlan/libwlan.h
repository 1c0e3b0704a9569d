// SPDX-License-Identifier: MIT
/// @file
/// The whole public interface, and what holds for every call of it.

#pragma once

/// @mainpage libwlan
/// Brings up and controls the Wi-Fi radio of an embedded Linux network camera: MediaTek/Ralink
/// adapters through private driver requests, Realtek adapters through Wireless Extensions,
/// wpa_supplicant and hostapd. modes.h is the place to start; what follows holds for all headers.
///
/// @section language Language
/// C++11 or later. Each header stands alone, before or after the network headers of the kernel and
/// the C library. Functions have C linkage. Where a std::vector or std::string crosses, the program
/// needs the C++ library, and its string ABI, that libwlan was built with. Exceptions that reach
/// the program: std::bad_alloc from a growing list, std::out_of_range from wlan::trimForSSID(), and
/// what the firmware's store throws. The socket of the interrupted request then stays open.
///
/// @section results Results and messages
/// Calls return 0, or -1 for a failure, unless stated otherwise. 0 says that the radio was
/// configured, not that a link is up. Modes, surveys, WPS and registers need root.
///
/// Messages go to standard error, standard output and /dev/console. With a number other than 0 in
/// /tmp/debug_level, commands are traced to the console, with the passphrases in them; its bit of
/// value 2 starts the Realtek daemons in the foreground, and the call lasts as long as the daemon.
///
/// @section texts Names, keys and addresses
/// NUL-terminated; a call only reads them. With a null text that it needs an operation fails with
/// -1. Lengths are not checked: what does not fit is cut off without a message. These bytes fit:
///
/// | text       | MediaTek station | MediaTek AP | Realtek station | Realtek AP |
/// |------------|------------------|-------------|-----------------|------------|
/// | SSID       | 245              | 250         | 120             | 121        |
/// | passphrase | 243              | 248         | 120             | 112        |
/// | WEP key    | 245              | 250         | not used        | not used   |
/// | BSSID      | 30               |             | not used        |            |
///
/// The air takes an SSID of 1 to 32 bytes and a passphrase of 8 to 63 characters; what the driver
/// or the daemon does with others is its own business. On Realtek
/// - a name, or a key that is needed, with a line feed fails with -1 and writes no file;
/// - a station's key of exactly 64 characters is a raw key in hexadecimal digits;
/// - a cut name or passphrase of a station loses its closing quote, a cut access-point name its
///   line feed, so that the daemon cannot use the file.
///
/// A BSSID is six octets of two hexadecimal digits with colons. An explicit join on MediaTek needs
/// one: null fails with -1 at that step, with the earlier settings sent already, and
/// "00:00:00:00:00:00" stands for any access point of the name.
///
/// @section numbers Channels and indices
/// - Channel to join, MediaTek only: 0 tries both bands, first 2.4 GHz ("wlan0"), 2 seconds later
///   5 GHz ("apclii0"); 1 to 14 are 2.4 GHz, 15 and above 5 GHz. Other numbers are not refused: a
///   negative one is sent on "wlan0" as it is.
/// - WEP key number, MediaTek station only: 1 to 4 are the driver's; 0 and 5 to 255 are sent as
///   well. Access points, and stations of an explicit repeater, use number 1.
/// - WPS index: 0 ("wlan0"). Any other is refused.
///
/// @section threads Threads and processes
/// No call locks anything, and none keeps state in memory: run one request at a time, among all
/// threads and all programs of the camera. Requests that overlap race for
/// - the driver's settings, the flags of "ra0", "wlan0", "apclii0" and "wlan1", the daemons;
/// - the .conf and .pid files of hostapd, wpa_supplicant and udhcpd in /tmp, and /tmp/ap_list;
/// - within one process: standard output and error, the signal handling described below, and the
///   descriptors that a program inherits which another thread starts.
///
/// A ::wlan or ::wext object is one thread's. clock_time(), the comparisons and the parsers of
/// scan.h, each thread with arguments of its own, can be called at any time.
///
/// @section signals Signals
/// Programs run through `system()` and `popen()`.
/// - While `system()` waits, SIGINT and SIGQUIT are ignored in the whole process, and SIGCHLD is
///   blocked in the calling thread: a handler for it runs afterwards and finds no child.
/// - With SIGCHLD ignored, or a thread or handler that waits for any child, the status of a program
///   is lost: wlan::ifconfig() returns -1 then. No other call looks at a status.
/// - A handled signal ends a sleep early: a daemon has less time to end, the driver to scan. The
///   waits for Realtek scan results start anew instead: a handled signal that comes more often than
///   four times a second keeps them from ending.
/// - Programs inherit ignored signals and, from busybox's shell, blocked ones: a daemon that was
///   started with SIGTERM blocked cannot be stopped.
/// - SIGPIPE: handle or ignore it where standard output or error is a pipe.
///
/// @section children What programs inherit
/// Sockets, the console and the pid file are opened without close-on-exec; hostapd, wpa_supplicant
/// and udhcpd keep what is open when they start, the program's own descriptors too: a listening
/// port without close-on-exec stays taken for as long as the daemon lives. They also inherit the
/// working folder and the environment; its `PATH` finds the programs.
///
/// /tmp/hostapd.conf and /tmp/wpa_supplicant.conf hold passphrases and are made with the caller's
/// umask, so set 0077.
///
/// @section time How long calls block
/// Seconds at most, besides the time that drivers and programs take:
///
/// | call                                                | MediaTek            | Realtek |
/// |-----------------------------------------------------|---------------------|---------|
/// | run_ap_mode()                                       | 0                   | 20      |
/// | run_infra_mode(), run_infra_mode_base_db()          | 2 with channel 0    | 10      |
/// | run_repeater_mode(), run_repeater_mode_base_db()    | 2 with channel 0    | 20      |
/// | run_ap_mode_base_db()                               | 10                  | 30      |
/// | run_stop_ap_mode()                                  | 10                  | 20      |
/// | run_site_survey()                                   | 4                   | 60 + 76 |
///
/// The calls of one family block as these do, send_signal_ps() 10 seconds, all others not at all
/// unless stated. A daemon that has to end takes 10 seconds at most, one that ends on SIGTERM 1,
/// and one without a pid file 0.
///
/// @section descriptors Descriptors left open
/// Part of the interface. A request that failed on the radio leaves one socket. While the debug
/// level is 0, streams of /dev/console stay open: one for each command sent to a MediaTek driver (7
/// for an access point with WPA2, 10 for a station with WPA2 and a channel), one for each Realtek
/// daemon started. get_current_wifi_channel() leaves a stream and a socket each time. A program
/// that runs for months makes its requests in a child process, or runs out of descriptors. A socket
/// of number 0 is never closed: start with standard input open.

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
