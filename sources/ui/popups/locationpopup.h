#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class LocationPopup;
}

/// The answers of the location popup.
enum UserLocation {
    LOCATION_NOTSELECTED = 0,
    LOCATION_INDOOR = 1,
    LOCATION_OUTDOOR = 2,
    LOCATION_TRAIN = 3,
    LOCATION_CAR = 4,
    LOCATION_OTHER = 5,
};

/// Asks where the user is.
class LocationPopup : public PopupBase
{
    Q_OBJECT

public:
    explicit LocationPopup(QWidget *parent);
    ~LocationPopup() override;

Q_SIGNALS:
    void locationSelected(UserLocation location);

protected:
    void retranslate() override;

private Q_SLOTS:
    void on_buttonIndoor_clicked();
    void on_buttonOutdoor_clicked();
    void on_buttonTrain_clicked();
    void on_buttonCar_clicked();
    void on_buttonOther_clicked();
    void on_buttonCancel_clicked();

private:
    std::unique_ptr<Ui::LocationPopup> ui;
};

} // namespace velometer
