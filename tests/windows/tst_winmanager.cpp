// The tracker on its thread: on the simulated Windows and on the real one.
#include "winapi/winmanager.h"

#include "support/quillettest.h"
#include "support/testwindow.h"
#include "winapi/windowoperations.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QProcess>
#include <QtTest>

#include <memory>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

#ifdef Q_OS_WIN

// Stands in for the system's task bar, above it: Wine's own opens a menu at such commands, and does not
// return before that is closed.
class TrayWindow
{
public:
    TrayWindow()
    {
        commandsOfAll().clear();
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = handleMessage;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"Shell_TrayWnd";
        RegisterClassW(&windowClass);
        m_window = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, L"Shell_TrayWnd", L"", WS_POPUP, 0, 0, 0,
                                   0, nullptr, nullptr, windowClass.hInstance, nullptr);
        if (FindWindowW(L"Shell_TrayWnd", nullptr) != m_window)
            qFatal("the stand-in for the system's task bar is not found first");
    }
    ~TrayWindow() { DestroyWindow(m_window); }
    Q_DISABLE_COPY(TrayWindow)

    QList<WPARAM> commands() const { return commandsOfAll(); }

private:
    static QList<WPARAM>& commandsOfAll()
    {
        static QList<WPARAM> list;
        return list;
    }
    static LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_COMMAND)
            commandsOfAll().append(wParam);
        return DefWindowProcW(window, message, wParam, lParam);
    }

    HWND m_window = nullptr;
};

#endif

class WinManagerTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<WinManager> m_manager;
    std::unique_ptr<TestWindow> m_marker;
    int m_markerTitle = 0;
    bool m_markerTold = false;
    QStringList m_told; // of m_windows
    QList<qlonglong> m_windows;

    void start() { m_manager->start(QThread::InheritPriority); }

    // Waits until two more looks have been taken: a marker gets other titles until they are told, twice.
    void letItLook()
    {
        for (int look = 0; look < 2; ++look) {
            m_markerTold = false;
            QVERIFY(QTest::qWaitFor(
                [this] {
                    m_marker->setTitle(QString::number(++m_markerTitle));
                    return m_markerTold;
                },
                10000));
        }
    }

    bool waitFor(const QStringList& told)
    {
        return QTest::qWaitFor([&] { return m_told == told; }, 10000);
    }

    // Ends the thread while events are processed: it may be waiting for a title.
    bool end()
    {
        m_manager->stop();
        return QTest::qWaitFor([this] { return !m_manager->isRunning(); }, 10000);
    }

public slots:
    // What the manager tells, written down; the signals are queued to this thread.
    void mapWindow(qlonglong window)
    {
        if (m_windows.contains(window))
            m_told.append(QStringLiteral("map %1").arg(m_windows.indexOf(window)));
    }
    void unmapWindow(qlonglong window)
    {
        if (m_windows.contains(window))
            m_told.append(QStringLiteral("unmap %1").arg(m_windows.indexOf(window)));
    }
    void titleChanged(qlonglong window, const QString& title)
    {
        if (m_marker && window == m_marker->id())
            m_markerTold = true;
        if (m_windows.contains(window))
            m_told.append(QStringLiteral("title %1 %2")
                              .arg(m_windows.indexOf(window))
                              .arg(title.isNull() ? QStringLiteral("(null)") : title));
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_told.clear();
        m_windows.clear();
        m_marker = std::make_unique<TestWindow>(QStringLiteral("marker"));
        m_manager = std::make_unique<WinManager>(this);
        connect(m_manager.get(), SIGNAL(mapWindow(qlonglong)), this, SLOT(mapWindow(qlonglong)));
        connect(m_manager.get(), SIGNAL(unmapWindow(qlonglong)), this, SLOT(unmapWindow(qlonglong)));
        connect(m_manager.get(), SIGNAL(titleChanged(qlonglong, QString)), this,
                SLOT(titleChanged(qlonglong, QString)));
    }

    void cleanup()
    {
        if (!end())
            qFatal("the tracker does not end");
        m_manager.reset();
        m_marker.reset();
        QuilletTest::cleanup();
    }

    void windowsAreToldAsTheyComeAndGo()
    {
        TestWindow before(QStringLiteral("before"));
        m_windows = {before.id()};
        start();
        letItLook();
        TestWindow window(QStringLiteral("window"));
        m_windows.append(window.id());
        QVERIFY(waitFor({QStringLiteral("map 1")}));
        window.setTitle(QStringLiteral("retitled"));
        QVERIFY(waitFor({QStringLiteral("map 1"), QStringLiteral("title 1 retitled")}));
        before.setTitle(QString());
        QVERIFY(waitFor(
            {QStringLiteral("map 1"), QStringLiteral("title 1 retitled"), QStringLiteral("title 0 (null)")}));
        window.close();
        before.show(SW_HIDE);
        QTRY_COMPARE(m_told.size(), 5);
        QVERIFY(m_told.contains(QStringLiteral("unmap 0")));
        QVERIFY(m_told.contains(QStringLiteral("unmap 1")));
        letItLook();
        QCOMPARE(m_told.size(), 5);
    }

    void aStoppedManagerTellsNothingAndCanBeStartedAgain()
    {
        start();
        letItLook();
        QVERIFY(end());
        TestWindow window(QStringLiteral("window"));
        m_windows = {window.id()};
        start(); // learns what is there
        letItLook();
        QCOMPARE(m_told, QStringList());
        QVERIFY(m_manager->isRunning());
        window.setTitle(QStringLiteral("retitled"));
        QVERIFY(waitFor({QStringLiteral("title 0 retitled")}));
    }

    void aStopBeforeTheStartIsForgotten()
    {
        m_manager->stop();
        start();
        letItLook();
        QVERIFY(m_manager->isRunning());
    }

#ifndef Q_OS_WIN
    void aStopIsFollowedByNoFurtherLook()
    {
        start();
        letItLook();
        const int looks = simwin::callNames().count("EnumWindows");
        QVERIFY(QTest::qWaitFor([=] { return simwin::callNames().count("EnumWindows") > looks; }));
        m_manager->stop(); // while it sleeps after that look
        QVERIFY(end());
        QCOMPARE(simwin::callNames().count("EnumWindows"), looks + 1);
    }

    void itLooksEveryThreeHundredMilliseconds()
    {
        start();
        letItLook();
        QList<qint64> times;
        QVERIFY(QTest::qWaitFor([&] {
            times.clear();
            for (const simwin::Call& call : simwin::calls()) {
                if (call.function == "EnumWindows")
                    times.append(call.time);
            }
            return times.size() >= 6;
        }));
        qint64 shortest = 1000;
        for (int i = 1; i < times.size(); ++i)
            shortest = qMin(shortest, times.at(i) - times.at(i - 1));
        QVERIFY2(shortest >= 295 && shortest < 450, qPrintable(QString::number(shortest)));
    }

    void whatOneLookFindsIsToldInOrder()
    {
        TestWindow going(QStringLiteral("going"));
        TestWindow staying(QStringLiteral("staying"));
        TestWindow parent(QStringLiteral("parent"));
        m_windows = {going.id(), staying.id()};
        start();
        letItLook();
        const int looks = simwin::callNames().count("EnumWindows");
        QVERIFY(QTest::qWaitFor([=] { return simwin::callNames().count("EnumWindows") > looks; }));
        QTest::qWait(50); // that look is over then, and it sleeps
        going.close();
        TestWindow coming(QStringLiteral("coming"));
        TestWindow child(QStringLiteral("child"), WS_CHILD | WS_VISIBLE, 0, &parent);
        staying.setTitle(QStringLiteral("retitled"));
        m_windows << coming.id() << child.id();
        QVERIFY(waitFor({QStringLiteral("unmap 0"), QStringLiteral("map 2"), QStringLiteral("map 3"),
                         QStringLiteral("title 1 retitled")}));
    }

    void aTitleIsReadAgainWhenItIsTold()
    {
        TestWindow window(QStringLiteral("before"));
        m_windows = {window.id()};
        start();
        letItLook();
        QTest::qWait(700); // until the marker's last title has been told too
        const int titles = simwin::callNames().count("GetWindowTextW");
        const int looks = simwin::callNames().count("EnumWindows");
        window.setTitle(QStringLiteral("after"));
        QVERIFY(waitFor({QStringLiteral("title 0 after")}));
        const int more = simwin::callNames().count("EnumWindows") - looks;
        QCOMPARE(simwin::callNames().count("GetWindowTextW") - titles,
                 2 * more + 1); // two windows, and once more
    }
#endif

    // --- Windows of this process

    void aBoxThatStaysOpenIsToldAndHoldsNobodyUp()
    {
        start();
        letItLook();
#ifdef Q_OS_WIN
        // Without a picture: Wine has none to give.
        QMessageBox box(QMessageBox::NoIcon, QStringLiteral("A box"),
                        QStringLiteral("It stays for a while."));
        box.open();
        m_windows = {static_cast<qlonglong>(box.winId())};
#else
        TestWindow box(QStringLiteral("A box")); // Qt's own are not on the simulated desktop
        m_windows = {box.id()};
#endif
        QElapsedTimer timer; // of this thread's longest pause
        timer.start();
        qint64 longest = 0;
        QVERIFY(QTest::qWaitFor([&] {
            longest = qMax(longest, timer.restart());
            return !m_told.isEmpty();
        }));
        QCOMPARE(m_told, QStringList(QStringLiteral("map 0")));
        QVERIFY2(longest < 2000, qPrintable(QString::number(longest)));
#ifdef Q_OS_WIN
        box.hide();
#else
        box.show(SW_HIDE);
#endif
        QVERIFY(waitFor({QStringLiteral("map 0"), QStringLiteral("unmap 0")}));
    }

    void whileThisThreadIsBusyTheTrackerWaitsForTitlesAndGoesOnAfterwards()
    {
        start();
        letItLook();
        TestWindow window(QStringLiteral("ours"));
        m_windows = {window.id()};
        QThread::msleep(700); // as an exchange with a silent server would; nobody processes events
        m_manager->stop();
        QVERIFY(!m_manager->wait(700)); // waiting for it here would be a deadlock
        QVERIFY(QTest::qWaitFor([this] { return m_manager->isFinished(); }));
        QVERIFY(waitFor({QStringLiteral("map 0")}));
    }

#ifdef Q_OS_WIN
    // --- Another program's windows

    void anotherProgramsWindowIsFollowedThroughItsLife()
    {
        start();
        letItLook();
        const auto poke = [](const QStringList& arguments) {
            return QProcess::execute(QStringLiteral(POKEWINDOW), arguments) == 0;
        };
        QProcess notepad;
        QList<qlonglong> mapped;
        connect(m_manager.get(), &WinManager::mapWindow, this, [&](qlonglong window) {
            if (winapi::windowProcessId(window) == static_cast<quint32>(notepad.processId()) &&
                winapi::isApplicationWindow(window))
                mapped.append(window);
        });
        notepad.start(QStringLiteral("notepad.exe"), QStringList());
        QVERIFY(notepad.waitForStarted());
        QTRY_COMPARE_WITH_TIMEOUT(mapped.size(), 1, 30000);
        m_windows = mapped;
        const QString id = QString::number(mapped.first());
        letItLook();
        m_told.clear(); // it may have set its title late

        struct Step
        {
            QStringList arguments;
            QStringList told;
        };
        const QList<Step> steps = {
            {{QStringLiteral("title"), QStringLiteral("Minutes of the meeting")},
             { QStringLiteral("title 0 Minutes of the meeting") }},
            {{QStringLiteral("minimise")}, {}},
            {{QStringLiteral("restore")}, {}},
            {{QStringLiteral("hide")},
             { QStringLiteral("unmap 0") }},
            {{QStringLiteral("show")},
             { QStringLiteral("map 0") }},
            {{QStringLiteral("close")},
             { QStringLiteral("unmap 0") }},
        };
        for (const Step& step : steps) {
            QVERIFY(poke(QStringList(id) + step.arguments));
            QElapsedTimer timer;
            timer.start();
            if (!step.told.isEmpty())
                QTRY_VERIFY(!m_told.isEmpty());
            // Within a period, and the time that the look and this machine take.
            QVERIFY2(timer.elapsed() < 300 + 700, qPrintable(QString::number(timer.elapsed())));
            letItLook();
            QCOMPARE(m_told, step.told);
            m_told.clear();
        }
        QTRY_COMPARE(notepad.state(), QProcess::NotRunning);
    }
#endif

    // --- The interface

    void noNativeEventIsFiltered()
    {
        long result = 7;
        QVERIFY(!m_manager->nativeEventFilter("windows_generic_MSG", nullptr, &result));
        QVERIFY(!m_manager->nativeEventFilter(QByteArray(), nullptr, nullptr));
        QCOMPARE(result, 7L);
    }

    void itIsAThreadAndANativeEventFilter()
    {
        QCOMPARE(m_manager->parent(), this);
        QObject* const object = m_manager.get();
        QVERIFY(object->qt_metacast("WinManager") == m_manager.get());
        QVERIFY(object->qt_metacast("QAbstractNativeEventFilter") ==
                static_cast<QAbstractNativeEventFilter*>(m_manager.get()));
        QVERIFY(object->qt_metacast("QThread") == m_manager.get());
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        const QStringList expected = {QStringLiteral("titleChanged(qlonglong,QString)"),
                                      QStringLiteral("unmapWindow(qlonglong)"),
                                      QStringLiteral("mapWindow(qlonglong)"), QStringLiteral("resize(QRect)"),
                                      QStringLiteral("stop()")};
        const QMetaObject& meta = WinManager::staticMetaObject;
        QStringList found;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(found, expected);
    }

    // --- The work area

    void theWorkAreaIsSet()
    {
#ifdef Q_OS_WIN
        const TrayWindow tray;
#endif
        m_manager->resize(QRect(QPoint(0, 0), QSize(800, 600 - 42)));
        RECT area = {};
        QVERIFY(SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0));
        QCOMPARE(int(area.left), 0);
        QCOMPARE(int(area.top), 0);
        QCOMPARE(int(area.right), 799); // one short: the edges are the rectangle's inclusive ones
        QCOMPARE(int(area.bottom), 557);
#ifdef Q_OS_WIN
        QCOMPARE(tray.commands(), QList<WPARAM>({419, 416}));
#endif
    }

#ifndef Q_OS_WIN
    void theWorkAreaHasTheRectanglesInclusiveEdges_data()
    {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QStringList>("edges"); // left, top, right, bottom, in hexadecimal
        QTest::newRow("1280x1024") << QRect(QPoint(0, 0), QSize(1280, 1024 - 42))
                                   << QStringList({"0", "0", "4ff", "3d5"}); // 1279, 981
        QTest::newRow("elsewhere") << QRect(10, 20, 100, 50) << QStringList({"a", "14", "6d", "45"});
        QTest::newRow("empty") << QRect() << QStringList({"0", "0", "ffffffffffffffff", "ffffffffffffffff"});
    }
    void theWorkAreaHasTheRectanglesInclusiveEdges()
    {
        QFETCH(QRect, rect);
        QFETCH(QStringList, edges);
        clearDebugOutput();
        simwin::reset();
        simwin::setWindowOfClass(QStringLiteral("Shell_TrayWnd"), 0x77);
        QElapsedTimer timer;
        timer.start();
        m_manager->resize(rect);
        QVERIFY(timer.elapsed() >= 20); // 10 ms after each message
        QVERIFY(simwin::calls().at(3).time - simwin::calls().at(2).time >= 9);
        const QList<simwin::Call> calls = simwin::calls();
        QCOMPARE(simwin::callNames(),
                 QList<QByteArray>({"SystemParametersInfoW", "FindWindowW", "SendMessageW", "SendMessageW"}));
        QCOMPARE(calls.at(0).arguments, QStringList({"2f", "0"}) + edges + QStringList(QStringLiteral("2")));
        QCOMPARE(calls.at(1).arguments, QStringList({"Shell_TrayWnd", ""}));
        QCOMPARE(calls.at(2).arguments, QStringList({"77", "111", "1a3", "0"})); // 419
        QCOMPARE(calls.at(3).arguments, QStringList({"77", "111", "1a0", "0"})); // 416
        QCOMPARE(debugOutput(),
                 QStringList(QStringLiteral("Resizing to %1x%2").arg(rect.width()).arg(rect.height())));
    }

    void withoutATaskBarTheMessagesGoNowhere()
    {
        m_manager->resize(QRect(0, 0, 1, 1));
        QCOMPARE(simwin::calls().last().function, QByteArray("SendMessageW"));
        QCOMPARE(simwin::calls().last().arguments.first(), QStringLiteral("0"));
    }

    void aWorkAreaThatCannotBeSetChangesNothing()
    {
        simwin::reset();
        simwin::fail("SystemParametersInfoW", ERROR_ACCESS_DENIED);
        clearDebugOutput();
        m_manager->resize(QRect(0, 0, 1280, 982));
        QCOMPARE(simwin::callNames(), QList<QByteArray>({"SystemParametersInfoW"}));
        QCOMPARE(debugOutput(), QStringList({QStringLiteral("Resizing to 1280x982"),
                                             QStringLiteral("Cannot change work area")}));
        QCOMPARE(sandbox().log(), QByteArray());
    }
#endif
};

QTEST_MAIN(WinManagerTest)
#include "tst_winmanager.moc"
