#include "ui/popups/numberofmeasurementspopup.h"

#include "utils/utils.h"

#include "ui_numberofmeasurementspopup.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int minutesPerHour = 60;
constexpr int secondsPerMinute = 60;

void fill(TouchComboBox *box, std::initializer_list<int> values, QLatin1StringView unit,
          int initial)
{
    for (const int value : values) {
        box->addChoice(QString::number(value) + unit, value);
    }
    box->setCurrentIndex(box->findData(initial));
}

} // namespace

NumberOfMeasurementsPopup::NumberOfMeasurementsPopup(QWidget *parent)
    : PopupBase(parent)
    , ui(std::make_unique<Ui::NumberOfMeasurementsPopup>())
{
    ui->setupUi(this);
    fill(ui->comboBoxDuring, {1, 2, 3, 6, 12, 24}, "h"_L1, 1);
    fill(ui->comboBoxTestEvery, {1, 2, 3, 5, 10, 30, 60}, "min"_L1, 3);
}

NumberOfMeasurementsPopup::~NumberOfMeasurementsPopup() = default;

void NumberOfMeasurementsPopup::retranslate()
{
    ui->retranslateUi(this);
}

QWidget *NumberOfMeasurementsPopup::focusedFirst()
{
    return ui->buttonSingle; // the smaller of the two answers
}

void NumberOfMeasurementsPopup::on_buttonSingle_clicked()
{
    Utils::addLogEntry(u"single measurements clicked"_s);
    Q_EMIT numberSelected(1, 0);
}

void NumberOfMeasurementsPopup::on_buttonMultiple_clicked()
{
    during = ui->comboBoxDuring->currentData().toInt();
    testevery = ui->comboBoxTestEvery->currentData().toInt();
    const int count = during * minutesPerHour / testevery;
    const int interval = testevery * secondsPerMinute;
    Utils::addLogEntry(u"multiple measurements clicked %1 %2"_s.arg(count).arg(interval));
    Q_EMIT numberSelected(count, interval);
}

void NumberOfMeasurementsPopup::on_buttonCancel_clicked()
{
    Utils::addLogEntry(u"Number of measurements cancel clicked"_s);
    Q_EMIT cancelled();
}

} // namespace velometer
