#pragma once

#include "data/xmldata.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace velometer {

class HttpGetRequester;
class TestServer;

/// Brings reports to the service: submits that of the running test, keeps in the queue what was not
/// taken, and offers the queue once. One of these at a time; each ends in one call of its callback,
/// unless it is cancelled. The answers come through answered(), because the requester knows one
/// receiver only. Reports of the queue go to gDB, which is open. Main thread only.
class ReportDelivery : public QObject
{
    Q_OBJECT

public:
    /// What became of the reports since begin().
    struct Outcome
    {
        bool delivered = false;     ///< the service has taken this test's own report
        std::optional<int> queueId; ///< the queue's row where the own report waits
        bool answered = false;      ///< the service has answered, in whatever way
        bool storeFailed = false;   ///< a report could not be written to the queue
        int resent = 0;             ///< earlier reports delivered
    };

    /// The requester is borrowed and outlives this.
    ReportDelivery(HttpGetRequester &requester, QObject *parent);
    ~ReportDelivery() override;

    /// Forgets the last test. Reports go to @p server (borrowed until the next begin()).
    void begin(const TestServer *server);

    /// Posts @p own; when it is not taken it enters the queue before @p done is called.
    void submit(const QString &own, std::function<void()> done);

    /// Puts @p own into the queue without offering it.
    void keep(const QString &own);
    /// Cancels the submission and keeps the report: should the service have it already, it takes a
    /// report once.
    void keepSubmitted();

    /// Offers every report of the queue once, in the order of its rows; not the own one that has
    /// just been refused.
    void walkQueue(std::function<void()> done);

    /// Ends what is under way without its callback.
    void cancel();

    /// The answer to the last request.
    void answered(bool ok, const QString &header, const QString &body);

    const Outcome &getOutcome() const { return outcome; }

private:
    void ownAnswered(bool taken);
    void queuedAnswered(bool taken);
    void offerNext(int afterRow);
    void later(const std::function<void()> &step);
    void enqueue();
    void post();
    void finish();

    HttpGetRequester &requester;
    const TestServer *server = nullptr;
    XMLData report; ///< on its way to the service
    bool submitting = false;
    std::function<void()> whenDone;
    std::unique_ptr<QObject> scope; ///< context of the next step
    Outcome outcome;
};

} // namespace velometer
