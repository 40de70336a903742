#pragma once

#include <QString>

namespace velometer {

/// What a test finds out about delays beyond its usual figures.
struct DelayPlan
{
    /// Of the idle line the round-trip time counts this many, however many more are taken.
    static constexpr int countedSamples = 3;
    static constexpr int mostSamples = 200;

    int idleSamples = countedSamples; ///< up to mostSamples; the rest is taken after the round trip
    bool underLoad = false;           ///< load of its own, made with CUBIC, after the usual phases
    /// Of the streams of both ends, where their kernels have it; empty: BBR where there is.
    // The braces let a plan be written without it.
    // NOLINTNEXTLINE(readability-redundant-member-init)
    QString congestionControl{};

    /// As the settings say: load of its own, or none.
    static DelayPlan remembered();
    void remember() const;
};

} // namespace velometer
