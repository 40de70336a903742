#include "ui/pages/linkstab.h"

#include "utils/deployment.h"

#include "support/application.h"
#include "support/registeredtest.h"
#include "support/rows.h"

#include <QDesktopServices>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

class LinksTabTest : public QObject, protected Application
{
    Q_OBJECT

public Q_SLOTS:
    void take(const QUrl &url) { opened.append(url.toString(QUrl::FullyDecoded)); }

private Q_SLOTS:
    void init()
    {
        open();
        opened.clear();
    }

    void theAddressesCarryTheUserId_data()
    {
        const Rows<QString, int, QString, QString> row("stored", "port", "page", "mailId");
        row("with an id", "52077", 80,
            "http://speed.example/velometer/Controller?page=UserReport&userid=52077", "52077");
        row("another port", "52077", 8080,
            "http://speed.example:8080/velometer/Controller?page=UserReport&userid=52077", "52077");
        row("an edited setting adds nothing to the address", "1&page=Other", 80, "", "");
    }
    void theAddressesCarryTheUserId()
    {
        QFETCH(QString, stored);
        QFETCH(int, port);
        QFETCH(QString, page);
        QFETCH(QString, mailId);
        Deployment deployment;
        deployment.webHost = u"speed.example"_s;
        deployment.webPort = port;
        deployment.feedbackMailbox = u"maker@speed.example"_s;
        Deployment::setCurrent(deployment);
        Utils::setSettingsCommonValue(u"UserId"_s, stored);
        for (const QString &scheme : {u"http"_s, u"mailto"_s}) {
            QDesktopServices::setUrlHandler(scheme, this, "take");
        }
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
        QCOMPARE(opened, wanted);
        QVERIFY(!shown<QLabel>(u"labelAddress"_s));
    }

    void anAddressThatNothingOpensCanBeCopied()
    {
        Deployment::setCurrent({});
        Utils::setSettingsCommonValue(u"UserId"_s, u"52077"_s);
        for (const QString &scheme : {u"http"_s, u"mailto"_s}) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
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

private:
    QStringList opened;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(LinksTabTest)
#include "linkstab_test.moc"
