#include "ui/pages/resultstab.h"

#include "ui/details/detailswindow.h"
#include "ui/pages/resultgroupheader.h"
#include "ui/pages/resultlist.h"
#include "ui/pages/testresultwidget.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
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
        int height = list->entries().constFirst()->height();
        QVERIFY(height >= 44);
        int heading = ResultGroupHeader::heightOf(true);
        QVERIFY(heading >= 44);
        QCOMPARE(list->widget()->height(), heading + 10'000 * height);
        QVERIFY(list->entries().size() < 30);

        const auto check = [&](int position) {
            bar->setValue(position);
            for (int y = 0; y < list->viewport()->height(); y += height / 3) {
                if (position + y < heading) {
                    continue;
                }
                const int row = (position + y - heading) / height;
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
        window->setStyleSheet(u"QLabel#testid { font-size: 40px; }"_s);
        QTRY_VERIFY(list->entries().constFirst()->height() > height);
        height = list->entries().constFirst()->height();
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
        QTRY_COMPARE(textOf(entryAt(ResultGroupHeader::heightOf(true) + 1), "testid"),
                     u"12 / 52"_s);
    }

    void movesWithTheKeyboard()
    {
        showResults(50);
        const auto current = [this] { return textOf(window->focusWidget(), "testid"); };
        const auto press = [this](Qt::Key key) { QTest::keyClick(window->focusWidget(), key); };
        entryAt(ResultGroupHeader::heightOf(true) + 1)->setFocus();
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
        // The heading: closes its group, and opens it again.
        press(Qt::Key_Left);
        QCOMPARE(list->listing().items().size(), 1U);
        press(Qt::Key_Return);
        press(Qt::Key_Down);
        QCOMPARE(current(), u"12 / 50"_s);
        press(Qt::Key_PageDown);
        QVERIFY(current() != u"12 / 50"_s);
        press(Qt::Key_Return);
        QVERIFY(window->getDetailsWindow()->isVisible());
    }

    void filtersByItsChipsAndSaysSo()
    {
        store->add({.id = 1, .test = 1, .type = u"WLAN"_s});
        store->add({.id = 2, .test = 2});
        store->add({.id = 3, .test = 3, .server = u"other.example"_s});
        showResults();
        const auto shownIds = [this] { return list->listing().ids(); };
        QCOMPARE(label(u"labelCount"_s), u"3 test(s)"_s);
        choose(u"chipConnection"_s, u"4G (LTE)"_s);
        QCOMPARE(shownIds(), (QList<qulonglong>{3, 2}));
        QVERIFY(button(u"chipConnection"_s)->text().startsWith(u"4G"_s));
        choose(u"chipServer"_s, u"other.example"_s);
        QCOMPARE(label(u"labelCount"_s), u"1 of 3 tests"_s);
        click(u"chipSearch"_s);
        QTest::keyClicks(window->focusWidget(), u"nowhere"_s);
        QTRY_VERIFY(shown<QLabel>(u"labelNoTests"_s));
        QVERIFY(label(u"labelNoTests"_s).contains(u"filter"_s));
        click(u"buttonClear"_s);
        QCOMPARE(shownIds(), (QList<qulonglong>{3, 2, 1}));
        QVERIFY(!shown<QLabel>(u"labelNoTests"_s) && !shown<QLineEdit>(u"search"_s));
        choose(u"chipOrder"_s, u"Shortest RTT"_s);
        QCOMPARE(list->listing().order(), ResultListing::Order::Rtt);
    }

    void deletesExactlyTheChosenTests()
    {
        showResults(3);
        store->addDetail(3, u"reportQueueId"_s, qlonglong(1));
        XMLData report;
        report.xml = u"<a/>"_s;
        QVERIFY(gDB->insertOrUpdateXMLFile(&report));
        click(u"buttonSelect"_s);
        QVERIFY(!button(u"buttonDelete"_s)->isEnabled());
        const int y = ResultGroupHeader::heightOf(true) + 10;
        const int height = list->entries().constFirst()->height();
        for (const int row : {0, 1, 1, 2}) { // the middle one twice
            dragUp(entryAt(y + row * height), 0);
            QTRY_VERIFY(!window->getDetailsWindow()->isVisible());
        }
        QTRY_COMPARE(list->selection(), (QList<qulonglong>{3, 1}));
        QTest::mouseDClick(entryAt(y), Qt::LeftButton); // so quickly that they are a double click
        QCOMPARE(list->selection(), (QList<qulonglong>{3, 1}));
        click(u"buttonDelete"_s);
        QVERIFY(label(u"labelMessage"_s).startsWith(u"2 test(s)"_s));
        QVERIFY(label(u"labelMessage"_s).contains(u"1 report(s) of them"_s));
        click(u"buttonCancel"_s);
        QCOMPARE(gDB->countResults(), 3);
        click(u"buttonDelete"_s);
        click(u"buttonOk"_s);
        QTRY_COMPARE(gDB->countResults(), 1);
        QVERIFY(gDB->getResultsById(2));
        QCOMPARE(gDB->countUnsentXMLFiles(), 0);
        QTRY_COMPARE(label(u"labelMessage"_s), u"2 test(s) deleted."_s);
        click(u"buttonOk"_s);
        QTRY_COMPARE(list->listing().ids(), QList<qulonglong>{2});
        QVERIFY(!list->isSelecting());
    }

    void exportsAndSharesWhereItSays()
    {
        qputenv("HOME", QFile::encodeName(store->path()));
        showResults(2);
        click(u"buttonSelect"_s);
        click(u"buttonSelect"_s); // all
        choose(u"buttonExport"_s, u"CSV, for spreadsheets"_s);
        QTRY_VERIFY(shown<QLabel>(u"labelMessage"_s) &&
                    label(u"labelMessage"_s).startsWith(u"2 test(s) written to:<br>"_s));
        const QString file = label(u"labelMessage"_s).section(u"<br>"_s, 1);
        QVERIFY2(QFile::exists(file), qPrintable(file));
        click(u"buttonOk"_s);
        // A single test also as a picture, from its details.
        dragUp(entryAt(ResultGroupHeader::heightOf(true) + 10), 0);
        QTRY_VERIFY(window->getDetailsWindow()->isVisible() && button(u"buttonShare"_s));
        choose(u"buttonShare"_s, u"Save picture"_s);
        const QString picture = label(u"labelMessage"_s).section(u"<br>"_s, 1);
        QCOMPARE(QImage(picture).width(), 1080);
        click(u"buttonOk"_s);
        choose(u"buttonShare"_s, u"Copy text"_s);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 u"Test 12 / 2, 2023-11-15 03:43\nLocationIndoorShort · Mobile(LTE) · speed.example"
                 "\nDownload: 38412 kBit/s\nUpload: 14980 kBit/s\nRTT: 31 ms"_s);
    }

    void leadsThroughTheTestsAndBack()
    {
        showResults(3);
        dragUp(entryAt(ResultGroupHeader::heightOf(true) + 10), 0);
        QTRY_VERIFY(window->getDetailsWindow()->isVisible());
        const auto test = [this] { return label(u"labelTest"_s); };
        QTRY_COMPARE(test(), u"Test 12 / 3"_s);
        QVERIFY(!button(u"buttonPrevious"_s)->isEnabled());
        QTest::keyClick(window->getDetailsWindow(), Qt::Key_Right);
        QTRY_COMPARE(test(), u"Test 12 / 2"_s);
        click(u"buttonNext"_s);
        QTRY_COMPARE(test(), u"Test 12 / 1"_s);
        QVERIFY(!button(u"buttonNext"_s)->isEnabled());
        // A finger to the right brings back the one before.
        auto *viewport = shown<QScrollArea>(u"scrollArea"_s)->viewport();
        mouse(viewport, QEvent::MouseButtonPress, {100, 50});
        mouse(viewport, QEvent::MouseButtonRelease, {200, 60});
        QTRY_COMPARE(test(), u"Test 12 / 2"_s);
        QTest::keyClick(window->getDetailsWindow(), Qt::Key_Escape);
        QVERIFY(page->isVisible());
        click(u"buttonHistory"_s);
        QVERIFY(label(u"labelEmpty"_s).contains(u"longer"_s)); // they are years old
        click(u"chipPeriod4"_s);
        QVERIFY(label(u"labelCount"_s).startsWith(u"Medians of 3 test(s)"_s));
        QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
        QVERIFY(page->isVisible());
    }

private:
    /// Presses the chip or button and one of the rows that come up.
    void choose(const QString &name, const QString &option) const
    {
        click(name);
        QTRY_VERIFY(find<PopupLayer>()->isSettled());
        const auto buttons = window->findChildren<QPushButton *>();
        for (QPushButton *each : buttons) {
            if (each->isVisible() && each->text() == option) {
                return QTest::mouseClick(each, Qt::LeftButton);
            }
        }
        QFAIL(qPrintable(option));
    }

    /// With @p added tests more, the last of them on top.
    void showResults(int added = 0)
    {
        QSqlDatabase::database().transaction();
        for (int id = 1; id <= added; ++id) {
            store->add({.id = id, .test = id});
        }
        QSqlDatabase::database().commit();
        const auto stored = static_cast<size_t>(gDB->countResults());
        window->showResultsTab();
        QTRY_VERIFY(list->isVisible() && list->listing().total() == stored);
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
