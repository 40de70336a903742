#include "measure/randomblock.h"

#include <vector>

#include <sys/mman.h>
#include <sys/random.h>
#include <unistd.h>

RandomBlock::~RandomBlock()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool RandomBlock::create()
{
    m_descriptor = memfd_create("velometer-random", MFD_CLOEXEC);
    if (m_descriptor < 0) {
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
        const auto count = ::write(m_descriptor, bytes.data() + written, size - written);
        if (count <= 0) {
            return false;
        }
        written += static_cast<std::size_t>(count);
    }
    return true;
}
