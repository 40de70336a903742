#include "ui/pages/linkstab.h"

#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "ui/mainwindow.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "support/fakeplatform.h"
#include "support/rows.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class LinksTabTest : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QUrl &url) { opened.append(url.toString(QUrl::FullyDecoded)); }

private Q_SLOTS:
    void init()
    {
        window = std::make_unique<MainWindow>(platform);
        window->show();
        QTRY_VERIFY(window->getController());
        opened.clear();
    }

    void cleanup()
    {
        setHandled(false);
        window.reset();
        Deployment::setCurrent({});
    }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void theAddressesCarryTheUserId_data()
    {
        const Rows<QString, int, QString, QString, bool> row("stored", "port", "page", "mail",
                                                             "hint");
        row("with an id", "52077", 80,
            "http://speed.example/velometer/Controller?page=UserReport&userid=52077",
            "mailto:maker@speed.example?subject=Zenta Velometer Feedback (UserId:52077 "
            "Version:" VELOMETER_VERSION ")",
            false);
        row("before the first test, another port", "", 8080,
            "http://speed.example:8080/velometer/Controller?page=UserReport&userid=",
            "mailto:maker@speed.example?subject=Zenta Velometer Feedback (UserId: "
            "Version:" VELOMETER_VERSION ")",
            true);
        row("an edited setting adds nothing to the address", "1&page=Other", 80,
            "http://speed.example/velometer/Controller?page=UserReport&userid=",
            "mailto:maker@speed.example?subject=Zenta Velometer Feedback (UserId: "
            "Version:" VELOMETER_VERSION ")",
            true);
    }
    void theAddressesCarryTheUserId()
    {
        QFETCH(QString, stored);
        QFETCH(int, port);
        QFETCH(QString, page);
        QFETCH(QString, mail);
        Deployment deployment;
        deployment.webHost = u"speed.example"_s;
        deployment.webPort = port;
        deployment.feedbackMailbox = u"maker@speed.example"_s;
        Deployment::setCurrent(deployment);
        Utils::setSettingsCommonValue(u"UserId"_s, stored);
        setHandled(true);
        window->showLinksTab();
        QTEST(label(u"labelNoUserId"_s)->isVisible(), "hint");
        click(u"websiteButton"_s);
        click(u"feedbackButtun"_s);
        QCOMPARE(opened, QStringList({page, mail}));
        QVERIFY(!label(u"labelAddress"_s)->isVisible());
        const QString log = Utils::getLogEntries();
        QVERIFY(log.contains("URL: "_L1 + QString(page).replace(u'&', "&amp;"_L1)));
        QVERIFY(log.contains("URL (Qt): "_L1 + mail));
    }

    void anAddressThatNothingOpensCanBeCopied()
    {
        window->showLinksTab();
        click(u"feedbackButtun"_s);
        QVERIFY(label(u"labelNotOpened"_s)->isVisible());
        QCOMPARE(label(u"labelAddress"_s)->text(), u"feedback@velometer.invalid"_s);
        click(u"websiteButton"_s);
        QVERIFY(label(u"labelAddress"_s)->text().startsWith("http://127.0.0.1:8080/velometer/"_L1));
        QVERIFY(label(u"labelAddress"_s)->textInteractionFlags() & Qt::TextSelectableByMouse);
        window->showTestTab();
        window->showLinksTab();
        QVERIFY(!label(u"labelAddress"_s)->isVisible());
    }

private:
    void setHandled(bool on)
    {
        for (const QString &scheme : {u"http"_s, u"mailto"_s}) {
            if (on)
                QDesktopServices::setUrlHandler(scheme, this, "take");
            else
                QDesktopServices::unsetUrlHandler(scheme);
        }
    }

    LinksTab *tab() const { return window->findChild<LinksTab *>(); }
    QLabel *label(const QString &name) const { return tab()->findChild<QLabel *>(name); }
    void click(const QString &name) const { tab()->findChild<QPushButton *>(name)->click(); }

    FakePlatform platform;
    std::unique_ptr<MainWindow> window;
    QStringList opened;
};

QTEST_MAIN(LinksTabTest)
#include "linkstab_test.moc"
