#pragma once

#include "track/track.h"
#include "utils/clocktimer.h"

#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>

#include <optional>

class QNetworkReply;

namespace velometer {

/// Brings tracks that have ended to the user's page on the service, in parts: what the service has
/// acknowledged is not sent again, whatever ends the program meanwhile. Not while a test measures.
/// Main thread only, nothing blocks. gDB is open.
class TrackUpload : public QObject
{
    Q_OBJECT

public:
    explicit TrackUpload(QObject *parent);
    ~TrackUpload() override;

    struct Outcome
    {
        int sent = 0;    ///< tracks that the service has now
        int waiting = 0; ///< those that it has not
        bool answered = false;
        QString problem; ///< in one sentence, with what to do; empty when none waits
    };

    /// Sends the track @p row, without it all that wait. Ends in one ended(), perhaps at once.
    void start(std::optional<qulonglong> row = std::nullopt);
    /// Without ended(); what is on its way is sent again the next time.
    void cancel();
    bool isActive() const { return active; }

    /// How many that have ended are not at the service.
    static int countWaiting();

Q_SIGNALS:
    void ended(const velometer::TrackUpload::Outcome &outcome);

private:
    void sendPart();
    void answered();
    void taken(qint64 points);
    void finish(const QString &problem);

    QNetworkAccessManager network;
    QPointer<QNetworkReply> reply;
    QList<Track> queue;
    Outcome outcome;
    bool active = false;
    int parts = 0; ///< of the first in the queue that were sent
};

} // namespace velometer
