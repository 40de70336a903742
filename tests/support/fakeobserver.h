#pragma once

#include "measurement/testobserver.h"

#include <QMap>
#include <QStringList>

#include <utility>

namespace velometer {

/// Keeps what a test reports, each call as one line.
class FakeObserver : public TestObserver
{
public:
    void setStatus(QString text) override { calls.append(QStringLiteral("status ") + text); }
    void setProgressMax(int /*max*/) override {}
    void setProgressValue(int value) override { progress.append(value); }
    void setProgress(int value, int /*max*/) override { progress.append(value); }
    void startTest() override { calls.append(QStringLiteral("start")); }
    void stopTest() override { calls.append(QStringLiteral("stop")); }
    void setDownloadText(QString text) override { calls.append(QStringLiteral("down ") + text); }
    void setUploadText(QString text) override { calls.append(QStringLiteral("up ") + text); }
    void setRTTText(QString text) override { calls.append(QStringLiteral("rtt ") + text); }
    void setDataTransferred(QString text) override { calls.append(QStringLiteral("data ") + text); }
    void setErrorText(QString text) override { calls.append(QStringLiteral("error ") + text); }
    void setNotice(QString text) override { calls.append(QStringLiteral("notice ") + text); }
    bool stopRequested() override { return stop; }
    void setInformation(QString server, QString seriesId, QString testId, QString position) override
    {
        information = {server, seriesId, testId, position};
    }

    void setThroughput(int resulttype, int interval, qint64 bytes) override
    {
        throughput[{resulttype, interval}] = bytes;
    }

    QStringList calls;
    QMap<std::pair<int, int>, qint64> throughput;
    QStringList information;
    QList<int> progress;
    bool stop = false;
};

} // namespace velometer
