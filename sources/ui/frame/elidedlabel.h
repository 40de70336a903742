#pragma once

#include <QLabel>

namespace velometer {

/// One line of plain text that never asks for more room than it is given: it is drawn smaller, down
/// to 13 px, and where that is not enough ends in an ellipsis. text() stays whole.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace velometer
