#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class LocationPopup;
}

/// Asks where the user is.
class LocationPopup : public PopupBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent, owns the popup and takes its answers.
    explicit LocationPopup(MainWindow *mainWindow);
    ~LocationPopup() override;

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
