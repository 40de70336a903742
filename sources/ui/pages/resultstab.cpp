#include "ui/pages/resultstab.h"

#include "app/userpage.h"
#include "db/databasemanager.h"
#include "ui/pages/testresultwidget.h"
#include "ui/scrolling/qskineticscroller.h"
#include "utils/translations.h"

#include "ui_resultstab.h"

#include <chrono>

namespace velometer {

namespace {

/// Lets the page be painted before the work begins.
constexpr std::chrono::milliseconds busyPaintTime{100};
/// How late the list may be behind the store.
constexpr std::chrono::milliseconds followInterval{1000};

} // namespace

ResultsTab::ResultsTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::ResultsTab>())
{
    ui->setupUi(this);
    fillFrame();
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
    connect(scroller, &QsKineticScroller::coastingStopped, this, &TestResultWidget::forgetPress);
    connect(ui->scrollArea, &ResultList::selected, this, &ResultsTab::resultSelected);
    updateTimer.setSingleShot(true);
    updateTimer.setInterval(busyPaintTime);
    connect(&updateTimer, &QTimer::timeout, this, &ResultsTab::updateResultsImpl);
    followTimer.setInterval(followInterval);
    connect(&followTimer, &QTimer::timeout, this, &ResultsTab::follow);
    showList(false);
}

ResultsTab::~ResultsTab() = default;

void ResultsTab::retranslate()
{
    ui->retranslateUi(this);
    showTotals();
}

void ResultsTab::showEvent(QShowEvent *event)
{
    TabBase::showEvent(event);
    followTimer.start();
}

void ResultsTab::hideEvent(QHideEvent *event)
{
    TabBase::hideEvent(event);
    followTimer.stop();
}

void ResultsTab::follow()
{
    if (!updateTimer.isActive() && gDB->getResultsState() != listed) {
        updateResultsImpl();
    }
}

void ResultsTab::updateResults()
{
    showList(false);
    updateTimer.start();
}

void ResultsTab::updateResultsImpl()
{
    listed = gDB->getResultsState();
    auto results = gDB->getAllResults();
    megabytes = gDB->getTotalMegabytesInDB();
    megabytesOverMobile = gDB->getTotalMegabytesOverMobileInDB();
    ui->labelNoTests->setVisible(results.empty());
    showTotals();
    showList(true);
    ui->scrollArea->setResults(std::move(results));
}

void ResultsTab::showList(bool visible)
{
    ui->labelPleaseWait->setVisible(!visible);
    ui->scrollArea->setVisible(visible);
    ui->labelTransferedData->setVisible(visible);
    ui->pushButton->setVisible(visible);
    ui->pageButton->setVisible(visible && !UserPage::userId().isEmpty());
    ui->notice->hide();
    // Without the list something else has to fill the page.
    ui->verticalSpacer->changeSize(0, 0, QSizePolicy::Minimum,
                                   visible ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    ui->bodyLayout->invalidate();
}

void ResultsTab::showTotals()
{
    ui->labelTransferedData->setText(
        tr("Transferred Data %1 MB (%2 MB mobile)")
            .arg(QString::number(megabytes, 'f', 1), QString::number(megabytesOverMobile, 'f', 1)));
}

void ResultsTab::on_pageButton_clicked()
{
    ui->notice->openPage(UserPage::address(Translations::language()));
}

void ResultsTab::on_pushButton_clicked()
{
    Q_EMIT mapClicked();
}

} // namespace velometer
