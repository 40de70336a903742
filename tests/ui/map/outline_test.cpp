#include "ui/map/outline.h"

#include "ui/map/projection.h"

#include "support/registeredtest.h"
#include "support/rows.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

class OutlineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void landIsLandAndSeaIsSea_data()
    {
        const Rows<double, double, bool> row("latitude", "longitude", "isLand");
        row("Siberia behind the date line", 66.8, -179.0, true);
        row("Bering Sea", 57, 178, false);
        row("Caspian Sea, a hole in the land", 42, 51, false);
        row("Antarctica as far as it is shown", -84.5, 20, true);
    }
    void landIsLandAndSeaIsSea()
    {
        QFETCH(double, latitude);
        QFETCH(double, longitude);
        QFETCH(bool, isLand);
        // From the whole world to a street corner: simplified, cut and far beyond 2^24 px.
        for (const int zoom : {2, 6, 19}) {
            const double worldSize = Mercator::worldSize(zoom);
            const QPointF place = Mercator::toWorld(latitude, longitude) * worldSize;
            QImage image(64, 64, QImage::Format_RGB32);
            QPainter painter(&image);
            Outline::world().paint(painter, {place - QPointF(32, 32), QSizeF(64, 64)}, worldSize);
            painter.end();
            const QColor colour = image.pixelColor(32, 32);
            QVERIFY2((colour.blue() <= colour.green() + 6) == isLand,
                     qPrintable(u"%1 at zoom %2"_s.arg(colour.name()).arg(zoom)));
        }
    }

    void aDamagedFileIsRefused_data()
    {
        const Rows<QByteArray, bool> row("bytes", "accepted");
        // A triangle: three points, each a difference of zigzag numbers.
        const QByteArray head("VMAP\x01");
        const QByteArray triangle = QByteArray::fromHex("0103040404000004");
        row("a triangle and no border", head + triangle + '\0', true);
        row("another version", "VMAP\x02" + triangle + '\0', false);
        row("a ring of two points", head + QByteArray::fromHex("010204040400") + '\0', false);
        row("a count that never ends", head + QByteArray(10, '\xff'), false);
        row("more lines than bytes", head + QByteArray::fromHex("904e"), false);
        row("west of the world", head + QByteArray::fromHex("0103030404000004") + '\0', false);
        row("beyond the world", head + QByteArray::fromHex("01038080100202020202") + '\0', false);
    }
    void aDamagedFileIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, accepted);
        QCOMPARE(Outline::parse(bytes).has_value(), accepted);
    }
};

} // namespace velometer

VELOMETER_TEST(OutlineTest)
#include "outline_test.moc"
