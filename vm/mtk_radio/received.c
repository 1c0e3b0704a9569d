// SPDX-License-Identifier: MIT OR GPL-2.0-only
/* What the driver was sent, for debugfs. */

#include "received.h"

#include <linux/module.h>
#include <linux/mutex.h>

static char lines[32768];
static size_t used;
static DEFINE_MUTEX(lock);

void received(const char* interface, const char* request, size_t length, const char* text) {
    mutex_lock(&lock);
    used += scnprintf(lines + used, sizeof lines - used, "%s %s %zu %.*s\n", interface, request,
                      length, (int)length, text);
    mutex_unlock(&lock);
}

static ssize_t read_lines(struct file* file, char __user* to, size_t room, loff_t* at) {
    mutex_lock(&lock);
    const ssize_t count = simple_read_from_buffer(to, room, at, lines, used);
    mutex_unlock(&lock);
    return count;
}

static ssize_t empty(struct file* file, const char __user* from, size_t length, loff_t* at) {
    mutex_lock(&lock);
    used = 0;
    mutex_unlock(&lock);
    return (ssize_t)length;
}

const struct file_operations received_file = {
    .owner = THIS_MODULE, .read = read_lines, .write = empty};
