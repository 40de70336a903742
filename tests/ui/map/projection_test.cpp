#include "ui/map/projection.h"

#include "support/registeredtest.h"
#include "support/rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

class ProjectionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesLieWhereTileServersHaveThem_data()
    {
        // Tile columns and rows as published tile indexes give them; fractions from the corners.
        const Rows<double, double, int, double, double> row("latitude", "longitude", "zoom",
                                                            "column", "row");
        row("north west corner", 85.0511288, -180, 1, 0, 0);
        row("beyond the pole's limit", 89.9, -180, 1, 0, 0);
        row("once round the world", 0, 370, 2, 2.111111, 2);
        row("60 south", -60, -90, 0, 0.25, 0.709601); // ln(tan 75) / pi = 0.419203
    }
    void placesLieWhereTileServersHaveThem()
    {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(int, zoom);
        QFETCH(double, column);
        QFETCH(double, row);
        const QPointF tile =
            Mercator::toWorld(latitude, longitude) * Mercator::worldSize(zoom) / 256;
        QVERIFY2(std::abs(tile.x() - column) < 1e-4, qPrintable(QString::number(tile.x())));
        QVERIFY2(std::abs(tile.y() - row) < 1e-4, qPrintable(QString::number(tile.y())));
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
};

} // namespace velometer

VELOMETER_TEST(ProjectionTest)
#include "projection_test.moc"
