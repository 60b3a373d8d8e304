// SPDX-License-Identifier: LicenseRef-all-rights-reserved

#pragma once

#include <cstddef>
#include <cstdint>

/// The bytes of an input, read from the front. Behind the end everything reads as 0.
class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : next(data)
        , end(data + size)
    {}

    bool atEnd() const
    {
        return next == end;
    }
    std::uint8_t byte()
    {
        return atEnd() ? std::uint8_t(0) : *next++;
    }
    bool flag()
    {
        return byte() & 1;
    }
    /// A number from 0 to @p count - 1, for a count up to 256.
    int below(int count)
    {
        return byte() % count;
    }
    std::uint32_t word()
    {
        std::uint32_t number = 0;
        for (int i = 0; i < 4; ++i)
            number = number << 8 | byte();
        return number;
    }
    template <typename T, std::size_t count>
    const T &oneOf(const T (&values)[count])
    {
        static_assert(count <= 256, "one byte chooses");
        return values[byte() % count];
    }

private:
    const std::uint8_t *next;
    const std::uint8_t *end;
};
