#include "shell/threadbutton.h"

#include "support/ownmethods.h"
#include "support/painting.h"
#include "support/quillettest.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class ThreadButtonTest : public QuilletTest
{
    Q_OBJECT

    static std::unique_ptr<ThreadButton> make(int kind, const QPixmap& picture, qlonglong windowId = 0,
                                              QWidget* widget = nullptr)
    {
        return std::make_unique<ThreadButton>(widget, kind, picture, QStringLiteral("Notepad"),
                                              QStringLiteral("Letter"), windowId, 0, 0);
    }

private slots:
    void itKnowsWhatItStandsFor()
    {
        QWidget page;
        const QPixmap picture = plainPixmap(QSize(48, 42), Qt::red);
        const ThreadButton button(&page, 2, picture, QStringLiteral("Notepad"), QStringLiteral("Letter"),
                                  0x1234567890, 4000000000U, 7);
        QCOMPARE(button.widget(), &page);
        QCOMPARE(button.kind(), int(ThreadButton::WindowButton));
        QCOMPARE(button.picture().cacheKey(), picture.cacheKey());
        QCOMPARE(button.name(), QStringLiteral("Notepad"));
        QCOMPARE(button.taskText(), QStringLiteral("Letter"));
        QCOMPARE(button.windowId(), Q_INT64_C(0x1234567890));
        QCOMPARE(button.processId(), 4000000000U);
        QCOMPARE(button.further(), 7U);
    }

    void atFirstItIsUnselectedWithoutIndexAndSnapshot()
    {
        const auto button = make(2, QPixmap());
        QVERIFY(!button->isSelected());
        QCOMPARE(button->index(), -1);
        QVERIFY(button->snapshot().isNull());
    }

    void itsSizesAreFixed()
    {
        const auto button = make(2, QPixmap());
        QCOMPARE(button->minimumSize(), QSize(48, 42));
        QCOMPARE(button->maximumSize(), QSize(48, 42));
        QCOMPARE(button->iconSize(), QSize(43, 43));
    }

    void itsKindsAreNumberedAsTheTaskBarCountsThem()
    {
        QCOMPARE(int(ThreadButton::FixedButton), 0);
        QCOMPARE(int(ThreadButton::WindowButton), 2);
        QCOMPARE(int(ThreadButton::PowerButton), 3);
    }

    void itsNameIsItsAccessibleNameAndNothingOfItIsAShortcut_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("plain") << QStringLiteral("Notepad");
        QTest::newRow("ampersand") << QStringLiteral("R&D");
        QTest::newRow("markup") << QStringLiteral("<b>bold</b>");
        QTest::newRow("long") << QString(300, QLatin1Char('x'));
    }
    void itsNameIsItsAccessibleNameAndNothingOfItIsAShortcut()
    {
        QFETCH(QString, name);
        const ThreadButton button(nullptr, 2, QPixmap(), name, name, 1, 0, 0);
        QCOMPARE(button.accessibleName(), name);
        QCOMPARE(button.accessibleDescription(), name);
        QCOMPARE(button.text(), QString());
        QVERIFY(button.shortcut().isEmpty());
        QCOMPARE(button.size(), QSize(48, 42));
    }

    void aClickTellsTheWindow()
    {
        const auto button = make(2, QPixmap(), 0x100000001);
        button->setIndex(4);
        QSignalSpy byIndex(button.get(), SIGNAL(threadButtonClicked(int)));
        QSignalSpy byWindow(button.get(), SIGNAL(threadButtonClicked(qlonglong)));
        QSignalSpy byPage(button.get(), SIGNAL(threadButtonClicked(QWidget*, bool)));
        button->click();
        QCOMPARE(byWindow.size(), 1);
        QCOMPARE(byWindow.at(0).at(0).toLongLong(), Q_INT64_C(0x100000001));
        QCOMPARE(byIndex.size() + byPage.size(), 0);
    }

    void aClickTellsThePageWhenThereIsOne()
    {
        auto page = std::make_unique<QWidget>();
        const auto button = make(0, QPixmap(), 12, page.get());
        QSignalSpy byIndex(button.get(), SIGNAL(threadButtonClicked(int)));
        QSignalSpy byWindow(button.get(), SIGNAL(threadButtonClicked(qlonglong)));
        QSignalSpy byPage(button.get(), SIGNAL(threadButtonClicked(QWidget*, bool)));
        QSignalSpy byPageAlone(button.get(), SIGNAL(threadButtonClicked(QWidget*)));
        button->click();
        QCOMPARE(byPage.size(), 1);
        QCOMPARE(byPage.at(0).at(0).value<QWidget*>(), page.get());
        QCOMPARE(byPage.at(0).at(1).toBool(), false);
        QCOMPARE(byPageAlone.size(), 1);
        QCOMPARE(byIndex.size() + byWindow.size(), 0);

        page.reset(); // a page that is gone is not told
        button->click();
        QCOMPARE(byPage.size(), 1);
        QCOMPARE(byWindow.size(), 1);
        QVERIFY(!button->widget());
    }

    void closingTellsTheIndex()
    {
        const auto button = make(2, QPixmap());
        QSignalSpy close(button.get(), SIGNAL(closeThreadButton(int)));
        button->closeButton();
        button->setIndex(5);
        QMetaObject::invokeMethod(button.get(), "closeButton");
        QCOMPARE(close.size(), 2);
        QCOMPARE(close.at(0).at(0).toInt(), -1);
        QCOMPARE(close.at(1).at(0).toInt(), 5);
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(ThreadButton::staticMetaObject),
                 QStringList({"threadButtonClicked(int)", "threadButtonClicked(qlonglong)",
                              "threadButtonClicked(QWidget*,bool)", "threadButtonClicked(QWidget*)",
                              "closeThreadButton(int)", "closeButton()", "buttonClicked()"}));
    }

    void thePictureIsScaledIntoItsRectangle_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<bool>("down");
        QTest::addColumn<QRect>("target");
        const QRect atRest(8, 5, 33, 33);
        const QRect pressed(10, 7, 29, 29);
        QTest::newRow("fixed at rest") << 0 << QSize(32, 32) << false << atRest;
        QTest::newRow("fixed pressed") << 0 << QSize(32, 32) << true << pressed;
        QTest::newRow("window at rest") << 2 << QSize(48, 42) << false << atRest;
        QTest::newRow("window pressed") << 2 << QSize(48, 42) << true << pressed;
        QTest::newRow("power at rest") << 3 << QSize(32, 32) << false << atRest;
        QTest::newRow("one pixel") << 2 << QSize(1, 1) << false << atRest;
        QTest::newRow("4,000 pixels wide") << 2 << QSize(4000, 3) << false << atRest;
        QTest::newRow("4,000 pixels each way") << 2 << QSize(4000, 4000) << true << pressed;
    }
    void thePictureIsScaledIntoItsRectangle()
    {
        QFETCH(int, kind);
        QFETCH(QSize, picture);
        QFETCH(bool, down);
        QFETCH(QRect, target);
        const auto button = make(kind, plainPixmap(picture, Qt::red));
        button->setDown(down);
        const QImage image = paintedAlone(button.get());
        QCOMPARE(boundsOf(image, Qt::red), target);
        QVERIFY(isFilled(image, target, Qt::red));
        QCOMPARE(image.pixelColor(target.topLeft() - QPoint(1, 1)), QColor(Qt::transparent));
        QCOMPARE(image.pixelColor(target.bottomRight() + QPoint(1, 1)), QColor(Qt::transparent));
    }

    void aSelectedButtonIsFilledWithLightBehindItsPicture_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("down");
        QTest::newRow("fixed") << 0 << false;
        QTest::newRow("window") << 2 << false;
        QTest::newRow("window pressed") << 2 << true;
    }
    void aSelectedButtonIsFilledWithLightBehindItsPicture()
    {
        QFETCH(int, kind);
        QFETCH(bool, down);
        const auto button = make(kind, plainPixmap(QSize(32, 32), Qt::red));
        button->setSelected(true);
        button->setDown(down);
        QImage expected(48, 42, QImage::Format_ARGB32);
        expected.fill(Qt::transparent);
        {
            QRadialGradient light(QPointF(50, 50), 50, QPointF(50, 50));
            light.setColorAt(0, Qt::white);
            light.setColorAt(1, Qt::lightGray);
            QPainter painter(&expected);
            painter.fillRect(0, 0, 48, 42, light);
            painter.fillRect(down ? QRect(10, 7, 29, 29) : QRect(8, 5, 33, 33), Qt::red);
        }
        QCOMPARE(paintedAlone(button.get()), expected);
        QCOMPARE(expected.pixelColor(0, 0), QColor(Qt::lightGray)); // beyond the light's reach
    }

    void selectingIsSeenAtOnce()
    {
        const auto button = make(2, plainPixmap(QSize(32, 32), Qt::red));
        button->show();
        QVERIFY(QTest::qWaitForWindowExposed(button.get()));
        PaintCounter counter;
        button->installEventFilter(&counter);
        for (const bool selected : {true, false}) {
            QCoreApplication::processEvents();
            counter.paints = 0;
            button->setSelected(selected);
            QVERIFY(QTest::qWaitFor([&counter] { return counter.paints > 0; }));
        }
    }

    void anUnselectedButtonIsNotFilled()
    {
        const auto button = make(2, plainPixmap(QSize(32, 32), Qt::red));
        button->setSelected(true);
        button->setSelected(false);
        QCOMPARE(paintedAlone(button.get()).pixelColor(0, 0), QColor(Qt::transparent));
    }

    void aButtonWithoutPicturePaintsNothing_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("selected");
        QTest::addColumn<bool>("down");
        QTest::newRow("at rest") << 2 << false << false;
        QTest::newRow("selected") << 2 << true << false;
        QTest::newRow("pressed") << 0 << false << true;
        QTest::newRow("selected and pressed") << 0 << true << true;
        QTest::newRow("power at rest") << 3 << true << false;
    }
    void aButtonWithoutPicturePaintsNothing()
    {
        QFETCH(int, kind);
        QFETCH(bool, selected);
        QFETCH(bool, down);
        const auto button = make(kind, QPixmap());
        button->setSelected(selected);
        button->setDown(down);
        QVERIFY(isBlank(paintedAlone(button.get())));
    }

    void thePowerButtonIsNeverFilledAndSwapsItsPictureWithoutShifting()
    {
        const auto button = make(3, plainPixmap(QSize(32, 32), Qt::magenta));
        button->setSelected(true);
        QCOMPARE(boundsOf(paintedAlone(button.get()), Qt::magenta), QRect(8, 5, 33, 33));
        QCOMPARE(paintedAlone(button.get()).pixelColor(0, 0), QColor(Qt::transparent));

        button->setDown(true);
        QImage expected(48, 42, QImage::Format_ARGB32);
        expected.fill(Qt::transparent);
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawPixmap(QRect(8, 5, 33, 33),
                               QPixmap(QStringLiteral(":/icons/64x64/power-pressed.png")));
        }
        QCOMPARE(paintedAlone(button.get()), expected);
    }

    void aFrameShowsTheFocusOfTheKeyboardAlone_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::addColumn<bool>("framed");
        QTest::newRow("Tab") << Qt::TabFocusReason << true;
        QTest::newRow("Backtab") << Qt::BacktabFocusReason << true;
        QTest::newRow("shortcut") << Qt::ShortcutFocusReason << true;
        QTest::newRow("mouse") << Qt::MouseFocusReason << false;
        QTest::newRow("program") << Qt::OtherFocusReason << false;
        QTest::newRow("window") << Qt::ActiveWindowFocusReason << false;
    }
    void aFrameShowsTheFocusOfTheKeyboardAlone()
    {
        QFETCH(Qt::FocusReason, reason);
        QFETCH(bool, framed);
        QWidget window;
        const auto layout = new QHBoxLayout(&window);
        const auto other = make(2, QPixmap()).release(); // both go to the window
        const auto button = make(2, plainPixmap(QSize(32, 32), Qt::red)).release();
        layout->addWidget(other);
        layout->addWidget(button);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        other->setFocus();

        const QImage unfocused = paintedAlone(button);
        button->setFocus(reason);
        QVERIFY(button->hasFocus());
        const QImage focused = paintedAlone(button);
        QCOMPARE(focused != unfocused, framed);
        // What the picture fills stays as it was, and so does its surrounding pixel.
        QCOMPARE(focused.copy(7, 4, 35, 35), unfocused.copy(7, 4, 35, 35));
        if (framed) {
            const QColor color(focusColor);
            QCOMPARE(boundsOf(focused, color), QRect(1, 1, 46, 40));
            QVERIFY(isFilled(focused, QRect(1, 1, 46, 2), color));
            QVERIFY(isFilled(focused, QRect(45, 1, 2, 40), color));
        }
        other->setFocus(Qt::TabFocusReason);
        QCOMPARE(paintedAlone(button), unfocused);
    }

    void theSelectionsFillStaysWholeUnderTheFocus()
    {
        const auto button = make(2, plainPixmap(QSize(32, 32), Qt::red));
        button->setSelected(true);
        button->show();
        QVERIFY(QTest::qWaitForWindowActive(button.get()));
        button->clearFocus();
        const QImage unfocused = paintedAlone(button.get());
        button->setFocus(Qt::TabFocusReason);
        QVERIFY(button->hasFocus());
        QCOMPARE(paintedAlone(button.get()), unfocused);
    }

    void theKeyboardReachesAndPressesIt()
    {
        QWidget window;
        const auto layout = new QHBoxLayout(&window);
        QList<ThreadButton*> buttons;
        for (int i = 0; i < 3; ++i) {
            buttons.append(make(2, QPixmap(), i + 1).release()); // goes to the window
            layout->addWidget(buttons.last());
        }
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        buttons.at(0)->setFocus();
        QTest::keyClick(&window, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), buttons.at(1));
        QSignalSpy byWindow(buttons.at(1), SIGNAL(threadButtonClicked(qlonglong)));
        QTest::keyClick(buttons.at(1), Qt::Key_Space);
        QCOMPARE(byWindow.size(), 1);
        QCOMPARE(byWindow.at(0).at(0).toLongLong(), 2);
    }
};

QTEST_MAIN(ThreadButtonTest)
#include "tst_threadbutton.moc"
