#include "ui/pages/abouttab.h"

#include "utils/translations.h"

#include "support/application.h"
#include "support/rows.h"

#include <QDesktopServices>
#include <QScrollBar>
#include <QTextBrowser>
#include <QUrl>

using namespace Qt::StringLiterals;

class AboutTabTest : public QObject, protected Application
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QUrl &url) { opened.append(url); }

private Q_SLOTS:
    void init()
    {
        for (const QString &scheme : {u"http"_s, u"mailto"_s, u"file"_s})
            QDesktopServices::setUrlHandler(scheme, this, "take");
        open();
        window->showAboutTab();
        opened.clear();
    }

    void thePageIsInTheLanguageOfTheProgram_data()
    {
        const Rows<QString, QString> row("language", "heading");
        row("German", "de", "Wie gemessen wird");
        row("English", "en", "How it is measured");
        row("a language without a page", "fr", "How it is measured");
    }
    void thePageIsInTheLanguageOfTheProgram()
    {
        QFETCH(QString, language);
        QFETCH(QString, heading);
        Translations::install(language);
        QTRY_VERIFY(browser()->toPlainText().contains(heading));
        QScrollBar *bar = browser()->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        bar->setValue(bar->maximum());
        window->showAboutTab();
        QTRY_COMPARE(bar->value(), 0);
    }

    void onlyLinksForABrowserOrAMailProgramAreOpened_data()
    {
        const Rows<QString, bool> row("link", "leaves");
        row("a web page", "http://speed.example/", true);
        row("a mail", "mailto:maker@speed.example", true);
        row("a file", "file:///etc/passwd", false);
        row("relative", "other.html", false);
    }
    void onlyLinksForABrowserOrAMailProgramAreOpened()
    {
        QFETCH(QString, link);
        QFETCH(bool, leaves);
        const QString before = browser()->toPlainText();
        browser()->setHtml(u"<a href=\"%1\">link</a>"_s.arg(link));
        const QPoint place = browser()->cursorRect().center() + QPoint(4, 0);
        QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {}, place);
        QTest::qWait(0);
        QCOMPARE(opened, leaves ? QList<QUrl>{QUrl(link)} : QList<QUrl>{});
        QCOMPARE(browser()->toPlainText(), u"link"_s);
        window->showAboutTab();
        QCOMPARE(browser()->toPlainText(), before);
    }

private:
    QTextBrowser *browser() const { return find<AboutTab>()->findChild<QTextBrowser *>(); }

    QList<QUrl> opened;
};

QTEST_MAIN(AboutTabTest)
#include "abouttab_test.moc"
