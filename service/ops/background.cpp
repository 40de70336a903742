#include "ops/background.h"

#include <sys/resource.h>
#include <unistd.h>

namespace velometer {

void stepBack()
{
    // On Linux a thread has a niceness of its own. Without the right to it nothing is lost.
    constexpr int niceness = 10;
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
}

} // namespace velometer
