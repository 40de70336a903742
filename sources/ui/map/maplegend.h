#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>

class QBoxLayout;
class QPushButton;

namespace velometer {

class LegendEntries;

/// What colours on the map mean: a colour and a name each, and the button that chooses between
/// connections, the rates of tests and the signal of tracks. Beside it the way to the tracks. Main
/// thread only.
class MapLegend : public QWidget
{
    Q_OBJECT

public:
    struct Entry
    {
        QColor colour;
        QString sign; ///< of a letter or two on the colour; may be empty
        QString name;
    };

    explicit MapLegend(QWidget *parent = nullptr);

    enum class Colouring { Connection, Rate, Signal };

    Colouring colouring() const { return chosen; }
    /// What is on the map, in order. None: only the way to the tracks is there.
    void setEntries(QList<Entry> entries);
    void retranslate();

Q_SIGNALS:
    /// colouring() is another.
    void colouringChanged();
    void tracksClicked();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QBoxLayout *buttons; ///< under each other where it is narrow
    QPushButton *button;
    QPushButton *tracks;
    LegendEntries *list;
    Colouring chosen = Colouring::Connection;
};

} // namespace velometer
