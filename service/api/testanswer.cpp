#include "api/testanswer.h"

#include "api/visible.h"
#include "figures/jsonformat.h"
#include "figures/loadwords.h"
#include "net/kernelfacts.h"

#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer::TestJson {

namespace {

template <typename Value>
QJsonValue figure(const std::optional<Value> &value)
{
    return value ? QJsonValue(*value) : QJsonValue(QJsonValue::Null);
}

/// How much of the greater rate the smaller one is, in whole per cent.
std::optional<qint64> agreement(const std::optional<qint64> &device, qint64 service)
{
    const qint64 one = device.value_or(0);
    const qint64 other = service;
    if (one <= 0 || other <= 0) {
        return std::nullopt;
    }
    return std::llround(100.0 * static_cast<double>(std::min(one, other)) /
                        static_cast<double>(std::max(one, other)));
}

QJsonValue figure(const KernelSample::Number &value)
{
    return value ? QJsonValue(qint64(*value)) : QJsonValue(QJsonValue::Null);
}

QJsonValue nanoseconds(const KernelSample::Number &microseconds)
{
    return microseconds ? QJsonValue(qint64(*microseconds * 1000)) : QJsonValue(QJsonValue::Null);
}

/// What the kernel told while the stream ran.
QJsonValue kernel(const std::optional<StreamRecord> &stream)
{
    const auto facts = stream ? KernelFacts::parse(stream->kernel.toStdString()) : std::nullopt;
    if (!facts) {
        return QJsonValue::Null;
    }
    constexpr std::array<QLatin1StringView, 5> limits{""_L1, "window"_L1, "receiver"_L1,
                                                      "buffer"_L1, "application"_L1};
    QJsonArray times;
    QJsonArray rtts;
    QJsonArray rates;
    QJsonArray retransmitted;
    QJsonArray limited;
    for (const KernelSample &sample : facts->samples) {
        times.append(qint64(sample.time));
        rtts.append(nanoseconds(sample.rtt));
        rates.append(figure(sample.rate));
        retransmitted.append(figure(sample.retransmitted));
        const auto limit = limits.at(static_cast<std::size_t>(sample.limit));
        limited.append(limit.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(limit));
    }
    return QJsonObject{{u"congestion"_s, QString::fromStdString(facts->congestion)},
                       {u"rtt_min_ns"_s, nanoseconds(facts->leastRtt())},
                       {u"rtt_median_ns"_s, nanoseconds(facts->rttOf(0.5))},
                       {u"rtt_p95_ns"_s, nanoseconds(facts->rttOf(0.95))},
                       {u"retransmitted_bytes"_s, figure(facts->retransmitted())},
                       {u"samples"_s, QJsonObject{{u"time_ms"_s, times},
                                                  {u"rtt_ns"_s, rtts},
                                                  {u"rate_bps"_s, rates},
                                                  {u"retransmitted_bytes"_s, retransmitted},
                                                  {u"limit"_s, limited}}}};
}

/// The service's own view. The record of a stream is more exact than the report's text, but a
/// report from before streams were recorded has that alone.
QJsonObject service(const ReportStore::StoredTest &stored, const ReportTest &report)
{
    using Number = std::optional<qint64>;
    const auto &down = stored.download;
    const auto &up = stored.upload;
    const Number sent = down ? Number(down->bytes) : report.sentBytes;
    const Number lasted = down ? Number(down->lasted) : report.sentMs;
    qint64 rate = 0;
    if (down) {
        rate = down->avg;
    } else if (sent && lasted) {
        rate = std::llround(static_cast<double>(*sent) * 8000.0 /
                            static_cast<double>(std::max(*lasted, qint64{1})));
    }
    const Number received = up ? Number(up->avg) : report.receivedAvg;
    const Number least = up ? Number(up->min) : report.receivedMin;
    const Number most = up ? Number(up->max) : report.receivedMax;
    QJsonObject download{{u"bytes"_s, figure(sent)},
                         {u"lasted_ms"_s, figure(lasted)},
                         {u"avg_bps"_s, figure(Known::atLeast(1, rate))},
                         {u"kernel"_s, kernel(down)}};
    QJsonObject upload{{u"bytes"_s, figure(up ? Number(up->bytes) : Number())},
                       {u"lasted_ms"_s, figure(up ? Number(up->lasted) : Number())},
                       {u"min_bps"_s, figure(least)},
                       {u"avg_bps"_s, figure(received)},
                       {u"max_bps"_s, figure(most)},
                       {u"kernel"_s, kernel(up)}};
    return {{u"download"_s, download},
            {u"upload"_s, upload},
            {u"agree_percent"_s,
             QJsonObject{{u"download"_s, figure(agreement(report.test.download.averageRate, rate))},
                         {u"upload"_s, figure(agreement(report.test.upload.averageRate,
                                                        received.value_or(0)))}}},
            {u"late"_s, stored.row.serviceLate}};
}

/// What suffers, by the rule of the client's sentences.
QJsonObject underLoad(const FinishedTest &test)
{
    constexpr std::array<QLatin1StringView, 4> harms{"none"_L1, "games"_L1, "calls_and_games"_L1,
                                                     "everything"_L1};
    QJsonObject object{{u"download"_s, QJsonValue::Null}, {u"upload"_s, QJsonValue::Null}};
    for (const auto &verdict : LoadWords::verdicts(test)) {
        object.insert(verdict.ofUpload ? "upload"_L1 : "download"_L1,
                      QJsonObject{{u"suffers"_s, harms.at(static_cast<std::size_t>(verdict.harm))},
                                  {u"added_ns"_s, verdict.added}});
    }
    return object;
}

QJsonArray phases(const QList<ReportTest::Phase> &list)
{
    QJsonArray array;
    for (const auto &phase : list) {
        array.append(QJsonObject{{u"phase"_s, phase.name},
                                 {u"time_ms"_s, figure(phase.time)},
                                 {u"latitude"_s, figure(phase.latitude)},
                                 {u"longitude"_s, figure(phase.longitude)},
                                 {u"cell"_s, figure(phase.cell)},
                                 {u"mode"_s, phase.mode},
                                 {u"signal"_s, figure(phase.signal)},
                                 {u"gps_lock"_s, phase.hasLock}});
    }
    return array;
}

} // namespace

QJsonObject test(const ReportStore::StoredTest &stored, const Access &access)
{
    const auto report = Visible::report(ReportTest::read(stored.document).value_or(ReportTest()),
                                        stored.row, access);
    const TestRow row = Visible::row(stored.row, access);
    const auto text = [](const QString &words) {
        return words.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(words);
    };
    return {{u"id"_s, QString::number(row.id)},
            {u"test"_s, JsonFormat::test(report.test)},
            {u"service"_s, service(stored, report)},
            {u"under_load"_s, underLoad(report.test)},
            {u"phases"_s, phases(report.phases)},
            {u"log"_s, text(report.log)},
            {u"note"_s, text(row.note)},
            {u"verified"_s, row.verified},
            {u"contradicting"_s, row.contradicting}};
}

} // namespace velometer::TestJson
