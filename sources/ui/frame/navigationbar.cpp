#include "ui/frame/navigationbar.h"

#include "ui/frame/spokenrole.h"
#include "ui/theme/theme.h"

#include "ui_navigationbar.h"

#include <QEvent>
#include <QStyle>
#include <QVariant>

#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int endMargin = 12; ///< px

struct Entry
{
    QLatin1StringView page;
    Page leadsTo;
    QString icon;
    QString button; ///< name of both buttons, without its number
};

const std::array<Entry, 5> entries{
    {{"Test"_L1, Page::Test, u"TBTestIcon"_s, u"buttonTest"_s},
     {"Results"_L1, Page::Results, u"TBResults"_s, u"buttonResults"_s},
     {"Settings"_L1, Page::Settings, u"TBSettingsIcon"_s, u"buttonSettings"_s},
     {"Links"_L1, Page::Links, u"TBLinksIcon"_s, u"buttonLinks"_s},
     {"About"_L1, Page::About, u"TBAboutIcon"_s, u"buttonAbout"_s}}};

} // namespace

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::NavigationBar>())
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
    for (const Entry &entry : entries) {
        // A finger finds icon and name; for the keyboard and a screen reader they are one.
        auto *icon = findChild<QPushButton *>(entry.button + u'1');
        SpokenRole::give(icon, QAccessible::PageTab);
        findChild<QPushButton *>(entry.button + u'2')->setFocusPolicy(Qt::NoFocus);
    }
}

NavigationBar::~NavigationBar() = default;

void NavigationBar::setCurrentPage(const QString &page)
{
    current = page;
    light();
}

void NavigationBar::light()
{
    for (const Entry &entry : entries) {
        auto *icon = findChild<QPushButton *>(entry.button + u'1');
        auto *name = findChild<QPushButton *>(entry.button + u'2');
        const bool isCurrent = entry.page == current;
        for (QPushButton *each : {icon, name}) {
            each->setProperty("current", isCurrent); // the style sheet looks at it
            each->style()->unpolish(each);
            each->style()->polish(each);
        }
        SpokenRole::setState(icon, {.selected = isCurrent, .expanded = {}});
        const Theme::Colours &colours = Theme::colours();
        icon->setIcon(Theme::icon(entry.icon, isCurrent ? colours.accent : colours.quiet));
    }
}

void NavigationBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        light();
    }
}

void NavigationBar::standBeside()
{
    setProperty("side", true);
    int row = 0;
    for (const Entry &entry : entries) {
        for (const QChar each : {u'1', u'2'}) {
            auto *button = findChild<QPushButton *>(entry.button + each);
            ui->gridLayout->addWidget(button, row++, 0);
            connect(button, &QPushButton::clicked, this,
                    [this, page = entry.leadsTo] { Q_EMIT pageClicked(page); });
        }
    }
    for (int column = 0; column < static_cast<int>(entries.size()); ++column) {
        ui->gridLayout->setColumnStretch(column, column == 0 ? 1 : 0);
    }
    ui->gridLayout->setRowStretch(row, 1);
    ui->gridLayout->setContentsMargins(0, endMargin, 0, endMargin);
}

void NavigationBar::retranslate()
{
    ui->retranslateUi(this);
}

} // namespace velometer
