// SPDX-License-Identifier: MIT
// Bytes from the air or a driver: pointer and length together, read only through this reader.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>

namespace libwlan {

class byte_reader {
public:
    byte_reader(const unsigned char* data, std::size_t size) : data_(data), size_(size) {}

    std::size_t size() const { return size_; }
    const unsigned char* data() const { return data_; }

    /// The part that begins at `offset` and is `length` bytes long; none when it does not fit.
    std::optional<byte_reader> part(std::size_t offset, std::size_t length) const {
        if (offset > size_ || length > size_ - offset)
            return std::nullopt;
        return byte_reader(data_ + offset, length);
    }

    /// A number in the host's byte order; none when it does not fit.
    template <typename Number>
    std::optional<Number> number(std::size_t offset) const {
        const std::optional<byte_reader> bytes = part(offset, sizeof(Number));
        if (!bytes)
            return std::nullopt;
        Number value;
        std::memcpy(&value, bytes->data_, sizeof value);
        return value;
    }

private:
    const unsigned char* data_;
    std::size_t size_;
};

} // namespace libwlan
