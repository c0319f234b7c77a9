#include "randomNumbers.h"

static quint32 overridden(quint32 seed)
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("ZORBIN_TEST_SEED", &isNumber);
    return isNumber ? static_cast<quint32>(wanted) : seed;
}

random_t::random_t(quint32 seed) : m_engine(overridden(seed))
{
    qInfo("random numbers from seed %u (ZORBIN_TEST_SEED overrides)", overridden(seed));
}

// The distributions of <random> differ between standard libraries, the engine doesn't.
int random_t::integer(int low, int high)
{
    const auto count = static_cast<quint32>(high - low) + 1u;
    return low + static_cast<int>(m_engine() % count);
}

double random_t::real(double low, double high)
{
    return low + (high - low) * (static_cast<double>(m_engine()) / 4294967296.0);
}

bool random_t::chance(double probability)
{
    return real(0.0, 1.0) < probability;
}
