#include "ui/pages/resultstab.h"

#include "app/userpage.h"
#include "db/databasemanager.h"
#include "ui/frame/chipbar.h"
#include "ui/frame/spokenrole.h"
#include "ui/pages/filterchoices.h"
#include "ui/pages/listentry.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"

#include "ui_resultstab.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// More tests take longer to read than a page may seem to hang.
constexpr int quicklyRead = 50'000;
/// Lets the page be painted before the work begins.
constexpr std::chrono::milliseconds busyPaintTime{100};
/// How late the list may be behind the store.
constexpr std::chrono::milliseconds followInterval{1000};
/// As long as one goes on typing.
constexpr std::chrono::milliseconds searchPause{150};

} // namespace

ResultsTab::ResultsTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::ResultsTab>())
{
    ui->setupUi(this);
    fillFrame();
    SpokenRole::give(ui->scrollAreaWidgetContents, QAccessible::List);
    addChips();
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
    connect(scroller, &QsKineticScroller::coastingStopped, this, &ListEntry::forgetPress);
    connect(ui->scrollArea, &ResultList::selected, this, &ResultsTab::resultSelected);
    connect(ui->scrollArea, &ResultList::selectionChanged, this, &ResultsTab::showSelection);
    connect(ui->search, &QLineEdit::textChanged, &searchTimer, qOverload<>(&QTimer::start));
    searchTimer.setSingleShot(true);
    searchTimer.setInterval(searchPause);
    connect(&searchTimer, &QTimer::timeout, this, [this] {
        ResultFilter filter = ui->scrollArea->listing().filter();
        filter.text = ui->search->text();
        setFilter(filter);
    });
    updateTimer.setSingleShot(true);
    connect(&updateTimer, &QTimer::timeout, this, &ResultsTab::updateResultsImpl);
    followTimer.setInterval(followInterval);
    connect(&followTimer, &QTimer::timeout, this, &ResultsTab::follow);
    ui->search->hide();
    dress();
    showList(false);
    showChips();
    showSelection();
}

ResultsTab::~ResultsTab() = default;

void ResultsTab::retranslate()
{
    ui->retranslateUi(this);
    showTotals();
    showChips();
    showSelection();
    ui->scrollArea->change([](ResultListing &) {}); // headings have words
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

void ResultsTab::resizeEvent(QResizeEvent *event)
{
    TabBase::resizeEvent(event);
    // What does not fit side by side stands below each other.
    const int room = width() - 2 * ui->bodyLayout->contentsMargins().left();
    const auto direction = [room](int wanted) {
        return wanted > room ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    };
    ui->totalsLayout->setDirection(direction(2 * ui->pageButton->sizeHint().width()));
    const int buttons = ui->pushButton->sizeHint().width() + ui->pagesLayout->spacing() +
                        ui->buttonHistory->sizeHint().width();
    ui->pagesLayout->setDirection(direction(buttons));
}

void ResultsTab::search()
{
    searchChip->setChecked(true);
    ui->search->setFocus();
}

void ResultsTab::keyPressEvent(QKeyEvent *event)
{
    const bool back = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Back;
    if (back && ui->scrollArea->isSelecting()) {
        stopSelecting();
    } else if (back && ui->search->isVisible()) {
        searchChip->setChecked(false);
    } else if (event->matches(QKeySequence::Find)) {
        search();
    } else if (event->matches(QKeySequence::SelectAll) && ui->scrollArea->isSelecting()) {
        ui->scrollArea->selectAll();
    } else {
        TabBase::keyPressEvent(event);
    }
}

void ResultsTab::dress()
{
    searchChip->setIcon(Theme::icon(u"search"_s, Theme::colours().quiet));
}

// ---- The list

void ResultsTab::follow()
{
    if (!updateTimer.isActive() && gDB->getResultsState() != listed) {
        updateResultsImpl();
    }
}

void ResultsTab::updateResults()
{
    const bool quick = gDB->countResults() < quicklyRead;
    if (!quick || listed.isNull()) {
        showList(false);
    }
    ui->labelPleaseWait->setVisible(!quick);
    ui->notice->hide();
    updateTimer.start(quick ? std::chrono::milliseconds(0) : busyPaintTime);
}

void ResultsTab::updateResultsImpl()
{
    listed = gDB->getResultsState();
    auto results = gDB->getAllResults();
    megabytes = gDB->getTotalMegabytesInDB();
    megabytesOverMobile = gDB->getTotalMegabytesOverMobileInDB();
    showTotals();
    showList(true);
    ui->scrollArea->change(
        [&results](ResultListing &listing) { listing.setRows(std::move(results)); });
    showEmpty();
    showSelection();
}

void ResultsTab::showList(bool visible)
{
    ui->labelPleaseWait->setVisible(!visible);
    for (QWidget *each :
         {static_cast<QWidget *>(ui->scrollArea), static_cast<QWidget *>(ui->chips), ui->line,
          static_cast<QWidget *>(ui->labelTransferedData), static_cast<QWidget *>(ui->pushButton),
          static_cast<QWidget *>(ui->buttonHistory)}) {
        each->setVisible(visible);
    }
    ui->pageButton->setVisible(visible && !UserPage::userId().isEmpty());
    ui->notice->hide();
    // Without the list something else has to fill the page.
    ui->verticalSpacer->changeSize(0, 0, QSizePolicy::Minimum,
                                   visible ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    ui->bodyLayout->invalidate();
}

void ResultsTab::showEmpty()
{
    const ResultListing &listing = ui->scrollArea->listing();
    ui->labelNoTests->setVisible(listing.matching() == 0);
    ui->labelNoTests->setText(listing.total() == 0
                                  ? tr("No tests yet.") + u'\n' + tr("Start one on the test page.")
                                  : tr("No test is like this.") + u'\n' +
                                        tr("Change or clear the filter."));
    ui->chips->setVisible(listing.total() > 0);
    ui->line->setVisible(listing.total() > 0);
}

const DBTestResults *ResultsTab::neighbour(qulonglong id, int step) const
{
    const DBTestResults *before = nullptr;
    bool found = false;
    for (const ResultListing::Item &item : ui->scrollArea->listing().items()) {
        if (!item.test) {
            continue;
        }
        if (found) {
            return item.test;
        }
        found = item.test->myTestId == id;
        if (found && step < 0) {
            return before;
        }
        before = item.test;
    }
    return nullptr;
}

void ResultsTab::showTotals()
{
    ui->labelTransferedData->setText(
        tr("Transferred Data %1 MB (%2 MB mobile)")
            .arg(QString::number(megabytes, 'f', 1), QString::number(megabytesOverMobile, 'f', 1)));
}

// ---- What is filtered

void ResultsTab::addChips()
{
    connectionChip = ui->chips->addChip(u"chipConnection"_s);
    periodChip = ui->chips->addChip(u"chipPeriod"_s);
    placeChip = ui->chips->addChip(u"chipPlace"_s);
    serverChip = ui->chips->addChip(u"chipServer"_s);
    orderChip = ui->chips->addChip(u"chipOrder"_s);
    searchChip = ui->chips->addChip(u"chipSearch"_s);
    searchChip->setCheckable(true);
    connect(connectionChip, &QPushButton::clicked, this, &ResultsTab::askConnection);
    connect(periodChip, &QPushButton::clicked, this, &ResultsTab::askPeriod);
    connect(placeChip, &QPushButton::clicked, this, &ResultsTab::askPlace);
    connect(serverChip, &QPushButton::clicked, this, &ResultsTab::askServer);
    connect(orderChip, &QPushButton::clicked, this, &ResultsTab::askOrder);
    connect(searchChip, &QPushButton::toggled, this, &ResultsTab::searchToggled);
}

void ResultsTab::showChips()
{
    const ResultFilter &filter = ui->scrollArea->listing().filter();
    const ResultListing::Order order = ui->scrollArea->listing().order();
    const QString more = ChipBar::choiceMark;
    ChipBar::setChip(connectionChip, FilterChoices::connectionText(filter) + more,
                     filter.kind || filter.mobileOnly);
    ChipBar::setChip(periodChip, FilterChoices::periodText(filter.period) + more,
                     filter.period != ResultFilter::Period::All);
    ChipBar::setChip(placeChip, FilterChoices::placeText(filter) + more,
                     !filter.location.isEmpty());
    ChipBar::setChip(serverChip, FilterChoices::serverText(filter) + more,
                     !filter.server.isEmpty());
    ChipBar::setChip(orderChip, FilterChoices::orderText(order) + more,
                     order != ResultListing::Order::Newest);
    ChipBar::setChip(searchChip, tr("Search"), searchChip->isChecked());
    showCount();
}

void ResultsTab::showCount()
{
    const ResultListing &listing = ui->scrollArea->listing();
    const QLocale locale(Translations::language());
    const auto number = [&locale](size_t count) {
        return locale.toString(static_cast<qulonglong>(count));
    };
    if (ui->scrollArea->isSelecting()) {
        ui->labelCount->setText(
            tr("%1 selected")
                .arg(locale.toString(static_cast<qlonglong>(ui->scrollArea->selection().size()))));
    } else {
        ui->labelCount->setText(
            listing.filter().isEmpty()
                ? tr("%n test(s)", nullptr, static_cast<int>(listing.total()))
                : tr("%1 of %2 tests").arg(number(listing.matching()), number(listing.total())));
    }
    ui->buttonClear->setVisible(!ui->scrollArea->isSelecting() && !listing.filter().isEmpty());
}

void ResultsTab::setFilter(const ResultFilter &filter)
{
    ui->scrollArea->change([&filter](ResultListing &listing) { listing.setFilter(filter); });
    showEmpty();
    showChips();
}

void ResultsTab::askConnection()
{
    Q_EMIT choiceAsked(
        FilterChoices::connection(ui->scrollArea->listing().filter(),
                                  [this](const ResultFilter &filter) { setFilter(filter); }));
}

void ResultsTab::askPeriod()
{
    Q_EMIT choiceAsked(
        FilterChoices::period(ui->scrollArea->listing().filter(),
                              [this](const ResultFilter &filter) { setFilter(filter); }));
}

void ResultsTab::askPlace()
{
    const ResultListing &listing = ui->scrollArea->listing();
    Q_EMIT choiceAsked(
        FilterChoices::place(listing.filter(), listing.locations(),
                             [this](const ResultFilter &filter) { setFilter(filter); }));
}

void ResultsTab::askServer()
{
    const ResultListing &listing = ui->scrollArea->listing();
    Q_EMIT choiceAsked(
        FilterChoices::server(listing.filter(), listing.servers(),
                              [this](const ResultFilter &filter) { setFilter(filter); }));
}

void ResultsTab::askOrder()
{
    Q_EMIT choiceAsked(
        FilterChoices::order(ui->scrollArea->listing().order(), [this](ResultListing::Order order) {
            ui->scrollArea->change([order](ResultListing &listing) { listing.setOrder(order); });
            showChips();
        }));
}

void ResultsTab::searchToggled(bool on)
{
    ui->search->setVisible(on);
    if (on) {
        ui->search->setFocus();
    } else {
        ui->search->clear();
        searchTimer.stop();
        ResultFilter filter = ui->scrollArea->listing().filter();
        filter.text.clear();
        setFilter(filter);
    }
    showChips();
}

void ResultsTab::on_buttonClear_clicked()
{
    searchChip->setChecked(false);
    setFilter({});
}

// ---- What is chosen

void ResultsTab::on_buttonSelect_clicked()
{
    if (ui->scrollArea->isSelecting()) {
        ui->scrollArea->selectAll();
    } else {
        ui->scrollArea->startSelecting();
    }
}

void ResultsTab::stopSelecting()
{
    ui->scrollArea->stopSelecting();
}

void ResultsTab::showSelection()
{
    const bool selecting = ui->scrollArea->isSelecting();
    const bool some = selecting && !ui->scrollArea->selection().isEmpty();
    ui->selectionBar->setVisible(selecting);
    ui->pages->setVisible(!selecting);
    ui->buttonDone->setVisible(selecting);
    ui->buttonSelect->setText(selecting ? tr("All") : tr("Select"));
    for (QPushButton *button : {ui->buttonExport, ui->buttonShare, ui->buttonDelete}) {
        button->setEnabled(some);
    }
    showCount();
}

void ResultsTab::on_buttonExport_clicked()
{
    Q_EMIT exportAsked(ui->scrollArea->selection());
}

void ResultsTab::on_buttonShare_clicked()
{
    Q_EMIT shareAsked(ui->scrollArea->selection());
}

void ResultsTab::on_buttonDelete_clicked()
{
    Q_EMIT deleteAsked(ui->scrollArea->selection());
}

// ---- Where it leads

void ResultsTab::on_pageButton_clicked()
{
    ui->notice->openPage(UserPage::address(Translations::language()));
}

void ResultsTab::on_buttonHistory_clicked()
{
    Q_EMIT historyClicked();
}

void ResultsTab::on_pushButton_clicked()
{
    Q_EMIT mapClicked();
}

} // namespace velometer
