#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "ui/mainwindow.h"
#include "ui/popups/errorpopup.h"
#include "ui/popups/numberofmeasurementspopup.h"
#include "utils/utils.h"

#include "support/fakeplatform.h"
#include "support/rows.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

class PopupsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qApp->setStyleSheet(Utils::readFile(u":/velometerres/velometer.qss"_s)); }

    void init()
    {
        platform = std::make_unique<FakePlatform>();
        window = std::make_unique<MainWindow>(*platform);
        window->resize(MainWindow::designSize);
        window->show();
        QTRY_VERIFY(window->getController());
    }

    void cleanup() { window.reset(); }

    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void aSeriesIsAsLongAndDenseAsChosen_data()
    {
        const Rows<int, int, QString, QString> row("hours", "minutes", "log", "schedule");
        row("as it opens", -1, -1, "multiple measurements clicked 20 180", "1,20,60");
        row("two hours every thirty minutes", 2, 30, "multiple measurements clicked 4 1800",
            "1,4,120");
        row("the longest and densest", 24, 1, "multiple measurements clicked 1440 60",
            "1,1440,1440");
        row("one test is no series", 1, 60, "multiple measurements clicked 1 3600", "");
    }
    void aSeriesIsAsLongAndDenseAsChosen()
    {
        QFETCH(int, hours);
        QFETCH(int, minutes);
        window->setAdvancedMode(true);
        window->showNumberOfMeasurementsPopup();
        auto *popup = window->findChild<NumberOfMeasurementsPopup *>();
        choose(*popup, u"comboBoxDuring"_s, hours);
        choose(*popup, u"comboBoxTestEvery"_s, minutes);
        popup->findChild<QPushButton *>(u"buttonMultiple"_s)->click();
        QFETCH(QString, log);
        QVERIFY(Utils::getLogEntries().contains(log));
        QTEST(window->getScheduleInfo(), "schedule");
    }

    void theChoicesOfASeriesAreTheFixedOnes()
    {
        const auto *popup = window->findChild<NumberOfMeasurementsPopup *>();
        QCOMPARE(choices(*popup, u"comboBoxDuring"_s), u"1h=1 2h=2 3h=3 6h=6 12h=12 24h=24"_s);
        QCOMPARE(choices(*popup, u"comboBoxTestEvery"_s),
                 u"1min=1 2min=2 3min=3 5min=5 10min=10 30min=30 60min=60"_s);
    }

    void aMessageIsNeverCut()
    {
        const auto *popup = window->findChild<ErrorPopup *>();
        const auto *label = popup->findChild<QLabel *>(u"labelMessage"_s);
        int before = 0;
        // The second time the layouts know the popup's height of the first.
        for (const int words : {3, 20}) {
            window->setErrorText(u"Vermessungsergebnis "_s.repeated(words));
            QTest::qWait(0);
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(window->rect().contains(popup->geometry()));
            QVERIFY(popup->height() > before);
            before = popup->height();
            window->errorPopupOkClicked();
        }
    }

    void theKeyboardBeginsWhereAnEarlyKeyDoesLeast_data()
    {
        const Rows<QString, QString> row("popup", "focused");
        row("agrees to no costs", "WarningPopup", "buttonCancel");
        row("starts no series", "NumberOfMeasurementsPopup", "buttonSingle");
        row("presses nothing below", "WaitingPopup", "WaitingPopup");
    }
    void theKeyboardBeginsWhereAnEarlyKeyDoesLeast()
    {
        QFETCH(QString, popup);
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        window->findChild<QWidget *>(popup)->show();
        QTEST(window->focusWidget()->objectName(), "focused");
    }

private:
    static void choose(const QWidget &popup, const QString &box, int value)
    {
        auto *combo = popup.findChild<QComboBox *>(box);
        if (value > 0)
            combo->setCurrentIndex(combo->findData(value));
    }

    static QString choices(const QWidget &popup, const QString &box)
    {
        const auto *combo = popup.findChild<QComboBox *>(box);
        QStringList all;
        for (int i = 0; i < combo->count(); ++i)
            all += combo->itemText(i) + u'=' + combo->itemData(i).toString();
        return all.join(u' ');
    }

    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(PopupsTest)
#include "popups_test.moc"
