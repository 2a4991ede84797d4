// The installer on Windows: installed, used, upgraded and removed, with the machine's shell value and the
// administrator's settings looked after.
#include "support/sandbox.h"
#include "support/twserver/twserver.h"
#include "support/winesession.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QtTest>

#include <memory>
#include <utility>

namespace {

const QString winlogon = QStringLiteral("HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon");
const QString own = QStringLiteral("HKLM\\SOFTWARE\\Quillet");
const QString programs =
    QStringLiteral("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quillet");
const QString starter = QStringLiteral("\"C:\\Program Files\\Quillet\\quillet-session.exe\"");
constexpr int running = 5; // exit code
constexpr int patience = 120000;

} // namespace

class PackageStory : public QObject
{
    Q_OBJECT

    std::unique_ptr<WineSession> m_session;

    static QString setup(const QString& version)
    {
        const QString folder = QStringLiteral(PACKAGES "/") + version;
        const QStringList names = QDir(folder).entryList({QStringLiteral("*-setup.exe")});
        return names.size() == 1 ? folder + '/' + names.first() : QString();
    }

    QString folder() const { return m_session->driveC() + QStringLiteral("/Program Files/Quillet"); }
    QString settings() const
    {
        return m_session->driveC() + QStringLiteral("/Program Files/Tidewell Desktop/quillet.ini");
    }
    static QByteArray sample() { return Sandbox::readFile(QStringLiteral(SAMPLE)).replace("\n", "\r\n"); }

    // Runs a command line just as it is, as `cmd` does; its exit code.
    int runLine(const QString& line)
    {
        const QString file = m_session->driveC() + QStringLiteral("/line.bat");
        Sandbox::writeFile(file, "@echo off\r\n" + line.toUtf8() + "\r\nexit /b %errorlevel%\r\n");
        QProcess process;
        m_session->start(process, QStringLiteral("cmd"), {"/c", "C:\\line.bat"}, m_session->driveC());
        const bool ended = process.waitForFinished(patience);
        QFile::remove(file);
        return ended ? process.exitCode() : -1;
    }

    int install(const QString& version, const QString& switches = QString())
    {
        return runLine(
            QStringLiteral("\"%1\" /S %2").arg(WineSession::windowsPath(setup(version)), switches));
    }
    // As "Programs and Features" would; the uninstaller goes on in a copy of its own.
    bool remove()
    {
        runLine(registry(programs, QStringLiteral("QuietUninstallString")));
        return QTest::qWaitFor(
                   [this] {
                       return !QFile::exists(folder() + "/quillet.exe") &&
                              !QFile::exists(folder() + "/uninstall.exe");
                   },
                   patience) &&
               QTest::qWaitFor([this] { return registry(own, QStringLiteral("InstallFolder")).isNull(); },
                               patience);
    }

    // A value as text; null when it is not there.
    QString registry(const QString& key, const QString& value)
    {
        QProcess process;
        m_session->start(process, QStringLiteral("reg"), {"query", key, "/v", value});
        if (!process.waitForFinished(patience) || process.exitCode() != 0)
            return QString();
        const QString output = QString::fromUtf8(process.readAllStandardOutput()).remove('\r');
        const QRegularExpression line(QStringLiteral("^ +%1 +REG_\\w+ +(.*)$").arg(value),
                                      QRegularExpression::MultilineOption);
        const auto match = line.match(output);
        return match.hasMatch() ? QStringLiteral("") + match.captured(1) : QString();
    }
    void setShell(const QString& value)
    {
        QProcess process;
        if (value.isNull())
            m_session->start(process, QStringLiteral("reg"), {"delete", winlogon, "/v", "Shell", "/f"});
        else
            m_session->start(process, QStringLiteral("reg"),
                             {"add", winlogon, "/v", "Shell", "/d", value, "/f"});
        QVERIFY(process.waitForFinished(patience));
    }
    QString shellValue() { return registry(winlogon, QStringLiteral("Shell")); }

    static QStringList filesOf(const QString& path)
    {
        QStringList files;
        QDirIterator all(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (all.hasNext())
            files.append(QDir(path).relativeFilePath(all.next()));
        files.sort();
        return files;
    }

    // The installer's pages have no titles of their own to wait for: what is seen changes, and then rests.
    bool waitForRest()
    {
        QImage last;
        return QTest::qWaitFor(
            [&] {
                QTest::qWait(500);
                const QImage now = m_session->screen();
                return std::exchange(last, now) == now;
            },
            patience);
    }
    bool pressAndWait(const QString& key)
    {
        const QImage before = m_session->screen();
        m_session->press(key);
        return QTest::qWaitFor([&] { return m_session->screen() != before; }, patience) && waitForRest();
    }

    void verifyNothingIsLeft()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(folder()), patience);
        QVERIFY(registry(own, QStringLiteral("Version")).isNull());
        QVERIFY(registry(own, QStringLiteral("PreviousShell")).isNull());
        QVERIFY(registry(programs, QStringLiteral("DisplayName")).isNull());
    }

private slots:
    void init()
    {
        m_session = std::make_unique<WineSession>(QStringLiteral("package-") +
                                                  QString::fromLatin1(QTest::currentTestFunction()));
        QVERIFY2(m_session->isRunning(), qPrintable(m_session->error()));
    }
    void cleanup() { m_session.reset(); }

    // An administrator installs it, looks at it, and takes it away again.
    void whatIsInstalledIsTheProductAndGoesWithoutATrace()
    {
        setShell(QStringLiteral("explorer.exe"));
        QCOMPARE(install(QStringLiteral("present")), 0);
        QStringList expected = filesOf(WineSession::dist());
        expected.removeOne(QStringLiteral("licenses/SOURCE"));
        expected += {"licenses/README.txt",    "licenses/build-qt.sh",
                     "licenses/gcc-copyright", "licenses/mingw-w64-copyright",
                     "quillet.ini.sample",     "quillet.ini.written",
                     "uninstall.exe"};
        expected.sort();
        QCOMPARE(filesOf(folder()), expected);
        for (const QString& file : filesOf(WineSession::dist())) {
            if (file != QLatin1String("licenses/SOURCE"))
                QCOMPARE(Sandbox::readFile(folder() + '/' + file),
                         Sandbox::readFile(WineSession::dist() + '/' + file));
        }
        QCOMPARE(Sandbox::readFile(settings()), sample());
        QCOMPARE(registry(programs, QStringLiteral("DisplayVersion")), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(registry(own, QStringLiteral("Version")), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(registry(own, QStringLiteral("InstallFolder")),
                 QStringLiteral("C:\\Program Files\\Quillet"));
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe")); // nobody asked for ours
        QVERIFY(registry(own, QStringLiteral("PreviousShell")).isNull());

        QVERIFY(remove());
        verifyNothingIsLeft();
        QVERIFY(!QFile::exists(QFileInfo(settings()).path()));
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
    }

    // The session's shell value cannot say where to start; the starter does.
    void theStarterRunsTheShellInItsOwnFolderAndEndsWithIt()
    {
        QCOMPARE(install(QStringLiteral("present")), 0);
        TwServer server;
        QVERIFY(server.start());
        Sandbox::writeFile(settings(), "[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                                           QByteArray::number(server.port()) + '\n');
        QProcess session;
        m_session->startAsUser(session, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"), {},
                               {}, m_session->home());
        QVERIFY(session.waitForStarted(patience));
        // In the language of the translation beside it.
        QStringList windows;
        QVERIFY2(
            m_session->waitForWindow(QStringLiteral("quillet.exe"), QString::fromUtf8("Diálogo"), &windows),
            qPrintable(windows.join('\n')));
        QVERIFY(!m_session->screenshot(QStringLiteral("starter")).isNull());

        // Nothing is changed under a user's feet.
        const QStringList before = filesOf(folder());
        QCOMPARE(install(QStringLiteral("present")), running);
        QCOMPARE(runLine(QStringLiteral(
                     "\"C:\\Program Files\\Quillet\\uninstall.exe\" /S _?=C:\\Program Files\\Quillet")),
                 running);
        QCOMPARE(filesOf(folder()), before);
        QVERIFY(!registry(programs, QStringLiteral("DisplayName")).isNull());

        QCOMPARE(session.state(), QProcess::Running);
        QVERIFY(m_session->killProgram(QStringLiteral("quillet.exe")));
        QVERIFY(session.waitForFinished(patience));
        QVERIFY(remove());
    }

    void theStartersExitCodeIsTheShells()
    {
        QCOMPARE(install(QStringLiteral("present")), 0);
        const QString shell = folder() + QStringLiteral("/quillet.exe");
        QVERIFY(QFile::remove(shell));
        QVERIFY(QFile::copy(WineSession::tools() + QStringLiteral("/testapp.exe"), shell));
        const QString evidence = m_session->driveC() + QStringLiteral("/evidence");
        QProcess session;
        m_session->start(session, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"),
                         {"--end", "500", "--exit", "7", "--evidence", "C:\\evidence", "an argument"});
        QVERIFY(session.waitForFinished(patience));
        QCOMPARE(session.exitCode(), 7);
        QVERIFY(Sandbox::readFile(evidence).contains("argument an argument"));
    }

    void aStarterWithoutItsShellSaysWhy()
    {
        QCOMPARE(install(QStringLiteral("present")), 0);
        QVERIFY(QFile::remove(folder() + QStringLiteral("/quillet.exe")));
        QProcess session;
        m_session->start(session, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"));
        QVERIFY(m_session->waitForWindow(QStringLiteral("quillet-session.exe"), QStringLiteral("Quillet")));
        QVERIFY(!m_session->screenshot(QStringLiteral("no-shell")).isNull());
        m_session->press(QStringLiteral("Return"));
        QVERIFY(session.waitForFinished(patience));
        QCOMPARE(session.exitCode(), 125);
    }

    // A machine on which it is the shell is upgraded, and later gets its old shell back.
    void anUpgradeKeepsSettingsAndShellAndTheRemovalBringsTheOldShellBack()
    {
        const QString before = QStringLiteral("C:\\Kiosk\\kiosk.exe -first \"a b\"");
        setShell(before);
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(registry(programs, QStringLiteral("DisplayVersion")), QStringLiteral("0.0.9"));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/obsolete.txt")));
        QCOMPARE(shellValue(), starter);
        QCOMPARE(registry(own, QStringLiteral("PreviousShell")), before);
        const QByteArray changed = sample() + "\r\n[Server]\r\nTidewellServerPort=8123\r\n";
        Sandbox::writeFile(settings(), changed);
        Sandbox::writeFile(folder() + QStringLiteral("/notes.txt"), "the administrator's own");

        QCOMPARE(install(QStringLiteral("present")), 0);
        QCOMPARE(registry(programs, QStringLiteral("DisplayVersion")), QStringLiteral(PROJECT_VERSION));
        QVERIFY(!QFile::exists(folder() + QStringLiteral("/obsolete.txt")));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/quillet.exe")));
        QCOMPARE(Sandbox::readFile(settings()), changed);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(registry(own, QStringLiteral("PreviousShell")), before);
        // Once more with the switch: what is ours is not taken for what was there before.
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(registry(own, QStringLiteral("PreviousShell")), before);

        QVERIFY(remove());
        QCOMPARE(shellValue(), before);
        QCOMPARE(Sandbox::readFile(settings()), changed);
        QCOMPARE(filesOf(folder()), QStringList(QStringLiteral("notes.txt")));
    }

    void settingsThatNobodyChangedFollowTheUpgradeAndGoWithTheRemoval()
    {
        QCOMPARE(install(QStringLiteral("older")), 0);
        QCOMPARE(Sandbox::readFile(settings()), QByteArray("; Settings of an older version\r\n"));
        QCOMPARE(install(QStringLiteral("present")), 0);
        QCOMPARE(Sandbox::readFile(settings()), sample());
        QVERIFY(remove());
        verifyNothingIsLeft();
        QVERIFY(!QFile::exists(settings()));
    }

    void settingsThatWereThereBeforeAreNotTouched()
    {
        QVERIFY(QDir().mkpath(QFileInfo(settings()).path()));
        Sandbox::writeFile(settings(), "[Server]\n");
        QCOMPARE(install(QStringLiteral("present")), 0);
        QCOMPARE(Sandbox::readFile(settings()), QByteArray("[Server]\n"));
        QVERIFY(remove());
        QCOMPARE(Sandbox::readFile(settings()), QByteArray("[Server]\n"));
        verifyNothingIsLeft();
    }

    void aShellThatSomebodyElseSetStays()
    {
        setShell(QStringLiteral("explorer.exe"));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        setShell(QStringLiteral("other.exe"));
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("other.exe"));
        verifyNothingIsLeft();
    }

    void aShellValueOfOursIsKnownHoweverItIsWritten_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("without quotation marks") << "C:\\Program Files\\Quillet\\quillet-session.exe";
        QTest::newRow("with arguments") << "\"C:\\PROGRA~1\\QUILLET\\QUILLET-SESSION.EXE\" -x ";
        QTest::newRow("the shell itself") << "C:\\Program Files\\Quillet\\quillet.exe";
    }
    void aShellValueOfOursIsKnownHoweverItIsWritten()
    {
        QFETCH(QString, value);
        setShell(QStringLiteral("%windir%\\explorer.exe"));
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), 0);
        setShell(value);
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        setShell(value);
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("%windir%\\explorer.exe"));
    }

    void aMachineIsNeverLeftWithoutAShell()
    {
        setShell(QString());
        QVERIFY(shellValue().isNull());
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
    }

    void anotherFolderIsKeptByTheNextVersion()
    {
        const QString elsewhere = m_session->driveC() + QStringLiteral("/Our programs/Shell of ours");
        QCOMPARE(
            install(QStringLiteral("older"), QStringLiteral("/SHELL=1 /D=C:\\Our programs\\Shell of ours")),
            0);
        const QString there = QStringLiteral("\"C:\\Our programs\\Shell of ours\\quillet-session.exe\"");
        QCOMPARE(shellValue(), there);
        QCOMPARE(install(QStringLiteral("present")), 0);
        QVERIFY(QFile::exists(elsewhere + QStringLiteral("/quillet.exe")));
        QVERIFY(!QFile::exists(folder()));
        QCOMPARE(shellValue(), there);
        // Asked for another one, it moves, and the shell value with it.
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/D=C:\\Shell")), 0);
        QVERIFY(!QFile::exists(elsewhere));
        QCOMPARE(shellValue(), QStringLiteral("\"C:\\Shell\\quillet-session.exe\""));
        QCOMPARE(registry(own, QStringLiteral("InstallFolder")), QStringLiteral("C:\\Shell"));
    }

    // By hand: the pages one after the other, with the tick for the shell.
    void thePagesOfTheInstallerLeadThroughIt()
    {
        setShell(QStringLiteral("explorer.exe"));
        QProcess installer;
        m_session->start(installer, WineSession::windowsPath(setup(QStringLiteral("present"))));
        const QString program = QFileInfo(setup(QStringLiteral("present"))).fileName();
        QVERIFY(m_session->waitForWindow(program, QStringLiteral("Quillet Setup")));
        QVERIFY(!m_session->screenshot(QStringLiteral("welcome")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        m_session->press(QStringLiteral("Down"));
        QVERIFY(pressAndWait(QStringLiteral("space")));
        QVERIFY(!m_session->screenshot(QStringLiteral("components")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        QVERIFY(!m_session->screenshot(QStringLiteral("folder")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        QVERIFY(
            QTest::qWaitFor([this] { return shellValue() == starter; }, patience)); // the last that is done
        QVERIFY(waitForRest());
        QVERIFY(!m_session->screenshot(QStringLiteral("finish")).isNull());
        m_session->press(QStringLiteral("Return"));
        QVERIFY(installer.waitForFinished(patience));
        QCOMPARE(installer.exitCode(), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
        verifyNothingIsLeft();
    }
};

QTEST_GUILESS_MAIN(PackageStory)
#include "tst_package.moc"
