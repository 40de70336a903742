#pragma once

#include <QComboBox>

namespace velometer {

/// A combo box with rows as high as a finger needs, whose list opens at the box in every shell. In
/// a view that turns or scales the window the toolkit would measure the list against the unturned
/// screen and shift it away from the box.
class TouchComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit TouchComboBox(QWidget *parent);

    /// Appends a row, and shows all rows at once when the list opens.
    void addChoice(const QString &text, const QVariant &value);

    void showPopup() override;
};

} // namespace velometer
