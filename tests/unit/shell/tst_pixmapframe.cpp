#include "shell/pixmapframe.h"

#include "support/quillettest.h"

#include <QMetaMethod>
#include <QtTest>

class PixmapFrameTest : public QuilletTest
{
    Q_OBJECT

    // Counts its paintings.
    struct Frame : PixmapFrame
    {
        explicit Frame(const QPixmap& pixmap = QPixmap())
            : PixmapFrame(nullptr, pixmap)
        {
            QPalette white = palette();
            white.setColor(QPalette::Window, Qt::white);
            setPalette(white);
        }

        void paintEvent(QPaintEvent* event) override
        {
            ++paintings;
            PixmapFrame::paintEvent(event);
        }

        int paintings = 0;
    };

    static QPixmap red(int width, int height)
    {
        QPixmap pixmap(width, height);
        pixmap.fill(Qt::red);
        return pixmap;
    }

    // Where red is seen, at least at its corners; the frame is white elsewhere.
    static QRect redPart(QWidget& frame)
    {
        const QImage image = frame.grab().toImage();
        QRegion region;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != QColor(Qt::white))
                    region += QRect(x, y, 1, 1);
            }
        }
        return region.boundingRect();
    }

private slots:
    void theFrameHasOneSlot()
    {
        const QMetaObject& meta = PixmapFrame::staticMetaObject;
        QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("QFrame"));
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("resize()"));
        QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Slot);
    }

    void theFirstPictureLiesInTheCornerAndIsOpaque()
    {
        Frame frame(red(20, 10));
        frame.setFixedSize(60, 40);
        QCOMPARE(redPart(frame), QRect(0, 0, 20, 10));
        QCOMPARE(frame.grab().toImage().pixelColor(5, 5), QColor(Qt::red));
    }

    void aPictureIsPlacedAsAskedFor_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<bool>("centered");
        QTest::addColumn<bool>("scaled");
        QTest::addColumn<QRect>("place");
        QTest::newRow("in the corner") << QSize(20, 10) << false << false << QRect(0, 0, 20, 10);
        QTest::newRow("centred") << QSize(20, 10) << true << false << QRect(20, 15, 20, 10);
        QTest::newRow("centred, too wide") << QSize(200, 10) << true << false << QRect(0, 15, 60, 10);
        QTest::newRow("scaled to the width") << QSize(20, 10) << false << true << QRect(0, 0, 60, 30);
        QTest::newRow("scaled to the height") << QSize(10, 20) << false << true << QRect(0, 0, 20, 40);
        QTest::newRow("scaled down") << QSize(600, 100) << true << true << QRect(0, 0, 60, 10);
        QTest::newRow("no picture") << QSize(0, 0) << false << true << QRect();
    }
    void aPictureIsPlacedAsAskedFor()
    {
        QFETCH(QSize, picture);
        QFETCH(bool, centered);
        QFETCH(bool, scaled);
        Frame frame;
        frame.setFixedSize(60, 40);
        frame.setPixmap(red(picture.width(), picture.height()), centered, scaled);
        QTEST(redPart(frame), "place");
    }

    void aPictureLargerThanTheFrameShowsItsMiddle()
    {
        QPixmap picture = red(100, 100);
        picture.fill(Qt::red);
        QImage image = picture.toImage();
        image.setPixelColor(20, 30, Qt::blue);
        Frame frame;
        frame.setFixedSize(60, 40);
        frame.setPixmap(QPixmap::fromImage(image), true, false);
        QCOMPARE(frame.grab().toImage().pixelColor(0, 0), QColor(Qt::blue));
    }

    void theOpacityIsThePicturesAlone()
    {
        Frame frame(red(20, 10));
        frame.setFixedSize(60, 40);
        frame.setOpacity(0.5);
        const QColor mixed = frame.grab().toImage().pixelColor(5, 5);
        QCOMPARE(mixed.red(), 255);
        QVERIFY(qAbs(mixed.green() - 127) <= 1);
        QCOMPARE(frame.grab().toImage().pixelColor(30, 30), QColor(Qt::white));
        frame.setOpacity(0);
        QCOMPARE(redPart(frame), QRect());
    }

    void everyChangeIsPaintedAtOnce()
    {
        Frame frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        int before = frame.paintings;
        frame.setOpacity(0.5);
        QCOMPARE(frame.paintings, before + 1);
        before = frame.paintings;
        frame.setPixmap(red(20, 10), true, false);
        QCOMPARE(frame.paintings, before + 1);
        before = frame.paintings;
        QVERIFY(QMetaObject::invokeMethod(&frame, "resize"));
        QCOMPARE(frame.paintings, before + 1);
    }

    void theSlotFitsThePictureToTheNewSize()
    {
        Frame frame;
        frame.setFixedSize(60, 40);
        frame.setPixmap(red(20, 10), true, false);
        frame.setFixedSize(100, 80);
        QCOMPARE(redPart(frame), QRect(20, 15, 20, 10)); // nobody said so yet
        QVERIFY(QMetaObject::invokeMethod(&frame, "resize"));
        QCOMPARE(redPart(frame), QRect(40, 35, 20, 10));
    }

    void aScaledPictureIsScaledSmoothlyAndFromItsLastCopy_data()
    {
        QTest::addColumn<QSize>("small");
        QTest::newRow("by its width") << QSize(8, 16);
        QTest::newRow("by its height") << QSize(16, 8);
    }
    void aScaledPictureIsScaledSmoothlyAndFromItsLastCopy()
    {
        QFETCH(QSize, small);
        // Stripes of one pixel, which scaling down makes grey for good.
        QImage stripes(64, 64, QImage::Format_RGB32);
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x)
                stripes.setPixelColor(x, y, x % 2 ? Qt::red : Qt::blue);
        }
        Frame frame;
        frame.setFixedSize(small);
        frame.setPixmap(QPixmap::fromImage(stripes), false, true);
        frame.setFixedSize(64, 64);
        frame.PixmapFrame::resize();
        const QColor color = frame.grab().toImage().pixelColor(33, 33);
        QVERIFY(color.red() > 60 && color.red() < 200);
        QVERIFY(color.blue() > 60 && color.blue() < 200);
    }

    void aFrameWithoutRoomKeepsItsPicture()
    {
        Frame frame;
        frame.setFixedSize(0, 0);
        frame.setPixmap(red(20, 10), false, true);
        frame.setFixedSize(60, 40);
        frame.PixmapFrame::resize();
        QCOMPARE(redPart(frame), QRect(0, 0, 60, 30));
    }

    void aHugeFrameIsFitted()
    {
        Frame frame;
        frame.setFixedSize(10000, 10000);
        frame.setPixmap(red(20, 10), true, false);
        QPixmap middle(20, 20);
        middle.fill(Qt::white);
        frame.render(&middle, QPoint(), QRegion(4990, 4990, 20, 20));
        QCOMPARE(middle.toImage().pixelColor(0, 4), QColor(Qt::white));
        QCOMPARE(middle.toImage().pixelColor(0, 5), QColor(Qt::red));
        QCOMPARE(middle.toImage().pixelColor(19, 14), QColor(Qt::red));
        QCOMPARE(middle.toImage().pixelColor(19, 15), QColor(Qt::white));
    }
};

QTEST_MAIN(PixmapFrameTest)
#include "tst_pixmapframe.moc"
