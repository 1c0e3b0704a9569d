#pragma once

#include <cstddef>

/// Fills `size` bytes with zeros, by a call: the string instructions that compilers put in its
/// place take longer than all else that is read about a network.
void clear_bytes(void* bytes, std::size_t size);
