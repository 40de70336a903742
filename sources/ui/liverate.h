#pragma once

#include <QtGlobal>

#include <array>

namespace velometer {

/// The rate of a running measurement: the mean of its last second, from bytes per interval of
/// 100 ms. Time that passes without an interval lets it fall. A plain value.
class LiveRate
{
public:
    /// Forgets everything.
    void clear() { *this = LiveRate(); }
    /// As TestObserver::setThroughput; @p nowUs by the steady clock. Another @p resulttype begins
    /// anew.
    void add(int resulttype, int interval, qint64 bytes, qint64 nowUs);

    /// As in Result; 0 as long as nothing was added.
    int phase() const { return type; }
    double bitsPerSecond(qint64 nowUs) const;

private:
    static constexpr int window = 10; ///< intervals

    int type = 0;
    int last = -1;                        ///< number of the newest interval
    qint64 lastUs = 0;                    ///< when it came
    std::array<qint64, window> bytesOf{}; ///< of interval i at i modulo the window
};

} // namespace velometer
