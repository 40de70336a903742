#include "context/cleantext.h"

#include <QTest>

using namespace Qt::StringLiterals;

class CleanTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleans_data();
    void cleans();
};

void CleanTextTest::cleans_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clean");
    const QString longText(255, u'a');
    const QString smile = u"\U0001F600"_s;
    QTest::newRow("ordinary") << u" Zürich 5G "_s << u" Zürich 5G "_s;
    QTest::newRow("terminal sequence")
        << u"a\u001b[2J\u0007\r\n\tb\u0000\u007f\u009bc"_s << u"a[2Jbc"_s;
    QTest::newRow("too long") << longText + u"bc"_s << longText + u'b';
    QTest::newRow("pair at the end") << longText + smile << longText;
    QTest::newRow("pair kept") << smile << smile;
    QTest::newRow("half a pair") << QString(smile.at(0)) + u'x' + smile.at(1) << u"x"_s;
    QTest::newRow("no character") << u"a\uffff\ufdd0\U0001fffe"_s << u"a"_s;
    QTest::newRow("only controls") << QString(100'000, u'\n') + u'x' << u"x"_s;
}

void CleanTextTest::cleans()
{
    QFETCH(QString, text);
    QTEST(cleanText(text), "clean");
}

QTEST_GUILESS_MAIN(CleanTextTest)
#include "cleantext_test.moc"
