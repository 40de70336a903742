#pragma once

#include "app/resultexport.h"
#include "db/storewriter.h"
#include "ui/frame/choice.h"

#include <QList>
#include <QObject>

#include <functional>

namespace velometer {

class ChoicePopup;
class DetailsWindow;
class GeoMapTab;
class HistoryTab;
class MessagePopup;
class PopupLayer;
class ResultsTab;

/// What the user does with stored tests: exports, shares and deletes them, each after a question
/// that says how many they are, and with a word on what came of it. Also shows what a page lets the
/// user choose from. Main thread only.
class ResultActions : public QObject
{
    Q_OBJECT

public:
    /// @p layer is borrowed and outlives this; @p window is the parent. @p isTesting: nothing is
    /// deleted meanwhile.
    ResultActions(PopupLayer &layer, std::function<bool()> isTesting, QWidget *window);

    /// Does what these pages ask for; they live as long as this.
    void serve(ResultsTab &results, DetailsWindow &details, HistoryTab &history, GeoMapTab &map);

    /// Ignored while a pop-up is open, as everything that is asked for here.
    void ask(const Choice &choice);
    void exportTests(const QList<qulonglong> &ids);
    void shareTests(const QList<qulonglong> &ids);
    void deleteTests(const QList<qulonglong> &ids);

Q_SIGNALS:
    /// @p text is rich text.
    void notice(const QString &title, const QString &text);
    /// The chosen tests were dealt with, or are gone.
    void finished();
    void deleted();

private:
    void startExport(ExportFormat::Kind kind, const QList<qulonglong> &ids);
    void showProgress(int written, int of);
    void copyText(const QList<qulonglong> &ids);
    void savePicture(qulonglong id);
    void deletionAgreed();
    void deletionDone(bool done);
    void chosen(int index);

    PopupLayer &layer;
    const std::function<bool()> isTesting;
    ChoicePopup *choicePopup;
    MessagePopup *deletePopup;
    MessagePopup *waitingPopup;
    ResultExport files{this};
    StoreWriter writer{this};
    Choice asked;
    QList<qulonglong> doomed; ///< what the open question is about
};

} // namespace velometer
