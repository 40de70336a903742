#pragma once

#include "figures/finishedtest.h"

#include <QCoreApplication>
#include <QStringList>

namespace velometer {

/// What load does to whatever else uses the line, in words for a person. docs/figures.md names the
/// sources of the limits.
class LoadWords
{
    Q_DECLARE_TR_FUNCTIONS(LoadWords)

public:
    // Round trips in ns, twice the one-way limits of the sources.
    /// Games: the packet delay budget of real-time gaming, 50 ms (3GPP TS 23.203, QCI 3).
    static constexpr qint64 gamesSuffer = 100'000'000;
    /// Calls: the packet delay budget of conversational voice, 100 ms (3GPP TS 23.203, QCI 1).
    static constexpr qint64 callsSuffer = 200'000'000;
    /// Calls: 400 ms, beyond which ITU-T G.114 finds a network not fit for them.
    static constexpr qint64 callsFail = 800'000'000;
    /// Less of a difference is not the load's doing: our own choice, several times what the idle
    /// lines of the networks that we know vary by.
    static constexpr qint64 leastAdded = 30'000'000;

    enum class Harm { None, Games, CallsAndGames, Everything };
    /// Of a median under load, and what of it the load has added.
    static Harm harm(qint64 underLoad, qint64 added);

    /// What the load of one direction does.
    struct Verdict
    {
        bool ofUpload = false;
        Harm harm = Harm::None;
        qint64 added = 0; ///< ns
    };
    /// Of each direction of which enough is known, the download first. Load that was made for its
    /// delays comes before that of the measurements: it says more.
    static QList<Verdict> verdicts(const FinishedTest &test);

    /// One sentence for each direction that suffers; one that says that nothing does where both are
    /// known; none where nothing is known.
    static QStringList sentences(const FinishedTest &test);

    /// "245.1 ms (95 % within 260.2 ms), +200.1 ms, lost: 3 %, cubic"; empty when nothing is known.
    static QString figures(const FinishedTest &test, const LoadDelays &load);
    /// "45.0 ms (95 % within 47.2 ms), at least 44.8 ms, jitter 0.3 ms"; empty when nothing is
    /// known.
    static QString idleFigures(const FinishedTest &test);
};

} // namespace velometer
