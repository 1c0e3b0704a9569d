#pragma once

// Files of the two daemons. Each daemon writes its pid file itself.

#define WPA_SUPPLICANT_CONFIG "/tmp/wpa_supplicant.conf"
#define WPA_SUPPLICANT_PID_FILE "/tmp/wpa_supplicant.pid"
#define HOSTAPD_CONFIG "/tmp/hostapd.conf"
#define HOSTAPD_PID_FILE "/tmp/hostapd.pid"
