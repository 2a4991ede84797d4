// What the other stories stand on: the Windows of a WineSession and the programs that play in it.
#include "support/winesession.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString app = QStringLiteral("testapp.exe");

} // namespace

class GroundStory : public QObject
{
    Q_OBJECT

    std::unique_ptr<WineSession> m_session;
    QTemporaryDir m_folder;

    QString path(const QString& name) const { return m_folder.filePath(name); }

    QStringList lines(const QString& name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    void startApp(QProcess& process, const QString& evidence, const QStringList& arguments) const
    {
        m_session->start(process, WineSession::tools() + QLatin1Char('/') + app,
                         QStringList({"--evidence", WineSession::windowsPath(path(evidence))}) + arguments);
    }

    // Reads on until the program's output has this line; what came before it is in `before`.
    static bool waitForLine(QProcess& process, const QString& line, QStringList* before = nullptr)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 60000) {
            while (process.canReadLine()) {
                const QString read = QString::fromLatin1(process.readLine()).trimmed();
                if (read == line)
                    return true;
                if (before)
                    before->append(read);
            }
            process.waitForReadyRead(1000);
        }
        return false;
    }

private slots:
    void initTestCase()
    {
        m_session = std::make_unique<WineSession>(QStringLiteral("ground"));
        QVERIFY2(m_session->isRunning(), qPrintable(m_session->error()));
    }

    void cleanupTestCase() { m_session.reset(); }

    void theStandInsAnswerTheShellAndTheScreenChangesItsSize()
    {
        QVERIFY(m_session->setPasswordResult(2245));
        QProcess probe;
        // As startShell() starts the shell.
        m_session->startAsUser(
            probe, WineSession::tools() + QStringLiteral("/groundprobe.exe"), {},
            {"WINEPATH=" + WineSession::windowsPath(WineSession::dist()),
             "QT_QPA_PLATFORM_PLUGIN_PATH=" + WineSession::windowsPath(WineSession::dist() + "/platforms")});
        QVERIFY2(waitForLine(probe, QStringLiteral("told")), probe.readAllStandardError());
        QCOMPARE(m_session->taskBarCommands(), QStringList({"command 419", "command 416"}));
        QVERIFY(waitForLine(probe, QStringLiteral("disconnected 1")));
        QCOMPARE(m_session->disconnections(), QStringList(QStringLiteral("server 0, session -1, wait 0")));
        for (int i = 0; i < 2; ++i)
            QVERIFY(waitForLine(probe, QStringLiteral("password 2245")));
        QCOMPARE(m_session->passwordChanges(),
                 QStringList({QString::fromUtf8("\\0\t\\0\ttide\tebb \u00E9\xF0\x9F\x8C\x8A"),
                              QStringLiteral("\t\\0\ta\\\\b\\tc\td\\r\\n")}));
        QVERIFY(waitForLine(probe, QStringLiteral("screen 1280x800")));

        // Nobody spins while there is nothing to tell: once all have started, a second passes with less than
        // 5 ms in each 100.
        QVERIFY(m_session->processorTime() > 0);
        QVERIFY(QTest::qWaitFor(
            [this] {
                const qint64 before = m_session->processorTime();
                QThread::sleep(1);
                return m_session->processorTime() - before < 50;
            },
            60000));

        const int connects = 5;
        QVERIFY(m_session->playSessionEvent(QStringLiteral("connect"), connects));
        QVERIFY(m_session->playSessionEvent(QStringLiteral("disconnect")));
        QStringList events;
        for (int i = 0; i < connects; ++i)
            QVERIFY(waitForLine(probe, QStringLiteral("event 8"), &events));
        QVERIFY(waitForLine(probe, QStringLiteral("event 16"), &events));
        QCOMPARE(events, QStringList());

        for (const QSize& size : {QSize(1024, 768), QSize(1600, 1200), QSize(1280, 800)}) {
            QVERIFY(m_session->resizeScreen(size.width(), size.height()));
            QVERIFY2(waitForLine(probe, QStringLiteral("screen %1x%2").arg(size.width()).arg(size.height())),
                     qPrintable(QStringLiteral("%1x%2").arg(size.width()).arg(size.height())));
            QCOMPARE(m_session->screenshot(QStringLiteral("size")).size(), size);
        }
        QVERIFY(!m_session->resizeScreen(1111, 777));

        QVERIFY(m_session->killProgram(QStringLiteral("groundprobe.exe")));
        QVERIFY(probe.waitForFinished(60000));
        QVERIFY(!m_session->killProgram(QStringLiteral("groundprobe.exe")));
    }

    void windowsAreListedWithPlaceAndStateAndFeelTheMouse()
    {
        QProcess process;
        startApp(process, QStringLiteral("mouse"),
                 {"--title", "Ledger", "--colour", "2aa7b8", "--dialog", "Find", "of many\twords"});
        const WineWindow dialog = m_session->waitForAnyWindow(app, QStringLiteral("Find"));
        WineWindow window = m_session->waitForAnyWindow(app, QStringLiteral("Ledger"));
        QVERIFY(dialog.handle && window.handle && dialog.handle != window.handle);
        QCOMPARE(window.windowClass, QStringLiteral("testapp"));
        QCOMPARE(window.state, QStringLiteral("normal"));
        QCOMPARE(window.frame, QRect(40, 40, 500, 300));
        QVERIFY(m_session->poke(dialog, QStringLiteral("close")));
        QVERIFY(m_session->waitForWindow(app, QStringLiteral("Ledger")));

        const QPoint inside = window.frame.center();
        const QColor teal("#2aa7b8");
        QCOMPARE(m_session->screenshotWith(QStringLiteral("window"), inside.x(), inside.y(), teal)
                     .pixelColor(inside),
                 teal);
        m_session->moveTo(inside.x() - 50, inside.y());
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("mouse")).last(),
                                  QStringLiteral("pointer %1 %2").arg(inside.x() - 50).arg(inside.y()),
                                  60000);
        m_session->click(inside.x(), inside.y());
        const QString place = QStringLiteral(" %1 %2").arg(inside.x()).arg(inside.y());
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("mouse")).last(), "click" + place, 60000);
        m_session->doubleClick(inside.x() + 20, inside.y());
        const QString other = QStringLiteral(" %1 %2").arg(inside.x() + 20).arg(inside.y());
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("mouse")).last(), "double click" + other, 60000);
        QVERIFY(lines(QStringLiteral("mouse")).contains("click" + other));

        QVERIFY(m_session->poke(window, QStringLiteral("minimise")));
        QCOMPARE(m_session->waitForAnyWindow(app, QStringLiteral("Ledger")).state,
                 QStringLiteral("minimised"));
        QVERIFY(m_session->poke(window, QStringLiteral("maximise")));
        window = m_session->waitForAnyWindow(app, QStringLiteral("Ledger"));
        QCOMPARE(window.state, QStringLiteral("maximised"));
        QVERIFY(window.frame.contains(QRect(0, 0, 1280, 800)));
        QVERIFY(m_session->poke(window, QStringLiteral("close")));
        QVERIFY(process.waitForFinished(60000));
        QVERIFY(!m_session->poke(window, QStringLiteral("close")));
        const QStringList evidence = lines(QStringLiteral("mouse"));
        QCOMPARE(evidence.mid(0, 2), QStringList({"started", "argument of many\twords"}));
        QCOMPARE(evidence.mid(evidence.size() - 2), QStringList({"close asked", "ended 0"}));
    }

    void anApplicationAsksBeforeItCloses()
    {
        const auto waitForBox = [this] { // it has the application's title too
            const auto titles = [this] {
                return m_session->windows().filter(QStringLiteral("\tLetter")).size();
            };
            return QTest::qWaitFor([=] { return titles() == 2; }, 60000);
        };
        QProcess process;
        startApp(process, QStringLiteral("ask"), {"--ask", "--title", "Letter", "--exit", "7"});
        const WineWindow window = m_session->waitForAnyWindow(app, QStringLiteral("Letter"));
        QVERIFY(m_session->poke(window, QStringLiteral("close")));
        QVERIFY(waitForBox());
        m_session->press(QStringLiteral("Escape"));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("ask")).last(), QStringLiteral("answered cancel"),
                                  60000);
        QVERIFY(!process.waitForFinished(0));
        QVERIFY(m_session->poke(window, QStringLiteral("close")));
        QVERIFY(waitForBox());
        m_session->press(QStringLiteral("Return"));
        QVERIFY(process.waitForFinished(60000));
        QCOMPARE(process.exitCode(), 7);
        QCOMPARE(lines(QStringLiteral("ask"))
                     .filter(QRegularExpression(QStringLiteral("^(close|answered|ended)"))),
                 QStringList({"close asked", "answered cancel", "close asked", "answered yes", "ended 7"}));
    }

    void anApplicationMayBeLateChangeItsTitleAndEndByItself()
    {
        QProcess process;
        QElapsedTimer timer;
        timer.start();
        startApp(process, QStringLiteral("late"),
                 {"--delay", "1500", "--title", "First", "--window", "Second", "--open", "2000", "Third",
                  "--retitle", "2500", "Fourth", "--end", "4000", "--exit", "3"});
        QVERIFY(m_session->waitForAnyWindow(app, QStringLiteral("Second")).handle);
        QVERIFY(timer.elapsed() >= 1500);
        QVERIFY(m_session->waitForAnyWindow(app, QStringLiteral("Third")).handle);
        QVERIFY(m_session->waitForAnyWindow(app, QStringLiteral("Fourth")).handle);
        QVERIFY(process.waitForFinished(60000));
        QVERIFY(timer.elapsed() >= 4000);
        QCOMPARE(process.exitCode(), 3);
        QCOMPARE(lines(QStringLiteral("late")).last(), QStringLiteral("ended 3"));
    }

    void anApplicationWithoutAWindowAndAStubbornOneAreKilled()
    {
        QProcess hidden;
        QProcess stubborn;
        startApp(hidden, QStringLiteral("hidden"), {"--no-window"});
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("hidden")), QStringList(QStringLiteral("started")),
                                  60000);
        startApp(stubborn, QStringLiteral("stubborn"), {"--stubborn", "--title", "Stone"});
        const WineWindow window = m_session->waitForAnyWindow(app, QStringLiteral("Stone"));
        QVERIFY(window.handle);
        QVERIFY(m_session->poke(window, QStringLiteral("close")));
        QTRY_COMPARE_WITH_TIMEOUT(lines(QStringLiteral("stubborn")).last(), QStringLiteral("close asked"),
                                  60000);
        QCOMPARE(m_session->windows().filter(app).size(), 1);
        QVERIFY(m_session->killProgram(app));
        QVERIFY(hidden.waitForFinished(60000));
        QVERIFY(stubborn.waitForFinished(60000));
        QVERIFY(!lines(QStringLiteral("hidden")).last().startsWith(QLatin1String("ended")));
    }

    void anApplicationTellsThatItWasMadeToQuit()
    {
        // Its options come from the file beside it, as for a program that somebody else starts.
        QVERIFY(
            QFile::copy(WineSession::tools() + QLatin1Char('/') + app, path(QStringLiteral("typist.exe"))));
        QFile options(path(QStringLiteral("typist.options")));
        QVERIFY(options.open(QIODevice::WriteOnly));
        options.write("--title\nCaf\xc3\xa9\n--evidence\n" +
                      WineSession::windowsPath(path(QStringLiteral("quit"))).toUtf8() + "\n");
        options.close();
        QProcess process;
        m_session->start(process, path(QStringLiteral("typist.exe")));
        const WineWindow window =
            m_session->waitForAnyWindow(QStringLiteral("typist.exe"), QString::fromUtf8("Caf\xc3\xa9"));
        QVERIFY(window.handle);
        QVERIFY(m_session->poke(window, QStringLiteral("quit")));
        QVERIFY(process.waitForFinished(60000));
        const QStringList evidence = lines(QStringLiteral("quit"));
        QCOMPARE(evidence.mid(evidence.size() - 2), QStringList({"quit asked", "ended 0"}));
    }

    void aLogOffEndsThemAll()
    {
        QProcess process;
        startApp(process, QStringLiteral("log-off"), {"--title", "Open"});
        QVERIFY(m_session->waitForAnyWindow(app, QStringLiteral("Open")).handle);
        QProcess logOff;
        m_session->start(logOff, QStringLiteral("wineboot"), {"--end-session"});
        QVERIFY(process.waitForFinished(60000));
        QTRY_VERIFY_WITH_TIMEOUT(lines(QStringLiteral("log-off")).contains(QStringLiteral("session ends")),
                                 60000);
        QVERIFY(logOff.waitForFinished(60000));
    }
};

QTEST_GUILESS_MAIN(GroundStory)
#include "tst_ground.moc"
