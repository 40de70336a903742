#include "utils/cleantext.h"

#include "support/registeredtest.h"
#include "support/rows.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace velometer {

class CleanTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleans_data()
    {
        const Rows<QString, QString> row("text", "clean");
        const QString longText(255, u'a');
        const QString smile = u"\U0001F600"_s;
        row("terminal sequence", u"a\u001b[2J\u0007\r\n\tb\u0000\u007f\u009bc"_s, "a[2Jbc");
        row("too long", longText + u"bc"_s, longText + u'b');
        row("pair at the end", longText + smile, longText);
        row("half a pair", QString(smile.at(0)) + smile + smile.at(1), smile);
        row("no character", "a\uffff\ufdd0\U0001fffe", "a");
        row("only controls", QString(100'000, u'\n') + u'x', "x");
    }
    void cleans()
    {
        QFETCH(QString, text);
        QTEST(cleanText(text), "clean");
    }
};

} // namespace velometer

VELOMETER_TEST(CleanTextTest)
#include "cleantext_test.moc"
