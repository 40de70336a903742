#include "app/sharetext.h"

#include "app/resultfilter.h"
#include "utils/utils.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qint64 bitPerKilobit = 1000;
constexpr qint64 nsPerMillisecond = 1'000'000;

/// Holds the context of the texts.
class Texts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::ShareText)

public:
    static QString na() { return tr("na"); }
    static QString title(const QString &name, const QString &time)
    {
        return tr("Test %1, %2").arg(name, time);
    }
    static QString download(const QString &rate) { return tr("Download: %1").arg(rate); }
    static QString upload(const QString &rate) { return tr("Upload: %1").arg(rate); }
    static QString rtt(const QString &time) { return tr("RTT: %1").arg(time); }
};

} // namespace

QString ShareText::name(const FinishedTest &test)
{
    return u"%1 / %2"_s.arg(test.seriesId.value_or(0)).arg(test.testId.value_or(0));
}

QString ShareText::time(const FinishedTest &test)
{
    const auto shown =
        test.timestamp ? shownTime(static_cast<double>(*test.timestamp)) : std::nullopt;
    return shown ? QDateTime::fromMSecsSinceEpoch(*shown).toString(u"yyyy-MM-dd hh:mm"_s)
                 : Texts::na();
}

QString ShareText::rate(const FinishedTest::Number &bitsPerSecond)
{
    return bitsPerSecond && *bitsPerSecond > 0
               ? u"%1 kBit/s"_s.arg((*bitsPerSecond + bitPerKilobit / 2) / bitPerKilobit)
               : Texts::na();
}

QString ShareText::roundTrip(const FinishedTest &test)
{
    return test.rtt.average && *test.rtt.average > 0
               ? u"%1 ms"_s.arg(*test.rtt.average / nsPerMillisecond)
               : Texts::na();
}

QString ShareText::where(const FinishedTest &test)
{
    QStringList parts;
    if (test.location && !Utils::trLocationShort(*test.location).isEmpty()) {
        parts.append(Utils::trLocationShort(*test.location));
    }
    if (test.network.type) {
        parts.append(*test.network.type);
    }
    if (test.server.name || test.server.host) {
        parts.append(test.server.name ? *test.server.name : *test.server.host);
    }
    return parts.join(u" · "_s);
}

QString ShareText::of(const FinishedTest &test)
{
    return QStringList{Texts::title(name(test), time(test)), where(test),
                       Texts::download(rate(test.download.averageRate)),
                       Texts::upload(rate(test.uploadRate())), Texts::rtt(roundTrip(test))}
        .join(u'\n');
}

} // namespace velometer
