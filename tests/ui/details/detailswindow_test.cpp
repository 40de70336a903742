#include "ui/details/detailswindow.h"

#include "db/dbtestresults.h"
#include "ui/details/testdetailwidget.h"
#include "ui/plot/throughputplot.h"
#include "utils/deployment.h"

#include "support/application.h"
#include "support/fakedesktop.h"
#include "support/registeredtest.h"
#include "support/wholetest.h"

#include <QUrl>
#include <QUrlQuery>

namespace velometer {

class DetailsWindowTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        desktop.forget();
        Deployment deployment;
        deployment.webHost = u"service.example"_s;
        deployment.webPort = 80;
        deployment.feedbackMailbox = u"box@service.example"_s;
        Deployment::setCurrent(deployment);
        open();
        page = window->getDetailsWindow();
        store->addDetail(7, u"testTestId"_s, qlonglong(4));
    }

    void showsEveryRowUnderItsTitle()
    {
        const auto whole = gDB->storeTest(WholeTest().value());
        show(whole);
        QVERIFY(page->findChild<ThroughputPlot *>());
        QCOMPARE(page->findChild<TestDetailWidget *>()->grab().toImage().pixelColor(2, 2).name(),
                 u"#aeaeae"_s);
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123);
        QCOMPARE(rows(),
                 (u"Performance Data|Download Average=38000 kBit/s|"
                  "Download Maximum=38175 kBit/s|Upload Average=14200 kBit/s|"
                  "Upload Maximum=14300 kBit/s|RTT Average=30 ms|RTT Minimum=29 ms|"
                  "Downloaded Bytes=36.63 MB|Uploaded Bytes=14.29 MB|"
                  "Total transferred Bytes=50.92 MB|"
                  "Data Budget=at most 60 MB; ended early: upload|"
                  "Delay and Steady Rate|Download Steady Rate=38400 kBit/s|"
                  "Upload Steady Rate=13600 kBit/s|Idle Delay=30 ms|Idle Jitter=0 ms|"
                  "Delay in Download=43 ms|Delay in Download=45 ms|Delay in Download=33|"
                  "Delay in Download=reno|Delay in Upload=362 ms|Delay in Upload=363 ms|"
                  "Delay in Upload=0|Delay in Upload=bbr|Delay in Extra Download=151 ms|"
                  "Delay in Extra Download=cubic|Delay in Extra Upload=850 ms|"
                  "Delay in Extra Upload=vegas|"
                  "Device Information|Connectiontype(s)=Mobile(LTE)|NetworkCell=28394241|"
                  "GSM Signalstrength=55|RSRP=-97.5 dBm|RSRQ=-11.0 dB|SNR=8.3 dB|Band=B20|External "
                  "IP=10.0.0.3|Device IP=192.0.2.2|"
                  "Device Latitude=47.22600|Device Longitude=-8.81800|Device Altitude=412 m|"
                  "Distance Traveled=1001 m|Average Velocity=55 km/h|"
                  "Vert. Accuracy of GPS/Network=25 m|Hor. Accuracy of GPS/Network=28 m|"
                  "Test Server Info|Server Name=speed.example|Server Domain=example|"
                  "Server IP=192.0.2.1|Server Port=8080|Server Country=CH|"
                  "Server State=State|Server City=City|"
                  "Test Info|Date of Test="_s +
                  time.toString(u"yyyy-MM-dd|'Time of Test='hh:mm|"_s) +
                  u"Test Series ID=13|Test ID=4"_s)
                     .split(u'|'));

        // One that the budget left alone, and nobody located.
        show(7);
        QVERIFY(!page->findChild<ThroughputPlot *>());
        QCOMPARE(rows().size(), 4 + 32);
        QCOMPARE(rows().value(16), u"Device Latitude=n/a"_s);
        QCOMPARE(rows().value(18), u"Device Altitude=n/a"_s);
    }

    void showsStoredTextsAsTheyAre()
    {
        store->addDetail(7, u"testServerName"_s, u"<b>bold</b><img src=x>"_s);
        store->addDetail(7, u"testServerCity"_s, QString(1'000'000, u'W'));
        show(7);
        QCOMPARE(rows().value(24), u"Server Name=<b>bold</b><img src=x>"_s);
        const auto widgets = page->findChildren<TestDetailWidget *>();
        QCOMPARE(widgets.value(24)->findChild<QLabel *>(u"value"_s)->textFormat(), Qt::PlainText);
        QVERIFY(rows().value(30).size() < 600);
        QVERIFY(widgets.value(30)->width() <= page->width());
        QTRY_VERIFY(widgets.value(30)->height() > 3 * widgets.value(29)->height());
    }

    void showsAndSendsNothingWithoutDetails()
    {
        show(99);
        QVERIFY(rows().isEmpty());
        click(u"pushButton"_s);
        QVERIFY(!shown<QLabel>(u"labelAddress"_s));
        QVERIFY(Utils::getLogEntries().contains(u"NO DETAILS FOUND FOR ID: 99"_s));
    }

    void mailArrivesWhole()
    {
        const QString server =
            u"Tom & Jerry&cc=x #1 100% %41 %1 %2 Süd [::1] \"<b>\" 'x' \\ + ?\ntwo"_s;
        Utils::setSettingsCommonValue(u"UserId"_s, u"52077"_s);
        store->addDetail(7, u"testServerName"_s, server);
        show(7);
        click(u"pushButton"_s);

        QTRY_COMPARE(desktop.opened().size(), 1);
        const QUrl address(desktop.opened().constFirst());
        QVERIFY(address.isValid() && !address.hasFragment());
        const QUrlQuery query(address.query(QUrl::FullyEncoded));
        QCOMPARE(query.queryItems().size(), 3);
        const auto part = [&query](const QString &name) {
            return query.queryItemValue(name, QUrl::FullyDecoded);
        };
        QCOMPARE(part(u"cc"_s), u"box@service.example"_s);
        QCOMPARE(part(u"subject"_s),
                 u"orvak Velometer for Zenta (UserId:52077 Version:%1)"_s.arg(Utils::getVersion()));
        const QString wanted =
            u"Test Server Info<br>%1<br>Server Name:\t%2<br>Server Domain:"_s.arg(
                QString(49, u'-'), QString(server).replace(u'\n', u"<br>"_s));
        QVERIFY2(part(u"body"_s).contains(wanted), qPrintable(part(u"body"_s)));
        QVERIFY(part(u"body"_s).endsWith(
            u"Test ID:\t4<br><br><br>Link to the measurements:<br>http://service.example/velometer/"
            "Controller?page=UserReport&language=de&userid=52077<br><br>"_s));
    }

private:
    void show(qulonglong id)
    {
        {
            // Gone before its rows are built, as when the list is made anew in between.
            DBTestResults results;
            results.myTestId = id;
            page->setTestResults(&results);
        }
        window->showDetailsWindow();
        QTRY_VERIFY(!shown<QLabel>(u"labelPleaseWait"_s));
        QCoreApplication::processEvents(); // the rows get their places
    }

    /// Title and value of each row; a heading has no value.
    QStringList rows() const
    {
        QStringList texts;
        const auto widgets = page->findChildren<TestDetailWidget *>();
        for (const TestDetailWidget *widget : widgets) {
            const auto *value = widget->findChild<QLabel *>(u"value"_s);
            const QString title = widget->findChild<QLabel *>(u"title"_s)->text();
            texts.append(!value->isHidden() ? u"%1=%2"_s.arg(title, value->text()) : title);
        }
        return texts;
    }

    DetailsWindow *page = nullptr;
    FakeDesktop desktop;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(DetailsWindowTest)
#include "detailswindow_test.moc"
