#include "cli/pageprinter.h"

#include "app/qrcode.h"

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// What a reader needs around the code.
constexpr int quietZone = 4; // modules

QByteArray asCharacters(const QrCode &code)
{
    QString text;
    for (int y = -quietZone; y < code.size() + quietZone; y += 2) {
        text += u"\033[30;107m"_s; // black on bright white
        for (int x = -quietZone; x < code.size() + quietZone; ++x) {
            const bool upper = code.isDark(x, y);
            const bool lower = code.isDark(x, y + 1);
            text += upper && lower ? u'█' : upper ? u'▀' : lower ? u'▄' : u' ';
        }
        text += u"\033[0m\n"_s;
    }
    return text.toUtf8();
}

} // namespace

void PagePrinter::print(const QString &address, Output &out)
{
    out.line(address);
    const auto code = out.isTerminal() ? QrCode::of(address) : std::nullopt;
    if (code) {
        out.write(asCharacters(*code));
    }
}

} // namespace velometer
