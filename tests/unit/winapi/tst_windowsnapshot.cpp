#include "winapi/windowsnapshot.h"

#include <windows.h>

#include <QtTest>

using namespace winapi;

namespace {

struct TestWindow
{
    qlonglong window;
    QString title;
    quint32 style = WS_VISIBLE;
    quint32 extendedStyle = 0;
};

WindowSnapshot snapshot(const QList<TestWindow>& windows)
{
    WindowSnapshot result;
    for (const TestWindow& window : windows) {
        result.windows.append(window.window);
        result.styles.append(window.style);
        result.extendedStyles.append(window.extendedStyle);
        result.titles.append(window.title);
    }
    return result;
}

using Windows = QList<qlonglong>;

WindowEvent unmapped(qlonglong window)
{
    return {WindowEvent::Unmapped, window};
}
WindowEvent mapped(qlonglong window)
{
    return {WindowEvent::Mapped, window};
}
WindowEvent retitled(qlonglong window)
{
    return {WindowEvent::Retitled, window};
}

constexpr quint32 appWindow = WS_EX_APPWINDOW;
constexpr quint32 noFlags = 0;

} // namespace

using Events = QList<WindowEvent>;
Q_DECLARE_METATYPE(WindowSnapshot)
Q_DECLARE_METATYPE(Events)

class WindowSnapshotTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsRemovedComesInTheOldOrderAndWhatIsAddedInTheNew()
    {
        const WindowChanges changes =
            changesBetween(snapshot({{1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}}),
                           snapshot({{9, "x"}, {3, "c"}, {7, "y"}, {1, "a"}, {8, "z"}}));
        QCOMPARE(changes.removed, Windows({2, 4}));
        QCOMPARE(changes.added, Windows({9, 7, 8}));
        QCOMPARE(changes.retitled + changes.appFlagChanged + changes.visibilityChanged, Windows());
    }

    void whatIsRetitledComesInTheNewOrder()
    {
        const WindowChanges changes = changesBetween(snapshot({{1, "a"}, {2, "b"}, {3, "c"}}),
                                                     snapshot({{3, "C"}, {2, "b"}, {1, "A"}}));
        QCOMPARE(changes.retitled, Windows({3, 1}));
    }

    void titlesAreComparedExactly_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("now");
        QTest::addColumn<bool>("changed");
        QTest::newRow("same") << "a"
                              << "a" << false;
        QTest::newRow("case") << "a"
                              << "A" << true;
        QTest::newRow("a blank") << "a"
                                 << "a " << true;
        QTest::newRow("null and empty") << QString() << QString("") << false;
        QTest::newRow("to empty") << "a" << QString() << true;
        QTest::newRow("from empty") << QString("") << "a" << true;
        QTest::newRow("composed and decomposed")
            << QString(QChar(0xe9)) << QString("e") + QChar(0x301) << true;
    }
    void titlesAreComparedExactly()
    {
        QFETCH(QString, before);
        QFETCH(QString, now);
        QFETCH(bool, changed);
        for (const qlonglong other :
             {qlonglong(0), qlonglong(5)}) { // with the same windows, and with other ones
            WindowSnapshot old = snapshot({{1, before}});
            if (other)
                old = snapshot({{other, "other"}, {1, before}});
            QCOMPARE(changesBetween(old, snapshot({{1, now}})).retitled, changed ? Windows({1}) : Windows());
        }
    }

    void onlyTheFlagsOfInterestCount()
    {
        const WindowSnapshot before = snapshot(
            {{1, "a", WS_VISIBLE, noFlags}, {2, "b", WS_VISIBLE, appWindow}, {3, "c", noFlags, noFlags}});
        const WindowSnapshot now = snapshot(
            {{1, "a", ~noFlags, ~appWindow}, {2, "b", noFlags, ~appWindow}, {3, "c", WS_VISIBLE, appWindow}});
        const WindowChanges changes = changesBetween(before, now);
        QCOMPARE(changes.appFlagChanged, Windows({2, 3}));
        QCOMPARE(changes.visibilityChanged, Windows({2, 3}));
        // The same with the windows in another order.
        const WindowChanges others = changesBetween(
            snapshot(
                {{3, "c", noFlags, noFlags}, {1, "a", WS_VISIBLE, noFlags}, {2, "b", WS_VISIBLE, appWindow}}),
            now);
        QCOMPARE(others.appFlagChanged, Windows({2, 3}));
        QCOMPARE(others.visibilityChanged, Windows({2, 3}));
    }

    void handlesAreComparedWhole()
    {
        const qlonglong low = 0x1234;
        const qlonglong high = 0x100001234;
        const auto top = static_cast<qlonglong>(0x8000000000001234ULL);
        const WindowChanges changes =
            changesBetween(snapshot({{low, "a"}, {top, "b"}}), snapshot({{high, "a"}, {top, "b"}}));
        QCOMPARE(changes.removed, Windows({low}));
        QCOMPARE(changes.added, Windows({high}));
    }

    void theChangesAreThoseOfTheQuadraticComparison()
    {
        // Many windows, some gone, some new, some changed: compared as one would by hand.
        WindowSnapshot before;
        WindowSnapshot now;
        quint32 random = 1;
        const auto next = [&random] { return random = random * 1664525u + 1013904223u; };
        const auto add = [&](WindowSnapshot& to, qlonglong window) {
            if (to.windows.contains(window))
                return;
            to.windows.append(window);
            to.styles.append(next() & WS_VISIBLE);
            to.extendedStyles.append(next() & WS_EX_APPWINDOW);
            to.titles.append(QString::number(next() >> 30));
        };
        for (int i = 0; i < 500; ++i) {
            add(before, next() >> 22);
            add(now, next() >> 22);
        }
        WindowChanges expected;
        for (const qlonglong window : before.windows) {
            if (!now.windows.contains(window))
                expected.removed.append(window);
        }
        for (int i = 0; i < now.windows.size(); ++i) {
            const qlonglong window = now.windows.at(i);
            const int k = before.windows.indexOf(window);
            if (k < 0) {
                expected.added.append(window);
                continue;
            }
            if (before.titles.at(k) != now.titles.at(i))
                expected.retitled.append(window);
            if (before.extendedStyles.at(k) != now.extendedStyles.at(i))
                expected.appFlagChanged.append(window);
            if (before.styles.at(k) != now.styles.at(i))
                expected.visibilityChanged.append(window);
        }
        const WindowChanges changes = changesBetween(before, now);
        QVERIFY(expected.removed.size() > 50 && expected.added.size() > 50 && expected.retitled.size() > 50);
        QCOMPARE(changes.removed, expected.removed);
        QCOMPARE(changes.added, expected.added);
        QCOMPARE(changes.retitled, expected.retitled);
        QCOMPARE(changes.appFlagChanged, expected.appFlagChanged);
        QCOMPARE(changes.visibilityChanged, expected.visibilityChanged);
    }

    // --- What is told

    void whatWentIsToldBeforeWhatCameFlagsAndTitles()
    {
        WindowChanges changes;
        changes.removed = {1, 2};
        changes.added = {3, 4};
        changes.appFlagChanged = {5, 6};
        changes.visibilityChanged = {7, 8};
        changes.retitled = {9, 10};
        const WindowSnapshot now =
            snapshot({{5, "", noFlags, noFlags}, {6, "", noFlags, appWindow}, {7, "", noFlags, noFlags}});
        QCOMPARE(eventsOf(changes, now),
                 Events({unmapped(1), unmapped(2), mapped(3), mapped(4), mapped(5), mapped(6), unmapped(7),
                         unmapped(8), retitled(9), retitled(10)}));
    }

    void aChangedFlagIsReadFromTheSecondWindow_data()
    {
        QTest::addColumn<WindowSnapshot>("now");
        QTest::addColumn<bool>("mapped");
        // Window 1 is the one that changed.
        QTest::newRow("alone, set: no second window") << snapshot({{1, "", WS_VISIBLE, appWindow}}) << false;
        QTest::newRow("alone, clear") << snapshot({{1, "", noFlags, noFlags}}) << false;
        QTest::newRow("first of two, the second set")
            << snapshot({{1, "", noFlags, noFlags}, {2, "", WS_VISIBLE, appWindow}}) << true;
        QTest::newRow("first of two, the second clear")
            << snapshot({{1, "", WS_VISIBLE, appWindow}, {2, "", noFlags, noFlags}}) << false;
        QTest::newRow("second of two, set")
            << snapshot({{2, "", noFlags, noFlags}, {1, "", WS_VISIBLE, appWindow}}) << true;
        QTest::newRow("third of four, the second clear") << snapshot({{2, "", WS_VISIBLE, appWindow},
                                                                      {3, "", noFlags, noFlags},
                                                                      {1, "", WS_VISIBLE, appWindow},
                                                                      {4, "", WS_VISIBLE, appWindow}})
                                                         << false;
        QTest::newRow("third of four, only the second set") << snapshot({{2, "", noFlags, noFlags},
                                                                         {3, "", WS_VISIBLE, appWindow},
                                                                         {1, "", noFlags, noFlags},
                                                                         {4, "", noFlags, noFlags}})
                                                            << true;
    }
    void aChangedFlagIsReadFromTheSecondWindow()
    {
        QFETCH(WindowSnapshot, now);
        QFETCH(bool, mapped);
        const Events expected = {mapped ? ::mapped(1) : unmapped(1)};
        WindowChanges changes;
        changes.appFlagChanged = {1};
        QCOMPARE(eventsOf(changes, now), expected);
        changes = WindowChanges();
        changes.visibilityChanged = {1};
        QCOMPARE(eventsOf(changes, now), expected);
    }

    void eachFlagIsReadFromItsOwnList()
    {
        WindowChanges changes;
        changes.appFlagChanged = {1};
        changes.visibilityChanged = {1};
        QCOMPARE(eventsOf(changes, snapshot({{1, ""}, {2, "", WS_VISIBLE, noFlags}})),
                 Events({unmapped(1), mapped(1)}));
        QCOMPARE(eventsOf(changes, snapshot({{1, ""}, {2, "", noFlags, appWindow}})),
                 Events({mapped(1), unmapped(1)}));
    }

    void nothingChangedIsNothingTold()
    {
        const WindowSnapshot same = snapshot({{1, "a"}, {2, "b", WS_VISIBLE, appWindow}});
        QCOMPARE(eventsOf(changesBetween(same, same), same), Events());
        QCOMPARE(eventsOf(changesBetween(WindowSnapshot(), WindowSnapshot()), WindowSnapshot()), Events());
    }

    void anotherOrderIsNoChange()
    {
        const WindowSnapshot now = snapshot({{2, "b"}, {1, "a"}});
        QCOMPARE(eventsOf(changesBetween(snapshot({{1, "a"}, {2, "b"}}), now), now), Events());
    }

    void everythingGoneOrNewIsTold()
    {
        const WindowSnapshot some = snapshot({{1, "a"}, {2, "b"}});
        QCOMPARE(eventsOf(changesBetween(some, WindowSnapshot()), WindowSnapshot()),
                 Events({unmapped(1), unmapped(2)}));
        QCOMPARE(eventsOf(changesBetween(WindowSnapshot(), some), some), Events({mapped(1), mapped(2)}));
    }
};

QTEST_GUILESS_MAIN(WindowSnapshotTest)
#include "tst_windowsnapshot.moc"
