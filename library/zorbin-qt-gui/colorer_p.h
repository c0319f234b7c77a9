#pragma once
#include "colorer.h"

#include <algorithm>
#include <cstdint>

/// Before a function: compiles it for AVX2, too, and takes that where the processor has it.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__has_attribute)
#if __has_attribute(target_clones)
#define ZORBIN_ALSO_FOR_AVX2 __attribute__((target_clones("avx2", "default")))
#endif
#endif
#ifndef ZORBIN_ALSO_FOR_AVX2
#define ZORBIN_ALSO_FOR_AVX2
#endif

namespace zorbin_qt_gui {

struct colorer_t::privateData_t
{
    std::vector<unsigned int> colorTable;
};

/// Looks up many values: \p indices(values, indices, n) computes the table's indices of n values,
/// which is left to the compiler to vectorise; the look-up itself can't be.
template <typename indices_t>
void lookUp(const std::vector<unsigned int>& table, const float* values, QRgb* colors,
            unsigned count, const indices_t& indices)
{
    constexpr unsigned blockSize = 256; // its indices stay in the first-level cache
    std::int32_t block[blockSize];
    while (count > 0) {
        const unsigned n = std::min(count, blockSize);
        indices(values, block, n);
        for (unsigned i = 0; i < n; ++i)
            colors[i] = table[static_cast<std::size_t>(block[i])];
        values += n;
        colors += n;
        count -= n;
    }
}

} // namespace zorbin_qt_gui
