#pragma once

#include "db/databasemanager.h"
#include "ui/frame/tabbase.h"

#include <memory>
#include <vector>

namespace velometer {

class MapProvider;
class MapTrack;
class MapsWidget;
class Marker;

namespace Ui {
class GeoMapTab;
}

/// The page that shows where the stored tests were made: a marker a test, newest first. The map is
/// set up when it is first shown. A test without a position is not on it; when no test has one the
/// map keeps the markers it has, and says so when it has none. A screen reader is told the label
/// that is open, else how many markers there are and which keys work. The newest tracks lie under
/// the markers. A legend says what the colours mean: connections or, as the user chooses, rates of
/// tests or the signal along tracks.
class GeoMapTab : public TabBase
{
    Q_OBJECT

public:
    explicit GeoMapTab(QWidget *parent);
    ~GeoMapTab() override;

    /// Reads the positions from the database and shows them.
    void showResultsOnMap();

    /// The same, with the track @p row in the middle, whole.
    void showTrack(qulonglong row);

    /// For when the user has cleared the store: takes the markers off the map.
    void clearMarkers();

    /// While a test is measured the map must not add traffic of its own to the figures.
    void pauseDownloads(bool on);

    /// Null until the map has been set up.
    MapsWidget *map() const { return mapwidget; }

Q_SIGNALS:
    /// The user wants to see, or record, tracks.
    void tracksClicked();

protected:
    void retranslate() override;

private:
    void initializeMap();
    void describe();
    void colour();
    void readTracks();
    void removeTracks();
    static std::unique_ptr<Marker> markerOf(const TestLocation &location);
    static QString popupTextOf(const TestLocation &location);

    std::unique_ptr<Ui::GeoMapTab> ui;
    std::unique_ptr<MapProvider> serviceProvider; ///< outlives mapwidget
    MapsWidget *mapwidget = nullptr;
    bool initialised = false;
    bool downloadsPaused = false;
    std::vector<TestLocation> locations; ///< of the markers, in their order
    std::vector<std::pair<qulonglong, std::unique_ptr<MapTrack>>>
        tracks; ///< by row, the newest first
};

} // namespace velometer
