#include "ui/pages/settingstab.h"

#include "data/testserver.h"
#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "ui/mainwindow.h"
#include "ui/pages/serverentrywidget.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "support/fakeplatform.h"
#include "support/rows.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>

using namespace Qt::StringLiterals;

class SettingsTabTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qApp->setStyleSheet(Utils::readFile(u":/velometerres/velometer.qss"_s)); }

    void init()
    {
        Translations::install(u"en"_s);
        Utils::setSettingsValue(u"TestServer.Hostname"_s, QString());
        Utils::setSettingsValue(u"AdvMode"_s, QString());
        open();
    }

    void cleanup() { window.reset(); }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void seriesModeIsAsTheLastRunLeftIt_data()
    {
        const Rows<QString, bool, QString> row("stored", "on", "afterClick");
        row("never set", "", false, "set");
        row("off", "notset", false, "set");
        row("on", "set", true, "notset");
        row("damaged", "SET ", false, "set");
    }
    void seriesModeIsAsTheLastRunLeftIt()
    {
        QFETCH(QString, stored);
        QFETCH(bool, on);
        Utils::setSettingsValue(u"AdvMode"_s, stored);
        open();
        QCOMPARE(button(u"buttonAdvMode"_s)->isChecked(), on);
        button(u"buttonAdvMode"_s)->click();
        QTEST(Utils::getSettingsValue(u"AdvMode"_s), "afterClick");
        open();
        QCOMPARE(button(u"buttonAdvMode"_s)->isChecked(), !on);
    }

    void aTapAnywhereOnARowChoosesItsServerAlone()
    {
        QCOMPARE(checked(), QList<int>{0});
        for (const QString &place : {u"labelServerAdress"_s, u"checkBox"_s, u"checkBox"_s}) {
            tap(1, place);
            QTRY_COMPARE(checked(), QList<int>{1});
        }
        QCOMPARE(window->getController()->getSelectedServer(), entries().at(1)->getServer());
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s), u"127.0.0.2"_s);
    }

    void showingThePageMarksTheServerOfTheNextTest_data()
    {
        const Rows<QString, int, QList<int>> row("host", "port", "marked");
        row("one of the table", "127.0.0.3", 8080, {2});
        row("the host of one, another port", "127.0.0.3", 80, {});
        row("not in the table", "speed.example", 8080, {});
    }
    void showingThePageMarksTheServerOfTheNextTest()
    {
        QFETCH(QString, host);
        QFETCH(int, port);
        TestServer server(nullptr);
        server.setHostname(host);
        server.setPort(port);
        entries().at(4)->setServerEnabled(true);
        window->getController()->setTestServer(&server);
        window->showSettingsTab();
        QTEST(checked(), "marked");
    }

    void anotherLanguageIsShownAtOnceAndRemembered()
    {
        button(u"buttonGerman"_s)->click();
        QTRY_COMPARE(serverName(3), u"IP-Plus Deutschland"_s);
        QCOMPARE(Utils::getSettingsValue(u"Language"_s), u"de"_s);
        QVERIFY(!button(u"buttonEnglish"_s)->isChecked());
        button(u"buttonGerman"_s)->click();
        QVERIFY(button(u"buttonGerman"_s)->isChecked());
        button(u"buttonEnglish"_s)->click();
        QTRY_COMPARE(serverName(3), u"IP-Plus Germany"_s);
    }

    void aLowWindowShrinksTheListAlone()
    {
        window->resize(400, 560);
        QTest::qWait(0);
        const QWidget *above = nullptr;
        for (const QString &name :
             {u"header"_s, u"buttonNewSeries"_s, u"buttonClearDatabase"_s, u"labelChooseServer"_s,
              u"scrollArea"_s, u"buttonGerman"_s, u"buttonAdvMode"_s, u"navigation"_s}) {
            const auto *widget = tab()->findChild<QWidget *>(name);
            if (above)
                QVERIFY2(place(widget).top() > place(above).bottom(), qPrintable(name));
            QVERIFY2(tab()->rect().contains(place(widget)), qPrintable(name));
            above = widget;
        }
    }

private:
    void open()
    {
        window.reset();
        window = std::make_unique<MainWindow>(platform);
        window->resize(MainWindow::designSize);
        window->show();
        QTRY_VERIFY(window->getController());
        window->showSettingsTab();
    }

    SettingsTab *tab() const { return window->findChild<SettingsTab *>(); }
    QPushButton *button(const QString &name) const { return tab()->findChild<QPushButton *>(name); }
    QList<ServerEntryWidget *> entries() const
    {
        return tab()->findChildren<ServerEntryWidget *>();
    }
    QRect place(const QWidget *widget) const
    {
        return {widget->mapTo(tab(), QPoint()), widget->size()};
    }

    QString serverName(int index) const
    {
        return entries().at(index)->findChild<QLabel *>(u"labelServerName"_s)->text();
    }

    QList<int> checked() const
    {
        QList<int> found;
        for (int i = 0; i < entries().size(); ++i) {
            if (entries().at(i)->findChild<QPushButton *>(u"checkBox"_s)->isChecked())
                found.append(i);
        }
        return found;
    }

    /// Through the window, as a finger does it.
    void tap(int index, const QString &name) const
    {
        const auto *part = entries().at(index)->findChild<QWidget *>(name);
        QTest::mouseClick(window->windowHandle(), Qt::LeftButton, {},
                          part->mapTo(window.get(), part->rect().center()));
    }

    FakePlatform platform;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(SettingsTabTest)
#include "settingstab_test.moc"
