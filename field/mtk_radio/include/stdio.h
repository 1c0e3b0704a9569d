#include <linux/kernel.h>
