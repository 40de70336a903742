#pragma once

#include <QString>
#include <QtGlobal>

namespace velometer {

/// How a test reports to whoever shows it. Called on the main thread, from the event loop.
class TestObserver
{
public:
    virtual ~TestObserver() = default;

    virtual void setStatus(QString text) = 0; ///< what runs now, translated
    virtual void setProgressMax(int max) = 0;
    virtual void setProgressValue(int value) = 0;
    virtual void setProgress(int value, int max) = 0;
    virtual void startTest() = 0;
    /// The test has ended: normally, after an error, or on request.
    virtual void stopTest() = 0;
    virtual void setDownloadText(QString text) = 0;
    virtual void setUploadText(QString text) = 0;
    virtual void setRTTText(QString text) = 0;
    virtual void setDataTransferred(QString text) = 0;
    virtual void setErrorText(QString text) = 0; ///< one sentence for the user, translated
    /// One sentence for the user about a test that goes on, translated.
    virtual void setNotice(QString text) { setStatus(text); }
    /// True when the user wants the test to end at the next step.
    virtual bool stopRequested() = 0;
    virtual void setInformation(QString server, QString seriesId, QString testId,
                                QString position) = 0;
    /// Bytes of one closed interval of 100 ms, by its number from 0 on; @p resulttype as in Result.
    /// Intervals in which nothing came are left out. For observers that draw.
    virtual void setThroughput(int resulttype, int interval, qint64 bytes)
    {
        Q_UNUSED(resulttype)
        Q_UNUSED(interval)
        Q_UNUSED(bytes)
    }
    /// One sample of the round-trip time, ns. For observers that draw.
    virtual void setRoundTrip(qint64 time) { Q_UNUSED(time) }

    /// The round-trip time of one connect, ns, that began @p at ns after the first data of the
    /// stream beside which it ran; @p resulttype as in Result. In the order in which they come
    /// back. For observers that draw.
    virtual void setDelayUnderLoad(int resulttype, qint64 at, qint64 delay)
    {
        Q_UNUSED(resulttype)
        Q_UNUSED(at)
        Q_UNUSED(delay)
    }

protected:
    TestObserver() = default;
    Q_DISABLE_COPY_MOVE(TestObserver)
};

} // namespace velometer
