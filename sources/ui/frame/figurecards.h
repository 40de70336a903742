#pragma once

#include <QList>
#include <QString>
#include <QWidget>

namespace velometer {

/// The figures that matter, large and side by side: a card each with what it is, its number and its
/// unit. All numbers have one size, as large as the widest allows. Main thread only.
class FigureCards : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { Download, Upload, Rtt };

    struct Figure
    {
        Kind kind{};
        QString value; ///< "38412", or "na"
        QString unit;  ///< empty where there is no number
        QString note;  ///< a quiet line below; may be empty
    };

    explicit FigureCards(QWidget *parent = nullptr);

    void setFigures(const QList<Figure> &figures);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    static QString caption(Kind kind);
    QFont textFont(int designed, bool bold) const;
    int figurePixels(int room) const;
    int smallPixels(int room) const;
    void describe();

    QList<Figure> shown;
};

} // namespace velometer
