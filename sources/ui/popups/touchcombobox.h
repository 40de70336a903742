#pragma once

#include <QComboBox>

/// A combo box whose list opens at the box in every shell. In a view that turns or scales the
/// window the toolkit would measure the list against the unturned screen and shift it away from the
/// box.
class TouchComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit TouchComboBox(QWidget *parent);

    void showPopup() override;
};
