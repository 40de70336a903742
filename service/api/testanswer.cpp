#include "api/testanswer.h"

#include "figures/jsonformat.h"

#include <QJsonArray>

#include <algorithm>
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
    return {{u"download"_s, QJsonObject{{u"bytes"_s, figure(sent)},
                                        {u"lasted_ms"_s, figure(lasted)},
                                        {u"avg_bps"_s, figure(Known::atLeast(1, rate))}}},
            {u"upload"_s, QJsonObject{{u"bytes"_s, figure(up ? Number(up->bytes) : Number())},
                                      {u"lasted_ms"_s, figure(up ? Number(up->lasted) : Number())},
                                      {u"min_bps"_s, figure(least)},
                                      {u"avg_bps"_s, figure(received)},
                                      {u"max_bps"_s, figure(most)}}},
            {u"agree_percent"_s,
             QJsonObject{{u"download"_s, figure(agreement(report.test.download.averageRate, rate))},
                         {u"upload"_s, figure(agreement(report.test.upload.averageRate,
                                                        received.value_or(0)))}}},
            {u"late"_s, stored.row.serviceLate}};
}

QJsonArray phases(const QList<ReportTest::Phase> &list, const View &view)
{
    QJsonArray array;
    for (const auto &phase : list) {
        const auto place = [&](const auto &value) {
            return view.positions ? figure(value) : QJsonValue(QJsonValue::Null);
        };
        array.append(QJsonObject{{u"phase"_s, phase.name},
                                 {u"time_ms"_s, figure(phase.time)},
                                 {u"latitude"_s, place(phase.latitude)},
                                 {u"longitude"_s, place(phase.longitude)},
                                 {u"cell"_s, place(phase.cell)},
                                 {u"mode"_s, phase.mode},
                                 {u"signal"_s, figure(phase.signal)},
                                 {u"gps_lock"_s, phase.hasLock}});
    }
    return array;
}

} // namespace

FinishedTest shown(FinishedTest test, const TestRow &row, const View &view)
{
    if (view.isShare) {
        test.userId.reset();
        test.device = {};
        test.tcp.publicIp.reset();
        test.tcp.deviceIp.reset();
        test.tcp.clientHostname.reset();
        if (!row.verified) {
            test.download = {};
            test.upload = {};
            test.serverMinimumRate.reset();
            test.serverAverageRate.reset();
            test.serverMaximumRate.reset();
        }
    }
    if (!view.positions) {
        // A cell, and the name of a WLAN, is a place as well.
        test.position = {};
        test.network.cell.reset();
        test.network.lac.reset();
        if (!ConnectionClasses::isMobile(row.type)) {
            test.network.name.reset();
        }
    }
    return test;
}

QJsonObject test(const ReportStore::StoredTest &stored, const View &view)
{
    const auto report = ReportTest::read(stored.document).value_or(ReportTest());
    const auto hidden = [&](const QString &text) {
        return view.isShare ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
    };
    ReportTest told = report;
    told.test = shown(report.test, stored.row, view);
    return {{u"id"_s, QString::number(stored.row.id)},
            {u"test"_s, JsonFormat::test(told.test)},
            {u"service"_s, service(stored, told)},
            {u"phases"_s, phases(report.phases, view)},
            {u"log"_s, hidden(report.log)},
            {u"note"_s, hidden(stored.row.note)},
            {u"verified"_s, stored.row.verified}};
}

} // namespace velometer::TestJson
