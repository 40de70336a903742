#pragma once

#include "data/result.h"
#include "data/surroundings.h"
#include "data/testresultlog.h"
#include "data/testresults.h"
#include "support/fakeclock.h"
#include "support/fakecontext.h"

#include <cmath>

namespace velometer {

/// A finished test that has everything, no figure twice, made of a record and its surroundings as
/// the controller makes it.
class WholeTest
{
public:
    WholeTest()
    {
        const FakeClock clock; // the log entry's
        setUpContext();
        record.setTimestamp(1'700'000'000'123);
        record.getInitialValues()->remoteInitialValuesLoaded(QStringLiteral(
            "HTTP noise Timestamp:3;SACK:2;MaxRwinRcvd:65535;WinScaleRcvd:7;MSS:1460;\r\n"
            "Client-Hostname:o'client\x07.example;Server-IP:192.0.2.1;Remote-IP:192.0.2.2;"
            "Local-IP:/10.0.0.3"));
        record.setDataBudget(DataBudget(60'000'000));

        auto *download = new Result(8081, 7, 7'100'000'000, 33'725'000,
                                    intervals(36'900'000, 150'000), intervals(480'000, 1),
                                    210'000'001, 31'000'002, 62'000'003, Result::Download, &record);
        download->setAllBytesTransfered(38'412'000);
        record.setDownloadResult(download);
        auto *upload = new Result(8082, 7, 7'200'000'000, 13'500'000,
                                  intervals(13'900'000, 150'000), intervals(180'000, 1),
                                  220'000'004, 32'000'005, 63'000'006, Result::Upload, &record);
        upload->setAllBytesTransfered(14'980'000);
        upload->setCutByBudget(true);
        upload->setCongestionControl(QStringLiteral("bbr"));
        download->setLoadDelays({Delays{41'000'000, std::nullopt, 45'000'000},
                                 QList<qint64>{200'000'001, 400'000'002, 600'000'003},
                                 QStringLiteral("reno")},
                                636);
        upload->setLoadDelays({Delays{361'000'000, 363'000'000},
                               QList<qint64>{200'000'004, 400'000'005}, QStringLiteral("bbr")},
                              424);
        upload->setConfirmedBytes(QList<qint64>(70, 170'000));
        record.setUploadResult(upload);
        auto *extraDownload = new Result(&record);
        extraDownload->setLoadDelays(
            {Delays{151'000'000}, QList<qint64>{200'000'006}, QStringLiteral("cubic")}, 212);
        record.setExtraDownloadResult(extraDownload);
        auto *extraUpload = new Result(&record);
        extraUpload->setLoadDelays(
            {Delays{850'000'000}, QList<qint64>{200'000'007}, QStringLiteral("vegas")}, 212);
        record.setExtraUploadResult(extraUpload);
        record.setIdleDelays({31'400'000, std::nullopt, 29'300'000, 30'100'000});
        record.setServerSideUploadSpeeds(14'100'000, 14'200'000, 14'300'000);
        record.setRTTResult(new Result(8083, {{1, 31'400'000}, {3, 29'300'000}, {2, -1}}, &record));

        record.setDownloadLocationStart(location(0));
        record.setDownloadLocationEnd(location(1));
        record.setUploadLocationStart(location(2));
        record.setUploadLocationEnd(location(3));
        record.setRttLocationStart(location(4));
        record.setRttLocationEnd(location(5));
        record.setAllLocations({{1'700'000'001'000, 8.51, 47.25, 407, 5, 8, true},
                                {1'700'000'002'000, 8.52, 47.26, -1, 50, -1, false}});
        record.setUserRating(2.5F);
        record.calculateAdditionalValues();
        auto *entry = new TestResultLog(context.network.get(), context.location.get(),
                                        QStringLiteral("RttEnd"), &context, &record);
        entry->fillInGPSAndNetworkData();
        record.addTestResultLog(entry);
    }

    FinishedTest value() const
    {
        FinishedTest test = record.finished(Surroundings::of(context));
        test.device.platform = QStringLiteral("Platform");           // names the version of Qt
        test.movement.distance = std::round(test.movement.distance); // digits of the sine
        test.network.cellularSignal = 55;                            // as if a WLAN were in use
        test.report = {false, 5, 6};
        return test;
    }

    FakeContext context;
    TestResults record{13, 4, nullptr};

private:
    void setUpContext()
    {
        FakeNetwork &net = context.platform.network;
        net.mode = NetworkMode::Lte;
        net.links[NetworkMode::Lte].status = NetworkStatus::Roaming;
        net.links[NetworkMode::Lte].signal = 71;
        net.links[NetworkMode::Lte].name =
            QStringLiteral("=Z\u00fcrich \"Net\"\x1b[31m, 'A' ]]> \u00c4");
        net.mcc = QStringLiteral("228");
        net.mnc = QStringLiteral("01");
        net.homeMcc = QStringLiteral("229");
        net.homeMnc = QStringLiteral("02");
        net.cell = 28'394'241;
        net.lac = 4711;
        net.radio = {-97.5, -11, 8.25, QStringLiteral("B20")};
        context.platform.device.manufacturer = QStringLiteral("Bob's <Works>");
        context.network = std::make_unique<NetworkInfoHelper>(context.platform, nullptr);
        context.device = std::make_unique<DeviceInfoHelper>(context.platform, nullptr);
        context.server = std::make_unique<TestServer>(
            QStringLiteral("Server <1>"), QStringLiteral("speed.example"), 8080, QString(),
            QStringLiteral("City"), QStringLiteral("State"), QStringLiteral("CH"), nullptr);
        context.schedule = QStringLiteral("2,20,60");
        QGeoPositionInfo fix({47.226, -8.818, 412}, QDateTime::fromSecsSinceEpoch(1'700'000'000));
        fix.setAttribute(QGeoPositionInfo::HorizontalAccuracy, 9);
        fix.setAttribute(QGeoPositionInfo::VerticalAccuracy, 14.5);
        context.platform.position.emitPosition(fix);
    }

    static IntervalTable intervals(qint64 first, qint64 step)
    {
        IntervalTable table;
        for (int i = 0; i < 14; ++i) {
            table.insert(i, first + i * step);
        }
        return table;
    }

    /// 200 m and 12 s further north each.
    static TestResults::Location location(int number)
    {
        auto place = std::make_unique<DoubleLocation>();
        place->setLatitude(47 + number * 0.0018);
        place->setLongitude(8.5);
        place->setAltitude(400 + number);
        place->setAccuracyVert(20 + 2 * number);
        place->setAccuracyHor(23 + 2 * number);
        place->setTime(1'700'000'000'000 + number * 12'200);
        return place;
    }
};

} // namespace velometer
