#include "ui/map/geomaptab.h"

#include "ui/frame/spokenrole.h"
#include "ui/map/geomap.h"
#include "ui/map/maplegend.h"
#include "ui/map/mapswidget.h"
#include "ui/map/maptextobject.h"
#include "ui/map/maptrack.h"
#include "ui/map/rateclass.h"
#include "ui/map/signalclass.h"
#include "ui/map/tilesource.h"
#include "ui/theme/connectionsign.h"
#include "ui_geomaptab.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include <algorithm>
#include <cmath>
#include <set>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Half round the earth; nobody's accuracy is worse.
constexpr double worstAccuracy = 20'000'000; // m
/// The longest of our own has 18; a longer one from another program would hide the map.
constexpr qsizetype longestConnectionType = 120;
/// The newest; a map full of lines tells nothing.
constexpr qsizetype mostTracks = 20;
/// Part of the page that a track may fill.
constexpr double roomForTrack = 0.6;

QString nameOf(ConnectionKind kind)
{
    switch (kind) {
    case ConnectionKind::Gsm: return u"GSM"_s;
    case ConnectionKind::Umts: return u"UMTS"_s;
    case ConnectionKind::Lte: return u"LTE"_s;
    case ConnectionKind::Nr: return u"NR"_s;
    case ConnectionKind::Wlan: return u"WLAN"_s;
    case ConnectionKind::Other: break;
    }
    return GeoMapTab::tr("other or mixed");
}

QString kiloBits(double bitsPerSecond)
{
    return bitsPerSecond > 0 ? QString::asprintf("%.1f kBit/s", bitsPerSecond / 1000.0)
                             : GeoMapTab::tr("na");
}

} // namespace

GeoMapTab::GeoMapTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::GeoMapTab>())
{
    ui->setupUi(this);
    connect(ui->legend, &MapLegend::colouringChanged, this, &GeoMapTab::colour);
    connect(ui->legend, &MapLegend::tracksClicked, this, &GeoMapTab::tracksClicked);
    ui->labelEmpty->hide();
    SpokenRole::give(ui->graphicsView, QAccessible::Canvas);
    fillFrame();
}

GeoMapTab::~GeoMapTab()
{
    removeTracks();
    delete mapwidget;
}

void GeoMapTab::showResultsOnMap()
{
    if (!initialised) {
        initializeMap();
    }
    std::vector<TestLocation> found = gDB->getLocationsOfTests();
    // What another program put into the store may lie nowhere on earth.
    std::erase_if(found, [](const TestLocation &location) {
        return !QGeoCoordinate(location.latitude, location.longitude).isValid();
    });
    if (!found.empty()) {
        QVector<Marker *> markers;
        for (const TestLocation &location : found) {
            markers += markerOf(location).release();
        }
        mapwidget->showResultsOnMap(markers);
        locations = std::move(found);
    }
    readTracks();
    colour();
    describe();
}

void GeoMapTab::clearMarkers()
{
    locations.clear();
    if (mapwidget) {
        removeTracks();
        readTracks();
        mapwidget->clearMarkers();
    }
    colour();
    describe();
}

void GeoMapTab::pauseDownloads(bool on)
{
    downloadsPaused = on;
    if (serviceProvider) {
        serviceProvider->setPaused(on);
    }
}

void GeoMapTab::initializeMap()
{
    // The outline lies below the tiles.
    Utils::addLogEntry(u"Provider 0: tiles"_s);
    Utils::addLogEntry(u"Provider 1: outline"_s);
    serviceProvider =
        std::make_unique<TileSource>(Deployment::current(), TileSource::cacheDirectory());
    serviceProvider->setPaused(downloadsPaused);
    mapwidget = new MapsWidget(this);
    // The old layout item comes back and is ours to delete.
    delete ui->body->layout()->replaceWidget(ui->graphicsView, mapwidget);
    mapwidget->initialize(serviceProvider.get(), ui->graphicsView);
    connect(mapwidget, &MapsWidget::labelChanged, this, &GeoMapTab::describe);
    mapwidget->show();
    initialised = true;
}

void GeoMapTab::readTracks()
{
    removeTracks();
    const QList<Track> all = gDB->tracks().all();
    for (const Track &track : all) {
        if (std::ssize(tracks) == mostTracks) {
            break;
        }
        QList<TrackPoint> points;
        for (qint64 first = 0; first < track.points; first += Tracks::partPoints) {
            points += gDB->tracks().points(track.row, first, Tracks::partPoints);
        }
        auto line = std::make_unique<MapTrack>(points);
        if (!line->bounds().isNull()) {
            mapwidget->map()->addMapObject(line.get());
            tracks.emplace_back(track.row, std::move(line));
        }
    }
}

void GeoMapTab::removeTracks()
{
    for (const auto &[row, track] : tracks) {
        mapwidget->map()->removeMapObject(track.get());
    }
    tracks.clear();
}

void GeoMapTab::showTrack(qulonglong row)
{
    showResultsOnMap();
    for (const auto &[each, track] : tracks) {
        if (each != row) {
            continue;
        }
        const QRectF area = track->bounds();
        GeoMap &map = *mapwidget->map();
        const QRectF world(Mercator::toWorld(area.bottom(), area.left()),
                           Mercator::toWorld(area.top(), area.right()));
        // Of the page: what it leaves for the map is not laid out yet when it has just been shown.
        const QSizeF room = QSizeF(size()) * roomForTrack;
        int zoom = Mercator::maximumZoom;
        while (zoom > Mercator::minimumZoom &&
               (world.width() * Mercator::worldSize(zoom) > room.width() ||
                world.height() * Mercator::worldSize(zoom) > room.height())) {
            --zoom;
        }
        map.setZoomLevel(zoom);
        map.setCenter({area.center().y(), area.center().x()});
    }
}

void GeoMapTab::colour()
{
    using Colouring = MapLegend::Colouring;
    const Colouring by = ui->legend->colouring();
    std::set<ConnectionKind> kinds;
    std::set<RateClass> rates;
    std::set<SignalClass> strengths;
    for (size_t i = 0; i < locations.size(); ++i) {
        const RateClass rate = RateClasses::of(locations[i].downloadSpeed);
        kinds.insert(ConnectionKinds::of(locations[i].connectionType));
        rates.insert(rate);
        mapwidget->shownMarkers()[i]->setTint(by == Colouring::Rate ? RateClasses::colour(rate)
                                                                    : QColor());
    }
    for (const auto &[row, track] : tracks) {
        for (const TrackPoint &point : track->points()) {
            kinds.insert(ConnectionKinds::ofMode(point.mode));
            strengths.insert(SignalClasses::of(point));
        }
        track->setColours([by](const TrackPoint &point) {
            return by == Colouring::Signal
                       ? SignalClasses::colour(SignalClasses::of(point))
                       : ConnectionSign::colour(ConnectionKinds::ofMode(point.mode));
        });
    }
    QList<MapLegend::Entry> entries;
    if (by == Colouring::Rate) {
        for (const RateClass rate : rates) {
            entries += {RateClasses::colour(rate), QString(), RateClasses::name(rate)};
        }
    } else if (by == Colouring::Signal) {
        for (const SignalClass strength : strengths) {
            entries += {SignalClasses::colour(strength), QString(), SignalClasses::name(strength)};
        }
        if (entries.isEmpty()) {
            entries += {SignalClasses::colour(SignalClass::Unknown), QString(), tr("no track yet")};
        }
    } else {
        for (const ConnectionKind kind : kinds) {
            entries += {ConnectionSign::colour(kind), ConnectionKinds::sign(kind), nameOf(kind)};
        }
    }
    ui->legend->setEntries(entries);
    if (mapwidget) {
        mapwidget->map()->update();
    }
}

void GeoMapTab::describe()
{
    ui->labelEmpty->setVisible(initialised && locations.empty() && tracks.empty());
    if (mapwidget && mapwidget->openLabel()) {
        ui->graphicsView->setAccessibleDescription(mapwidget->openLabel()->getText());
        return;
    }
    const QString content =
        locations.empty()
            ? ui->labelEmpty->text()
            : tr("%n position(s) on the map", nullptr, static_cast<int>(locations.size())) + u'.';
    ui->graphicsView->setAccessibleDescription(
        content + u' ' +
        tr("Plus and minus zoom, the arrow keys move the map. N or Page Down opens the label of "
           "the next older test, P or Page Up that of the next newer one, Escape closes it."));
}

void GeoMapTab::retranslate()
{
    ui->retranslateUi(this);
    ui->legend->retranslate();
    colour();
    describe();
    if (!mapwidget) {
        return;
    }
    mapwidget->closeLabel();
    const auto &markers = mapwidget->shownMarkers();
    for (size_t i = 0; i < markers.size(); ++i) {
        markers[i]->setPopupText(popupTextOf(locations[i]));
    }
    mapwidget->map()->update();
}

std::unique_ptr<Marker> GeoMapTab::markerOf(const TestLocation &location)
{
    auto marker = std::make_unique<Marker>(Marker::typeOf(location.connectionType));
    marker->setPopupText(popupTextOf(location));
    marker->setCoordinate({location.latitude, location.longitude});
    if (std::isfinite(location.accuracy)) {
        marker->setPrecision(static_cast<int>(std::clamp(location.accuracy, 0.0, worstAccuracy)));
    }
    return marker;
}

QString GeoMapTab::popupTextOf(const TestLocation &location)
{
    return tr("ConnectionTyp:") + location.connectionType.left(longestConnectionType) + u'\n' +
           tr("DownloadSpeed:") + kiloBits(location.downloadSpeed) + u'\n' + tr("UploadSpeed:") +
           kiloBits(location.uploadSpeed);
}

} // namespace velometer
