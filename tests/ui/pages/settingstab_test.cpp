#include "app/serverselection.h"
#include "ui/pages/settingstab.h"
#include "ui/theme/appearance.h"

#include "data/delayplan.h"
#include "data/testserver.h"
#include "ui/pages/serverentrywidget.h"
#include "utils/translations.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>

namespace velometer {

class SettingsTabTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Translations::install(u"en"_s);
        Utils::setSettingsValue(u"TestServer.Hostname"_s, QString());
        Utils::setSettingsValue(u"AdvMode"_s, QString());
        Utils::setSettingsValue(u"MaxBytes"_s, QString());
        Utils::setSettingsValue(u"Theme"_s, QString());
        Theme::wear(Theme::Look::Given);
        openSettings();
    }

    void seriesModeIsAsTheLastRunLeftIt()
    {
        Utils::setSettingsValue(u"AdvMode"_s, u"SET "_s); // damaged
        for (const bool on : {false, true, false}) {
            openSettings();
            QCOMPARE(button(u"buttonAdvMode"_s)->isChecked(), on);
            click(u"buttonAdvMode"_s);
            QCOMPARE(Utils::getSettingsValue(u"AdvMode"_s), on ? u"notset"_s : u"set"_s);
        }
    }

    void delaysUnderLoadAreAsTheLastRunLeftThem()
    {
        DelayPlan().remember();
        for (const bool on : {false, true, false}) {
            openSettings();
            QCOMPARE(button(u"buttonUnderLoad"_s)->isChecked(), on);
            click(u"buttonUnderLoad"_s);
            QCOMPARE(DelayPlan::remembered().underLoad, !on);
        }
        DelayPlan().remember();
    }

    void aTapAnywhereOnARowChoosesItsServerAlone()
    {
        QCOMPARE(checked(), QList<int>{0});
        for (const QString &place : {u"labelServerAdress"_s, u"checkBox"_s, u"checkBox"_s}) {
            dragUp(part(1, place), 0);
            QTRY_COMPARE(checked(), QList<int>{1});
        }
        QCOMPARE(window->getController()->getTestServer(), entries().at(1)->getServer());
        QCOMPARE(Utils::getSettingsValue(u"TestServer.Hostname"_s), u"127.0.0.2"_s);
    }

    void showingThePageMarksTheServerOfTheNextTest()
    {
        QString error;
        entries().at(4)->setServerEnabled(true);
        for (const int port : {8080, 80}) {
            QVERIFY(window->getServers()->choose(u"127.0.0.3:%1"_s.arg(port), &error));
            window->showSettingsTab();
            QCOMPARE(checked(), port == 8080 ? QList<int>{2} : QList<int>{});
        }
    }

    void anotherLanguageIsShownAtOnceAndRemembered()
    {
        const auto *name = static_cast<QLabel *>(part(3, u"labelServerName"_s));
        click(u"buttonGerman"_s);
        QTRY_COMPARE(name->text(), u"IP-Plus Deutschland"_s);
        QCOMPARE(find<QAbstractButton>(u"buttonStartTest"_s)->text(), u"Test starten"_s);
        QCOMPARE(Utils::getSettingsValue(u"Language"_s), u"de"_s);
        QCOMPARE((QStringList{Utils::trLocation(u"Other"_s), Utils::trLocationShort(u"Other"_s)}),
                 (QStringList{u"Sonstwo"_s, u"Sonstwo"_s}));
        QVERIFY(!button(u"buttonEnglish"_s)->isChecked());
        click(u"buttonGerman"_s);
        QVERIFY(button(u"buttonGerman"_s)->isChecked());
        click(u"buttonEnglish"_s);
        QTRY_COMPARE(name->text(), u"IP-Plus Germany"_s);
    }

    void aLowWindowScrollsUnderTheFingerToItsLastRow()
    {
        Theme::wear(Theme::Look::Dark);
        window->resize(320, 480);
        const auto *area = find<SettingsTab>()->findChild<QScrollArea *>();
        // A drag from a check mark is none on it.
        find<SettingsTab>()->selectServer(entries().at(1)->getServer());
        dragUp(part(0, u"checkBox"_s), 100);
        QVERIFY(area->verticalScrollBar()->value() >= 90);
        QTest::qWait(0);
        QCOMPARE(checked(), QList<int>{1});
        area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
        const QWidget *view = area->viewport();
        for (const QString &name :
             {u"comboBoxBudget"_s, u"buttonAdvMode"_s, u"buttonClearDatabase"_s}) {
            const QWidget *each = button(name) ? button(name) : shown<QWidget>(name);
            const QRect place(each->mapTo(view, QPoint()), each->size());
            QVERIFY2(view->rect().contains(place), qPrintable(name));
        }
    }

    void whatIsChosenOfTheLookIsWornRememberedAndShown()
    {
        Appearance appearance(false, std::nullopt);
        connect(window.get(), &MainWindow::lookChosen, &appearance, &Appearance::choose);
        connect(window.get(), &MainWindow::textSizeChosen, &appearance, &Appearance::setTextLarger);
        auto *looks = shown<QComboBox>(u"comboBoxLook"_s);
        const int before = Theme::pixels(100);
        const QList<Theme::Look> worn{Theme::Look::Dark, Theme::Look::Light, Theme::Look::Given};
        for (int i = 0; i < worn.size(); ++i) {
            Q_EMIT looks->activated(i + 1);
            QCOMPARE(Theme::look(), worn.at(i));
            QCOMPARE(Appearance(true, std::nullopt).remembered(), Appearance::Choice(i + 1));
            QVERIFY(!qApp->styleSheet().contains(u'$'));
        }
        click(u"buttonLargerText"_s);
        QCOMPARE(Theme::pixels(100), before * 6 / 5);
        openSettings();
        QVERIFY(button(u"buttonLargerText"_s)->isChecked());
        QCOMPARE(shown<QComboBox>(u"comboBoxLook"_s)->currentIndex(), 3);
        click(u"buttonLargerText"_s);
    }

    void whatWouldDisturbATestIsOffAndSaysWhy()
    {
        for (const QString &runs : {u"Download"_s, QString()}) {
            find<SettingsTab>()->setRunning(runs);
            for (const QString &name : {u"NewSeries"_s, u"ClearDatabase"_s}) {
                QCOMPARE(button(u"button"_s + name)->isEnabled(), runs.isEmpty());
            }
            for (const QString &name : {u"labelNoSeries"_s, u"labelNoClearing"_s}) {
                QCOMPARE(find<QLabel>(name)->isVisible(), !runs.isEmpty());
            }
        }
    }

    void theBudgetIsAsItWasLeftAndRemembered()
    {
        // One of the list, one from elsewhere, no number.
        for (const auto &[stored, shown, choices] : {std::tuple{u"50000000"_s, u"50 MB"_s, 5},
                                                     {u"250000"_s, u"250 kB"_s, 6},
                                                     {u"50000000 or so"_s, u"No limit"_s, 5}}) {
            Translations::install(u"en"_s);
            Utils::setSettingsValue(u"MaxBytes"_s, stored);
            openSettings();
            auto *box = find<QComboBox>(u"comboBoxBudget"_s);
            QCOMPARE(box->currentText(), shown);
            QCOMPARE(box->count(), choices);
            click(u"buttonGerman"_s);
            QTRY_COMPARE(box->itemText(0), u"Kein Limit"_s);
            QCOMPARE(box->currentText(), shown == "No limit"_L1 ? u"Kein Limit"_s : shown);

            box->setFocus();
            QTest::keyClick(box, Qt::Key_End);
            QCOMPARE(Utils::getSettingsValue(u"MaxBytes"_s), u"500000000"_s);
            QTest::keyClick(box, Qt::Key_Home);
            QCOMPARE(Utils::getSettingsValue(u"MaxBytes"_s), QString());
            QVERIFY(!QAccessible::queryAccessibleInterface(box)->text(QAccessible::Name).isEmpty());
        }
    }

private:
    void openSettings()
    {
        open();
        window->showSettingsTab();
    }

    QList<ServerEntryWidget *> entries() const
    {
        return find<SettingsTab>()->findChildren<ServerEntryWidget *>();
    }
    QWidget *part(int index, const QString &name) const
    {
        return entries().at(index)->findChild<QWidget *>(name);
    }

    QList<int> checked() const
    {
        QList<int> found;
        for (int i = 0; i < entries().size(); ++i) {
            if (static_cast<QPushButton *>(part(i, u"checkBox"_s))->isChecked()) {
                found.append(i);
            }
        }
        return found;
    }
};

} // namespace velometer

VELOMETER_WIDGET_TEST(SettingsTabTest)
#include "settingstab_test.moc"
