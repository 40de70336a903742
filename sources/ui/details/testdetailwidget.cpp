#include "ui/details/testdetailwidget.h"

#include "ui/theme/theme.h"

#include "ui_testdetailwidget.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int detailMargin = 6; // px

} // namespace

TestDetailWidget::TestDetailWidget(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::TestDetailWidget>())
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
}

TestDetailWidget::~TestDetailWidget() = default;

void TestDetailWidget::setTitle(const QString &title)
{
    ui->title->setText(title);
    state(true);
}

void TestDetailWidget::setData(const QString &title, const QString &description,
                               const QString &value)
{
    ui->title->setText(title);
    ui->description->setText(description);
    ui->value->setText(value);
    state(false);
    ui->description->setVisible(!description.isEmpty());
    setAccessibleName(title + ": "_L1 + value);
}

void TestDetailWidget::setLast(bool last)
{
    ui->line->setVisible(!last);
    ui->verticalLayout->setContentsMargins(0, detailMargin, 0, last ? detailMargin : 0);
}

void TestDetailWidget::state(bool heading)
{
    ui->description->setVisible(!heading);
    ui->value->setVisible(!heading);
    ui->line->setVisible(!heading || Theme::isGiven());
    // The style sheet looks at it; a row is made anew for each test, so before it is polished.
    setProperty("heading", heading);
}

} // namespace velometer
