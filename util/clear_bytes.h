#pragma once

#include <cstddef>

/// Fills `size` bytes with zeros, by a call: the string instructions that compilers put in its
/// place took a tenth of the time of reading a scan.
void clear_bytes(void* bytes, std::size_t size);
