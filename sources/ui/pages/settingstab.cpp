#include "ui/pages/settingstab.h"

#include "data/databudget.h"
#include "data/delayplan.h"
#include "data/testservertable.h"
#include "ui/frame/tabplace.h"
#include "ui/pages/serverentrywidget.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/appearance.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_settingstab.h"

#include <QMouseEvent>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

SettingsTab::SettingsTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::SettingsTab>())
{
    ui->setupUi(this);
    fillFrame();
    initializeServerList();
    advmode = Utils::getSettingsValue(u"AdvMode"_s) == "set"_L1;
    showAdvMode();
    showLanguage();
    showData();
    showLook();
    dress();
}

SettingsTab::~SettingsTab() = default;

void SettingsTab::initializeServerList()
{
    // The scroller's filter comes first and lets nothing but taps through to this one.
    ui->scrollArea->viewport()->installEventFilter(this);
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
}

void SettingsTab::fillServerList()
{
    qDeleteAll(serverWidgets);
    serverWidgets.clear();
    QWidget *last = ui->buttonNewSeries;
    for (TestServer *server : table->servers()) {
        auto *entry = new ServerEntryWidget(ui->serverList, server);
        connect(entry, &ServerEntryWidget::chosen, this, &SettingsTab::selectServer);
        ui->serverListLayout->addWidget(entry);
        serverWidgets.append(entry);
        auto *stop = entry->findChild<QPushButton *>();
        TabPlace::putBehind(std::exchange(last, stop), stop);
    }
    if (!serverWidgets.isEmpty()) {
        serverWidgets.last()->setLastEntry(true);
    }
}

void SettingsTab::setServers(const TestServerTable *servers, const TestServer *current)
{
    if (table != servers) {
        table = servers;
        fillServerList();
    }
    markServer(current ? table->find(current->getHostname(), current->getPort()) : nullptr);
}

bool SettingsTab::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonRelease) {
        return TabBase::eventFilter(object, event);
    }
    const auto *mouse = static_cast<QMouseEvent *>(event);
    const QPoint point = ui->serverList->mapFrom(
        ui->scrollAreaWidgetContents, ui->scrollAreaWidgetContents->mapFrom(
                                          ui->scrollArea->viewport(), mouse->position().toPoint()));
    for (ServerEntryWidget *entry : std::as_const(serverWidgets)) {
        if (entry->geometry().contains(point)) {
            entry->tap();
            return true;
        }
    }
    return false;
}

void SettingsTab::updateSettings()
{
    showData();
    showLook();
}

void SettingsTab::setRunning(const QString &text)
{
    TabBase::setRunning(text);
    const bool busy = !text.isEmpty();
    for (const auto &[button, why] : {std::pair{ui->buttonNewSeries, ui->labelNoSeries},
                                      std::pair{ui->buttonClearDatabase, ui->labelNoClearing}}) {
        button->setEnabled(!busy);
        button->setAccessibleDescription(busy ? why->text() : QString());
        why->setVisible(busy);
    }
}

void SettingsTab::selectServer(TestServer *server)
{
    markServer(server);
    Q_EMIT serverChosen(server);
}

void SettingsTab::markServer(const TestServer *server)
{
    for (ServerEntryWidget *entry : std::as_const(serverWidgets)) {
        entry->setServerEnabled(entry->getServer() == server);
    }
}

void SettingsTab::retranslate()
{
    ui->retranslateUi(this);
    for (ServerEntryWidget *entry : std::as_const(serverWidgets)) {
        entry->retranslate();
    }
    showLanguage();
    showData();
    showLook();
}

void SettingsTab::dress()
{
    const Theme::Colours &colours = Theme::colours();
    for (QPushButton *each : {ui->buttonAdvMode, ui->buttonLargerText, ui->buttonUnderLoad}) {
        each->setIcon(Theme::checkIcon(u"checkboxblack"_s, colours.quiet, colours.accent));
    }
}

// Anew each time, in the language of the moment.
void SettingsTab::showLook()
{
    ui->comboBoxLook->clear();
    const std::pair<QString, Appearance::Choice> looks[] = {
        {tr("As the device"), Appearance::Choice::Auto},
        {tr("Dark"), Appearance::Choice::Dark},
        {tr("Light"), Appearance::Choice::Light},
        {tr("Classic"), Appearance::Choice::Given},
    };
    for (const auto &[text, choice] : looks) {
        ui->comboBoxLook->addChoice(text, Appearance::nameOf(choice));
    }
    ui->comboBoxLook->setCurrentIndex(
        ui->comboBoxLook->findData(Appearance::nameOf(Appearance::remembered())));
    ui->buttonLargerText->setChecked(Appearance::isTextLarger());
}

void SettingsTab::showAdvMode()
{
    ui->buttonAdvMode->setChecked(advmode);
}

void SettingsTab::showLanguage()
{
    const bool german = Translations::language() == "de"_L1;
    (german ? ui->buttonGerman : ui->buttonEnglish)->setChecked(true);
}

// Anew each time: the language may be another one, and the value one from elsewhere.
void SettingsTab::showData()
{
    QList<qint64> choices{10'000'000, 50'000'000, 100'000'000, 500'000'000};
    const auto chosen = DataBudget::remembered().bytes();
    if (chosen && !choices.contains(*chosen)) {
        choices.insert(std::lower_bound(choices.begin(), choices.end(), *chosen), *chosen);
    }
    ui->comboBoxBudget->clear();
    ui->comboBoxBudget->addChoice(tr("No limit"), QVariant());
    for (const qint64 bytes : std::as_const(choices)) {
        ui->comboBoxBudget->addChoice(DataBudget(bytes).text(), bytes);
    }
    ui->comboBoxBudget->setCurrentIndex(chosen ? static_cast<int>(choices.indexOf(*chosen)) + 1
                                               : 0);
    ui->buttonUnderLoad->setChecked(DelayPlan::remembered().underLoad);
}

void SettingsTab::on_comboBoxBudget_activated(int index)
{
    const QVariant bytes = ui->comboBoxBudget->itemData(index);
    (bytes.isValid() ? DataBudget(bytes.toLongLong()) : DataBudget()).remember();
}

void SettingsTab::on_buttonUnderLoad_clicked()
{
    DelayPlan plan = DelayPlan::remembered();
    plan.underLoad = ui->buttonUnderLoad->isChecked();
    plan.remember();
}

void SettingsTab::on_comboBoxLook_activated(int index)
{
    Q_EMIT lookChosen(ui->comboBoxLook->itemData(index).toString());
}

void SettingsTab::on_buttonLargerText_clicked()
{
    Q_EMIT textSizeChosen(ui->buttonLargerText->isChecked());
}

void SettingsTab::on_buttonNewSeries_clicked()
{
    Q_EMIT newSeriesClicked();
}

void SettingsTab::on_buttonClearDatabase_clicked()
{
    Q_EMIT clearDatabaseClicked();
}

void SettingsTab::on_buttonAdvMode_clicked()
{
    advmode = !advmode;
    showAdvMode();
    Utils::setSettingsValue(u"AdvMode"_s, advmode ? u"set"_s : u"notset"_s);
    Q_EMIT seriesModeChosen(advmode);
}

void SettingsTab::on_buttonGerman_clicked()
{
    Q_EMIT languageChosen(u"de"_s);
}

void SettingsTab::on_buttonEnglish_clicked()
{
    Q_EMIT languageChosen(u"en"_s);
}

} // namespace velometer
