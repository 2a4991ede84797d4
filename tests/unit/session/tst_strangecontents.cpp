// Names, titles and pictures that others choose, on their way through the whole shell.
#include "instances/appinstance.h"
#include "shell/appbutton.h"
#include "shell/closebutton.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"
#include "support/painting.h"
#include "support/shelltest.h"
#include "winapi/winmanager.h"

#include <QApplication>
#include <QBuffer>
#include <QDesktopWidget>
#include <QtTest>

namespace {

constexpr int longestTitle = 255; // UTF-16 units that are read of a title

QByteArray png(const QSize& size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

void addTextRows()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks alone") << QStringLiteral("   ");
    QTest::newRow("many blanks") << QStringLiteral("a   b    c     d");
    QTest::newRow("300 characters") << QString(300, QLatin1Char('W'));
    QTest::newRow("300 words") << QStringLiteral("W ").repeated(300);
    QTest::newRow("a line feed") << QStringLiteral("first line\nsecond line\r\nthird");
    QTest::newRow("right to left") << QString::fromUtf8("\u05e9\u05dc\u05d5\u05dd \u05e2\u05d5\u05dc\u05dd");
    QTest::newRow("both directions") << QString::fromUtf8("a \u202e\u0645\u0631\u062d\u0628\u0627 b");
    QTest::newRow("outside the basic plane") << QString::fromUtf8("\U0001F600 \U00020000 \U0001D11E");
    QTest::newRow("300 outside the basic plane") << QString::fromUtf8("\U00020000").repeated(300);
    QTest::newRow("HTML") << QStringLiteral("<h1>big</h1><img src=\"file:///x.png\"><table><tr><td>1");
    QTest::newRow("an ampersand") << QStringLiteral("R&D && more");
    QTest::newRow("a place for arguments") << QStringLiteral("%1 %2 %s %n %");
}

} // namespace

class StrangeContentsTest : public ShellTest
{
    Q_OBJECT

    // The one application of a server.
    void startWithApplication(const QString& displayName, const QByteArray& icon)
    {
        startServer();
        TwData::Application& application = server().data.applications[QStringLiteral("letters")];
        // Every answer has some text, because the shell waits for one.
        application.displayName = displayName.isEmpty() ? QStringLiteral(" ") : displayName;
        application.icon = icon;
        startShell();
    }

    AppButton* launcherButton() { return shell().launcher()->findChild<AppButton*>(); }

private slots:
    void anyDisplayNameGetsAButtonOfItsSize_data() { addTextRows(); }
    void anyDisplayNameGetsAButtonOfItsSize()
    {
        QFETCH(QString, text);
        startWithApplication(text, png({64, 64}, Qt::red));
        QCOMPARE(shell().launcher()->findChildren<AppButton*>().size(), 1);
        AppButton* const button = launcherButton();
        QCOMPARE(button->geometry(), QRect(0, 0, 74, 112));
        QVERIFY(button->isVisible());
        const QString name = text.trimmed().isEmpty() ? QStringLiteral("letters") : text.simplified();
        QCOMPARE(button->accessibleName().remove(QLatin1Char(' ')), QString(name).remove(QLatin1Char(' ')));
        const QImage painted = paintedAlone(button);
        QVERIFY(isFilled(painted, QRect(20, 20, 30, 30), Qt::red));
        QVERIFY(isBlank(painted.copy(0, 108, 74, 4))); // nothing below the label's strip
        QVERIFY(!isFilled(painted, QRect(0, 75, 74, 33), painted.pixelColor(0, 75))); // something is written
        button->click();
        QCOMPARE(log().filter(QStringLiteral("Info: Launching: letters.exe")).size(), 1);
    }

    void anyTitleIsShownWithoutMovingAnything_data() { addTextRows(); }
    void anyTitleIsShownWithoutMovingAnything()
    {
        QFETCH(QString, text);
        startShell();
        const qlonglong other = attach(QStringLiteral("other"));
        ThreadWidget* const panel = bar().findChild<ThreadWidget*>();
        QCoreApplication::processEvents();
        const QRect panelPlace = panel->geometry();
        const QRect closePlace = panel->findChild<CloseButton*>()->geometry();
        const QRect powerPlace = shell().powerButton()->geometry();

        attach(text);
        QCoreApplication::processEvents();
        QCOMPARE(bar().count(), 5);
        QCOMPARE(shell().panelText(), text.left(longestTitle));
        bar().setCurrentIndex(3);
        QCOMPARE(shell().panelText(), QStringLiteral("other"));
        emit shell().tracker()->titleChanged(other, text);
        QCoreApplication::processEvents();
        QCOMPARE(shell().panelText(), text);
        QCOMPARE(panel->geometry(), panelPlace);
        QCOMPARE(panel->findChild<CloseButton*>()->geometry(), closePlace);
        QCOMPARE(shell().powerButton()->geometry(), powerPlace);
        QCOMPARE(bar().size(), QSize(QApplication::desktop()->width(), 42));
        QVERIFY(!bar().grab().isNull());
    }

    // --- Pictures

    void anIconThatIsNoPictureIsNone_data()
    {
        QTest::addColumn<QByteArray>("icon");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("this is no picture");
        QTest::newRow("half a picture") << png({64, 64}, Qt::red).left(60);
        QTest::newRow("zeroes") << QByteArray(100000, '\0');
        QTest::newRow("a head that promises much")
            << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\x7f\xff\xff\xff\x7f\xff\xff\xff\x08\6\0\0\0", 29);
    }
    void anIconThatIsNoPictureIsNone()
    {
        QFETCH(QByteArray, icon);
        startWithApplication(QStringLiteral("Letters"), icon);
        const QImage painted = paintedAlone(launcherButton());
        QVERIFY(isBlank(painted.copy(0, 0, 74, 75)));
        launcherButton()->click();
        attach(QStringLiteral("letter"));
        QCOMPARE(bar().buttonAt(3)->picture().toImage(),
                 QIcon(QStringLiteral(":/icons/applications/default.png")).pixmap(48, 42).toImage());
    }

    void anIconOfAnySizeIsShownSmall_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("4000x4000") << QSize(4000, 4000);
        QTest::newRow("4000x100") << QSize(4000, 100);
        QTest::newRow("100x4000") << QSize(100, 4000);
        QTest::newRow("1x1") << QSize(1, 1);
    }
    void anIconOfAnySizeIsShownSmall()
    {
        QFETCH(QSize, size);
        startWithApplication(QStringLiteral("Letters"), png(size, Qt::red));
        QCOMPARE(launcherButton()->size(), QSize(74, 112));
        QVERIFY(isFilled(paintedAlone(launcherButton()), QRect(5, 5, 65, 65), Qt::red));
        launcherButton()->click();
        attach(QStringLiteral("letter"));
        const ThreadButton* const button = bar().buttonAt(3);
        QVERIFY(button->picture().width() <= 48 && button->picture().height() <= 42);
        QCOMPARE(button->size(), QSize(48, 42));
    }
};

QTEST_MAIN(StrangeContentsTest)
#include "tst_strangecontents.moc"
