#include "ui/popups/locationpopup.h"

#include "utils/utils.h"

#include "ui_locationpopup.h"

using namespace Qt::StringLiterals;

namespace velometer {

LocationPopup::LocationPopup(QWidget *parent)
    : PopupBase(parent)
    , ui(std::make_unique<Ui::LocationPopup>())
{
    ui->setupUi(this);
}

LocationPopup::~LocationPopup() = default;

void LocationPopup::retranslate()
{
    ui->retranslateUi(this);
}

void LocationPopup::on_buttonIndoor_clicked()
{
    Utils::addLogEntry(u"Indoor clicked"_s);
    Q_EMIT locationSelected(LOCATION_INDOOR);
}

void LocationPopup::on_buttonOutdoor_clicked()
{
    Utils::addLogEntry(u"Outdoor clicked"_s);
    Q_EMIT locationSelected(LOCATION_OUTDOOR);
}

void LocationPopup::on_buttonTrain_clicked()
{
    Utils::addLogEntry(u"Train clicked"_s);
    Q_EMIT locationSelected(LOCATION_TRAIN);
}

void LocationPopup::on_buttonCar_clicked()
{
    Utils::addLogEntry(u"Car clicked"_s);
    Q_EMIT locationSelected(LOCATION_CAR);
}

void LocationPopup::on_buttonOther_clicked()
{
    Utils::addLogEntry(u"Other clicked"_s);
    Q_EMIT locationSelected(LOCATION_OTHER);
}

void LocationPopup::on_buttonCancel_clicked()
{
    Utils::addLogEntry(u"Location cancel clicked"_s);
    Q_EMIT cancelled();
}

} // namespace velometer
