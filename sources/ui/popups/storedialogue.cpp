#include "ui/popups/storedialogue.h"

#include "db/databasemanager.h"
#include "ui/popups/messagepopup.h"
#include "ui/popups/popuplayer.h"

#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

/// Lets the waiting popup be painted before the work begins.
constexpr auto paintTime = 100ms;

} // namespace

StoreDialogue::StoreDialogue(PopupLayer &popupLayer, QWidget *window)
    : QObject(window)
    , layer(popupLayer)
    , waitingPopup(new MessagePopup(window))
    , questionPopup(new MessagePopup(window))
{
    waitingPopup->setObjectName(u"WaitingPopup"_s);
    waitingPopup->hide();
    questionPopup->setObjectName(u"ClearPopup"_s);
    questionPopup->hide();
    connect(questionPopup, &MessagePopup::accepted, this, &StoreDialogue::empty);
    connect(questionPopup, &PopupBase::cancelled, this, [this] { layer.close(questionPopup); });
}

void StoreDialogue::tellNotOpened()
{
    Q_EMIT notice(tr("ErrorTitle"),
                  tr("The results in %1 cannot be opened or written. Make room or correct the "
                     "rights of this folder, then start again.")
                      .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
}

void StoreDialogue::tellSetAside()
{
    const QString file = gDB->getAsideFile();
    if (!file.isEmpty()) {
        Q_EMIT notice(tr("Information"),
                      tr("The results of another version of this program are kept in %1.")
                          .arg(file.toHtmlEscaped()));
    }
}

void StoreDialogue::askToEmpty()
{
    const QString loss =
        tr("Stored tests that are deleted: %1. Reports that the service does not have yet: %2. The "
           "tests stay on the service. To keep a copy here, export them before: "
           "velometer-cli export --format csv")
            .arg(gDB->countResults())
            .arg(gDB->countUnsentXMLFiles());
    questionPopup->setMessage({tr("Clear Database"), loss, tr("Delete"), tr("Cancel")});
    layer.show(questionPopup);
}

void StoreDialogue::empty()
{
    waitingPopup->setMessage({tr("Please Wait"), tr("Database is beeing reseted..."), {}, {}});
    layer.show(waitingPopup);
    QTimer::singleShot(paintTime, this, &StoreDialogue::work);
}

void StoreDialogue::work()
{
    layer.close(waitingPopup);
    const bool done = gDB->resetDB();
    Q_EMIT emptied(done);
    if (done) {
        Q_EMIT notice(tr("Clear Database"), tr("Database has been reseted"));
    } else {
        Q_EMIT notice(tr("ErrorTitle"),
                      tr("Nothing was deleted: the results in %1 cannot be written at the moment. "
                         "Try again when no other program uses them.")
                          .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
    }
}

} // namespace velometer
