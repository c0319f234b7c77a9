#include "usleep.h"

#include <chrono>
#include <thread>

namespace zorbinport {

void usleep(unsigned microseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

} // namespace zorbinport
