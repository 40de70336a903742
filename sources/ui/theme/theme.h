#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace velometer {

/// What the application looks like now: named colours, sizes of text, and the style sheet made of
/// them. Widgets that paint themselves ask here whenever they paint; those that keep a picture make
/// it anew on QEvent::StyleChange, which follows every change. Main thread only.
class Theme
{
public:
    enum class Look {
        Given, ///< the handset's: white on black, white lists
        Dark,
        Light,
    };

    /// One colour for each role, the same roles in every look.
    struct Colours
    {
        QColor ground, surface, raised, line;
        QColor text, quiet;
        QColor accent, onAccent;
        QColor download, upload, rtt;
        QColor good, bad;
    };

    /// Of a page.
    static const Colours &colours();
    /// Of lists, which are paper in the given look and like everything else in the others.
    static const Colours &paper();

    static Look look();
    static bool isGiven() { return look() == Look::Given; }

    /// Changes the look of the whole application; texts are @p textScale times (0.5 to 3) as large
    /// as designed.
    static void wear(Look look, double textScale = 1);
    /// The size of a text that is designed with @p designed px.
    static int pixels(int designed);

    /// The drawing @p name of the application's images, in @p colour; paler where it is disabled.
    static QIcon icon(const QString &name, const QColor &colour);

    /// The same of a button that is checked or not: @p name, and @p name with "_checked".
    static QIcon checkIcon(const QString &name, const QColor &unchecked, const QColor &checked);

    /// @p text with every "$name" of a colour replaced, as in the style sheets.
    static QString named(const QString &text);

    /// What wear() gives the application.
    static QString styleSheet(Look look, double textScale);
};

} // namespace velometer
