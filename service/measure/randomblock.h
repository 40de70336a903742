#pragma once

#include <cstddef>

namespace velometer {

/// A file in memory with bytes that no modem, proxy or tunnel can compress. Written once, then only
/// read, from any number of threads.
class RandomBlock
{
public:
    /// Longer than the window of every compression met on the way.
    static constexpr std::size_t size = std::size_t{4} << 20;

    RandomBlock() = default;
    ~RandomBlock();
    RandomBlock(const RandomBlock &) = delete;
    RandomBlock &operator=(const RandomBlock &) = delete;

    /// False when the system has no memory or no random bytes for it.
    bool create();

    /// For sendfile, with an offset of one's own.
    int getDescriptor() const { return descriptor; }

private:
    int descriptor = -1;
};

} // namespace velometer
