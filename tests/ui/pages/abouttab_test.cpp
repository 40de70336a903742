#include "ui/pages/abouttab.h"

#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "ui/mainwindow.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "support/fakeplatform.h"
#include "support/rows.h"

#include <QDesktopServices>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QUrl>

using namespace Qt::StringLiterals;

class AboutTabTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QUrl &url) { opened.append(url); }

private Q_SLOTS:
    void initTestCase()
    {
        qApp->setStyleSheet(Utils::readFile(u":/velometerres/velometer.qss"_s));
        for (const QString &scheme : {u"http"_s, u"https"_s, u"mailto"_s, u"file"_s, u"evil"_s})
            QDesktopServices::setUrlHandler(scheme, this, "take");
    }

    void init()
    {
        window = std::make_unique<MainWindow>(platform);
        window->resize(MainWindow::designSize);
        window->show();
        QTRY_VERIFY(window->getController());
        opened.clear();
    }

    void cleanup() { window.reset(); }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

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
        window->showAboutTab();
        Translations::install(language);
        QTRY_VERIFY(browser()->toPlainText().contains(heading));
    }

    void onlyLinksForABrowserOrAMailProgramAreOpened_data()
    {
        const Rows<QString, bool> row("link", "leaves");
        row("a web page", "https://www.openstreetmap.org/copyright", true);
        row("a plain one", "http://speed.example/", true);
        row("a mail", "mailto:maker@speed.example", true);
        row("a file", "file:///etc/passwd", false);
        row("another program", "evil:run", false);
        row("relative", "other.html", false);
    }
    void onlyLinksForABrowserOrAMailProgramAreOpened()
    {
        QFETCH(QString, link);
        QFETCH(bool, leaves);
        window->showAboutTab();
        const QString before = browser()->toPlainText();
        browser()->setHtml(u"<a href=\"%1\">link</a>"_s.arg(link));
        const QPoint place = browser()->cursorRect().center() + QPoint(4, 0);
        QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {}, place);
        QTRY_COMPARE(browser()->toPlainText(), u"link"_s);
        QTest::qWait(0);
        QCOMPARE(opened, leaves ? QList<QUrl>{QUrl(link)} : QList<QUrl>{});
        window->showAboutTab();
        QCOMPARE(browser()->toPlainText(), before);
    }

    void thePageOpensAtItsStart()
    {
        window->showAboutTab();
        QScrollBar *bar = browser()->verticalScrollBar();
        QTRY_VERIFY(bar->maximum() > 0);
        bar->setValue(bar->maximum());
        window->showAboutTab();
        QTest::qWait(0);
        QCOMPARE(bar->value(), 0);
    }

private:
    QTextBrowser *browser() const
    {
        return window->findChild<AboutTab *>()->findChild<QTextBrowser *>(u"textBrowser"_s);
    }

    FakePlatform platform;
    std::unique_ptr<MainWindow> window;
    QList<QUrl> opened;
};

QTEST_MAIN(AboutTabTest)
#include "abouttab_test.moc"
