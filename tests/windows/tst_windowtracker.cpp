// On the simulated Windows and on the real one.
#include "winapi/windowtracker.h"

#include "support/quillettest.h"
#include "support/testwindow.h"
#include "winapi/windowoperations.h"

#include <QtTest>

#include <memory>
#include <vector>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

using namespace winapi;

class WindowTrackerTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<WindowTracker> m_tracker;

    using Events = QList<WindowEvent>;

    // What is told of these windows since the last poll. (On a real desktop there are others.)
    Events poll(const std::vector<const TestWindow*>& windows) const
    {
        QList<qlonglong> ids;
        for (const TestWindow* window : windows)
            ids.append(window->id());
        return pollIds(ids);
    }

    Events pollIds(const QList<qlonglong>& ids) const
    {
        Events events;
        for (const WindowEvent& event : m_tracker->poll()) {
            if (ids.contains(event.window))
                events.append(event);
        }
        return events;
    }

    static WindowSnapshot snapshot()
    {
        return inspectWindows(withoutRepetitions(enumerateWindows(desktopWidgetWindow())));
    }

    static WindowEvent unmapped(const TestWindow& window) { return {WindowEvent::Unmapped, window.id()}; }
    static WindowEvent mapped(const TestWindow& window) { return {WindowEvent::Mapped, window.id()}; }
    static WindowEvent retitled(const TestWindow& window) { return {WindowEvent::Retitled, window.id()}; }

private slots:
    void init()
    {
        QuilletTest::init();
        m_tracker = std::make_unique<WindowTracker>(desktopWidgetWindow());
    }

    void theFirstPollTellsNothing()
    {
        TestWindow before(QStringLiteral("before"));
        QCOMPARE(m_tracker->poll(), Events());
        QCOMPARE(poll({&before}), Events());
    }

    void aWindowThatOpensIsToldOnce()
    {
        m_tracker->poll();
        TestWindow window(QStringLiteral("new"));
        QCOMPARE(poll({&window}), Events({mapped(window)}));
        QCOMPARE(poll({&window}), Events());
    }

    void aWindowThatOpensHiddenIsToldWhenItIsShown()
    {
        m_tracker->poll();
        TestWindow window(QStringLiteral("new"), WS_OVERLAPPEDWINDOW);
        QCOMPARE(poll({&window}), Events());
        window.show(SW_SHOW);
        QCOMPARE(poll({&window}), Events({mapped(window)}));
    }

    void aWindowThatClosesOrHidesIsUnmapped()
    {
        TestWindow closing(QStringLiteral("closing"));
        TestWindow hiding(QStringLiteral("hiding"));
        m_tracker->poll();
        const WindowEvent closed = unmapped(closing);
        closing.close();
        hiding.show(SW_HIDE);
        // In the old order: the window that was opened last is on top.
        QCOMPARE(pollIds({closed.window, hiding.id()}), Events({unmapped(hiding), closed}));
        hiding.show(SW_SHOW);
        QCOMPARE(poll({&hiding}), Events({mapped(hiding)}));
    }

    void whatGoesIsToldBeforeWhatComes()
    {
        TestWindow first(QStringLiteral("first"));
        TestWindow staying(QStringLiteral("staying"));
        m_tracker->poll();
        const WindowEvent gone = unmapped(first);
        TestWindow second(QStringLiteral("second"));
        staying.setTitle(QStringLiteral("retitled"));
        first.close();
        QCOMPARE(pollIds({gone.window, staying.id(), second.id()}),
                 Events({gone, mapped(second), retitled(staying)}));
    }

    void anotherTitleIsTold()
    {
        TestWindow window(QStringLiteral("before"));
        m_tracker->poll();
        window.setTitle(QStringLiteral("after"));
        QCOMPARE(poll({&window}), Events({retitled(window)}));
        window.setTitle(QStringLiteral("after"));
        QCOMPARE(poll({&window}), Events());
        window.setTitle(QString());
        QCOMPARE(poll({&window}), Events({retitled(window)}));
        window.setTitle(QString());
        QCOMPARE(poll({&window}), Events());
    }

    void aTitleThatDiffersBeyondWhatIsReadIsNoOther()
    {
        TestWindow window(QString(300, 'x'));
        m_tracker->poll();
        window.setTitle(QString(299, 'x') + QLatin1Char('y'));
        QCOMPARE(poll({&window}), Events());
    }

    void minimisingRestoringAndMaximisingTellNothing()
    {
        TestWindow window(QStringLiteral("window"));
        m_tracker->poll();
        for (const int command : {SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE, SW_RESTORE}) {
            window.show(command);
            QCOMPARE(poll({&window}), Events());
        }
    }

    void anotherOrderTellsNothing()
    {
        TestWindow a(QStringLiteral("a"));
        TestWindow b(QStringLiteral("b"));
        m_tracker->poll();
        BringWindowToTop(a.handle());
        QCOMPARE(poll({&a, &b}), Events());
    }

    void childrenOfWindowsAreToldToo()
    {
        TestWindow parent(QStringLiteral("parent"));
        m_tracker->poll();
        TestWindow child(QStringLiteral("child"), WS_CHILD | WS_VISIBLE, 0, &parent);
        QCOMPARE(poll({&child}), Events({mapped(child)}));
    }

    void aFlagThatChangesIsToldByTheSecondWindowsFlag_data()
    {
        QTest::addColumn<bool>("second");
        QTest::newRow("the second window has it") << true;
        QTest::newRow("the second window has it not") << false;
    }
    void aFlagThatChangesIsToldByTheSecondWindowsFlag()
    {
        QFETCH(bool, second);
        TestWindow changing(QStringLiteral("changing"));
        // Two windows above everything else: the lower one is the second of all.
        TestWindow lower(QStringLiteral("lower"), WS_POPUP | WS_VISIBLE, second ? WS_EX_APPWINDOW : 0);
        TestWindow upper(QStringLiteral("upper"), WS_POPUP | WS_VISIBLE, second ? 0 : WS_EX_APPWINDOW);
        BringWindowToTop(lower.handle());
        BringWindowToTop(upper.handle());
        m_tracker->poll();
        QCOMPARE(snapshot().windows.mid(0, 2), QList<qlonglong>({upper.id(), lower.id()}));
        const WindowEvent expected = second ? mapped(changing) : unmapped(changing);
        changing.setExtendedStyle(WS_EX_APPWINDOW);
        QCOMPARE(poll({&changing}), Events({expected}));
        changing.setExtendedStyle(0);
        QCOMPARE(poll({&changing}), Events({expected}));
        changing.setExtendedStyle(WS_EX_TOOLWINDOW); // a flag of no interest
        QCOMPARE(poll({&changing}), Events());
    }

    void windowsThatOpenAndCloseWithinAPeriodAreNotSeen()
    {
        m_tracker->poll();
        QList<qlonglong> ids;
        for (int i = 0; i < 100; ++i) {
            TestWindow window(QStringLiteral("short-lived"));
            ids.append(window.id());
        }
        QCOMPARE(pollIds(ids), Events());
    }

    void aHundredWindowsAtOnceAreToldInTheirOrder()
    {
        m_tracker->poll();
        std::vector<std::unique_ptr<TestWindow>> windows;
        QList<qlonglong> ids;
        for (int i = 0; i < 100; ++i) {
            windows.push_back(std::make_unique<TestWindow>(QStringLiteral("window %1").arg(i)));
            ids.prepend(windows.back()->id());
        }
        QList<qlonglong> told;
        for (const WindowEvent& event : pollIds(ids)) {
            QCOMPARE(event.kind, WindowEvent::Mapped);
            told.append(event.window);
        }
        QCOMPARE(told, ids);
    }

#ifndef Q_OS_WIN
    void anotherOwnerOrProcessTellsNothing()
    {
        TestWindow window(QStringLiteral("window"));
        TestWindow owner(QStringLiteral("owner"));
        m_tracker->poll();
        simwin::setOwner(window.id(), owner.id());
        simwin::setProcess(window.id(), 77);
        QCOMPARE(m_tracker->poll(), Events());
        QCOMPARE(windowProcessId(window.id()), 77u);
        const Events gone = {unmapped(owner), unmapped(window)};
        owner.close(); // which takes what it owns with it
        QCOMPARE(m_tracker->poll(), gone);
    }

    void aHandleThatIsUsedAgainIsTheSameWindow()
    {
        simwin::setNextHandle(0x500);
        auto window = std::make_unique<TestWindow>(QStringLiteral("same"));
        m_tracker->poll();
        window.reset();
        simwin::setNextHandle(0x500);
        window = std::make_unique<TestWindow>(QStringLiteral("same"));
        QCOMPARE(m_tracker->poll(), Events());
        window.reset();
        simwin::setNextHandle(0x500);
        window = std::make_unique<TestWindow>(QStringLiteral("another"));
        QCOMPARE(m_tracker->poll(), Events({retitled(*window)}));
    }

    void anEnumerationThatFailsTellsThatEverythingWentAndCameBack()
    {
        TestWindow window(QStringLiteral("window"));
        m_tracker->poll();
        simwin::fail("EnumWindows", ERROR_ACCESS_DENIED, 1);
        simwin::fail("EnumChildWindows", ERROR_ACCESS_DENIED, 1);
        QCOMPARE(m_tracker->poll(), Events({unmapped(window)}));
        QCOMPARE(m_tracker->poll(), Events({mapped(window)}));
    }

    void aWindowThatVanishesMeanwhileLosesItsFlagsAndItsTitleFirst()
    {
        TestWindow window(QStringLiteral("window"), WS_POPUP | WS_VISIBLE, WS_EX_APPWINDOW);
        m_tracker->poll();
        simwin::fail("GetWindowInfo", ERROR_INVALID_WINDOW_HANDLE, 1);
        simwin::fail("GetWindowTextW", ERROR_INVALID_WINDOW_HANDLE, 1);
        QCOMPARE(m_tracker->poll(), Events({unmapped(window), unmapped(window), retitled(window)}));
        const WindowEvent gone = unmapped(window);
        window.close();
        QCOMPARE(m_tracker->poll(), Events({gone}));
    }

    void aPollCostsTwoEnumerationsAndTwoCallsPerWindow()
    {
        std::vector<std::unique_ptr<TestWindow>> windows(10);
        for (std::unique_ptr<TestWindow>& window : windows)
            window = std::make_unique<TestWindow>(QStringLiteral("window"));
        m_tracker->poll();
        const int before = simwin::calls().size();
        m_tracker->poll();
        const QList<QByteArray> calls = simwin::callNames().mid(before);
        QCOMPARE(calls.count("EnumWindows"), 1);
        QCOMPARE(calls.count("EnumChildWindows"), 1);
        QCOMPARE(calls.count("GetWindowInfo"), 10);
        QCOMPARE(calls.count("GetWindowTextW"), 10);
        QCOMPARE(calls.count("GetWindowLongW"), 20); // whether it is visible, in each enumeration
        QCOMPARE(calls.size(), 42);
    }
#endif
};

QTEST_MAIN(WindowTrackerTest)
#include "tst_windowtracker.moc"
