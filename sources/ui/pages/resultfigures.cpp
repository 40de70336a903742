#include "ui/pages/resultfigures.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr double bitPerKbit = 1000.0;
constexpr double greatestSpeed = 1e15; // bit/s

/// Holds the context of the text.
class FigureTexts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::TestResultWidget)

public:
    static QString na() { return tr("na"); }
};

} // namespace

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
