#pragma once

#include "ui/map/marker.h"

#include <QVector>
#include <QWidget>

#include <memory>

class QGraphicsView;

namespace velometer {

class GeoMap;
class MapCircleObject;
class MapProvider;
class MapTextObject;

/// The map with its zoom bar in a graphics view, the markers on it, and the label and the accuracy
/// circle of the marker tapped last or stepped to with the keys. Escape closes the two. Owns all of
/// them but the view, which becomes its child.
class MapsWidget : public QWidget
{
    Q_OBJECT

public:
    explicit MapsWidget(QWidget *parent);
    ~MapsWidget() override;

    /// The markers shown, in the order given.
    const std::vector<std::unique_ptr<Marker>> &shownMarkers() const { return marks; }
    const MapTextObject *openLabel() const { return popupmark.get(); }
    const MapCircleObject *openCircle() const { return circlemark.get(); }
    /// Null before initialize().
    GeoMap *map() const;

    /// Takes label and circle off the map.
    void closeLabel();
    /// Takes markers, label and circle off the map, which stays where it is.
    void clearMarkers();

public Q_SLOTS:
    /// Once. Borrows @p provider, which outlives this widget.
    void initialize(MapProvider *provider, QGraphicsView *view);
    /// Takes the markers over in place of those shown, the newest test first, of which there is
    /// one at least: the map is centred on it.
    void showResultsOnMap(QVector<Marker *> markers);
    void markerClicked(Marker *marker);
    void markerClickedPopup(MapTextObject *label);
    /// Centres the map on the marker @p by places after the one opened last and opens it; the first
    /// one when none was, the one at the end when there is no further one.
    void step(int by);

Q_SIGNALS:
    /// openLabel() is another one, or none any more.
    void labelChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    struct Private;

    void layOut();
    void open(Marker *marker);
    void removeLabel();

    std::unique_ptr<Private> d;
    std::vector<std::unique_ptr<Marker>> marks;
    std::unique_ptr<MapTextObject> popupmark;
    std::unique_ptr<MapCircleObject> circlemark;
    qsizetype current = -1; ///< index in marks of the one opened last, -1 for none
};

} // namespace velometer
