#include "ui/pages/resultfigures.h"

#include "ui/theme/theme.h"

#include <QCoreApplication>
#include <QFontMetrics>

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double bitPerKbit = 1000.0;
constexpr double greatestSpeed = 1e15; // bit/s
constexpr int rowFigurePixels = 16;
constexpr int leastFigurePixels = 13;
constexpr int columnGap = 8; // px

/// Holds the context of the text.
class FigureTexts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::TestResultWidget)

public:
    static QString na() { return tr("na"); }
};

} // namespace

ResultFigures::Columns ResultFigures::columnsFor(int width, const Greatest &greatest, QFont font)
{
    Columns columns;
    columns.isNarrow = width < narrowList;
    columns.left = columns.isNarrow ? margin : 2 * margin + signPixels;
    const int room = width - columns.left - margin;
    const QString texts[] = {rate(greatest.download), rate(greatest.upload),
                             roundTrip(greatest.rtt)};
    font.setBold(true);
    int wanted = 0;
    for (columns.pixels = Theme::pixels(rowFigurePixels);; --columns.pixels) {
        font.setPixelSize(columns.pixels);
        const QFontMetrics metrics(font);
        std::transform(std::begin(texts), std::end(texts), columns.widths.begin(),
                       [&metrics](const QString &text) {
                           return iconPixels + iconGap + columnGap +
                                  metrics.horizontalAdvance(text);
                       });
        wanted = std::accumulate(columns.widths.begin(), columns.widths.end(), 0);
        if (wanted <= room || columns.pixels <= leastFigurePixels) {
            break;
        }
    }
    // What is left over is shared.
    for (int &each : columns.widths) {
        each += std::max(room - wanted, 0) / static_cast<int>(columns.widths.size());
    }
    return columns;
}

QString ResultFigures::rate(double bitsPerSecond)
{
    return bitsPerSecond > 0 && bitsPerSecond < greatestSpeed
               ? QString::number(bitsPerSecond / bitPerKbit, 'f', 1)
               : FigureTexts::na();
}

QString ResultFigures::roundTrip(double ms)
{
    return ms > 0 ? u"%0 ms"_s.arg(ms, 0, 'f', 0) : FigureTexts::na();
}

} // namespace velometer
