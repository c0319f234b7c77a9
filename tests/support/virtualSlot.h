#pragma once
#include <cstddef>
#include <cstring>

/// The place of a virtual function in its class's table, as the compilers for Linux lay it out.
template <typename function_t>
std::ptrdiff_t virtualSlot(function_t function)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof(words) == sizeof(function), "not the layout expected");
    std::memcpy(words, &function, sizeof(words));
    return (words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}
