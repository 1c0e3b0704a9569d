#include <linux/stddef.h>
