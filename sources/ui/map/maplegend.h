#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QWidget>

class QPushButton;

namespace velometer {

class LegendEntries;

/// What the markers on the map mean: a colour and a name each, and the button that chooses between
/// their connections and their rates. Main thread only.
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

    bool isByRate() const { return byRate; }
    /// What is on the map, in order. None: the legend hides.
    void setEntries(QList<Entry> entries);
    void retranslate();

Q_SIGNALS:
    /// isByRate() is another.
    void colouringChanged();

private:
    QPushButton *button;
    LegendEntries *list;
    bool byRate = false;
};

} // namespace velometer
