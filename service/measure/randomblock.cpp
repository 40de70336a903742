#include "measure/randomblock.h"

#include <vector>

#include <sys/mman.h>
#include <sys/random.h>
#include <unistd.h>

namespace velometer {

RandomBlock::~RandomBlock()
{
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

bool RandomBlock::create()
{
    descriptor = memfd_create("velometer-random", MFD_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    std::vector<char> bytes(size);
    for (std::size_t filled = 0; filled < size;) {
        const auto count = getrandom(bytes.data() + filled, size - filled, 0);
        if (count <= 0) {
            return false;
        }
        filled += static_cast<std::size_t>(count);
    }
    for (std::size_t written = 0; written < size;) {
        const auto count = ::write(descriptor, bytes.data() + written, size - written);
        if (count <= 0) {
            return false;
        }
        written += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace velometer
