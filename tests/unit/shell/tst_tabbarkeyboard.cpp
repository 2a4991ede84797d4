// The task bar under the keyboard and assistive technology.
#include "shell/focusframe.h"
#include "support/painting.h"
#include "support/tabbartest.h"

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

class TabBarKeyboardTest : public TabBarTest
{
    Q_OBJECT

    // What has the focus, one after the other, until it is where it was.
    static QStringList walk(Qt::Key key)
    {
        QStringList heard;
        const QWidget* const first = QApplication::focusWidget();
        do {
            QWidget* const widget = QApplication::focusWidget();
            const auto* const button = qobject_cast<ThreadButton*>(widget);
            heard.append(button ? button->accessibleDescription() : widget->accessibleName());
            QTest::keyClick(widget, key);
        } while (QApplication::focusWidget() != first && heard.size() < 100);
        return heard;
    }

private slots:
    // --- Keyboard and screen readers

    void theTabKeyAndTheArrowKeysGoFromLeftToRightAndPastHiddenButtons()
    {
        addTask(0x11);
        addTask(0x22);
        showActive();
        QStringList all{"Desktop", "Places", "Configuration", "Close", "text", "text", "Log off"};
        QCOMPARE(walk(Qt::Key_Tab), all);
        QCOMPARE(QApplication::focusWidget(), m_bar->buttonAt(0));
        QCOMPARE(walk(Qt::Key_Right), all);
        std::reverse(all.begin() + 1, all.end());
        QCOMPARE(walk(Qt::Key_Backtab), all);
        QCOMPARE(walk(Qt::Key_Left), all);
    }

    void theTasksInViewStandBetweenTheArrowsForTheTabKeyToo()
    {
        addTasks(60);
        showActive();
        arrow("leftButton")->click(); // both arrows can be used now
        QList<const QWidget*> expected;
        for (int i = 0; i < 3; ++i)
            expected.append(m_bar->buttonAt(i));
        expected.append(panel()->findChild<QPushButton*>());
        expected.append(arrow("leftButton"));
        for (int i = 3; i < m_bar->count(); ++i) {
            if (!m_bar->buttonAt(i)->isHidden())
                expected.append(m_bar->buttonAt(i));
        }
        QVERIFY(expected.size() > 7 && expected.size() < 60);
        expected.append(arrow("rightButton"));
        expected.append(powerButton());
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Right}) {
            for (const QWidget* const widget : std::as_const(expected)) {
                QCOMPARE(QApplication::focusWidget(), widget);
                QTest::keyClick(QApplication::focusWidget(), key);
            }
        }
    }

    void enterAndSpacePress_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Enter on the keypad") << int(Qt::Key_Enter);
        QTest::newRow("space") << int(Qt::Key_Space);
    }
    void enterAndSpacePress()
    {
        QFETCH(int, key);
        ThreadButton* const task = addTask(0x11);
        showActive();
        const auto press = [key](QWidget* widget) {
            widget->setFocus(Qt::TabFocusReason);
            QTest::keyClick(widget, static_cast<Qt::Key>(key));
            QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(widget, &held);
        };
        QSignalSpy maps(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        press(m_bar->buttonAt(1));
        QCOMPARE(maps.size(), 1);
        QSignalSpy tasks(task, SIGNAL(threadButtonClicked(qlonglong)));
        press(task);
        QCOMPARE(tasks.size(), 1);
        QSignalSpy closed(m_bar.get(), SIGNAL(closeButtonClicked(qlonglong)));
        press(panel()->findChild<QPushButton*>());
        QCOMPARE(closed.size(), 1);
        QSignalSpy exits(m_bar.get(), SIGNAL(exitApp()));
        press(powerButton());
        QCOMPARE(exits.size(), 1);
    }

    void anArrowThatCanGoNoFurtherLeavesItsFocusToTheOther_data()
    {
        QTest::addColumn<int>("tooMany");
        QTest::newRow("one step") << 1;
        QTest::newRow("several steps") << 4;
    }
    void anArrowThatCanGoNoFurtherLeavesItsFocusToTheOther()
    {
        QFETCH(int, tooMany);
        addTasks(roomFor() + tooMany);
        showActive();
        QPushButton* const left = arrow("leftButton");
        QPushButton* const right = arrow("rightButton");
        left->setFocus(Qt::TabFocusReason);
        for (int i = 0; i <= tooMany; ++i) {
            QVERIFY(left->hasFocus());
            QTest::keyClick(left, Qt::Key_Space);
        }
        QVERIFY(!left->isEnabled());
        QVERIFY(right->hasFocus());
        QVERIFY(FocusFrame::isShownOn(right));
        for (int i = 0; i <= tooMany; ++i)
            QTest::keyClick(right, Qt::Key_Space);
        QVERIFY(!right->isEnabled());
        QVERIFY(left->hasFocus());
    }

    void aButtonThatGoesLeavesItsFocusToTheCurrentTask_data()
    {
        QTest::addColumn<bool>("keyboard");
        QTest::newRow("with its frame") << true;
        QTest::newRow("without a frame") << false;
    }
    void aButtonThatGoesLeavesItsFocusToTheCurrentTask()
    {
        QFETCH(bool, keyboard);
        const auto reason = keyboard ? Qt::TabFocusReason : Qt::MouseFocusReason;
        addTask(0x11);
        ThreadButton* const second = addTask(0x22);
        ThreadButton* const third = addTask(0x33);
        showActive();
        // A task that another is before.
        second->setFocus(reason);
        m_bar->removeButton(4);
        QVERIFY(third->hasFocus());
        QCOMPARE(FocusFrame::isShownOn(third), keyboard);
        // The current one, after which the last selected one is current: there is none at its position.
        m_bar->setCurrentIndex(0);
        activate();
        m_bar->buttonAt(3)->setFocus(reason);
        m_bar->removeButton(3);
        activate();
        QVERIFY(m_bar->buttonAt(0)->hasFocus());
        QCOMPARE(FocusFrame::isShownOn(m_bar->buttonAt(0)), keyboard);
        // The close button, which pages do not have.
        m_bar->setCurrentIndex(3);
        panel()->findChild<QPushButton*>()->setFocus(reason);
        m_bar->setCurrentIndex(1);
        activate();
        QVERIFY(m_bar->buttonAt(1)->hasFocus());
        QCOMPARE(FocusFrame::isShownOn(m_bar->buttonAt(1)), keyboard);
        // The last task, closed by its close button: not the log-off button beside it.
        m_bar->setCurrentIndex(3);
        panel()->findChild<QPushButton*>()->setFocus(reason);
        m_bar->removeButton(3);
        m_bar->setCurrentIndex(0);
        activate();
        QVERIFY(m_bar->buttonAt(0)->hasFocus());
    }

    void aTaskThatScrollsOutOfViewLeavesItsFocus()
    {
        addTasks(roomFor());
        showActive();
        m_bar->buttonAt(3)->setFocus(Qt::TabFocusReason);
        ThreadButton* const last = addTask(0x9999);
        QVERIFY(m_bar->buttonAt(3)->isHidden());
        QVERIFY(last->hasFocus());
    }

    void f6LeadsFromAPageToTheBarAndBack_data()
    {
        QTest::addColumn<int>("page");
        QTest::newRow("launcher") << 0;
        QTest::newRow("places") << 1;
        QTest::newRow("configuration") << 2;
    }
    void f6LeadsFromAPageToTheBarAndBack()
    {
        QFETCH(int, page);
        showActive();
        m_bar->setCurrentIndex(page);
        QWidget* const window = m_bar->buttonAt(page)->widget();
        QPushButton field(window); // as a page may have
        field.show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        field.setFocus();
        QTest::keyClick(&field, Qt::Key_F6);
        QTRY_COMPARE(QApplication::activeWindow(), m_bar.get()); // Windows may be ahead of Qt
        QCOMPARE(QApplication::focusWidget(), m_bar->buttonAt(page));
        QVERIFY(FocusFrame::isShownOn(m_bar->buttonAt(page)));
        QTest::keyClick(m_bar->buttonAt(page), Qt::Key_F6);
        QTRY_COMPARE(QApplication::activeWindow(), window);
        QCOMPARE(QApplication::focusWidget(), &field);
    }

    void f6LeadsFromTheBarToTheCurrentTask()
    {
        ThreadButton* const task = addTask(0x11);
        showActive();
        QSignalSpy chosen(task, SIGNAL(threadButtonClicked(qlonglong)));
        m_bar->buttonAt(0)->setFocus();
        QTest::keyClick(m_bar->buttonAt(0), Qt::Key_F6);
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(chosen.at(0).at(0).toLongLong(), 0x11);
    }

    void f6WithoutACurrentTaskDoesNothing()
    {
        showActive();
        m_bar->buttonAt(0)->setFocus();
        QTest::keyClick(m_bar->buttonAt(0), Qt::Key_F6);
        QVERIFY(m_bar->isActiveWindow());
    }

    void screenReadersHearButtonsAndWhatTheyStandFor()
    {
        addTask(0x11);
        const auto heard = [](QWidget* widget) {
            QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
            return accessible->role() != QAccessible::Button
                       ? QStringLiteral("no button")
                       : accessible->text(QAccessible::Name) + QStringLiteral(", ") +
                             accessible->text(QAccessible::Description);
        };
        QCOMPARE(heard(m_bar->buttonAt(0)), QStringLiteral("Tidewell, Desktop"));
        QCOMPARE(heard(m_bar->buttonAt(1)), QStringLiteral("Tidewell, Places"));
        QCOMPARE(heard(m_bar->buttonAt(2)), QStringLiteral("Tidewell, Configuration"));
        QCOMPARE(heard(m_bar->buttonAt(3)), QStringLiteral("task, text"));
        QCOMPARE(heard(arrow("leftButton")), QStringLiteral("leftButton, Earlier tasks"));
        QCOMPARE(heard(arrow("rightButton")), QStringLiteral("rightButton, Later tasks"));
        QCOMPARE(heard(powerButton()), QStringLiteral("Tidewell, Log off"));
        const auto name = [](QWidget* window) {
            return QAccessible::queryAccessibleInterface(window)->text(QAccessible::Name);
        };
        QCOMPARE(name(m_bar.get()), QStringLiteral("Task bar"));
        for (int i = 0; i < 3; ++i)
            QCOMPARE(name(m_bar->buttonAt(i)->widget()), m_bar->buttonAt(i)->taskText());
    }

    void theArrowsShowTheFocusOfTheKeyboardAsEveryButtonDoes()
    {
        addTasks(60);
        showActive();
        QPushButton* const left = arrow("leftButton");
        m_bar->buttonAt(0)->setFocus();
        const QImage unfocused = paintedAlone(left);
        left->setFocus(Qt::MouseFocusReason);
        QCOMPARE(paintedAlone(left), unfocused); // nothing of the style's either
        m_bar->buttonAt(0)->setFocus();
        left->setFocus(Qt::TabFocusReason);
        QCOMPARE(boundsOf(paintedAlone(left), QColor(focusColor)), QRect(1, 1, 22, 40));
        QCOMPARE(paintedAlone(left).copy(3, 3, 18, 36), unfocused.copy(3, 3, 18, 36));
    }
};

QTEST_MAIN(TabBarKeyboardTest)
#include "tst_tabbarkeyboard.moc"
