// The configuration panel and its tools in the running shell.
#include "config/configurationdialog.h"
#include "config/configure.h"
#include "config/mimeconfig.h"
#include "session/userconfig.h"
#include "shell/appbutton.h"
#include "shell/focusframe.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "support/ownmethods.h"
#include "support/shelltest.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class ConfigurationTest : public ShellTest
{
    Q_OBJECT

    Configure& panel() { return *shell().configuration(); }
    MimeConfig& associations() { return *panel().findChild<MimeConfig*>(); }
    UserConfig& password() { return *panel().findChild<UserConfig*>(); }
    QList<AppButton*> buttons() { return panel().findChildren<AppButton*>(); }

    // What the user does: the panel's button in the bar, then a tool's.
    void openPanel()
    {
        bar().buttonAt(2)->click();
        QTRY_VERIFY(panel().isActiveWindow());
    }
    void openTool(int number)
    {
        openPanel();
        buttons().at(number)->click();
    }

    // Whether a tool is all that is seen of the panel.
    bool covers(QWidget& tool)
    {
        const QRect page(QPoint(0, 0), panel().size());
        return tool.isVisible() && tool.geometry() == page && panel().childAt(page.center()) &&
               (panel().childAt(37, 50) == &tool || tool.isAncestorOf(panel().childAt(37, 50))) &&
               (panel().childAt(37, 150) == &tool || tool.isAncestorOf(panel().childAt(37, 150)));
    }

    // Who gets the keyboard when the Tab key goes round once; with Shift, the other way.
    QSet<QWidget*> reachedByTab(Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QSet<QWidget*> reached;
        for (int i = 0; i < 50; ++i) {
            QTest::keyClick(QApplication::focusWidget(), modifiers ? Qt::Key_Backtab : Qt::Key_Tab,
                            modifiers);
            reached.insert(QApplication::focusWidget());
        }
        return reached;
    }

private slots:
    void thePanelHasTwoButtonsTheAssociationsAboveTheUsers()
    {
        startShell();
        const QList<AppButton*> all = buttons();
        QCOMPARE(all.size(), 2);
        auto* const grid = qobject_cast<QGridLayout*>(panel().layout());
        for (int row = 0; row < 2; ++row) {
            QCOMPARE(grid->itemAtPosition(row, 0)->widget(), all.at(row));
            QVERIFY(all.at(row)->isFlat());
            QCOMPARE(all.at(row)->size(), QSize(74, 112));
        }
        QVERIFY(grid->itemAtPosition(0, 1)->spacerItem());
    }

    void eachLabelStandsOnTwoLines()
    {
        startShell();
        QCOMPARE(associations().name(), QStringLiteral("File\nassociations"));
        QCOMPARE(password().name(), QStringLiteral("User\nConfiguration"));
        // The lines of the labels are where text is painted: in the strip's upper and in its lower half.
        openPanel();
        for (const AppButton* const button : buttons()) {
            const QImage picture = const_cast<AppButton*>(button)->grab().toImage();
            for (const QRect& line : {QRect(0, 76, 74, 14), QRect(0, 94, 74, 12)}) {
                bool dark = false;
                for (int y = line.top(); y <= line.bottom(); ++y) {
                    for (int x = line.left(); x <= line.right(); ++x)
                        dark = dark || qGray(picture.pixel(x, y)) < 140;
                }
                QVERIFY(dark);
            }
        }
    }

    void theToolsAreFoundThroughTheMetaObject()
    {
        startShell();
        for (QDialog* const tool :
             {static_cast<QDialog*>(&associations()), static_cast<QDialog*>(&password())}) {
            auto* const interface = qobject_cast<ConfigurationDialog*>(tool);
            QVERIFY(interface);
            QCOMPARE(interface->widget(), static_cast<QWidget*>(tool));
            QVERIFY(!interface->icon().pixmap(64).isNull());
        }
    }

    void theToolsAreCreatedHiddenAndBelongToThePanel()
    {
        startShell();
        openPanel();
        for (const QWidget* const tool :
             {static_cast<QWidget*>(&associations()), static_cast<QWidget*>(&password())}) {
            QCOMPARE(tool->parentWidget(), static_cast<QWidget*>(&panel()));
            QVERIFY(!tool->isWindow());
            QVERIFY(tool->isHidden());
        }
    }

    void thePanelTakesItsToolsAlong()
    {
        auto panel = std::make_unique<Configure>(nullptr, QStringLiteral("e6eaed"));
        panel->resize(QSize(800, 600));
        panel->setUp();
        const QPointer<QWidget> tools[] = {panel->findChild<MimeConfig*>(), panel->findChild<UserConfig*>()};
        QVERIFY(tools[0] && tools[1]);
        panel.reset();
        QVERIFY(!tools[0] && !tools[1]);
    }

    void itHasOneSlotOfItsOwn()
    {
        QCOMPARE(ownMethods(Configure::staticMetaObject),
                 QStringList("launchConfigurationApplication(QWidget*)"));
        QCOMPARE(ownMethods(UserConfig::staticMetaObject), QStringList({"accept()", "reject()"}));
    }

    void aClickAsksForTheToolWithForce()
    {
        startShell();
        openPanel();
        QSignalSpy spy(&panel(), &Menu::selectWidget);
        buttons().at(1)->click();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).value<QWidget*>(), static_cast<QWidget*>(&password()));
        QCOMPARE(spy.at(0).at(1).toBool(), true);
        buttons().at(0)->click();
        QCOMPARE(spy.at(1).at(0).value<QWidget*>(), static_cast<QWidget*>(&associations()));
    }

    void aToolIsShownInPlace_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("associations") << 0;
        QTest::newRow("password") << 1;
    }
    void aToolIsShownInPlace()
    {
        QFETCH(int, number);
        startShell();
        openTool(number);
        QWidget& tool = number == 0 ? static_cast<QWidget&>(associations()) : password();
        QVERIFY(covers(tool));
        QVERIFY(panel().isVisible());
        QVERIFY(!tool.isWindow());
        QCOMPARE(current(), 2);
        QCOMPARE(bar().count(), 3);
        QTRY_VERIFY(tool.isAncestorOf(QApplication::focusWidget()));
    }

    void aSecondClickBringsTheToolToTheFrontAgain()
    {
        startShell();
        openTool(0);
        buttons().at(1)->click();
        QVERIFY(covers(password()));
        buttons().at(0)->click();
        QVERIFY(covers(associations()));
        buttons().at(0)->click();
        QVERIFY(covers(associations()));
    }

    void aToolThatGoesLeavesThePanelWithTheKeyboardOnItsButton_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("byKeyboard");
        for (int number = 0; number < 2; ++number) {
            QTest::addRow("%d by keyboard", number) << number << true;
            QTest::addRow("%d by mouse", number) << number << false;
        }
    }
    void aToolThatGoesLeavesThePanelWithTheKeyboardOnItsButton()
    {
        QFETCH(int, number);
        QFETCH(bool, byKeyboard);
        startShell();
        openTool(number);
        QWidget& tool = number == 0 ? static_cast<QWidget&>(associations()) : password();
        QTRY_VERIFY(tool.isAncestorOf(QApplication::focusWidget()));
        if (byKeyboard)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        else
            QTest::mouseClick(tool.findChildren<QPushButton*>().first(), Qt::LeftButton); // goes back
        QVERIFY(tool.isHidden());
        QVERIFY(panel().isVisible());
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(buttons().at(number)));
        QCOMPARE(FocusFrame::isShownOn(buttons().at(number)), byKeyboard);
        // and again
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(covers(tool));
    }

    void theMousesWayBackShowsNoFrameAlsoAfterAKeyThatOpenedABox()
    {
        startShell();
        openTool(1);
        QTRY_VERIFY(password().isAncestorOf(QApplication::focusWidget()));
        answers().expectBox(QStringLiteral("Incorrect password"),
                            QStringLiteral("The new password must not be empty"), QMessageBox::Critical,
                            QMessageBox::Ok, QMessageBox::Ok, &password());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        panel().activateWindow(); // again, now that the box is gone
        QTRY_VERIFY(panel().isActiveWindow());
        QTest::mouseClick(password().findChildren<QPushButton*>().first(), Qt::LeftButton); // goes back
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(buttons().at(1)));
        QVERIFY(!FocusFrame::isShownOn(buttons().at(1)));
    }

    void aKeyWhoseBoxEndsTheToolShowsTheFrame()
    {
        startShell();
        openTool(1);
        QTRY_VERIFY(password().isAncestorOf(QApplication::focusWidget()));
        for (QLineEdit* const field : password().findChildren<QLineEdit*>())
            field->setText(QStringLiteral("tide"));
        answers().expectBox(QStringLiteral("Password change succesful"),
                            QStringLiteral("The password has been changed."), QMessageBox::Information,
                            QMessageBox::Ok, QMessageBox::Ok, &password());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QVERIFY(password().isHidden());
        panel().activateWindow(); // again, now that the box is gone
        QTRY_VERIFY(panel().isActiveWindow());
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(buttons().at(1)));
        QVERIFY(FocusFrame::isShownOn(buttons().at(1)));
    }

    void theKeyboardStaysInTheToolInView_data() { aToolIsShownInPlace_data(); }
    void theKeyboardStaysInTheToolInView()
    {
        QFETCH(int, number);
        startShell();
        openTool(number);
        QWidget& tool = number == 0 ? static_cast<QWidget&>(associations()) : password();
        QTRY_VERIFY(tool.isAncestorOf(QApplication::focusWidget()));
        const QSet<QWidget*> reached = reachedByTab();
        QVERIFY(reached.size() > 2);
        for (const QWidget* const widget : reached)
            QVERIFY2(tool.isAncestorOf(widget), qPrintable(widget->accessibleName()));
        QCOMPARE(reachedByTab(Qt::ShiftModifier), reached);
        for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right}) {
            for (QWidget* const widget : reached) {
                widget->setFocus();
                QTest::keyClick(widget, Qt::Key(key));
                QVERIFY(tool.isAncestorOf(QApplication::focusWidget()));
            }
        }
    }

    void thePanelWithoutAToolIsForTheArrowKeys()
    {
        startShell();
        openTool(1);
        password().reject();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(buttons().at(0)));
        const QSet<QWidget*> reached = reachedByTab();
        QCOMPARE(reached, QSet<QWidget*>({buttons().at(0), buttons().at(1)}));
    }

    void aToolInViewStaysInViewWhenAnotherPageWasShown()
    {
        startShell();
        openTool(1);
        QTRY_VERIFY(password().isAncestorOf(QApplication::focusWidget()));
        const QList<QLineEdit*> fields = password().findChildren<QLineEdit*>();
        fields.last()->setFocus();
        QTest::keyClicks(fields.last(), "kept");
        bar().buttonAt(0)->click();
        QTRY_VERIFY(shell().launcher()->isActiveWindow());
        openPanel();
        QVERIFY(covers(password()));
        QCOMPARE(fields.last()->text(), QStringLiteral("kept"));
        QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget*>(fields.last()));
    }

    void aToolKeepsItsStateBetweenShowings()
    {
        startShell();
        openTool(1);
        QLineEdit* const field = password().findChildren<QLineEdit*>().last();
        field->setText(QStringLiteral("kept"));
        password().reject();
        buttons().at(1)->click();
        QCOMPARE(field->text(), QStringLiteral("kept"));
    }

    void aToolFitsAnotherScreen()
    {
        startShell();
        openTool(0);
        panel().resize(QSize(640, 438));
        QCOMPARE(panel().size(), QSize(640, 438));
        QVERIFY(covers(associations()));
    }

    void aToolIsNeverATask()
    {
        startShellWithTracker();
        openTool(0);
        QTest::qWait(700); // two rounds of the tracker, which looks every 300 ms
        QCOMPARE(bar().count(), 3);
        QCOMPARE(shell().tasks(), QStringList());
    }

    void aCellTooFewHidesTheButton()
    {
        startShell();
        openPanel();
        panel().resize(QSize(74, 112));
        QVERIFY(buttons().at(0)->isVisible());
        QVERIFY(!buttons().at(1)->isVisible());
        panel().resize(QSize(74, 224));
        QVERIFY(buttons().at(1)->isVisible());
    }
};

QTEST_MAIN(ConfigurationTest)
#include "tst_configuration.moc"
