#include "ui/frame/navigationbar.h"

#include "ui_navigationbar.h"

#include <QVariant>

using namespace Qt::StringLiterals;

namespace velometer {

NavigationBar::NavigationBar(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::NavigationBar>())
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
}

NavigationBar::~NavigationBar() = default;

void NavigationBar::setCurrentPage(const QString &page)
{
    current = page;
    const struct
    {
        QString page;
        QString icon;
        QPushButton *first;
        QPushButton *second;
    } buttons[] = {
        {u"Test"_s, u"TBTestIcon"_s, ui->buttonTest1, ui->buttonTest2},
        {u"Results"_s, u"TBResults"_s, ui->buttonResults1, ui->buttonResults2},
        {u"Settings"_s, u"TBSettingsIcon"_s, ui->buttonSettings1, ui->buttonSettings2},
        {u"Links"_s, u"TBLinksIcon"_s, ui->buttonLinks1, ui->buttonLinks2},
        {u"About"_s, u"TBAboutIcon"_s, ui->buttonAbout1, ui->buttonAbout2},
    };
    for (const auto &button : buttons) {
        const bool isCurrent = button.page == page;
        // The style sheet looks at it.
        button.first->setProperty("current", isCurrent);
        button.second->setProperty("current", isCurrent);
        button.first->setIcon(QIcon(
            u":/velometerres/%1%2.png"_s.arg(button.icon, isCurrent ? "_current"_L1 : ""_L1)));
    }
}

void NavigationBar::retranslate()
{
    ui->retranslateUi(this);
}

} // namespace velometer
