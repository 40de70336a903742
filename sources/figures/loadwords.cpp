#include "figures/loadwords.h"

#include "figures/delays.h"
#include "utils/units.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double nsPerMillisecond = 1e6;

QString milliseconds(qint64 ns)
{
    return Units::milliseconds(static_cast<double>(ns), 1);
}

QString difference(qint64 ns, int decimals)
{
    const bool isLess =
        std::round(static_cast<double>(ns) / nsPerMillisecond * std::pow(10, decimals)) < 0;
    const auto shown = static_cast<double>(isLess ? ns : std::abs(ns)); // nothing is "-0.0"
    return (isLess ? QString() : u"+"_s) + Units::milliseconds(shown, decimals);
}

} // namespace

LoadWords::Harm LoadWords::harm(qint64 underLoad, qint64 added)
{
    if (added < leastAdded || underLoad <= gamesSuffer) {
        return Harm::None;
    }
    if (underLoad <= callsSuffer) {
        return Harm::Games;
    }
    return underLoad <= callsFail ? Harm::CallsAndGames : Harm::Everything;
}

QList<LoadWords::Verdict> LoadWords::verdicts(const FinishedTest &test)
{
    QList<Verdict> verdicts;
    const auto add = [&](bool ofUpload, const LoadDelays &load, const LoadDelays &extra) {
        const LoadDelays &used = DelayFigures::median(extra.samples) ? extra : load;
        const auto underLoad = DelayFigures::median(used.samples);
        const auto added = DelayFigures::added(test.idle(), used.samples);
        if (underLoad && added) {
            verdicts.append(
                {.ofUpload = ofUpload, .harm = harm(*underLoad, *added), .added = *added});
        }
    };
    add(false, test.downloadLoad, test.extraDownloadLoad);
    add(true, test.uploadLoad, test.extraUploadLoad);
    return verdicts;
}

QStringList LoadWords::sentences(const FinishedTest &test)
{
    QStringList sentences;
    const auto verdicts = LoadWords::verdicts(test);
    for (const Verdict &verdict : verdicts) {
        QString text;
        switch (verdict.harm) {
        case Harm::None: continue;
        case Harm::Games:
            text = verdict.ofUpload ? tr("Games suffer while something uploads: %1")
                                    : tr("Games suffer while something downloads: %1");
            break;
        case Harm::CallsAndGames:
            text = verdict.ofUpload ? tr("Calls and games suffer while something uploads: %1")
                                    : tr("Calls and games suffer while something downloads: %1");
            break;
        case Harm::Everything:
            text = verdict.ofUpload ? tr("Calls and games fail while something uploads: %1")
                                    : tr("Calls and games fail while something downloads: %1");
            break;
        }
        sentences.append(text.arg(difference(verdict.added, 0)));
    }
    if (sentences.isEmpty() && verdicts.size() == 2) {
        sentences.append(tr("Calls and games do not suffer from downloads and uploads."));
    }
    return sentences;
}

QString LoadWords::figures(const FinishedTest &test, const LoadDelays &load)
{
    const auto lost = DelayFigures::lostPercent(load.samples);
    QStringList parts;
    if (const auto median = DelayFigures::median(load.samples)) {
        const qint64 most = DelayFigures::percentile95(load.samples).value_or(*median);
        parts.append(tr("%1 (95 % within %2)").arg(milliseconds(*median), milliseconds(most)));
    }
    if (const auto added = DelayFigures::added(test.idle(), load.samples)) {
        parts.append(difference(*added, 1));
    }
    if (lost && *lost > 0) {
        parts.append(tr("lost: %1 %").arg(std::lround(*lost)));
    }
    if (!parts.isEmpty() && load.congestion) {
        parts.append(*load.congestion);
    }
    return parts.join(", "_L1);
}

QString LoadWords::idleFigures(const FinishedTest &test)
{
    const auto median = DelayFigures::median(test.idle());
    if (!median) {
        return {};
    }
    const qint64 most = DelayFigures::percentile95(test.idle()).value_or(*median);
    const qint64 least = DelayFigures::minimum(test.idle()).value_or(*median);
    QStringList parts{tr("%1 (95 % within %2)").arg(milliseconds(*median), milliseconds(most)),
                      tr("at least %1").arg(milliseconds(least))};
    if (const auto jitter = DelayFigures::jitter(test.idle())) {
        parts.append(tr("jitter %1").arg(milliseconds(*jitter)));
    }
    return parts.join(", "_L1);
}

} // namespace velometer
