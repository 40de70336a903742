#pragma once

#include <QLabel>

/// Plain text on as many lines as it needs; a line also breaks inside a word that is too long for
/// it, so the text never asks for more width than there is.
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
    int textFlags() const;
};
