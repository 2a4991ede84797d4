// The shell on the smallest and the largest screens.
#include "config/configure.h"
#include "files/filesystemwidget.h"
#include "shell/appbutton.h"
#include "shell/launchergrid.h"
#include "shell/menu.h"
#include "shell/taskfitting.h"
#include "shell/threadbutton.h"
#include "shell/threadmanager.h"
#include "shell/threadwidget.h"
#include "support/shelltest.h"

#include <QApplication>
#include <QDesktopWidget>
#include <QScreen>
#include <QtTest>

namespace {
QSize screenSize(800, 800);
} // namespace

// The offscreen platform's one screen has 800x800 pixels, whatever is asked for. In this program Qt's own
// answer is replaced: the linker takes the first definition that it finds.
QRect QScreen::geometry() const
{
    return {QPoint(0, 0), screenSize};
}

class ScreensTest : public ShellTest
{
    Q_OBJECT

    static void setScreen(const QSize& size)
    {
        screenSize = size;
        QApplication::desktop()->resize(size);
    }

    // Lets the layouts do their work; processEvents() need not come to it.
    static void layOut() { QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest); }

    // With applications "app000", "app001" and so on.
    void startWithApplications(int number)
    {
        startServer();
        QStringList ids;
        for (int i = 0; i < number; ++i) {
            ids.append(QStringLiteral("app%1").arg(i, 3, 10, QLatin1Char('0')));
            addToServer(ids.last(), QStringLiteral("x.exe"), QStringLiteral("127.0.0.1"),
                        QStringLiteral("windows"));
        }
        server().data.valid = ids;
        startShell();
    }

    QStringList launcherButtonsInView()
    {
        QStringList names;
        for (const AppButton* const button : shell().launcher()->findChildren<AppButton*>()) {
            if (button->isVisible() && shell().launcher()->rect().contains(button->geometry()))
                names.append(button->accessibleName());
        }
        names.sort();
        return names;
    }

    // Without the frame that the offscreen platform gives every window.
    static QRect placeOf(const QWidget* widget) { return QRect(widget->pos(), widget->size()); }

    void verifyLayout(const QSize& screen)
    {
        layOut();
        const QSize page(screen.width(), screen.height() - 42);
        QCOMPARE(placeOf(&bar()), QRect(0, page.height(), screen.width(), 42));
        for (const QWidget* const widget :
             {static_cast<QWidget*>(shell().launcher()), static_cast<QWidget*>(shell().fileManager()),
              static_cast<QWidget*>(shell().configuration())})
            QCOMPARE(placeOf(widget), QRect(QPoint(0, 0), page));
        const int tasks = bar().count() - 3;
        const shell::TaskFit fit = shell::fitTasks(screen.width(), 3, tasks);
        QCOMPARE(bar().findChild<ThreadWidget*>()->width(), fit.panelWidth);
        int visible = 0;
        for (int i = 0; i < bar().count(); ++i) {
            const ThreadButton* const button = bar().buttonAt(i);
            if (!button->isVisible())
                continue;
            visible += i >= 3;
            QVERIFY(bar().rect().contains(QRect(button->mapTo(&bar(), QPoint(0, 0)), button->size())));
        }
        QCOMPARE(visible, qMax(0, fit.visible));
        QCOMPARE(shell().powerButton()->mapTo(&bar(), QPoint(0, 0)), QPoint(screen.width() - 48, 0));
    }

private slots:
    void cleanup()
    {
        ShellTest::cleanup();
        setScreen(QSize(800, 800));
    }

    void theShellFitsTheScreen_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::newRow("320x240") << QSize(320, 240);
        QTest::newRow("640x480") << QSize(640, 480);
        QTest::newRow("1024x768") << QSize(1024, 768);
        QTest::newRow("1920x1080") << QSize(1920, 1080);
        QTest::newRow("7680x4320") << QSize(7680, 4320);
    }
    void theShellFitsTheScreen()
    {
        QFETCH(QSize, screen);
        setScreen(screen);
        startShell();
        verifyLayout(screen);
        for (int i = 0; i < 14; ++i) {
            attach(QString::number(i));
            verifyLayout(screen);
        }
        ThreadManager overview({bar().buttonAt(3), bar().buttonAt(4)}, 0, [](ThreadButton*) {});
        overview.show();
        QCOMPARE(overview.size(), screen);
    }

    void theShellFollowsTheScreensSize()
    {
        startWithApplications(60);
        for (int i = 0; i < 14; ++i)
            attach(QString::number(i));
        const QStringList all = [] {
            QStringList names;
            for (int i = 0; i < 60; ++i)
                names.append(QStringLiteral("app%1").arg(i, 3, 10, QLatin1Char('0')));
            return names;
        }();
        for (const QSize screen : {QSize(320, 240), QSize(7680, 4320), QSize(320, 240), QSize(1024, 768),
                                   QSize(7680, 4320), QSize(1920, 1080)}) {
            setScreen(screen);
            QMetaObject::invokeMethod(QApplication::desktop(), "resized", Q_ARG(int, 0));
            verifyLayout(screen);
            desktop().mapWidget(shell().launcher(), true);
            layOut();
            const int cells = shell::gridSize(screen - QSize(0, 42)).cells();
            QCOMPARE(launcherButtonsInView().join(' '), QStringList(all.mid(0, cells)).join(' '));
        }
    }

    void aLauncherOfAnySizeKeepsItsApplicationsInOrder()
    {
        startWithApplications(60);
        const QStringList all = [this] {
            shell().launcher()->resize(QSize(10000, 10000));
            layOut();
            return launcherButtonsInView();
        }();
        QCOMPARE(all.size(), 60);
        for (const QSize size : {QSize(1, 1), QSize(0, 0), QSize(10000, 10000), QSize(1, 10000),
                                 QSize(10000, 1), QSize(10000, 112), QSize(74, 10000), QSize(800, 758)}) {
            shell().launcher()->resize(size);
            layOut();
            QCOMPARE(shell().launcher()->size(), size);
            QCOMPARE(launcherButtonsInView().join(' '),
                     QStringList(all.mid(0, shell::gridSize(size).cells())).join(' '));
        }
    }

    // With nothing left for the page the bar alone is there.
    void screensThatNobodyHasAreCalm()
    {
        for (const QSize screen : {QSize(1, 1), QSize(48, 42), QSize(200, 43)}) {
            setScreen(screen);
            startShell();
            attach(QStringLiteral("letter"));
            desktop().clientConnected();
            QVERIFY(bar().isVisible());
            QCOMPARE(bar().count(), 4);
            ShellTest::cleanup();
            init();
        }
    }
};

QTEST_MAIN(ScreensTest)
#include "tst_screens.moc"
