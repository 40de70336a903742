#pragma once

#include "data/xmldata.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace velometer {

class HttpGetRequester;
class StoreWriter;
class TestServer;

/// Brings reports to the service: submits that of the running test, keeps in the queue what was not
/// taken, and offers the queue once. One of these at a time; each ends in one call of its callback,
/// unless it is cancelled. The answers come through answered(), because the requester knows one
/// receiver only. Reports of the queue go to gDB, which is open; a store that is locked is waited
/// for. Main thread only.
class ReportDelivery : public QObject
{
    Q_OBJECT

public:
    /// What became of the reports since begin().
    struct Outcome
    {
        bool delivered = false;        ///< the service has taken this test's own report
        std::optional<qint64> queueId; ///< the queue's row where the own report waits
        bool answered = false;         ///< the service has answered, in whatever way
        bool storeFailed = false;      ///< a report could not be written to the queue
        int resent = 0;                ///< earlier reports delivered
        /// Of whom the service has deleted everything and takes no report any more.
        qlonglong goneUser = 0;
    };

    /// Both are borrowed and outlive this; a write of ours replaces what waits in @p storeWriter.
    ReportDelivery(HttpGetRequester &requester, StoreWriter &storeWriter, QObject *parent);
    ~ReportDelivery() override;

    /// Forgets the last test. Reports go to @p server (borrowed until the next begin()).
    void begin(const TestServer *server);

    /// The own report waits in @p row already; none: it could not be stored. @p kept: it waits
    /// beside the store with its test, and nobody puts it into the queue from here.
    void setOwn(std::optional<qint64> row, bool kept);
    /// Posts @p own, which waits in its row of the queue unless it could not be stored. When it is
    /// taken it leaves the queue before @p done is called; when it is not, it is there.
    void submit(const XMLData &own, std::function<void()> done);

    /// Puts @p own, a test's document, into the queue without offering it.
    void keep(const QString &own, std::function<void()> done);

    /// Offers every report of the queue once, in the order of its rows; not the own one that has
    /// just been refused.
    void walkQueue(std::function<void()> done);

    /// Ends what is under way without its callback. What is in the queue stays there: should the
    /// service have it already, it takes a report once.
    void cancel();

    /// The answer to the last request.
    void answered(bool ok, const QString &header, const QString &body);

    const Outcome &getOutcome() const { return outcome; }

private:
    void ownAnswered(bool taken);
    void queuedAnswered(bool taken);
    void forgetReport();
    void offerNext(qint64 afterRow);
    void settle(bool taken, const std::function<void(bool)> &settled);
    bool enqueue();
    void later(const std::function<void()> &step);
    void post();
    void finish();

    HttpGetRequester &requester;
    StoreWriter &writer;
    const TestServer *server = nullptr;
    XMLData report; ///< on its way to the service
    bool submitting = false;
    bool keptForLater = false;
    std::function<void()> whenDone;
    std::unique_ptr<QObject> scope; ///< context of the next step
    Outcome outcome;
};

} // namespace velometer
