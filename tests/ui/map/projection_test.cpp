// Where places lie on the map, and the land that is drawn there without a tile server.

#include "ui/map/projection.h"

#include "ui/map/outline.h"

#include "support/registeredtest.h"

#include <QImage>
#include <QPainter>

namespace velometer {

class ProjectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesLieWhereTileServersHaveThem()
    {
        // Tile columns and rows as published tile indexes give them; fractions from the corners.
        for (const auto &[latitude, longitude, zoom, column, row] :
             {std::tuple{85.0511288, -180.0, 1, 0.0, 0.0},
              {89.9, -180.0, 1, 0.0, 0.0}, // beyond the pole's limit
              {0.0, 370.0, 2, 2.111111, 2.0},
              {-60.0, -90.0, 0, 0.25, 0.709601}}) { // ln(tan 75) / pi = 0.419203
            const QPointF tile =
                Mercator::toWorld(latitude, longitude) * Mercator::worldSize(zoom) / 256;
            QVERIFY2(std::abs(tile.x() - column) < 1e-4, qPrintable(QString::number(tile.x())));
            QVERIFY2(std::abs(tile.y() - row) < 1e-4, qPrintable(QString::number(tile.y())));
        }
    }

    void metresShrinkWithTheCosineOfTheLatitude()
    {
        // At zoom 0 a pixel is 40075.017 km / 256 = 156543 m wide on the equator.
        QVERIFY(std::abs(Mercator::pixelsPerMetre(0, 0) * 156'543.034 - 1) < 1e-6);
        QVERIFY(std::abs(Mercator::pixelsPerMetre(60, 12) * 156'543.034 / 8192 - 1) < 1e-6);
    }

    void theNearerCopyOfTheWorldIsShown()
    {
        MapView view;
        view.size = {400, 300};
        view.zoom = 3; // 2048 px round the world
        view.centre = Mercator::toWorld(0, 179);
        const QPointF beyond = view.toScreen(Mercator::toWorld(0, -179));
        QVERIFY2(std::abs(beyond.x() - (200 + 2048 / 180.0)) < 1, "two degrees to the right");
    }

    void landIsLandAndSeaIsSea()
    {
        for (const auto &[name, latitude, longitude, isLand] :
             {std::tuple{u"Siberia behind the date line"_s, 66.8, -179.0, true},
              {u"Bering Sea"_s, 57.0, 178.0, false},
              {u"Caspian Sea, a hole in the land"_s, 42.0, 51.0, false},
              {u"Antarctica as far as it is shown"_s, -84.5, 20.0, true}}) {
            // From the whole world to a street corner: simplified, cut and far beyond 2^24 px.
            for (const int zoom : {2, 6, 19}) {
                const double worldSize = Mercator::worldSize(zoom);
                const QPointF place = Mercator::toWorld(latitude, longitude) * worldSize;
                QImage image(64, 64, QImage::Format_RGB32);
                QPainter painter(&image);
                Outline::world().paint(painter, {place - QPointF(32, 32), QSizeF(64, 64)},
                                       worldSize);
                painter.end();
                const QColor colour = image.pixelColor(32, 32);
                QVERIFY2((colour.blue() <= colour.green() + 6) == isLand,
                         qPrintable(u"%1 is %2 at zoom %3"_s.arg(name, colour.name()).arg(zoom)));
            }
        }
    }

    void aDamagedFileIsRefused()
    {
        // A triangle: three points, each a difference of zigzag numbers.
        const QByteArray head("VMAP\x01");
        const QByteArray triangle = QByteArray::fromHex("0103040404000004");
        QVERIFY(Outline::parse(head + triangle + '\0')); // and no border
        for (const QByteArray &bytes :
             {"VMAP\x02" + triangle + '\0',                          // another version
              head + QByteArray::fromHex("010204040400") + '\0',     // a ring of two points
              head + QByteArray(10, '\xff'),                         // a count that never ends
              head + QByteArray::fromHex("904e"),                    // more lines than bytes
              head + QByteArray::fromHex("0103030404000004") + '\0', // west of the world
              head + QByteArray::fromHex("01038080100202020202") + '\0'}) { // beyond it
            QVERIFY2(!Outline::parse(bytes), bytes.toHex());
        }
    }
};

} // namespace velometer

VELOMETER_TEST(ProjectionTest)
#include "projection_test.moc"
