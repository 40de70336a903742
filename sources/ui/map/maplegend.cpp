#include "ui/map/maplegend.h"

#include "ui/theme/theme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

namespace velometer {

namespace {

constexpr int markSize = 18;     // px
constexpr int rowHeight = 24;    // px
constexpr int textSize = 13;     // px
constexpr int afterMark = 5;     // px
constexpr int afterEntry = 14;   // px
constexpr int narrowWidth = 600; // px

} // namespace

/// The entries one after the other, in as many rows as they need.
class LegendEntries : public QWidget
{
    Q_OBJECT

public:
    explicit LegendEntries(QWidget *parent)
        : QWidget(parent)
    {
        QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        policy.setHeightForWidth(true);
        setSizePolicy(policy);
    }

    void show(QList<MapLegend::Entry> what)
    {
        entries = std::move(what);
        QStringList names;
        for (const auto &entry : std::as_const(entries)) {
            names += entry.sign.isEmpty() ? entry.name : entry.sign + u' ' + entry.name;
        }
        setAccessibleName(names.join(QStringLiteral(", ")));
        updateGeometry();
        update();
    }

    QSize sizeHint() const override { return {0, rowHeight}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return layOut(width, nullptr); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        layOut(width(), &painter);
    }

private:
    QFont textFont() const
    {
        QFont result = font();
        result.setBold(false);
        result.setPixelSize(Theme::pixels(textSize));
        return result;
    }

    /// The height that is needed; paints with @p painter where there is one.
    int layOut(int width, QPainter *painter) const
    {
        const QFont text = textFont();
        const QFontMetrics metrics(text);
        const int row = std::max(rowHeight, metrics.height() + 4);
        int x = 0;
        int y = 0;
        for (const MapLegend::Entry &entry : entries) {
            const int wide =
                std::min(markSize + afterMark + metrics.horizontalAdvance(entry.name), width);
            if (x > 0 && x + wide > width) {
                x = 0;
                y += row;
            }
            if (painter) {
                paint(*painter, QRect(x, y, wide, row), entry, text);
            }
            x += wide + afterEntry;
        }
        return y + row;
    }

    static void paint(QPainter &painter, const QRect &area, const MapLegend::Entry &entry,
                      const QFont &text)
    {
        const QRectF mark(area.left(), area.center().y() - markSize / 2.0, markSize, markSize);
        painter.setPen(Qt::NoPen);
        painter.setBrush(entry.colour);
        painter.drawRoundedRect(mark, 4, 4);
        QFont sign = text;
        sign.setBold(true);
        sign.setPixelSize(markSize / 2 + 1);
        painter.setFont(sign);
        painter.setPen(QColor(0x10, 0x14, 0x18));
        painter.drawText(mark, Qt::AlignCenter, entry.sign);
        painter.setFont(text);
        painter.setPen(Theme::colours().text);
        const QRect name = area.adjusted(markSize + afterMark, 0, 1, 0);
        painter.drawText(name, Qt::AlignLeft | Qt::AlignVCenter,
                         QFontMetrics(text).elidedText(entry.name, Qt::ElideRight, name.width()));
    }

    QList<MapLegend::Entry> entries;
};

MapLegend::MapLegend(QWidget *parent)
    : QWidget(parent)
    , buttons(new QBoxLayout(QBoxLayout::LeftToRight))
    , button(new QPushButton(this))
    , tracks(new QPushButton(this))
    , list(new LegendEntries(this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 2, 8, 2);
    row->setSpacing(afterEntry);
    row->addLayout(buttons, 0);
    row->setAlignment(buttons, Qt::AlignTop);
    buttons->setSpacing(0);
    row->addWidget(list, 1, Qt::AlignVCenter);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    for (const auto &[each, name] : {std::pair(button, QStringLiteral("buttonColouring")),
                                     std::pair(tracks, QStringLiteral("buttonTracks"))}) {
        each->setObjectName(name);
        each->setProperty("role", QStringLiteral("chip"));
        each->setAutoDefault(true);
        each->setFocusPolicy(Qt::TabFocus);
        buttons->addWidget(each);
    }
    connect(tracks, &QPushButton::clicked, this, &MapLegend::tracksClicked);
    connect(button, &QPushButton::clicked, this, [this] {
        chosen = chosen == Colouring::Connection ? Colouring::Rate
                 : chosen == Colouring::Rate     ? Colouring::Signal
                                                 : Colouring::Connection;
        retranslate();
        Q_EMIT colouringChanged();
    });
    retranslate();
    setEntries({});
}

void MapLegend::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    buttons->setDirection(width() < narrowWidth ? QBoxLayout::TopToBottom
                                                : QBoxLayout::LeftToRight);
}

void MapLegend::setEntries(QList<Entry> entries)
{
    button->setVisible(!entries.isEmpty());
    list->setVisible(!entries.isEmpty());
    list->show(std::move(entries));
}

void MapLegend::retranslate()
{
    button->setText(chosen == Colouring::Rate     ? tr("Colour: download")
                    : chosen == Colouring::Signal ? tr("Colour: signal")
                                                  : tr("Colour: connection"));
    tracks->setText(tr("Tracks"));
    tracks->setAccessibleDescription(
        tr("Record where you go and what your network is there, and what was recorded"));
    button->setAccessibleDescription(tr("What the colours on the map tell"));
}

} // namespace velometer

#include "maplegend.moc"
