// On the simulated Windows and on the real one.
#include "winapi/windowoperations.h"

#include "env/settings.h"
#include "support/quillettest.h"
#include "support/testwindow.h"
#include "winapi/windowtracker.h"

#include <QCoreApplication>
#include <QProcess>
#include <QtTest>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

using namespace winapi;

class WindowOperationsTest : public QuilletTest
{
    Q_OBJECT

    // A handle that was a window's.
    static qlonglong goneWindow()
    {
        TestWindow window(QStringLiteral("gone"));
        return window.id();
    }

    static WindowSnapshot snapshot()
    {
        return inspectWindows(withoutRepetitions(enumerateWindows(desktopWidgetWindow())));
    }

    static constexpr DWORD m_shown = WS_VISIBLE | WS_MINIMIZE | WS_MAXIMIZE;

private slots:
    void init()
    {
        QuilletTest::init();
        env::readWindowManagerBehaviour(); // nothing in the settings
    }

    // --- isApplicationWindow()

    void anApplicationWindowIsTopLevelAndLooksLikeOne_data()
    {
        QTest::addColumn<quint32>("style");
        QTest::addColumn<quint32>("extendedStyle");
        QTest::addColumn<bool>("application");
        const auto row = [](const char* name, quint32 style, quint32 extendedStyle, bool application) {
            QTest::newRow(name) << style << extendedStyle << application;
        };
        row("popup", WS_POPUP, 0, true);
        row("border", WS_BORDER, 0, true);
        row("system menu", WS_SYSMENU, 0, true);
        row("an ordinary window", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, true);
        row("hidden", WS_OVERLAPPEDWINDOW, 0, true);
        row("none of these", WS_VISIBLE | WS_CLIPSIBLINGS, 0, false);
        row("tool window", WS_POPUP | WS_BORDER | WS_SYSMENU, WS_EX_TOOLWINDOW, false);
        row("marked", WS_VISIBLE, WS_EX_APPWINDOW, true);
        row("marked tool window", WS_POPUP, WS_EX_APPWINDOW | WS_EX_TOOLWINDOW, true);
    }
    void anApplicationWindowIsTopLevelAndLooksLikeOne()
    {
        QFETCH(quint32, style);
        QFETCH(quint32, extendedStyle);
        // Windows adds to the styles of a window that is opened: they are set afterwards.
        TestWindow window(QStringLiteral("window"), WS_POPUP);
        window.setStyle(style);
        window.setExtendedStyle(extendedStyle);
        QTEST(isApplicationWindow(window.id()), "application");
    }

    void aChildIsNoApplicationWindow()
    {
        TestWindow parent(QStringLiteral("parent"));
        TestWindow child(QStringLiteral("child"), WS_CHILD | WS_VISIBLE | WS_BORDER | WS_SYSMENU,
                         WS_EX_APPWINDOW, &parent);
        QVERIFY(isApplicationWindow(parent.id()));
        QVERIFY(!isApplicationWindow(child.id()));
    }

    void anOwnedWindowIsAnApplicationWindow()
    {
        TestWindow owner(QStringLiteral("owner"));
        TestWindow owned(QStringLiteral("owned"), WS_POPUP | WS_VISIBLE, 0, &owner);
        QVERIFY(isApplicationWindow(owned.id()));
    }

    void theDesktopItselfLooksLikeOne() // it has no parent and is a popup
    {
        QVERIFY(isApplicationWindow(static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(GetDesktopWindow()))));
    }

    void noWindowIsNoApplicationWindow()
    {
        QVERIFY(!isApplicationWindow(0));
        QVERIFY(!isApplicationWindow(goneWindow()));
        QVERIFY(!isApplicationWindow(-1));
    }

    // --- bringWindowToFront()

    void aWindowIsShownAndMaximised()
    {
        TestWindow window(QStringLiteral("hidden"), WS_OVERLAPPEDWINDOW);
        bringWindowToFront(window.id(), false);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE | WS_MAXIMIZE);
    }

    void aMinimisedWindowIsRestored()
    {
        TestWindow window(QStringLiteral("minimised"));
        window.show(SW_MINIMIZE);
        QVERIFY(window.style() & WS_MINIMIZE);
        bringWindowToFront(window.id(), false);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE | WS_MAXIMIZE);
    }

    void aWindowThatWasMaximisedIsRestoredSo()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=standard\n");
        env::readWindowManagerBehaviour();
        TestWindow window(QStringLiteral("window"));
        window.show(SW_MAXIMIZE);
        window.show(SW_MINIMIZE);
        bringWindowToFront(window.id(), false);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE | WS_MAXIMIZE);
        window.show(SW_RESTORE);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE);
    }

    void withStandardBehaviourAWindowKeepsItsSize()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=Standard\n");
        env::readWindowManagerBehaviour();
        TestWindow window(QStringLiteral("hidden"), WS_OVERLAPPEDWINDOW);
        bringWindowToFront(window.id(), false);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE);
        window.show(SW_MINIMIZE);
        bringWindowToFront(window.id(), false);
        QCOMPARE(window.style() & m_shown, WS_VISIBLE);
        bringWindowToFront(window.id(), true); // unless it must not
        QCOMPARE(window.style() & m_shown, WS_VISIBLE | WS_MAXIMIZE);
    }

    void aWindowBroughtToTheFrontIsAboveTheOthers()
    {
        TestWindow lower(QStringLiteral("lower"));
        TestWindow upper(QStringLiteral("upper"));
        const auto isAbove = [](const TestWindow& a, const TestWindow& b) {
            const QList<qlonglong> all = snapshot().windows;
            return all.contains(a.id()) && all.indexOf(a.id()) < all.indexOf(b.id());
        };
        QVERIFY(isAbove(upper, lower));
        bringWindowToFront(lower.id(), false);
        QVERIFY(isAbove(lower, upper));
    }

#ifndef Q_OS_WIN
    void theCallsComeInTheirOrder_data()
    {
        QTest::addColumn<bool>("minimised");
        QTest::addColumn<bool>("maximise");
        QTest::newRow("shown") << false << true;
        QTest::newRow("minimised") << true << true;
        QTest::newRow("standard, shown") << false << false;
        QTest::newRow("standard, minimised") << true << false;
    }
    void theCallsComeInTheirOrder()
    {
        QFETCH(bool, minimised);
        QFETCH(bool, maximise);
        sandbox().writeSettings(maximise ? "" : "[Desktop]\nWindowManagerBehaviour=standard\n");
        env::readWindowManagerBehaviour();
        TestWindow window(QStringLiteral("window"));
        if (minimised)
            window.show(SW_MINIMIZE);
        const int before = simwin::calls().size();
        bringWindowToFront(window.id(), false);
        QStringList calls;
        for (const simwin::Call& call : simwin::calls().mid(before))
            calls.append(QString::fromLatin1(call.function) + call.arguments.value(1));
        QStringList expected = {QStringLiteral("IsIconic"),
                                minimised ? QStringLiteral("ShowWindow9") : QStringLiteral("ShowWindow5"),
                                QStringLiteral("BringWindowToTop")};
        if (maximise)
            expected.append(QStringLiteral("ShowWindow3"));
        QCOMPARE(calls, expected);
    }

    void closingAndQuittingPostTheirMessages()
    {
        TestWindow window(QStringLiteral("window"));
        const QString id = QString::number(window.id(), 16);
        const int before = simwin::calls().size();
        simwin::setRefusesToClose(window.id(), true);
        closeWindow(window.id());
        QVERIFY(quitWindow(window.id()));
        simwin::fail("PostMessageW", ERROR_ACCESS_DENIED);
        QVERIFY(!quitWindow(window.id()));
        simwin::fail("PostMessageW", ERROR_SUCCESS, 0);
        const QList<simwin::Call> calls = simwin::calls().mid(before);
        QCOMPARE(calls.size(), 3);
        QCOMPARE(calls.at(0).function, QByteArray("PostMessageW"));
        QCOMPARE(calls.at(0).arguments,
                 QStringList({id, QStringLiteral("112"), QStringLiteral("f060"), QStringLiteral("0")}));
        QCOMPARE(calls.at(1).function, QByteArray("PostMessageW"));
        QCOMPARE(calls.at(1).arguments,
                 QStringList({id, QStringLiteral("12"), QStringLiteral("0"), QStringLiteral("0")}));
        QVERIFY(!snapshot().windows.contains(window.id())); // it refused to close, but not to quit
    }
#endif

    // --- closeWindow(), quitWindow()

    void aWindowThatIsAskedToCloseCloses()
    {
        TestWindow window(QStringLiteral("window"));
        const qlonglong id = window.id();
        closeWindow(id);
        QVERIFY(QTest::qWaitFor([&] { return !snapshot().windows.contains(id); }));
    }

    void whatIsGoneCannotQuitAndDoesNoHarm()
    {
        const qlonglong gone = goneWindow();
        QVERIFY(!quitWindow(gone));
        closeWindow(gone);
        bringWindowToFront(gone, true);
        bringWindowToFront(0, false);
        closeWindow(0);
        QVERIFY(!quitWindow(0)); // which would end this thread's own event loop
    }

    void aDisabledWindowDoesNotClose()
    {
        TestWindow window(QStringLiteral("with a box"), WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_DISABLED);
        closeWindow(window.id());
        QTest::qWait(100);
        QVERIFY(snapshot().windows.contains(window.id()));
    }

#ifdef Q_OS_WIN
    void aProgramQuitsWhenItsWindowIsTold()
    {
        QProcess notepad;
        notepad.start(QStringLiteral("notepad.exe"), QStringList());
        QVERIFY(notepad.waitForStarted());
        QList<qlonglong> windows;
        QVERIFY(QTest::qWaitFor(
            [&] {
                windows.clear();
                for (const qlonglong window : enumerateWindows(desktopWidgetWindow(), &notepad)) {
                    if (isApplicationWindow(window) &&
                        windowTitle(window).contains(QStringLiteral("Notepad")))
                        windows.append(window);
                }
                return !windows.isEmpty();
            },
            30000));
        QCOMPARE(windowProcessId(windows.first()), static_cast<quint32>(notepad.processId()));
        QVERIFY(debugOutput().contains(QStringLiteral("Process found!!! %1").arg(notepad.processId())));
        QVERIFY(quitWindow(windows.first()));
        QVERIFY(notepad.waitForFinished());
    }
#else
    void aProcesssWindowsAreFoundHiddenOrNot()
    {
        QProcess process;
        process.start(QStringLiteral("sleep"), {QStringLiteral("60")});
        QVERIFY(process.waitForStarted());
        TestWindow ours(QStringLiteral("ours"));
        TestWindow hidden(QStringLiteral("hidden"), WS_POPUP);
        simwin::setCurrentWindowProcess(static_cast<DWORD>(process.processId()));
        const HWND theirs = CreateWindowExW(0, L"STATIC", L"theirs", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                            nullptr, nullptr);
        const auto id = static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(theirs));
        clearDebugOutput();
        // Once as a top-level window, once below the desktop.
        QCOMPARE(enumerateWindows(desktopWidgetWindow(), &process), QList<qlonglong>({id, id}));
        const QString line = QStringLiteral("Process found!!! %1").arg(process.processId());
        QCOMPARE(debugOutput(), QStringList({line, line}));
        process.kill();
        process.waitForFinished();
    }
#endif

    // --- foregroundWindow()

    void theWindowThatWasShownLastIsInTheForeground()
    {
        TestWindow a(QStringLiteral("a"));
        TestWindow b(QStringLiteral("b"));
        QCOMPARE(foregroundWindow(), b.id());
        a.show(SW_HIDE);
        a.show(SW_SHOW);
        QCOMPARE(foregroundWindow(), a.id());
        a.close();
        QCOMPARE(foregroundWindow(), b.id());
    }

#ifndef Q_OS_WIN
    void thereMayBeNoForegroundWindow()
    {
        TestWindow window(QStringLiteral("window"));
        simwin::setForegroundWindow(0);
        QCOMPARE(foregroundWindow(), qlonglong(0));
    }
#endif

    // --- windowProcessId()

    void theProcessOfAWindow()
    {
        TestWindow window(QStringLiteral("window"));
        QCOMPARE(windowProcessId(window.id()), static_cast<quint32>(QCoreApplication::applicationPid()));
        QCOMPARE(windowProcessId(goneWindow()), 0u);
        QCOMPARE(windowProcessId(0), 0u);
    }

    // --- windowTitle()

    void aTitleIsReadUpTo255Units_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("read");
        const QString smile = QString::fromUtf8("\xf0\x9f\x98\x80"); // two units
        QTest::newRow("none") << ""
                              << "";
        QTest::newRow("one") << "x"
                             << "x";
        QTest::newRow("letters of other scripts")
            << QString::fromUtf8("ñ 漢字 ") + smile << QString::fromUtf8("ñ 漢字 ") + smile;
        QTest::newRow("255") << QString(255, 'x') << QString(255, 'x');
        QTest::newRow("256") << QString(255, 'x') + "y" << QString(255, 'x');
        QTest::newRow("300") << QString(300, 'x') << QString(255, 'x');
        QTest::newRow("a pair cut in two") << QString(254, 'x') + smile << QString(254, 'x') + smile.at(0);
        QTest::newRow("line ends and signs") << "a\nb\t%1 <b>&c"
                                             << "a\nb\t%1 <b>&c";
    }
    void aTitleIsReadUpTo255Units()
    {
        QFETCH(QString, title);
        QFETCH(QString, read);
        TestWindow window(title);
        QCOMPARE(windowTitle(window.id()), read);
        QCOMPARE(windowTitle(window.id()).isNull(), read.isEmpty());
    }

    void aWindowThatIsGoneHasNoTitle()
    {
        QVERIFY(windowTitle(goneWindow()).isNull());
        QVERIFY(windowTitle(0).isNull());
    }

    // --- enumerateWindows()

    void visibleWindowsAreEnumeratedFromTheTopAndAgainBelowTheDesktop()
    {
        TestWindow lower(QStringLiteral("lower"));
        TestWindow hidden(QStringLiteral("hidden"), WS_OVERLAPPEDWINDOW);
        TestWindow upper(QStringLiteral("upper"));
        TestWindow child(QStringLiteral("child"), WS_CHILD | WS_VISIBLE, 0, &upper);
        TestWindow grandchild(QStringLiteral("grandchild"), WS_CHILD | WS_VISIBLE, 0, &child);
        TestWindow hiddenChild(QStringLiteral("hidden child"), WS_CHILD, 0, &upper);
        const QList<qlonglong> all = enumerateWindows(desktopWidgetWindow());
        QCOMPARE(all.count(lower.id()), 2);
        QCOMPARE(all.count(upper.id()), 2);
        QCOMPARE(all.count(child.id()), 1);
        QCOMPARE(all.count(grandchild.id()), 1);
        QCOMPARE(all.count(hidden.id()), 0);
        QCOMPARE(all.count(hiddenChild.id()), 0);
        QVERIFY(all.indexOf(upper.id()) < all.indexOf(lower.id()));
        QVERIFY(all.indexOf(lower.id()) < all.indexOf(child.id())); // the second pass has the children
        const QList<qlonglong> once = snapshot().windows;
        for (const TestWindow* window : {&lower, &upper, &child, &grandchild})
            QCOMPARE(once.count(window->id()), 1);
        QVERIFY(once.indexOf(lower.id()) < once.indexOf(child.id()));
    }

    void aWindowThatIsShownComesToTheTop()
    {
        TestWindow a(QStringLiteral("a"));
        TestWindow b(QStringLiteral("b"));
        TestWindow c(QStringLiteral("c"), WS_OVERLAPPEDWINDOW);
        const auto order = [&] {
            QString names;
            for (const qlonglong window : snapshot().windows) {
                if (window == a.id() || window == b.id() || window == c.id())
                    names += windowTitle(window);
            }
            return names;
        };
        QCOMPARE(order(), QStringLiteral("ba"));
        c.show(SW_SHOW);
        QCOMPARE(order(), QStringLiteral("cba"));
        a.show(SW_HIDE);
        a.show(SW_SHOW);
        QCOMPARE(order(), QStringLiteral("acb"));
        c.show(SW_SHOW); // which it is already
        QCOMPARE(order(), QStringLiteral("acb"));
        b.show(SW_MINIMIZE);
        QCOMPARE(order(), QStringLiteral("acb"));
        b.show(SW_RESTORE);
        QCOMPARE(order(), QStringLiteral("bac"));
    }

    void childrenStandInTheOrderInWhichTheyWereOpened()
    {
        TestWindow parent(QStringLiteral("parent"));
        TestWindow a(QStringLiteral("a"), WS_CHILD | WS_VISIBLE, 0, &parent);
        TestWindow b(QStringLiteral("b"), WS_CHILD, 0, &parent);
        b.show(SW_SHOW);
        const QList<qlonglong> all = snapshot().windows;
        QVERIFY(all.indexOf(a.id()) < all.indexOf(b.id()));
    }

    void ownedWindowsStayAboveTheirOwner()
    {
        TestWindow owner(QStringLiteral("owner"));
        TestWindow owned(QStringLiteral("owned"), WS_POPUP | WS_VISIBLE, 0, &owner);
        TestWindow other(QStringLiteral("other"));
        BringWindowToTop(owner.handle());
        const QList<qlonglong> all = snapshot().windows;
        QVERIFY(all.indexOf(owned.id()) < all.indexOf(owner.id()));
        QVERIFY(all.indexOf(owner.id()) < all.indexOf(other.id()));
    }

    void aWindowTakesItsChildrenAndTheWindowsThatItOwnsWithIt()
    {
        TestWindow owner(QStringLiteral("owner"));
        TestWindow owned(QStringLiteral("owned"), WS_POPUP | WS_VISIBLE, 0, &owner);
        TestWindow ownedByOwned(QStringLiteral("owned by owned"), WS_POPUP | WS_VISIBLE, 0, &owned);
        TestWindow child(QStringLiteral("child"), WS_CHILD | WS_VISIBLE, 0, &owner);
        owner.close();
        const QList<qlonglong> left = snapshot().windows;
        QVERIFY(!left.contains(owned.id()));
        QVERIFY(!left.contains(ownedByOwned.id()));
        QVERIFY(!left.contains(child.id()));
    }

    void aSnapshotHasStylesAndTitles()
    {
        TestWindow window(QStringLiteral("title"), WS_POPUP | WS_VISIBLE, WS_EX_TOOLWINDOW);
        const WindowSnapshot now = snapshot();
        const int i = now.windows.indexOf(window.id());
        QVERIFY(i >= 0);
        QCOMPARE(now.styles.at(i), WS_POPUP | WS_VISIBLE | WS_CLIPSIBLINGS);
        QCOMPARE(now.extendedStyles.at(i), WS_EX_TOOLWINDOW);
        QCOMPARE(now.titles.at(i), QStringLiteral("title"));
        QCOMPARE(now.styles.size(), now.windows.size());
        QCOMPARE(now.extendedStyles.size(), now.windows.size());
        QCOMPARE(now.titles.size(), now.windows.size());
    }

    void windowsAddToTheStyleOfAWindowThatIsOpened()
    {
        TestWindow plain(QStringLiteral("plain"), 0);
        QCOMPARE(plain.style(), WS_CAPTION | WS_CLIPSIBLINGS);
        TestWindow popup(QStringLiteral("popup"), WS_POPUP);
        QCOMPARE(popup.style(), WS_POPUP | WS_CLIPSIBLINGS);
        const auto extendedStyle = [](const TestWindow& window) {
            return static_cast<DWORD>(GetWindowLongW(window.handle(), GWL_EXSTYLE));
        };
        QCOMPARE(extendedStyle(plain), WS_EX_WINDOWEDGE);
        QCOMPARE(extendedStyle(popup), DWORD(0));
    }

#ifndef Q_OS_WIN
    void handlesOfEverySizeGoRoundUnchanged_data()
    {
        QTest::addColumn<qlonglong>("handle");
        QTest::newRow("small") << qlonglong(2);
        QTest::newRow("31 bits") << qlonglong(0x7FFFFFFE);
        QTest::newRow("bit 31") << qlonglong(0x80000002);
        QTest::newRow("sign-extended") << static_cast<qlonglong>(0xFFFFFFFF80000002ULL);
        QTest::newRow("above 32 bits") << qlonglong(0x1234567890AB);
        QTest::newRow("top bit") << static_cast<qlonglong>(0x8000000000000002ULL);
    }
    void handlesOfEverySizeGoRoundUnchanged()
    {
        QFETCH(qlonglong, handle);
        simwin::setNextHandle(handle);
        TestWindow window(QStringLiteral("window"));
        QCOMPARE(window.id(), handle);
        QCOMPARE(snapshot().windows, QList<qlonglong>({handle}));
        QCOMPARE(windowTitle(handle), QStringLiteral("window"));
        QVERIFY(isApplicationWindow(handle));
    }

    void anEnumerationThatFailsHasNoWindows()
    {
        TestWindow window(QStringLiteral("window"));
        simwin::fail("EnumWindows", ERROR_ACCESS_DENIED);
        QCOMPARE(enumerateWindows(desktopWidgetWindow()).count(window.id()), 1);
        simwin::fail("EnumChildWindows", ERROR_ACCESS_DENIED);
        QCOMPARE(enumerateWindows(desktopWidgetWindow()), QList<qlonglong>());
    }

    void aTitleThatIsSaidToBeLongerThanTheRoomIsCut()
    {
        TestWindow window(QStringLiteral("window"));
        simwin::setAnsweredTitleLength(5000);
        const QString title = windowTitle(window.id());
        QCOMPARE(title.size(), 255);
        QVERIFY(title.startsWith(QStringLiteral("window")));
    }

    void aWindowThatVanishesMeanwhileHasNothing()
    {
        TestWindow window(QStringLiteral("window"));
        simwin::fail("GetWindowInfo", ERROR_INVALID_WINDOW_HANDLE, 1);
        simwin::fail("GetWindowTextW", ERROR_INVALID_WINDOW_HANDLE, 1);
        const WindowSnapshot now = snapshot();
        QCOMPARE(now.windows, QList<qlonglong>({window.id()}));
        QCOMPARE(now.styles, QList<quint32>({0}));
        QCOMPARE(now.extendedStyles, QList<quint32>({0}));
        QVERIFY(now.titles.first().isNull());
    }
#endif
};

QTEST_MAIN(WindowOperationsTest)
#include "tst_windowoperations.moc"
