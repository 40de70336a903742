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

    /// What a test moves, for what a series is said to cost; 0: not known.
    void setBytesPerTest(qint64 bytes);

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
    int chosenCount() const;
    void showChosen();

    std::unique_ptr<Ui::NumberOfMeasurementsPopup> ui;
    int testevery = 10; ///< min
    int during = 1;     ///< h
    qint64 bytesPerTest = 0;
};

} // namespace velometer
