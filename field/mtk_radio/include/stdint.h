#include <linux/types.h>
