#include "shell/toolbutton.h"

#include "support/ownmethods.h"
#include "support/painting.h"
#include "support/quillettest.h"

#include <QHBoxLayout>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class ToolButtonTest : public QuilletTest
{
    Q_OBJECT

    // Red, and green where it is lit; blue is never asked for.
    static QIcon makeIcon()
    {
        QIcon icon;
        for (const int extent : {32, 40, 64}) {
            icon.addPixmap(plainPixmap(QSize(extent, extent), Qt::blue), QIcon::Normal, QIcon::Off);
            icon.addPixmap(plainPixmap(QSize(extent, extent), Qt::blue), QIcon::Active, QIcon::On);
        }
        icon.addPixmap(plainPixmap(QSize(48, 48), Qt::red), QIcon::Normal, QIcon::Off);
        icon.addPixmap(plainPixmap(QSize(48, 48), Qt::green), QIcon::Active, QIcon::On);
        icon.addPixmap(plainPixmap(QSize(48, 48), Qt::blue), QIcon::Active, QIcon::Off);
        icon.addPixmap(plainPixmap(QSize(48, 48), Qt::blue), QIcon::Normal, QIcon::On);
        icon.addPixmap(plainPixmap(QSize(48, 48), Qt::blue), QIcon::Disabled, QIcon::Off);
        return icon;
    }

    std::unique_ptr<ToolButton> m_button;

    static QRect pictureRect() { return QRect(5, 5, 49, 49); }

private slots:
    void init()
    {
        QuilletTest::init();
        m_button = std::make_unique<ToolButton>(makeIcon(), QStringLiteral("Go back"));
    }

    void cleanup()
    {
        m_button.reset();
        QuilletTest::cleanup();
    }

    void itHasItsSizeAndToolTipAndNoWidget()
    {
        QWidget parent;
        const auto button = new ToolButton(makeIcon(), QStringLiteral("Go back"), &parent);
        QCOMPARE(button->parentWidget(), &parent);
        QCOMPARE(button->minimumSize(), QSize(58, 58));
        QCOMPARE(button->maximumSize(), QSize(58, 58));
        QCOMPARE(button->toolTip(), QStringLiteral("Go back"));
        QCOMPARE(button->accessibleName(), QStringLiteral("Go back"));
        QVERIFY(!button->widget());
    }

    void aClickTellsItsWidget()
    {
        QSignalSpy plain(m_button.get(), SIGNAL(clicked()));
        QSignalSpy clicked(m_button.get(), SIGNAL(clicked(QWidget*)));
        m_button->click();
        auto widget = std::make_unique<QWidget>();
        m_button->setWidget(widget.get());
        m_button->click();
        const QWidget* const told = clicked.at(1).at(0).value<QWidget*>();
        QCOMPARE(told, widget.get());
        widget.reset();
        m_button->click();
        QCOMPARE(clicked.size(), 3);
        QCOMPARE(clicked.at(0).at(0).value<QWidget*>(), nullptr);
        QCOMPARE(clicked.at(2).at(0).value<QWidget*>(), nullptr);
        QCOMPARE(plain.size(), 3);
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(ToolButton::staticMetaObject),
                 QStringList({"clicked(QWidget*)", "emitClicked()"}));
    }

    void atRestThePictureAloneIsDrawn()
    {
        const QImage image = paintedAlone(m_button.get());
        QCOMPARE(boundsOf(image, Qt::red), pictureRect());
        QVERIFY(isFilled(image, pictureRect(), Qt::red));
        QVERIFY(isFilled(image, QRect(0, 0, 58, 5), Qt::transparent));
        QVERIFY(isFilled(image, QRect(54, 0, 4, 58), Qt::transparent));
    }

    void thePressedButtonIsFilledBehindItsPicture()
    {
        m_button->setDown(true);
        const QImage image = paintedAlone(m_button.get());
        QVERIFY(isFilled(image, QRect(0, 0, 58, 5), Qt::lightGray));
        QVERIFY(isFilled(image, QRect(54, 0, 4, 58), Qt::lightGray));
        QVERIFY(isFilled(image, pictureRect(), Qt::red));
    }

    void theLitPictureIsShownUnderTheMouse()
    {
        m_button->setAttribute(Qt::WA_UnderMouse);
        const QImage image = paintedAlone(m_button.get());
        QVERIFY(isFilled(image, pictureRect(), Qt::green));
        m_button->setAttribute(Qt::WA_UnderMouse, false);
        QVERIFY(isFilled(paintedAlone(m_button.get()), pictureRect(), Qt::red));
    }

    void theDisabledButtonIsAtQuarterOpacityAndNeverLit_data()
    {
        QTest::addColumn<bool>("underMouse");
        QTest::newRow("away from the mouse") << false;
        QTest::newRow("under the mouse") << true;
    }
    void theDisabledButtonIsAtQuarterOpacityAndNeverLit()
    {
        QFETCH(bool, underMouse);
        m_button->setEnabled(false);
        m_button->setAttribute(Qt::WA_UnderMouse, underMouse);
        const QImage image = paintedAlone(m_button.get());
        for (const QPoint& point : {QPoint(5, 5), QPoint(29, 29), QPoint(53, 53)}) {
            const QColor color = image.pixelColor(point);
            QVERIFY(qAbs(color.alpha() - 64) <= 1);
            QCOMPARE(color.green(), 0);
            QCOMPARE(color.blue(), 0);
            QVERIFY(color.red() > 250);
        }
    }

    void withoutIconNothingIsPainted_data()
    {
        QTest::addColumn<bool>("down");
        QTest::newRow("at rest") << false;
        QTest::newRow("pressed") << true;
    }
    void withoutIconNothingIsPainted()
    {
        QFETCH(bool, down);
        ToolButton button{QIcon(), QString()};
        button.setDown(down);
        QVERIFY(isBlank(paintedAlone(&button)));
    }

    void aHugePictureIsDrawnSmall()
    {
        ToolButton button(QIcon(plainPixmap(QSize(4000, 4000), Qt::red)), QString());
        QCOMPARE(boundsOf(paintedAlone(&button), Qt::red), pictureRect());
        QCOMPARE(button.size(), QSize(58, 58));
    }

    void theMouseComingAndGoingRepaints()
    {
        m_button->setAttribute(Qt::WA_Hover, false); // by which a style may repaint buttons anyway
        m_button->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_button.get()));
        PaintCounter counter;
        m_button->installEventFilter(&counter);
        for (const QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
            QCoreApplication::processEvents();
            counter.paints = 0;
            QEvent event(type);
            QCoreApplication::sendEvent(m_button.get(), &event);
            QVERIFY2(QTest::qWaitFor([&counter] { return counter.paints > 0; }),
                     type == QEvent::Enter ? "enter" : "leave");
        }
    }

    void aFrameShowsTheFocusOfTheKeyboardAlone_data()
    {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::addColumn<bool>("framed");
        QTest::newRow("Tab") << Qt::TabFocusReason << true;
        QTest::newRow("Backtab") << Qt::BacktabFocusReason << true;
        QTest::newRow("mouse") << Qt::MouseFocusReason << false;
        QTest::newRow("program") << Qt::OtherFocusReason << false;
    }
    void aFrameShowsTheFocusOfTheKeyboardAlone()
    {
        QFETCH(Qt::FocusReason, reason);
        QFETCH(bool, framed);
        QWidget window;
        const auto layout = new QHBoxLayout(&window);
        const auto other = new QPushButton;
        const auto button = new ToolButton(makeIcon(), QString());
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
        QCOMPARE(focused.copy(4, 4, 51, 51), unfocused.copy(4, 4, 51, 51));
        if (framed) {
            QCOMPARE(boundsOf(focused, QColor(focusColor)), QRect(1, 1, 56, 56));
        }
        button->setDown(true); // filled to the edge
        QVERIFY(isFilled(paintedAlone(button), QRect(0, 0, 58, 5), Qt::lightGray));
        button->setDown(false);
        other->setFocus(Qt::TabFocusReason);
        QCOMPARE(paintedAlone(button), unfocused);
    }

    void theKeyboardPressesIt()
    {
        m_button->show();
        QVERIFY(QTest::qWaitForWindowActive(m_button.get()));
        m_button->setFocus();
        QSignalSpy clicked(m_button.get(), SIGNAL(clicked(QWidget*)));
        QTest::keyClick(m_button.get(), Qt::Key_Space);
        QCOMPARE(clicked.size(), 1);
    }
};

QTEST_MAIN(ToolButtonTest)
#include "tst_toolbutton.moc"
