#pragma once

#include <QLabel>

namespace velometer {

/// Plain text on as many lines as it needs, broken between words; inside them where one is too long
/// for a line, so the text never asks for more width than there is.
class WrapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit WrapLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int textFlags(int width) const;
};

} // namespace velometer
