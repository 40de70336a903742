#include "ui/theme/theme.h"

#include "utils/utils.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

using Colours = Theme::Colours;

constexpr double smallestScale = 0.5;
constexpr double largestScale = 3;
constexpr qreal disabledOpacity = 0.4;

struct Palette
{
    Colours page;
    Colours paper;
};

Colours darkColours()
{
    return {.ground = QColor(0x0e, 0x13, 0x16),
            .surface = QColor(0x17, 0x1e, 0x22),
            .raised = QColor(0x1f, 0x28, 0x2d),
            .line = QColor(0x2a, 0x35, 0x3b),
            .text = QColor(0xea, 0xf0, 0xf2),
            .quiet = QColor(0x95, 0xa4, 0xac),
            .accent = QColor(0x2f, 0xd3, 0xbd),
            .onAccent = QColor(0x04, 0x21, 0x1d),
            .download = QColor(0x56, 0xb8, 0xff),
            .upload = QColor(0xff, 0xb4, 0x54),
            .rtt = QColor(0xb7, 0xa5, 0xff),
            .good = QColor(0x6f, 0xd0, 0x8c),
            .bad = QColor(0xff, 0x8a, 0x7a)};
}

Colours lightColours()
{
    return {.ground = QColor(0xf3, 0xf6, 0xf7),
            .surface = QColor(0xff, 0xff, 0xff),
            .raised = QColor(0xee, 0xf2, 0xf4),
            .line = QColor(0xd9, 0xe1, 0xe5),
            .text = QColor(0x10, 0x18, 0x1c),
            .quiet = QColor(0x56, 0x66, 0x6f),
            .accent = QColor(0x0b, 0x85, 0x77),
            .onAccent = QColor(0xff, 0xff, 0xff),
            .download = QColor(0x0a, 0x66, 0xb0),
            .upload = QColor(0xa0, 0x5a, 0x00),
            .rtt = QColor(0x5b, 0x41, 0xc4),
            .good = QColor(0x1d, 0x7a, 0x3c),
            .bad = QColor(0xb3, 0x26, 0x1e)};
}

Palette givenPalette()
{
    return {.page = {.ground = QColor(0x0e, 0x11, 0x14),
                     .surface = QColor(0x19, 0x1e, 0x23),
                     .raised = QColor(0x1d, 0x22, 0x28),
                     .line = QColor(0x2c, 0x32, 0x38),
                     .text = QColor(0xff, 0xff, 0xff),
                     .quiet = QColor(0x9a, 0xa4, 0xae),
                     .accent = QColor(0x27, 0xd3, 0xbf),
                     .onAccent = QColor(0x00, 0x00, 0x00),
                     .download = QColor(0x4c, 0xc2, 0xff),
                     .upload = QColor(0xff, 0xb3, 0x40),
                     .rtt = QColor(0xb3, 0xa4, 0xff),
                     .good = QColor(0x6f, 0xd0, 0x8c),
                     .bad = QColor(0xff, 0x8a, 0x7a)},
            .paper = {.ground = QColor(0xff, 0xff, 0xff),
                      .surface = QColor(0xff, 0xff, 0xff),
                      .raised = QColor(0xe4, 0xe8, 0xeb),
                      .line = QColor(0xc4, 0xcc, 0xd3),
                      .text = QColor(0x11, 0x11, 0x11),
                      .quiet = QColor(0x4a, 0x53, 0x5b),
                      .accent = QColor(0x0a, 0x74, 0x68),
                      .onAccent = QColor(0xff, 0xff, 0xff),
                      .download = QColor(0x0b, 0x62, 0xa8),
                      .upload = QColor(0x9a, 0x5b, 0x00),
                      .rtt = QColor(0x5a, 0x3f, 0xc0),
                      .good = QColor(0x1d, 0x7a, 0x3c),
                      .bad = QColor(0xb0, 0x00, 0x20)}};
}

const Palette &paletteOf(Theme::Look look)
{
    static const Palette given = givenPalette();
    static const Palette dark{darkColours(), darkColours()};
    static const Palette light{lightColours(), lightColours()};
    switch (look) {
    case Theme::Look::Dark: return dark;
    case Theme::Look::Light: return light;
    case Theme::Look::Given: break;
    }
    return given;
}

/// The names by which style sheets call the colours.
constexpr std::array<std::pair<QLatin1StringView, QColor Colours::*>, 13> names{{
    {"ground"_L1, &Colours::ground},
    {"surface"_L1, &Colours::surface},
    {"raised"_L1, &Colours::raised},
    {"line"_L1, &Colours::line},
    {"text"_L1, &Colours::text},
    {"quiet"_L1, &Colours::quiet},
    {"accent"_L1, &Colours::accent},
    {"onaccent"_L1, &Colours::onAccent},
    {"download"_L1, &Colours::download},
    {"upload"_L1, &Colours::upload},
    {"rtt"_L1, &Colours::rtt},
    {"good"_L1, &Colours::good},
    {"bad"_L1, &Colours::bad},
}};

QString colourOf(const Palette &palette, const QString &name)
{
    constexpr QLatin1StringView onPaper("paper-");
    const bool paper = name.startsWith(onPaper);
    const QString role = paper ? name.mid(onPaper.size()) : name;
    const auto *const found = std::find_if(names.begin(), names.end(),
                                           [&](const auto &each) { return each.first == role; });
    Q_ASSERT_X(found != names.end(), "Theme", qPrintable(name));
    return found == names.end() ? QString()
                                : ((paper ? palette.paper : palette.page).*found->second).name();
}

// "$name" is a colour; sizes of text grow, everything else keeps its size.
QString filled(const QString &source, const Palette &palette, double textScale)
{
    static const QRegularExpression mark(u"\\$([a-z-]+)|font-size: (\\d+)px"_s);
    QString text;
    qsizetype done = 0;
    for (auto each = mark.globalMatch(source); each.hasNext();) {
        const QRegularExpressionMatch match = each.next();
        text += QStringView(source).mid(done, match.capturedStart() - done);
        text += match.captured(1).isEmpty()
                    ? u"font-size: %1px"_s.arg(qRound(match.captured(2).toInt() * textScale))
                    : colourOf(palette, match.captured(1));
        done = match.capturedEnd();
    }
    return text += QStringView(source).mid(done);
}

/// What the style sheet leaves to the toolkit: links, selections, lists of combo boxes.
QPalette toolkitPalette(const Colours &colours)
{
    QPalette palette(colours.raised, colours.ground);
    palette.setColor(QPalette::Base, colours.surface);
    palette.setColor(QPalette::AlternateBase, colours.raised);
    for (const QPalette::ColorRole role :
         {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
        palette.setColor(role, colours.text);
    }
    palette.setColor(QPalette::PlaceholderText, colours.quiet);
    palette.setColor(QPalette::Link, colours.accent);
    palette.setColor(QPalette::LinkVisited, colours.accent);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    return palette;
}

Theme::Look currentLook = Theme::Look::Given;
double currentScale = 1;

QPixmap tinted(QPixmap picture, const QColor &colour, qreal opacity)
{
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    QColor paint = colour;
    paint.setAlphaF(static_cast<float>(opacity));
    painter.fillRect(picture.rect(), paint);
    return picture;
}

void addDrawing(QIcon &icon, const QString &name, const QColor &colour, QIcon::State state)
{
    // The file beside it is the same drawing with twice the pixels.
    for (const auto &suffix : {u".png"_s, u"@2x.png"_s}) {
        const QPixmap drawing(u":/velometerres/"_s + name + suffix);
        icon.addPixmap(tinted(drawing, colour, 1), QIcon::Normal, state);
        icon.addPixmap(tinted(drawing, colour, disabledOpacity), QIcon::Disabled, state);
    }
}

} // namespace

const Theme::Colours &Theme::colours()
{
    return paletteOf(currentLook).page;
}

const Theme::Colours &Theme::paper()
{
    return paletteOf(currentLook).paper;
}

Theme::Look Theme::look()
{
    return currentLook;
}

int Theme::pixels(int designed)
{
    return qRound(designed * currentScale);
}

void Theme::wear(Look look, double textScale)
{
    currentLook = look;
    currentScale = std::clamp(textScale, smallestScale, largestScale);
    QApplication::setPalette(toolkitPalette(colours()));
    qApp->setStyleSheet(styleSheet(currentLook, currentScale));
}

QIcon Theme::icon(const QString &name, const QColor &colour)
{
    QIcon icon;
    addDrawing(icon, name, colour, QIcon::Off);
    return icon;
}

QIcon Theme::checkIcon(const QString &name, const QColor &unchecked, const QColor &checked)
{
    QIcon icon;
    addDrawing(icon, name, unchecked, QIcon::Off);
    addDrawing(icon, name + "_checked"_L1, checked, QIcon::On);
    return icon;
}

QString Theme::named(const QString &text)
{
    return filled(text, paletteOf(currentLook), 1);
}

QString Theme::styleSheet(Look look, double textScale)
{
    // What is the same in every look comes first, so that a look has the last word.
    const QString source = Utils::readFile(u":/velometerres/pages.qss"_s) +
                           Utils::readFile(look == Look::Given ? u":/velometerres/given.qss"_s
                                                               : u":/velometerres/modern.qss"_s);
    return filled(source, paletteOf(look), textScale);
}

} // namespace velometer
