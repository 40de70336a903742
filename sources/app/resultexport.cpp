#include "app/resultexport.h"

#include "db/databasemanager.h"
#include "utils/utils.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Half a frame: the list goes on to follow the finger.
constexpr qint64 stepMs = 8;
constexpr int mostCopies = 10'000;

} // namespace

ResultExport::ResultExport(QObject *parent)
    : QObject(parent)
{
    stepTimer.setSingleShot(true);
    connect(&stepTimer, &QTimer::timeout, this, &ResultExport::step);
}

QString ResultExport::folder()
{
    for (const auto place : {QStandardPaths::DocumentsLocation, QStandardPaths::DownloadLocation,
                             QStandardPaths::HomeLocation}) {
        const QString path = QStandardPaths::writableLocation(place);
        if (!path.isEmpty() && QDir().mkpath(path) && QFileInfo(path).isWritable()) {
            return path;
        }
    }
    return QDir::currentPath();
}

QString ResultExport::freeName(const QString &stem, const QString &suffix)
{
    const QDir place(folder());
    QString name;
    for (int number = 1; number <= mostCopies; ++number) {
        const QString copy = number == 1 ? QString() : u"-%1"_s.arg(number);
        name = place.filePath(u"%1%2.%3"_s.arg(stem, copy, suffix));
        if (!QFileInfo::exists(name)) {
            break;
        }
    }
    return name;
}

QString ResultExport::suffixOf(ExportFormat::Kind kind)
{
    switch (kind) {
    case ExportFormat::Kind::Csv: return u"csv"_s;
    case ExportFormat::Kind::Json: break;
    case ExportFormat::Kind::GeoJson: return u"geojson"_s;
    case ExportFormat::Kind::Gpx: return u"gpx"_s;
    }
    return u"json"_s;
}

void ResultExport::start(ExportFormat::Kind exported, const QList<qulonglong> &ids)
{
    cancel();
    kind = exported;
    left = ids;
    const QString day =
        QDateTime::fromMSecsSinceEpoch(Utils::getTimeInMs()).toString(u"yyyy-MM-dd"_s);
    file = std::make_unique<QSaveFile>(freeName(u"velometer-%1"_s.arg(day), suffixOf(kind)));
    if (file->open(QIODevice::WriteOnly)) {
        file->write(ExportFormat::begin(kind));
    }
    stepTimer.start(0);
}

void ResultExport::cancel()
{
    stepTimer.stop();
    file.reset(); // without a commit there is none
    next = 0;
    written = 0;
}

void ResultExport::step()
{
    QElapsedTimer spent;
    spent.start();
    while (next < left.size() && !spent.hasExpired(stepMs)) {
        const auto row = gDB->getResultsById(left.at(next++));
        if (row) {
            file->write(ExportFormat::piece(kind, gDB->getTest(*row), written == 0));
            ++written;
        }
    }
    if (file->isOpen() && next < left.size()) {
        stepTimer.start(0);
        Q_EMIT progressed(static_cast<int>(next), static_cast<int>(left.size()));
        return;
    }
    if (file->isOpen()) {
        file->write(ExportFormat::end(kind));
    }
    const QString name = file->fileName();
    const bool stored = file->isOpen() && file->commit();
    const QString reason = file->errorString();
    const int count = written;
    cancel();
    if (stored) {
        Q_EMIT done(name, count);
    } else {
        Q_EMIT failed(name, reason);
    }
}

} // namespace velometer
