#pragma once
#include <QtGlobal>
#include <random>
#include <vector>

/// Random test input that can be had again: prints its seed, which the environment variable
/// ZORBIN_TEST_SEED overrides. The same seed gives the same numbers everywhere.
class random_t
{
public:
    explicit random_t(quint32 seed = 1);

    /// From \p low to \p high, both included.
    int integer(int low, int high);
    /// From \p low to \p high, the latter excluded.
    double real(double low, double high);
    /// True with the given probability.
    bool chance(double probability);
    /// One of \p choices, which must not be empty.
    template <typename T>
    const T& oneOf(const std::vector<T>& choices)
    {
        return choices[static_cast<std::size_t>(integer(0, static_cast<int>(choices.size()) - 1))];
    }

private:
    std::mt19937 m_engine;
};
