#include "ui/popups/numberofmeasurementspopup.h"

#include "data/databudget.h"
#include "utils/utils.h"

#include "ui_numberofmeasurementspopup.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int minutesPerHour = 60;
constexpr int secondsPerMinute = 60;

/// To two digits: what a series moves is not known better.
qint64 about(double bytes)
{
    const double unit = std::pow(10.0, std::max(0.0, std::floor(std::log10(bytes)) - 1));
    return qRound64(bytes / unit) * qRound64(unit);
}

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
    for (const TouchComboBox *box : {ui->comboBoxDuring, ui->comboBoxTestEvery}) {
        connect(box, &QComboBox::currentIndexChanged, this, [this] { showChosen(); });
    }
    showChosen();
}

NumberOfMeasurementsPopup::~NumberOfMeasurementsPopup() = default;

void NumberOfMeasurementsPopup::retranslate()
{
    ui->retranslateUi(this);
    showChosen();
}

void NumberOfMeasurementsPopup::setBytesPerTest(qint64 bytes)
{
    bytesPerTest = bytes;
    showChosen();
}

int NumberOfMeasurementsPopup::chosenCount() const
{
    return ui->comboBoxDuring->currentData().toInt() * minutesPerHour /
           ui->comboBoxTestEvery->currentData().toInt();
}

void NumberOfMeasurementsPopup::showChosen()
{
    const int count = chosenCount();
    const QString tests =
        tr("%1 tests in %2 h").arg(count).arg(ui->comboBoxDuring->currentData().toInt());
    ui->labelChosen->setText(
        bytesPerTest > 0
            ? tr("%1, about %2 at your last rate")
                  .arg(tests, DataBudget(about(static_cast<double>(bytesPerTest) * count)).text())
            : tests);
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
    const int count = chosenCount();
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
