#include "ui/details/resultcard.h"

#include "app/sharetext.h"
#include "ui/plot/throughputplot.h"
#include "ui/theme/theme.h"
#include "utils/utils.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

// As designed, drawn twice as large.
constexpr int cardDensity = 2;
constexpr int cardWidth = 540;
constexpr int pictureMargin = 24;
constexpr int figuresTop = 96;
constexpr int plotTop = 176;
constexpr int plotHeight = 190;
constexpr int plainHeight = 190;
constexpr int curveHeight = plotTop + plotHeight + 2 * pictureMargin + 12;

/// Holds the context of the texts.
class CardTexts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::ResultCard)
};

IntervalTable tableOf(const std::optional<QList<qint64>> &bytes)
{
    IntervalTable table;
    for (int i = 0; bytes && i < bytes->size(); ++i) {
        table.insert(i, bytes->at(i));
    }
    return table;
}

QFont sized(int pixels, bool bold)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

} // namespace

QImage ResultCard::picture(const FinishedTest &test)
{
    const Theme::Colours &colours = Theme::colours();
    ThroughputPlot plot(nullptr);
    plot.setValues(Result::Download, tableOf(test.download.intervalBytes));
    plot.setValues(Result::Upload, tableOf(test.upload.intervalBytes));
    plot.setDelays(Result::Download, test.downloadLoad);
    plot.setDelays(Result::Upload, test.uploadLoad);
    const int height = plot.isEmpty() ? plainHeight : curveHeight;

    QImage image(cardDensity * cardWidth, cardDensity * height, QImage::Format_RGB32);
    image.setDevicePixelRatio(cardDensity);
    image.fill(colours.ground);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const int wide = cardWidth - 2 * pictureMargin;
    const auto line = [&](int y, int pixels, bool bold, const QColor &colour, const QString &text) {
        painter.setFont(sized(pixels, bold));
        painter.setPen(colour);
        painter.drawText(QRect(pictureMargin, y, wide, 2 * pixels), Qt::AlignLeft | Qt::AlignTop,
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, wide));
    };
    line(pictureMargin, 20, true, colours.text,
         u"%1 · %2"_s.arg(ShareText::name(test), ShareText::time(test)));
    line(pictureMargin + 32, 15, false, colours.quiet, ShareText::where(test));

    const struct
    {
        QString name;
        QString value;
        QColor colour;
    } figures[] = {
        {CardTexts::tr("Download"), ShareText::rate(test.download.averageRate), colours.download},
        {CardTexts::tr("Upload"), ShareText::rate(test.uploadRate()), colours.upload},
        {CardTexts::tr("RTT"), ShareText::roundTrip(test), colours.rtt},
    };
    const int column = wide / 3;
    int x = pictureMargin;
    for (const auto &each : figures) {
        painter.setFont(sized(13, false));
        painter.setPen(colours.quiet);
        painter.drawText(QRect(x, figuresTop, column, 20), Qt::AlignLeft | Qt::AlignTop, each.name);
        painter.setFont(sized(20, true));
        painter.setPen(each.colour);
        painter.drawText(QRect(x, figuresTop + 22, column, 30), Qt::AlignLeft | Qt::AlignTop,
                         each.value);
        x += column;
    }
    if (!plot.isEmpty()) {
        plot.resize(wide, plotHeight);
        plot.render(&painter, QPoint(pictureMargin, plotTop), QRegion(), QWidget::DrawChildren);
    }
    painter.setFont(sized(13, false));
    painter.setPen(colours.quiet);
    painter.drawText(QRect(pictureMargin, height - pictureMargin - 12, wide, 24),
                     Qt::AlignRight | Qt::AlignVCenter,
                     u"%1 %2"_s.arg(Utils::getAppTitle(), Utils::getVersion()));
    return image;
}

} // namespace velometer
