#include "shell/closebutton.h"

#include "support/ownmethods.h"
#include "support/painting.h"
#include "support/quillettest.h"

#include <QPainter>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QtTest>

class CloseButtonTest : public QuilletTest
{
    Q_OBJECT

    // Red in 16 pixels, blue in 12, and green where it is lit.
    static QIcon makeIcon()
    {
        QIcon icon;
        icon.addPixmap(plainPixmap(QSize(16, 16), Qt::red), QIcon::Normal, QIcon::Off);
        icon.addPixmap(plainPixmap(QSize(12, 12), Qt::blue), QIcon::Normal, QIcon::Off);
        for (const int extent : {12, 16}) {
            icon.addPixmap(plainPixmap(QSize(extent, extent), Qt::green), QIcon::Active, QIcon::Off);
            icon.addPixmap(plainPixmap(QSize(extent, extent), Qt::green), QIcon::Normal, QIcon::On);
        }
        return icon;
    }

private slots:
    void itsSizesAreFixedAndTheBaseHasNeitherIconNorText()
    {
        QWidget parent;
        const auto button = new CloseButton(makeIcon(), &parent);
        QCOMPARE(button->parentWidget(), &parent);
        QCOMPARE(button->minimumSize(), QSize(16, 16));
        QCOMPARE(button->maximumSize(), QSize(16, 16));
        QCOMPARE(button->iconSize(), QSize(16, 16));
        QVERIFY(button->icon().isNull());
        QVERIFY(button->text().isEmpty());
    }

    void aClickTellsTheButtonItself()
    {
        CloseButton button(makeIcon());
        QSignalSpy close(&button, SIGNAL(closeButtonClicked(CloseButton*)));
        button.click();
        QCOMPARE(close.size(), 1);
        QCOMPARE(close.at(0).at(0).value<CloseButton*>(), &button);
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(CloseButton::staticMetaObject),
                 QStringList({"closeButtonClicked(CloseButton*)", "buttonClicked()"}));
    }

    void itsIconSizeIsItsOwnInEveryStyle()
    {
        class LargeIcons : public QProxyStyle
        {
        public:
            int pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const override
            {
                return metric == PM_ButtonIconSize ? 20 : QProxyStyle::pixelMetric(metric, option, widget);
            }
        } style;
        CloseButton button(makeIcon());
        button.setStyle(&style);
        QCOMPARE(button.iconSize(), QSize(16, 16));
    }

    void thePictureCoversTheButtonAtRest()
    {
        CloseButton button(makeIcon());
        QVERIFY(isFilled(paintedAlone(&button), QRect(0, 0, 16, 16), Qt::red));
    }

    void thePictureAtRestReachesAPixelBeyondTheButton()
    {
        QImage stripes(16, 16, QImage::Format_RGB32);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x)
                stripes.setPixelColor(x, y, (x + y) % 4 < 2 ? Qt::red : Qt::blue);
        }
        CloseButton button(QIcon(QPixmap::fromImage(stripes)));
        QImage expected(16, 16, QImage::Format_ARGB32);
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawPixmap(QRect(0, 0, 17, 17), QPixmap::fromImage(stripes));
        }
        QCOMPARE(paintedAlone(&button), expected);
    }

    void theSmallerPictureIsDrawnInsideThePressedButton()
    {
        CloseButton button(makeIcon());
        button.setDown(true);
        const QImage image = paintedAlone(&button);
        QCOMPARE(boundsOf(image, Qt::blue), QRect(2, 2, 13, 13));
        QVERIFY(isFilled(image, QRect(2, 2, 13, 13), Qt::blue));
        QVERIFY(boundsOf(image, Qt::red).isNull());
    }

    void thePictureIsTheSameUnderTheMouseAndWhenDisabled()
    {
        CloseButton button(makeIcon());
        button.setAttribute(Qt::WA_UnderMouse);
        QVERIFY(isFilled(paintedAlone(&button), QRect(0, 0, 16, 16), Qt::red));
        button.setEnabled(false);
        QVERIFY(isFilled(paintedAlone(&button), QRect(0, 0, 16, 16), Qt::red));
    }

    void theOrdinaryButtonIsDrawnBeneath_data()
    {
        QTest::addColumn<QIcon>("icon");
        QTest::addColumn<bool>("down");
        QTest::newRow("no icon") << QIcon() << false;
        QTest::newRow("no icon, pressed") << QIcon() << true;
        QTest::newRow("no picture") << QIcon(QStringLiteral(":/no/such.png")) << false;
        QTest::newRow("a transparent picture") << QIcon(plainPixmap(QSize(16, 16), Qt::transparent)) << true;
    }
    void theOrdinaryButtonIsDrawnBeneath()
    {
        QFETCH(QIcon, icon);
        QFETCH(bool, down);
        CloseButton button(icon);
        QPushButton ordinary;
        ordinary.setFixedSize(16, 16);
        button.setDown(down);
        ordinary.setDown(down);
        QVERIFY(!isBlank(paintedAlone(&button)));
        QCOMPARE(paintedAlone(&button), paintedAlone(&ordinary));
    }

    void aHugePictureIsDrawnSmall()
    {
        CloseButton button(QIcon(plainPixmap(QSize(4000, 4000), Qt::red)));
        QVERIFY(isFilled(paintedAlone(&button), QRect(0, 0, 16, 16), Qt::red));
        QCOMPARE(button.size(), QSize(16, 16));
    }
};

QTEST_MAIN(CloseButtonTest)
#include "tst_closebutton.moc"
