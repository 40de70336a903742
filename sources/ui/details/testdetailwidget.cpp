#include "ui/details/testdetailwidget.h"

#include "ui_testdetailwidget.h"

using namespace Qt::StringLiterals;

namespace velometer {

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

void TestDetailWidget::state(bool heading)
{
    ui->description->setVisible(!heading);
    ui->value->setVisible(!heading);
    setStyleSheet(heading ? u"velometer--TestDetailWidget { background: #aeaeae; }"
                            "QLabel#title { font-weight: bold; }"_s
                          : QString());
}

} // namespace velometer
