#pragma once

#include "ui/popups/popupbase.h"

#include <memory>

namespace velometer {

namespace Ui {
class NumberOfMeasurementsPopup;
}

/// Asks for a single test or a series, and how long and how dense that is. The choices of a series
/// are kept from one opening to the next.
class NumberOfMeasurementsPopup : public PopupBase
{
    Q_OBJECT

public:
    explicit NumberOfMeasurementsPopup(QWidget *parent);
    ~NumberOfMeasurementsPopup() override;

Q_SIGNALS:
    /// @p interval in s, from start to start.
    void numberSelected(int count, int interval);

protected:
    void retranslate() override;
    QWidget *focusedFirst() override;

private Q_SLOTS:
    void on_buttonSingle_clicked();
    void on_buttonMultiple_clicked();
    void on_buttonCancel_clicked();

private:
    std::unique_ptr<Ui::NumberOfMeasurementsPopup> ui;
    int testevery = 10; ///< min
    int during = 1;     ///< h
};

} // namespace velometer
