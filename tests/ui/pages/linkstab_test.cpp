// The pages that lead to a browser or to a mail program.

#include "ui/pages/linkstab.h"

#include "ui/pages/abouttab.h"
#include "utils/deployment.h"
#include "utils/translations.h"

#include "support/application.h"
#include "support/fakedesktop.h"
#include "support/registeredtest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTextBrowser>
#include <QUrl>

#include <optional>

namespace velometer {

class LinksTabTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        desktop.emplace();
        open();
    }
    void cleanup() { desktop.reset(); }

    void theAddressesCarryTheUserId()
    {
        const QString path = u"/velometer/Controller?page=UserReport&userid=52077"_s;
        for (const auto &[stored, port, page, mailId] :
             {std::tuple{u"52077"_s, 80, u"http://speed.example"_s + path, u"52077"_s},
              {u"52077"_s, 8080, u"http://speed.example:8080"_s + path, u"52077"_s},
              // An edited setting adds nothing to the address.
              {u"1&page=Other"_s, 80, QString(), QString()}}) {
            open();
            desktop->forget();
            Deployment deployment;
            deployment.webHost = u"speed.example"_s;
            deployment.webPort = port;
            deployment.feedbackMailbox = u"maker@speed.example"_s;
            Deployment::setCurrent(deployment);
            Utils::setSettingsCommonValue(u"UserId"_s, stored);
            window->showLinksTab();
            QCOMPARE(shown<QLabel>(u"labelNoUserId"_s) != nullptr, page.isEmpty());
            click(u"websiteButton"_s);
            click(u"feedbackButtun"_s);
            QStringList wanted{
                u"mailto:maker@speed.example?subject=Zenta Velometer Feedback (UserId:%1 Version:%2)"_s
                    .arg(mailId, QLatin1StringView(VELOMETER_VERSION))};
            QVERIFY(Utils::getLogEntries().contains("URL (Qt): "_L1 + wanted.constFirst()));
            if (!page.isEmpty()) {
                wanted.prepend(page);
            }
            QTRY_COMPARE(opened(), wanted);
            // Desktops say that they open an address and do nothing.
            QCOMPARE(label(u"labelAddress"_s), u"maker@speed.example"_s);
            click(u"buttonCopy"_s);
            QCOMPARE(QGuiApplication::clipboard()->text(), u"maker@speed.example"_s);
        }
    }

    void anAddressThatNothingOpensCanBeCopied()
    {
        Deployment::setCurrent({});
        Utils::setSettingsCommonValue(u"UserId"_s, u"52077"_s);
        FakeDesktop::takeAway();
        window->showLinksTab();
        click(u"feedbackButtun"_s);
        QVERIFY(shown<QLabel>(u"labelNotOpened"_s));
        QCOMPARE(label(u"labelAddress"_s), u"feedback@velometer.invalid"_s);
        click(u"websiteButton"_s);
        QVERIFY(label(u"labelAddress"_s).startsWith("http://127.0.0.1:8080/velometer/"_L1));
        QVERIFY(shown<QLabel>(u"labelAddress"_s)->textInteractionFlags() &
                Qt::TextSelectableByMouse);
        window->showTestTab();
        window->showLinksTab();
        QVERIFY(!shown<QLabel>(u"labelAddress"_s));
    }

    void theAboutPageIsInTheLanguageOfTheProgram()
    {
        window->showAboutTab();
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

    void theAboutPageOpensOnlyLinksForABrowserOrAMailProgram()
    {
        window->showAboutTab();
        const QString before = browser()->toPlainText();
        for (const QString &link : {u"http://speed.example/"_s, u"mailto:maker@speed.example"_s,
                                    u"file:///etc/passwd"_s}) {
            desktop->forget();
            browser()->setHtml(u"<a href=\"%1\">link</a>"_s.arg(link));
            const QPoint place = browser()->cursorRect().center() + QPoint(4, 0);
            QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {}, place);
            QTest::qWait(0);
            const bool leaves = !link.startsWith("file"_L1);
            QTRY_COMPARE(opened(), leaves ? QStringList{link} : QStringList());
            QCOMPARE(shown<QLabel>(u"labelAddress"_s) != nullptr, leaves);
            QCOMPARE(browser()->toPlainText(), u"link"_s);
            window->showAboutTab();
            QCOMPARE(browser()->toPlainText(), before);
        }
    }

private:
    QTextBrowser *browser() const { return find<AboutTab>()->findChild<QTextBrowser *>(); }

    QStringList opened() const
    {
        QStringList addresses;
        for (const QString &each : desktop->opened()) {
            addresses.append(QUrl(each).toString(QUrl::FullyDecoded));
        }
        return addresses;
    }

    std::optional<FakeDesktop> desktop;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(LinksTabTest)
#include "linkstab_test.moc"
