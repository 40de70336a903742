#include "ui/pages/resultstab.h"

#include "ui/details/detailswindow.h"
#include "ui/pages/resultlist.h"
#include "ui/pages/testresultwidget.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QMouseEvent>
#include <QScrollBar>

namespace velometer {

namespace {

QString textOf(const QWidget *widget, const char *name)
{
    return widget->findChild<QLabel *>(QLatin1StringView(name))->text();
}

/// As the window system would: to the entry, from where it finds its way up to the list.
void mouse(QWidget *widget, QEvent::Type type, QPoint at)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, widget->mapToGlobal(at), isMove ? Qt::NoButton : Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

class ResultsTabTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        open();
        page = find<ResultsTab>();
        list = find<ResultList>();
        bar = list->verticalScrollBar();
    }

    void fillsAnEntry_data()
    {
        const Rows<QVariant, QString, double, qlonglong, QString, QString> row(
            "timestamp", "type", "download", "rtt", "time", "figures");
        const double night = 1'700'000'000'000;
        const auto na = u"download na, upload na, RTT "_s;
        row("one decimal", night, "Mobile(LTE)", 14'980'249, 1, "2023-11-15 03:43",
            "download 14980.2 kBit/s, upload 7490.1 kBit/s, RTT 1 ms");
        row("failed", night, "WLAN", 0, 0, "2023-11-15 03:43", na + u"na"_s);
        row("a year of five digits", 2.6e14, "Mobile(5G)", 1e300, 31, " ", na + u"31 ms"_s);
        row("no number", QVariant(u"NaN"_s), "Mixed(WLAN,Mobile)", 38'412'000, 31, " ",
            "download 38412.0 kBit/s, upload 19206.0 kBit/s, RTT 31 ms");
    }
    void fillsAnEntry()
    {
        const auto [timestamp, type, download, rtt, time, figures] =
            currentRow<QVariant, QString, double, qlonglong, QString, QString>();
        store->add({.timestamp = timestamp,
                    .download = download,
                    .upload = download / 2,
                    .rtt = rtt,
                    .type = type,
                    .server = QString(100'000, u'%')});
        showResults();
        const TestResultWidget *entry = list->entries().value(0);
        // Made of all that it shows.
        QCOMPARE(entry->accessibleName(), u"12 / 4, %1, LocationIndoorShort, %2, %3, %4"_s.arg(
                                              time, type, QString(120, u'%'), figures));
        const QString icon = type.startsWith(u"Mobile"_s) ? u"wwan"_s : u"wlan"_s;
        const auto image = [](const QIcon &of) { return of.pixmap(24).toImage(); };
        QCOMPARE(image(entry->findChild<QPushButton *>(u"buttonConnectiontype"_s)->icon()),
                 image(QIcon(u":/velometerres/%1.png"_s.arg(icon))));
        QCOMPARE(entry->width(), list->viewport()->width());
    }

    void showsTotalsOrThatThereIsNothing()
    {
        const auto totals = [this] { return textOf(page, "labelTransferedData"); };
        showResults();
        QVERIFY(list->entries().isEmpty());
        QVERIFY(shown<QLabel>(u"labelNoTests"_s));
        QCOMPARE(totals().count(u"0.0 MB"_s), 2);

        store->add({.id = 1, .type = u"WLAN"_s});
        store->addDetail(1, u"totalBytes"_s, qlonglong(3) * 1024 * 1024);
        store->add({.id = 2});
        store->addDetail(2, u"totalBytes"_s, qlonglong(1536) * 1024);
        showResults();
        QCOMPARE(list->entries().size(), 2);
        QVERIFY(!shown<QLabel>(u"labelNoTests"_s));
        QCOMPARE(totals(), u"Transferred Data 4.5 MB (1.5 MB mobile)"_s);
    }

    void opensDetailsOnATap()
    {
        const QPoint press(100, 30);
        for (const auto &[hazard, over, release, opens] :
             {std::tuple{"4 px to the right and down", press, press + QPoint(4, 4), true},
              {"5 px down", press, press + QPoint(0, 5), false},
              {"away and back", press + QPoint(0, 40), press, false}}) {
            init();
            showResults(1);
            TestResultWidget *entry = list->entries().value(0);
            mouse(entry, QEvent::MouseButtonPress, press);
            mouse(entry, QEvent::MouseMove, over);
            mouse(entry, QEvent::MouseMove, release);
            mouse(entry, QEvent::MouseButtonRelease, release);
            QVERIFY2(window->getDetailsWindow()->isVisible() == opens, hazard);
        }
    }

    void aDragFromAPictureScrolls()
    {
        showResults(50);
        for (const QString &name :
             {u"buttonConnectiontype"_s, u"pushButton"_s, u"pushButton_3"_s}) {
            const int before = bar->value();
            dragUp(entryAt(list->viewport()->height() / 2)->findChild<QWidget *>(name), 100);
            QVERIFY2(bar->value() >= before + 90, qPrintable(name));
        }
        QVERIFY(!window->getDetailsWindow()->isVisible());
    }

    void showsTheRightRowEverywhereInALongList()
    {
        showResults(10'000);
        const int height = list->entries().constFirst()->height();
        QVERIFY(height >= 44);
        QCOMPARE(list->widget()->height(), 10'000 * height);
        QVERIFY(list->entries().size() < 30);

        const auto check = [this](int position) {
            bar->setValue(position);
            const int rowHeight = list->entries().constFirst()->height();
            for (int y = 0; y < list->viewport()->height(); y += rowHeight / 3) {
                const int row = (position + y) / rowHeight;
                QCOMPARE(textOf(entryAt(y), "testid"), u"12 / %1"_s.arg(10'000 - row));
            }
        };
        for (const int position : {0, 1, height - 1, height, 10 * height + 7, bar->maximum() - 1,
                                   bar->maximum(), 3 * height, 0, bar->maximum() / 2}) {
            check(position);
        }
        window->resize(480, 2000); // needs more entries
        QCoreApplication::processEvents();
        check(bar->value());
        bar->setValue(0);
        window->setStyleSheet(u"QLabel { font-size: 30px; }"_s);
        QTRY_VERIFY(list->entries().constFirst()->height() > height);
        check(0);
    }

    void followsTheStoreAndKeepsItsPlace()
    {
        showResults(50);
        bar->setValue(700);
        window->showTestTab();
        showResults();
        QCOMPARE(bar->value(), 700);
        // Another program adds a test: what is looked at stays, the beginning shows what is new.
        const QString top = textOf(entryAt(1), "testid");
        store->add({.id = 51, .test = 51});
        const auto height = list->entries().constFirst()->height();
        QTRY_COMPARE(bar->value(), 700 + height);
        QCOMPARE(textOf(entryAt(1), "testid"), top);
        bar->setValue(0);
        store->add({.id = 52, .test = 52});
        QTRY_COMPARE(textOf(entryAt(1), "testid"), u"12 / 52"_s);
    }

    void movesWithTheKeyboard()
    {
        showResults(50);
        const auto current = [this] { return textOf(window->focusWidget(), "testid"); };
        const auto press = [this](Qt::Key key) { QTest::keyClick(window->focusWidget(), key); };
        entryAt(1)->setFocus();
        press(Qt::Key_Up);
        QCOMPARE(current(), u"12 / 50"_s);
        press(Qt::Key_Down);
        QCOMPARE(current(), u"12 / 49"_s);
        press(Qt::Key_End);
        QCOMPARE(current(), u"12 / 1"_s);
        QCOMPARE(bar->value(), bar->maximum());
        QCOMPARE(window->focusWidget(), entryAt(list->viewport()->height() - 2));
        // The wheel takes the list elsewhere: so does the focus go.
        bar->setValue(0);
        QVERIFY(window->focusWidget()->y() < list->viewport()->height());
        const int test = current().section(u' ', -1).toInt();
        press(Qt::Key_Up);
        QCOMPARE(current(), u"12 / %1"_s.arg(test + 1));
        press(Qt::Key_Home);
        press(Qt::Key_PageDown);
        QVERIFY(current() != u"12 / 50"_s);
        press(Qt::Key_Return);
        QVERIFY(window->getDetailsWindow()->isVisible());
    }

private:
    /// With @p added tests more, the last of them on top.
    void showResults(int added = 0)
    {
        QSqlDatabase::database().transaction();
        for (int id = 1; id <= added; ++id) {
            store->add({.id = id, .test = id});
        }
        QSqlDatabase::database().commit();
        window->showResultsTab();
        QVERIFY(!list->isVisible() && shown<QLabel>(u"labelPleaseWait"_s));
        QTRY_VERIFY(list->isVisible());
        QCoreApplication::processEvents();
    }

    TestResultWidget *entryAt(int y) const
    {
        QWidget *at = list->widget()->childAt(50, y - list->widget()->y());
        while (at && !qobject_cast<TestResultWidget *>(at)) {
            at = at->parentWidget();
        }
        return static_cast<TestResultWidget *>(at);
    }

    ResultsTab *page = nullptr;
    ResultList *list = nullptr;
    QScrollBar *bar = nullptr;
};

} // namespace velometer

VELOMETER_WIDGET_TEST(ResultsTabTest)
#include "resultstab_test.moc"
