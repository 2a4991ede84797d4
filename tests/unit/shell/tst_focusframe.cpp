#include "shell/focusframe.h"

#include "support/painting.h"
#include "support/quillettest.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPushButton>
#include <QtTest>

class FocusFrameTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theKeyboardShowsTheFrameAndAWindowThatComesBackKeepsIt_data()
    {
        QTest::addColumn<int>("reason");
        QTest::addColumn<bool>("gotFocus");
        QTest::addColumn<bool>("afterNone");
        QTest::addColumn<bool>("afterShown");
        const auto row = [](const char* name, int reason, bool gotFocus, bool afterNone, bool afterShown) {
            QTest::newRow(name) << reason << gotFocus << afterNone << afterShown;
        };
        row("Tab", Qt::TabFocusReason, true, true, true);
        row("Tab, away", Qt::TabFocusReason, false, false, false);
        row("Backtab", Qt::BacktabFocusReason, true, true, true);
        row("Backtab, away", Qt::BacktabFocusReason, false, false, false);
        row("shortcut", Qt::ShortcutFocusReason, true, true, true);
        row("shortcut, away", Qt::ShortcutFocusReason, false, false, false);
        row("mouse", Qt::MouseFocusReason, true, false, false);
        row("mouse, away", Qt::MouseFocusReason, false, false, false);
        row("program", Qt::OtherFocusReason, true, false, false);
        row("program, away", Qt::OtherFocusReason, false, false, false);
        for (const bool gotFocus : {true, false}) {
            row(gotFocus ? "window" : "window, away", Qt::ActiveWindowFocusReason, gotFocus, false, true);
            row(gotFocus ? "menu" : "menu, away", Qt::PopupFocusReason, gotFocus, false, true);
            row(gotFocus ? "menu bar" : "menu bar, away", Qt::MenuBarFocusReason, gotFocus, false, true);
        }
    }
    void theKeyboardShowsTheFrameAndAWindowThatComesBackKeepsIt()
    {
        QFETCH(int, reason);
        QFETCH(bool, gotFocus);
        const QFocusEvent event(gotFocus ? QEvent::FocusIn : QEvent::FocusOut,
                                static_cast<Qt::FocusReason>(reason));
        QTEST(shell::showsFocus(event, false), "afterNone");
        QTEST(shell::showsFocus(event, true), "afterShown");
    }

    void aFrameGivenToAnInactiveWindowIsSeenOnceThatIsActive()
    {
        QWidget window;
        QPushButton first(&window);
        QPushButton second(&window);
        const FocusFrame frame(&second);
        QWidget other;
        window.show();
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        FocusFrame::giveFocus(&second);
        QVERIFY(!FocusFrame::isShownOn(&second));
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_VERIFY(second.hasFocus());
        QVERIFY(FocusFrame::isShownOn(&second));
        // And again, when it was away.
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!FocusFrame::isShownOn(&second));
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTRY_VERIFY(FocusFrame::isShownOn(&second));
        first.setFocus();
        second.setFocus();
        QVERIFY(!FocusFrame::isShownOn(&second));
    }

    void theFrameIsTwoPixelsWideAlongTheInnerEdgeWhateverThePaintersOpacity()
    {
        QPushButton button;
        const FocusFrame frame(&button);
        button.show();
        QVERIFY(QTest::qWaitForWindowActive(&button));
        const QRect outer(3, 4, 20, 10);
        const auto painted = [&] {
            QImage image(30, 20, QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            painter.setOpacity(0.5);
            painter.setBrush(Qt::red);
            frame.paint(&painter, outer);
            return image;
        };
        button.clearFocus();
        button.setFocus();
        QVERIFY(isBlank(painted()));
        FocusFrame::giveFocus(&button);
        const QImage image = painted();
        QCOMPARE(boundsOf(image, QColor(focusColor)), outer);
        QVERIFY(isFilled(image, QRect(3, 4, 20, 2), QColor(focusColor)));
        QVERIFY(isFilled(image, QRect(3, 12, 20, 2), QColor(focusColor)));
        QVERIFY(isFilled(image, QRect(3, 4, 2, 10), QColor(focusColor)));
        QVERIFY(isFilled(image, QRect(21, 4, 2, 10), QColor(focusColor)));
        QVERIFY(isBlank(image.copy(outer.adjusted(2, 2, -2, -2))));
    }

    void aWidgetWithoutAFrameShowsNone()
    {
        QPushButton button;
        button.show();
        QVERIFY(QTest::qWaitForWindowActive(&button));
        FocusFrame::giveFocus(&button);
        QVERIFY(button.hasFocus());
        QVERIFY(!FocusFrame::isShownOn(&button));
    }
};

QTEST_MAIN(FocusFrameTest)
#include "tst_focusframe.moc"
