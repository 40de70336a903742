#include "ui/popups/messagepopup.h"
#include "ui/popups/numberofmeasurementspopup.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QComboBox>

namespace velometer {

class PopupsTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init() { open(); }

    void aSeriesIsAsLongAndDenseAsChosen()
    {
        // As it opens, the longest and densest, and one test, which is no series.
        for (const auto &[hours, minutes, log, schedule, said] :
             {std::tuple{-1, -1, u"multiple measurements clicked 20 180"_s, u"1,20,60"_s,
                         u"20 tests in 1 h, about 930 MB at your last rate"_s},
              {24, 1, u"multiple measurements clicked 1440 60"_s, u"1,1440,1440"_s,
               u"1440 tests in 24 h, about 67 GB at your last rate"_s},
              {1, 60, u"multiple measurements clicked 1 3600"_s, QString(),
               u"1 tests in 1 h, about 47 MB at your last rate"_s}}) {
            open();
            store->add({});
            window->setAdvancedMode(true);
            window->showNumberOfMeasurementsPopup();
            for (const auto &[name, value] :
                 {std::pair{u"comboBoxDuring"_s, hours}, {u"comboBoxTestEvery"_s, minutes}}) {
                auto *box = shown<QComboBox>(name);
                if (value > 0) {
                    box->setCurrentIndex(box->findData(value));
                }
            }
            QCOMPARE(label(u"labelChosen"_s), said);
            click(u"buttonMultiple"_s);
            QVERIFY(Utils::getLogEntries().contains(log));
            QCOMPARE(window->getScheduleInfo(), schedule);
        }
    }

    void aMessageIsNeverCut()
    {
        const auto *popup = find<MessagePopup>(u"ErrorPopup"_s);
        const auto *message = popup->findChild<QLabel *>(u"labelMessage"_s);
        int before = 0;
        // The second time the layouts know the popup's height of the first.
        for (const int words : {3, 20}) {
            window->setErrorText(u"Vermessungsergebnis "_s.repeated(words));
            QTest::qWait(0);
            QVERIFY(message->height() >= message->heightForWidth(message->width()));
            QVERIFY(window->rect().contains(popup->geometry()));
            QVERIFY(popup->height() > before);
            before = popup->height();
            window->errorPopupOkClicked();
        }
    }

    // A screen reader says the description of the widget that has the focus.
    void theKeyboardBeginsWhereAnEarlyKeyDoesLeastAndHearsTheQuestion_data()
    {
        const Rows<QString, QString, QString, QString> row("buttons", "question", "focused",
                                                           "heard");
        row("agrees to no costs", "OK Cancel", "Costs &amp; <b>roaming</b>.<br>Go on?",
            "buttonCancel", "Costs & roaming.\nGo on?");
        row("the only answer", "OK", "It <i>failed</i>", "buttonOk", "It failed");
        row("presses nothing below", "", "It takes <i>long</i>", "MessagePopup", "It takes long");
        row("the title is the question", "OK", "", "buttonOk", "Title");
    }
    void theKeyboardBeginsWhereAnEarlyKeyDoesLeastAndHearsTheQuestion()
    {
        const auto [buttons, question] = currentRow<QString, QString>();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        auto *opened = new MessagePopup(window.get());
        opened->setMessage(
            {u"Title"_s, question, buttons.section(u' ', 0, 0), buttons.section(u' ', 1, 1)});
        opened->show();
        QCOMPARE(opened->accessibleName(), u"Title"_s);
        QCOMPARE(opened->accessibleDescription().isEmpty(), question.isEmpty());
        QCOMPARE(shown<QLabel>(u"labelPleaseWait"_s) != nullptr, buttons.isEmpty());
        QTEST(window->focusWidget()->objectName(), "focused");
        QTEST(window->focusWidget()->accessibleDescription(), "heard");
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(PopupsTest)
#include "popups_test.moc"
