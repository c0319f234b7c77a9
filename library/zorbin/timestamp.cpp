#include "timestamp.h"

#include <chrono>

namespace zorbin {

double gettimestamp()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceEpoch).count();
}

} // namespace zorbin
