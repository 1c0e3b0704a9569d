#include "util/clear_bytes.h"

#include <cstring>

void clear_bytes(void* bytes, std::size_t size) {
    std::memset(bytes, 0, size);
}
