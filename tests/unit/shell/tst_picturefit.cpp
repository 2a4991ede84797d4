#include "shell/picturefit.h"

#include <QtTest>

using shell::PictureFit;

class PictureFitTest : public QObject
{
    Q_OBJECT

private slots:
    void aPictureIsScaledCentredOrLeftInTheCorner_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSize>("frame");
        QTest::addColumn<bool>("centered");
        QTest::addColumn<bool>("scaled");
        QTest::addColumn<int>("scaling");
        QTest::addColumn<QPoint>("corner");
        const auto row = [](const char* name, const QSize& picture, const QSize& frame, bool centered,
                            bool scaled, PictureFit::Scaling scaling, const QPoint& corner = QPoint()) {
            QTest::newRow(name) << picture << frame << centered << scaled << int(scaling) << corner;
        };
        constexpr auto asItIs = PictureFit::AsItIs;
        constexpr auto toWidth = PictureFit::ToWidth;
        constexpr auto toHeight = PictureFit::ToHeight;
        const QSize frame(100, 80);
        row("neither", {40, 20}, frame, false, false, asItIs);
        row("neither, too large", {400, 200}, frame, false, false, asItIs);
        row("centred", {40, 20}, frame, true, false, asItIs, {30, 30});
        row("centred, odd", {41, 21}, frame, true, false, asItIs, {29, 29});
        row("centred, same size", frame, frame, true, false, asItIs);
        row("centred, too large", {400, 200}, frame, true, false, asItIs, {-150, -60});
        // Towards zero, not down.
        row("centred, too large and odd", {403, 203}, frame, true, false, asItIs, {-151, -61});
        row("centred, one pixel too large", {101, 81}, frame, true, false, asItIs, {0, 0});
        row("centred, wider and lower", {400, 20}, frame, true, false, asItIs, {-150, 30});
        row("centred, no picture", {0, 0}, frame, true, false, asItIs, {50, 40});
        row("scaled, wide", {400, 20}, frame, false, true, toWidth);
        row("scaled, high", {40, 200}, frame, false, true, toHeight);
        row("scaled, wider than high but for this frame", {90, 80}, frame, false, true, toHeight);
        row("scaled, by a pixel", {101, 80}, frame, false, true, toWidth);
        row("scaled, small and wide", {40, 3}, frame, false, true, toWidth);
        row("scaled, the frame's shape", {50, 40}, frame, false, true, toHeight);
        row("scaled, same size", frame, frame, false, true, toHeight);
        row("scaled and centred", {400, 20}, frame, true, true, toWidth);
        row("scaled, no picture", {0, 0}, frame, false, true, asItIs);
        row("scaled, no width", {40, 20}, {0, 80}, false, true, asItIs);
        row("scaled, no height", {40, 20}, {100, 0}, true, true, asItIs);
    }
    void aPictureIsScaledCentredOrLeftInTheCorner()
    {
        QFETCH(QSize, picture);
        QFETCH(QSize, frame);
        QFETCH(bool, centered);
        QFETCH(bool, scaled);
        const PictureFit fit = shell::fitPicture(picture, frame, centered, scaled);
        QTEST(int(fit.scaling), "scaling");
        QTEST(fit.corner, "corner");
    }
};

QTEST_GUILESS_MAIN(PictureFitTest)
#include "tst_picturefit.moc"
