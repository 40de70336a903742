#include "ui/pages/abouttab.h"

#include "utils/translations.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QDesktopServices>
#include <QScrollBar>
#include <QTextBrowser>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

class AboutTabTest : public QObject, protected Application
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QUrl &url) { opened.append(url); }

private Q_SLOTS:
    void init()
    {
        for (const QString &scheme : {u"http"_s, u"mailto"_s, u"file"_s}) {
            QDesktopServices::setUrlHandler(scheme, this, "take");
        }
        open();
        window->showAboutTab();
        opened.clear();
    }

    void thePageIsInTheLanguageOfTheProgram()
    {
        for (const auto &[language, heading] :
             {std::pair{u"de"_s, u"Wie gemessen wird"_s}, {u"fr"_s, u"How it is measured"_s}}) {
            Translations::install(language);
            QTRY_VERIFY(browser()->toPlainText().contains(heading));
            QScrollBar *bar = browser()->verticalScrollBar();
            QTRY_VERIFY(bar->maximum() > 0);
            bar->setValue(bar->maximum());
            window->showAboutTab();
            QTRY_COMPARE(bar->value(), 0);
        }
    }

    void onlyLinksForABrowserOrAMailProgramAreOpened()
    {
        const QString before = browser()->toPlainText();
        for (const QString &link : {u"http://speed.example/"_s, u"mailto:maker@speed.example"_s,
                                    u"file:///etc/passwd"_s}) {
            opened.clear();
            browser()->setHtml(u"<a href=\"%1\">link</a>"_s.arg(link));
            const QPoint place = browser()->cursorRect().center() + QPoint(4, 0);
            QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {}, place);
            QTest::qWait(0);
            const bool leaves = !link.startsWith("file"_L1);
            QCOMPARE(opened, leaves ? QList<QUrl>{QUrl(link)} : QList<QUrl>{});
            QCOMPARE(browser()->toPlainText(), u"link"_s);
            window->showAboutTab();
            QCOMPARE(browser()->toPlainText(), before);
        }
    }

private:
    QTextBrowser *browser() const { return find<AboutTab>()->findChild<QTextBrowser *>(); }

    QList<QUrl> opened;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(AboutTabTest)
#include "abouttab_test.moc"
