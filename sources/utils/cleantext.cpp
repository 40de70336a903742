#include "utils/cleantext.h"

namespace velometer {

namespace {

bool isNoncharacter(char32_t code)
{
    return (code & 0xfffe) == 0xfffe || (code >= 0xfdd0 && code <= 0xfdef);
}

} // namespace

QString cleanText(const QString &text, qsizetype maxLength)
{
    QString clean;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar first = text.at(i);
        char32_t code = first.unicode();
        qsizetype units = 1;
        if (first.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            code = QChar::surrogateToUcs4(first, text.at(i + 1));
            units = 2;
        }
        if (clean.size() + units > maxLength) {
            break;
        }
        const bool halfACharacter = units == 1 && first.isSurrogate();
        if (!halfACharacter && QChar::category(code) != QChar::Other_Control &&
            !isNoncharacter(code)) {
            clean += QStringView(text).mid(i, units);
        }
        i += units - 1;
    }
    return clean;
}

} // namespace velometer
