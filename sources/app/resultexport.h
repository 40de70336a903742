#pragma once

#include "figures/exportformat.h"

#include <QList>
#include <QObject>
#include <QSaveFile>
#include <QString>
#include <QTimer>

#include <memory>

namespace velometer {

/// Writes stored tests into a file of the user, the same documents that velometer-cli exports. A
/// few tests at a time between other events, so that nothing waits for it; the file has its name
/// once it is complete. gDB is open. One export at a time. Main thread only.
class ResultExport : public QObject
{
    Q_OBJECT

public:
    explicit ResultExport(QObject *parent);

    /// Where files for the user go: his documents, else his downloads, else his home. Made when it
    /// is not there.
    static QString folder();
    /// A name in folder() that no file has: "velometer-2026-11-23.csv", the next one with "-2".
    static QString freeName(const QString &stem, const QString &suffix);
    /// "csv", "json", "geojson", "gpx".
    static QString suffixOf(ExportFormat::Kind kind);

    /// Writes the tests with these row ids in this order; one that is no longer stored is left out.
    /// Ends in one done() or failed(), later, unless it is cancelled. One that runs is dropped.
    void start(ExportFormat::Kind kind, const QList<qulonglong> &ids);
    /// Leaves no file and says nothing.
    void cancel();

Q_SIGNALS:
    void progressed(int written, int of);
    void done(const QString &file, int written);
    /// @p reason is the system's.
    void failed(const QString &file, const QString &reason);

private:
    void step();

    ExportFormat::Kind kind{};
    QList<qulonglong> left;
    qsizetype next = 0;
    int written = 0;
    std::unique_ptr<QSaveFile> file; ///< null when nothing is written
    QTimer stepTimer;
};

} // namespace velometer
