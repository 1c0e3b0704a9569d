// SPDX-License-Identifier: MIT OR GPL-2.0-only
/* A MediaTek/Ralink adapter without the adapter: three interfaces around the model of the radio,
   with the vendor driver's private requests. debugfs has what it was sent, and takes the air. */

#include <linux/debugfs.h>
#include <linux/etherdevice.h>
#include <linux/if_arp.h>
#include <linux/jiffies.h>
#include <linux/module.h>
#include <linux/rtnetlink.h>
#include <linux/slab.h>
#include <linux/uaccess.h>
#include <net/iw_handler.h>

#include "received.h"
#include "vcamera/model/mtk_radio.h"

/* Opening, closing and every wireless request run under the kernel's lock for network devices. */
static struct mtk_radio radio;
static struct air air;
static struct net_device* devices[MTK_VIFS];
static struct dentry* folder;

static int vif_of(const struct net_device* device) {
    int vif = 0;
    while (devices[vif] != device)
        ++vif;
    return vif;
}

static int errno_of(enum mtk_answer answer) {
    static const int errnos[] = {0, -EINVAL, -ENETDOWN};
    return errnos[answer];
}

static int64_t now(void) {
    return jiffies64_to_msecs(get_jiffies_64());
}

/* Wireless requests ---------------------------------------------------------------------------- */

static int get_access_point(struct net_device* device, struct iw_request_info* info,
                            union iwreq_data* data, char* extra) {
    const int joined = radio.vifs[vif_of(device)].joined;
    data->ap_addr.sa_family = ARPHRD_ETHER;
    eth_zero_addr(data->ap_addr.sa_data);
    if (joined != 0)
        ether_addr_copy(data->ap_addr.sa_data, air.points[joined - 1].bssid);
    return 0;
}

static int get_frequency(struct net_device* device, struct iw_request_info* info,
                         union iwreq_data* data, char* extra) {
    data->freq = (struct iw_freq){.m = mtk_radio_channel(&radio, vif_of(device))};
    return 0;
}

/* The stock iwgetid asks for no channel of a driver that tells nothing of its range. */
static int get_range(struct net_device* device, struct iw_request_info* info,
                     union iwreq_data* data, char* extra) {
    struct iw_range* range = (struct iw_range*)extra;
    memset(range, 0, sizeof *range);
    range->we_version_compiled = WIRELESS_EXT;
    range->we_version_source = WIRELESS_EXT;
    data->data.length = sizeof *range;
    return 0;
}

static struct iw_statistics* get_statistics(struct net_device* device) {
    static struct iw_statistics statistics;
    const int level = mtk_radio_level(&radio, &air);
    statistics.qual.qual = clamp(2 * (level + 100), 0, 100);
    statistics.qual.level = level;
    statistics.qual.noise = MTK_NOISE;
    return &statistics;
}

/* Private requests ------------------------------------------------------------------------------
   Only "set" is described, so its text arrives here; the others bring the caller's pointer. */

static int set(struct net_device* device, struct iw_request_info* info, union iwreq_data* data,
               char* extra) {
    size_t length = data->data.length;
    received(device->name, "set", length, extra);
    if (data->data.flags != 0)
        return -EINVAL;
    if (length > 0 && extra[length - 1] == '\0')
        --length; /* iwpriv counts it */
    return errno_of(mtk_radio_set(&radio, &air, vif_of(device), extra, length, now()));
}

static int query(struct net_device* device, struct iw_request_info* info, union iwreq_data* data,
                 char* extra) {
    char name[16];
    int32_t figure = 0;
    snprintf(name, sizeof name, "query 0x%04x", data->data.flags);
    received(device->name, name, data->data.length, "");
    const enum mtk_answer answer =
        mtk_radio_query(&radio, &air, vif_of(device), data->data.flags, &figure);
    if (answer != MTK_DONE)
        return errno_of(answer);
    if (data->data.length != sizeof figure)
        return -EINVAL;
    return copy_to_user(data->data.pointer, &figure, sizeof figure) ? -EFAULT : 0;
}

/* Of "profile" and "survey". */
static int give_text(struct net_device* device, struct iw_request_info* info,
                     union iwreq_data* data, char* extra) {
    const int is_survey = info->cmd == SIOCIWFIRSTPRIV + 13;
    const int vif = vif_of(device);
    size_t length = data->data.length;
    if (data->data.flags != 0)
        return -EINVAL;
    char* text = kmalloc(length, GFP_KERNEL);
    if (text == NULL)
        return -ENOMEM;
    received(device->name, is_survey ? "survey" : "profile", length, "");
    int result = errno_of(is_survey ? mtk_radio_survey(&radio, &air, vif, now(), text, &length)
                                    : mtk_radio_profile(&radio, &air, vif, text, &length));
    if (result == 0 && copy_to_user(data->data.pointer, text, length))
        result = -EFAULT;
    data->data.length = length;
    kfree(text);
    return result;
}

/* Answers in the caller's buffer, past the length that it was given. */
static int baseband(struct net_device* device, struct iw_request_info* info, union iwreq_data* data,
                    char* extra) {
    char text[MTK_REGISTER_TEXT] = "";
    const size_t length = min_t(size_t, data->data.length, sizeof text - 1);
    if (data->data.flags != 0)
        return -EINVAL;
    if (copy_from_user(text, data->data.pointer, length))
        return -EFAULT;
    received(device->name, "register", data->data.length, text);
    const enum mtk_answer answer = mtk_radio_register(&radio, text, length);
    if (answer != MTK_DONE)
        return errno_of(answer);
    return copy_to_user(data->data.pointer, text, sizeof text) ? -EFAULT : 0;
}

static const iw_handler standard[] = {
    IW_HANDLER(SIOCGIWAP, get_access_point),
    IW_HANDLER(SIOCGIWFREQ, get_frequency),
    IW_HANDLER(SIOCGIWRANGE, get_range),
};
static const iw_handler private[] = {
    [1] = query, [2] = set, [3] = baseband, [9] = give_text, [13] = give_text};
static const struct iw_priv_args described[] = {
    {SIOCIWFIRSTPRIV + 2, IW_PRIV_TYPE_CHAR | 1024, 0, "set"},
};
static const struct iw_handler_def handlers = {
    .standard = standard,
    .num_standard = ARRAY_SIZE(standard),
    .private = private,
    .num_private = ARRAY_SIZE(private),
    .private_args = described,
    .num_private_args = ARRAY_SIZE(described),
    .get_wireless_stats = get_statistics,
};

/* Interfaces ----------------------------------------------------------------------------------- */

static int open(struct net_device* device) {
    mtk_radio_bring(&radio, &air, vif_of(device), 1);
    return 0;
}

static int stop(struct net_device* device) {
    mtk_radio_bring(&radio, &air, vif_of(device), 0);
    return 0;
}

static netdev_tx_t drop(struct sk_buff* packet, struct net_device* device) {
    dev_kfree_skb(packet);
    return NETDEV_TX_OK;
}

static const struct net_device_ops operations = {
    .ndo_open = open, .ndo_stop = stop, .ndo_start_xmit = drop};

static void set_up(struct net_device* device) {
    ether_setup(device);
    eth_hw_addr_random(device);
    device->netdev_ops = &operations;
    device->wireless_handlers = &handlers;
    device->needs_free_netdev = true;
}

/* Module --------------------------------------------------------------------------------------- */

static ssize_t take_air(struct file* file, const char __user* from, size_t length, loff_t* at) {
    if (length != sizeof air)
        return -EINVAL;
    rtnl_lock();
    const int failed = copy_from_user(&air, from, length) != 0;
    rtnl_unlock();
    return failed ? -EFAULT : (ssize_t)length;
}

static const struct file_operations air_file = {.owner = THIS_MODULE, .write = take_air};

static void unplug(void) {
    debugfs_remove(folder);
    for (int vif = 0; vif < MTK_VIFS && devices[vif] != NULL; ++vif)
        unregister_netdev(devices[vif]);
}

static int __init plug_in(void) {
    static const char* const names[] = {"ra0", "wlan0", "apclii0"};
    radio.survey_layout = 1;
    for (int vif = 0; vif < MTK_VIFS; ++vif) {
        struct net_device* device = alloc_netdev(0, names[vif], NET_NAME_USER, set_up);
        const int failed = device == NULL ? -ENOMEM : register_netdev(device);
        if (failed) {
            if (device != NULL)
                free_netdev(device);
            unplug();
            return failed;
        }
        devices[vif] = device;
    }
    folder = debugfs_create_dir("mtk_radio", NULL);
    debugfs_create_file("received", 0600, folder, NULL, &received_file);
    debugfs_create_file("air", 0200, folder, NULL, &air_file);
    debugfs_create_u8("survey_layout", 0600, folder, &radio.survey_layout);
    debugfs_create_u8("wps", 0600, folder, &radio.wps.outcome); /* enum mtk_wps_outcome */
    debugfs_create_u8("profile_form", 0600, folder, &radio.wps.profile_form);
    return 0;
}

module_init(plug_in);
module_exit(unplug);
/* The kernel exports debugfs to modules under a GPL-compatible licence only. */
MODULE_LICENSE("Dual MIT/GPL");
MODULE_DESCRIPTION("MediaTek/Ralink radio for the test machine");
