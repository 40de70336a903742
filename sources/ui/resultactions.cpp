#include "ui/resultactions.h"

#include "app/sharetext.h"
#include "db/databasemanager.h"
#include "ui/details/detailswindow.h"
#include "ui/details/resultcard.h"
#include "ui/map/geomaptab.h"
#include "ui/pages/historytab.h"
#include "ui/pages/resultstab.h"
#include "ui/popups/choicepopup.h"
#include "ui/popups/messagepopup.h"
#include "ui/popups/popuplayer.h"
#include "utils/translations.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>
#include <QSaveFile>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Lets the waiting pop-up be painted before the work begins.
constexpr std::chrono::milliseconds deletionPaintTime{100};
/// A message holds no more.
constexpr qsizetype mostCopied = 1000;

} // namespace

ResultActions::ResultActions(PopupLayer &popupLayer, std::function<bool()> testing, QWidget *window)
    : QObject(window)
    , layer(popupLayer)
    , isTesting(std::move(testing))
    , choicePopup(new ChoicePopup(window))
    , deletePopup(new MessagePopup(window))
    , waitingPopup(new MessagePopup(window))
{
    choicePopup->setObjectName(u"ChoicePopup"_s);
    choicePopup->hide();
    connect(choicePopup, &ChoicePopup::chosen, this, &ResultActions::chosen);
    connect(choicePopup, &PopupBase::cancelled, this, [this] { layer.close(choicePopup); });
    deletePopup->setObjectName(u"DeletePopup"_s);
    deletePopup->hide();
    connect(deletePopup, &MessagePopup::accepted, this, &ResultActions::deletionAgreed);
    connect(deletePopup, &PopupBase::cancelled, this, [this] { layer.close(deletePopup); });
    waitingPopup->setObjectName(u"ProgressPopup"_s);
    waitingPopup->hide();
    connect(waitingPopup, &PopupBase::cancelled, this, [this] {
        files.cancel();
        layer.close(waitingPopup);
    });
    connect(&files, &ResultExport::progressed, this, &ResultActions::showProgress);
    connect(&files, &ResultExport::done, this, [this](const QString &file, int written) {
        layer.close(waitingPopup);
        Q_EMIT finished();
        Q_EMIT notice(tr("Export"), tr("%n test(s) written to:", nullptr, written) + "<br>"_L1 +
                                        file.toHtmlEscaped());
    });
    connect(
        &files, &ResultExport::failed, this, [this](const QString &file, const QString &reason) {
            layer.close(waitingPopup);
            Q_EMIT notice(
                tr("ErrorTitle"),
                tr("%1 cannot be written: %2").arg(file.toHtmlEscaped(), reason.toHtmlEscaped()));
        });
}

void ResultActions::serve(ResultsTab &results, DetailsWindow &details, HistoryTab &history,
                          GeoMapTab &map)
{
    connect(this, &ResultActions::finished, &results, &ResultsTab::stopSelecting);
    connect(this, &ResultActions::deleted, &results, &ResultsTab::updateResults);
    connect(this, &ResultActions::deleted, &map, &GeoMapTab::clearMarkers);
    connect(&results, &ResultsTab::choiceAsked, this, &ResultActions::ask);
    connect(&results, &ResultsTab::exportAsked, this, &ResultActions::exportTests);
    connect(&results, &ResultsTab::shareAsked, this, &ResultActions::shareTests);
    connect(&results, &ResultsTab::deleteAsked, this, &ResultActions::deleteTests);
    connect(&details, &DetailsWindow::shareAsked, this, &ResultActions::shareTests);
    connect(&history, &HistoryTab::choiceAsked, this, &ResultActions::ask);
    details.setNeighbours(
        [&results](qulonglong id, int step) { return results.neighbour(id, step); });
}

// ---- Choosing

void ResultActions::ask(const Choice &choice)
{
    if (layer.isOpen()) {
        return;
    }
    asked = choice;
    choicePopup->setChoice(choice);
    layer.show(choicePopup);
}

void ResultActions::chosen(int index)
{
    // What was chosen may ask the next question.
    layer.close(choicePopup);
    const auto act = std::exchange(asked.chosen, nullptr);
    if (act) {
        act(index);
    }
}

// ---- Export

void ResultActions::exportTests(const QList<qulonglong> &ids)
{
    ask({.title = tr("Export %n test(s) as", nullptr, static_cast<int>(ids.size())),
         .options = {tr("CSV, for spreadsheets"), tr("JSON, one test a line"),
                     tr("GeoJSON, for maps"), tr("GPX, for navigation devices")},
         .chosen = [this, ids](int index) {
             constexpr ExportFormat::Kind kinds[] = {
                 ExportFormat::Kind::Csv, ExportFormat::Kind::Json, ExportFormat::Kind::GeoJson,
                 ExportFormat::Kind::Gpx};
             startExport(kinds[index], ids);
         }});
}

void ResultActions::startExport(ExportFormat::Kind kind, const QList<qulonglong> &ids)
{
    files.start(kind, ids);
}

void ResultActions::showProgress(int written, int of)
{
    const QLocale locale(Translations::language());
    waitingPopup->setMessage(
        {tr("Export"),
         tr("%1 of %2 tests").arg(locale.toString(written), locale.toString(of)),
         {},
         tr("Cancel")});
    if (!waitingPopup->isVisible()) {
        layer.show(waitingPopup);
    }
}

// ---- Share

void ResultActions::shareTests(const QList<qulonglong> &ids)
{
    if (ids.isEmpty()) {
        return;
    }
    Choice choice{.title = tr("Share %n test(s)", nullptr, static_cast<int>(ids.size())),
                  .options = {tr("Copy text"), tr("Save JSON")},
                  .chosen = {}};
    if (ids.size() == 1) {
        choice.options.append(tr("Save picture"));
    }
    choice.chosen = [this, ids](int index) {
        switch (index) {
        case 0: return copyText(ids);
        case 1: return startExport(ExportFormat::Kind::Json, ids);
        default: return savePicture(ids.first());
        }
    };
    ask(choice);
}

void ResultActions::copyText(const QList<qulonglong> &ids)
{
    QStringList texts;
    for (const qulonglong id : ids.first(std::min(ids.size(), mostCopied))) {
        if (const auto row = gDB->getResultsById(id)) {
            texts.append(ShareText::of(gDB->getTest(*row)));
        }
    }
    QGuiApplication::clipboard()->setText(texts.join("\n\n"_L1));
    Q_EMIT finished();
    Q_EMIT notice(tr("Share"), tr("The text of %n test(s) is on the clipboard: paste it where you "
                                  "want it.",
                                  nullptr, static_cast<int>(texts.size())));
}

void ResultActions::savePicture(qulonglong id)
{
    const auto row = gDB->getResultsById(id);
    if (!row) {
        return;
    }
    const FinishedTest test = gDB->getTest(*row);
    const QString stem = u"velometer-%1-%2"_s.arg(row->seriesId).arg(row->testId);
    QSaveFile file(ResultExport::freeName(stem, u"png"_s));
    const bool written = file.open(QIODevice::WriteOnly) &&
                         ResultCard::picture(test).save(&file, "PNG") && file.commit();
    if (written) {
        Q_EMIT finished();
        Q_EMIT notice(tr("Share"),
                      tr("The picture is in:") + "<br>"_L1 + file.fileName().toHtmlEscaped());
    } else {
        Q_EMIT notice(tr("ErrorTitle"), tr("%1 cannot be written: %2")
                                            .arg(file.fileName().toHtmlEscaped(),
                                                 file.errorString().toHtmlEscaped()));
    }
}

// ---- Deletion

void ResultActions::deleteTests(const QList<qulonglong> &ids)
{
    if (layer.isOpen() || ids.isEmpty()) {
        return;
    }
    if (isTesting()) {
        Q_EMIT notice(tr("Delete"), tr("While a test or a series runs nothing can be deleted."));
        return;
    }
    doomed = ids;
    QString text = tr("%n test(s) on this device will be deleted. What the service has of them "
                      "stays there.",
                      nullptr, static_cast<int>(ids.size()));
    if (const int reports = gDB->countReportsOf(ids); reports > 0) {
        text += "<br><br>"_L1 + tr("%n report(s) of them wait to be sent; the service will never "
                                   "get them.",
                                   nullptr, reports);
    }
    deletePopup->setMessage({tr("Delete"), text, tr("Delete"), tr("Cancel")});
    layer.show(deletePopup);
}

void ResultActions::deletionAgreed()
{
    waitingPopup->setMessage({tr("Delete"), {}, {}, {}});
    layer.show(waitingPopup);
    QTimer::singleShot(deletionPaintTime, this, [this] {
        writer.write([this] { return gDB->deleteTests(doomed); },
                     [this](bool done) { deletionDone(done); });
    });
}

void ResultActions::deletionDone(bool done)
{
    layer.close(waitingPopup);
    const auto count = static_cast<int>(std::exchange(doomed, {}).size());
    if (done) {
        Q_EMIT deleted();
        Q_EMIT finished();
        Q_EMIT notice(tr("Delete"), tr("%n test(s) deleted.", nullptr, count));
    } else {
        Q_EMIT notice(tr("ErrorTitle"),
                      tr("Nothing was deleted: the results in %1 cannot be written at the moment. "
                         "Try again when no other program uses them.")
                          .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
    }
}

} // namespace velometer
