// The installer on Windows: installed, used, upgraded and removed, with the machine's shell value and the
// administrator's settings looked after.
#include "support/installstory.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QDir>
#include <QtTest>

using packages::filesOf;
using packages::setup;

class InstallerStory : public QObject, private InstallStory
{
    Q_OBJECT

private slots:
    void init() { begin(QStringLiteral("installer-") + QString::fromLatin1(QTest::currentTestFunction())); }
    void cleanup() { session.reset(); }

    // An administrator installs it, looks at it, and takes it away again.
    void whatIsInstalledIsTheProductAndGoesWithoutATrace()
    {
        QVERIFY(setShell(QStringLiteral("explorer.exe")));
        QCOMPARE(install(QStringLiteral("present")), 0);
        QTemporaryDir temporary;
        const QString unpacked = packages::unpack(QStringLiteral("present"), temporary.path());
        QVERIFY(!unpacked.isEmpty());
        const QStringList inZip = filesOf(unpacked);
        QStringList expected = inZip;
        expected << QStringLiteral("quillet.ini.written") << QStringLiteral("uninstall.exe");
        expected.sort();
        QCOMPARE(filesOf(folder()), expected);
        for (const QString& file : inZip) {
            QVERIFY2(Sandbox::readFile(folder() + '/' + file) == Sandbox::readFile(unpacked + '/' + file),
                     qPrintable(file));
        }
        QCOMPARE(Sandbox::readFile(settings()), sample());
        QCOMPARE(registry(programs, QStringLiteral("DisplayVersion")), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(registry(own, QStringLiteral("Version")), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(registry(own, QStringLiteral("InstallFolder")),
                 QStringLiteral("C:\\Program Files\\Quillet"));
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe")); // nobody asked for ours
        QVERIFY(registry(own, QStringLiteral("PreviousShell")).isNull());

        QVERIFY(remove());
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
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
        QProcess process;
        session->startAsUser(process, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"), {},
                             {}, session->home());
        QVERIFY(process.waitForStarted(patience));
        // In the language of the translation beside it.
        QStringList windows;
        QVERIFY2(
            session->waitForWindow(QStringLiteral("quillet.exe"), QString::fromUtf8("Diálogo"), &windows),
            qPrintable(windows.join('\n')));
        QVERIFY(!session->screenshot(QStringLiteral("starter")).isNull());

        // Nothing is changed under a user's feet.
        const QStringList before = filesOf(folder());
        QCOMPARE(install(QStringLiteral("present")), running);
        QCOMPARE(removeInPlace(), running);
        QCOMPARE(filesOf(folder()), before);
        QVERIFY(!registry(programs, QStringLiteral("DisplayName")).isNull());

        QCOMPARE(process.state(), QProcess::Running);
        QVERIFY(session->killProgram(QStringLiteral("quillet.exe")));
        QVERIFY(process.waitForFinished(patience));
        QVERIFY(remove());
    }

    void theStartersExitCodeIsTheShells()
    {
        QCOMPARE(install(QStringLiteral("present")), 0);
        const QString shell = folder() + QStringLiteral("/quillet.exe");
        QVERIFY(QFile::remove(shell));
        QVERIFY(QFile::copy(WineSession::tools() + QStringLiteral("/testapp.exe"), shell));
        const QString evidence = session->driveC() + QStringLiteral("/evidence");
        QProcess process;
        session->start(process, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"),
                       {"--end", "500", "--exit", "7", "--evidence", "C:\\evidence", "an argument"});
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 7);
        QVERIFY(Sandbox::readFile(evidence).contains("argument an argument"));
    }

    void atADrivesRootTheStarterStartsThereToo()
    {
        const QString root = session->driveC();
        QVERIFY(QFile::copy(WineSession::dist() + QStringLiteral("/quillet-session.exe"),
                            root + QStringLiteral("/quillet-session.exe")));
        QVERIFY(QFile::copy(WineSession::tools() + QStringLiteral("/testapp.exe"),
                            root + QStringLiteral("/quillet.exe")));
        QVERIFY(QDir().mkpath(root + QStringLiteral("/elsewhere")));
        QProcess process;
        session->start(process, QStringLiteral("C:\\quillet-session.exe"),
                       {"--end", "500", "--evidence", "account"}, root + QStringLiteral("/elsewhere"));
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(QFile::exists(root + QStringLiteral("/account")));
    }

    void aStarterWithoutItsShellSaysWhy()
    {
        QCOMPARE(install(QStringLiteral("present")), 0);
        QVERIFY(QFile::remove(folder() + QStringLiteral("/quillet.exe")));
        QProcess process;
        session->start(process, QStringLiteral("C:\\Program Files\\Quillet\\quillet-session.exe"));
        QVERIFY(session->waitForWindow(QStringLiteral("quillet-session.exe"), QStringLiteral("Quillet")));
        QVERIFY(!session->screenshot(QStringLiteral("no-shell")).isNull());
        session->press(QStringLiteral("Return"));
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 125);
    }

    // A machine on which it is the shell is upgraded, and later gets its old shell back.
    void anUpgradeKeepsSettingsAndShellAndTheRemovalBringsTheOldShellBack()
    {
        const QString before = QStringLiteral("C:\\Kiosk\\kiosk.exe -first \"a b\"");
        QVERIFY(setShell(before));
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
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
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
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
    }

    void aShellThatSomebodyElseSetStays()
    {
        QVERIFY(setShell(QStringLiteral("explorer.exe")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(setShell(QStringLiteral("other.exe")));
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("other.exe"));
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
    }

    void aShellValueOfOursIsKnownHoweverItIsWritten_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("without quotation marks") << "C:\\Program Files\\Quillet\\quillet-session.exe";
        QTest::newRow("with arguments") << "\"C:\\PROGRA~1\\QUILLET\\QUILLET-SESSION.EXE\" -x ";
        QTest::newRow("the shell itself") << "C:\\Program Files\\Quillet\\quillet.exe";
        QTest::newRow("with slashes, without a suffix") << "C:/Program Files/Quillet/quillet-session";
        QTest::newRow("without a suffix, with arguments") << "C:\\Q\\quillet-session -x";
        QTest::newRow("the shell itself, without a suffix")
            << "cmd.exe /c \"C:\\Program Files\\Quillet\\quillet\"";
    }
    void aShellValueOfOursIsKnownHoweverItIsWritten()
    {
        QFETCH(QString, value);
        QVERIFY(setShell(QStringLiteral("%windir%\\explorer.exe")));
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), 0);
        QVERIFY(setShell(value));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(setShell(value));
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("%windir%\\explorer.exe"));
    }

    // With arguments, with its type, in a program of theirs.
    void anUpgradeInTheSameFolderKeepsOursAsTheAdministratorWroteIt()
    {
        QVERIFY(setShell(QStringLiteral("kiosk.exe")));
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), 0);
        const QString value = QStringLiteral("%windir%\\first.exe C:\\Elsewhere\\quillet-session.exe -x");
        QVERIFY(setValue(winlogon, QStringLiteral("Shell"), value, QStringLiteral("REG_EXPAND_SZ")));
        const QString library = folder() + QStringLiteral("/Qt5Network.dll");
        QVERIFY(QFile::remove(library));
        QVERIFY(QDir().mkpath(library));
        QCOMPARE(install(QStringLiteral("present")), failed);
        QCOMPARE(shellType(), QStringLiteral("REG_SZ kiosk.exe"));
        QVERIFY(QDir().rmdir(library));
        // The same folder, found by another name of it.
        QVERIFY(QFile::link(QFileInfo(folder()).path(), session->driveC() + QStringLiteral("/Linked")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/D=C:\\Linked\\Quillet")), 0);
        QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + value);
        QVERIFY(QFile::exists(folder() + QStringLiteral("/uninstall.exe")));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/quillet.ini.written")));
        QCOMPARE(registry(own, QStringLiteral("InstallFolder")),
                 QStringLiteral("C:\\Program Files\\Quillet"));
        QVERIFY(registry(own, QStringLiteral("OwnShell")).isNull());
        QVERIFY(registry(own, QStringLiteral("ShellWanted")).isNull());
        QCOMPARE(registry(own, QStringLiteral("PreviousShell")), QStringLiteral("kiosk.exe"));
    }

    void aShellOfOursThatSomebodySetByHandStaysAtTheFirstInstallation()
    {
        QVERIFY(setShell(QStringLiteral("C:\\Unpacked\\quillet-session.exe")));
        QCOMPARE(install(QStringLiteral("present")), 0);
        QCOMPARE(shellValue(), QStringLiteral("C:\\Unpacked\\quillet-session.exe"));
    }

    void aShellValueComesBackAsItWas_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("value");
        const QString variable = QStringLiteral("%windir%\\explorer.exe");
        QTest::newRow("a variable, to be replaced") << "REG_EXPAND_SZ" << variable;
        QTest::newRow("what looks like one") << "REG_SZ" << variable;
        QTest::newRow("to be replaced, without a variable") << "REG_EXPAND_SZ"
                                                            << "explorer.exe";
        QTest::newRow("long") << "REG_SZ" << QStringLiteral("kiosk.exe ") + QString(2000, 'x');
    }
    void aShellValueComesBackAsItWas()
    {
        QFETCH(QString, type);
        QFETCH(QString, value);
        QVERIFY(setValue(winlogon, QStringLiteral("Shell"), value, type));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(typedValue(own, QStringLiteral("PreviousShell")), type + ' ' + value);
        QCOMPARE(shellType(), QStringLiteral("REG_SZ ") + starter);
        QCOMPARE(removeInPlace(), 0);
        QCOMPARE(shellType(), type + ' ' + value); // at once: it has waited
        QCOMPARE(remains(), QStringList({folder(), QStringLiteral("uninstall.exe")}));
    }

    void otherSwitchesAreIgnored()
    {
        QVERIFY(setShell(QStringLiteral("explorer.exe")));
        QCOMPARE(
            install(QStringLiteral("present"), QStringLiteral("/QUIET --shell /SHELL=yes /D:C:\\Shell x")),
            0);
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/quillet.exe")));
    }

    void aMachineWithoutAShellValueGetsOneWhenOursGoes()
    {
        QVERIFY(setShell(QString()));
        QVERIFY(shellValue().isNull());
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(registry(own, QStringLiteral("PreviousShell")).isNull());
        QVERIFY(remove());
        QCOMPARE(shellType(), QStringLiteral("REG_SZ explorer.exe"));
    }

    void anotherFolderIsKeptByTheNextVersion()
    {
        const QString elsewhere = session->driveC() + QStringLiteral("/Our programs/Shell of ours");
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
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/D=C:\\Shell\\")), 0);
        QVERIFY(!QFile::exists(elsewhere));
        QCOMPARE(shellValue(), QStringLiteral("\"C:\\Shell\\quillet-session.exe\""));
        QCOMPARE(registry(own, QStringLiteral("InstallFolder")), QStringLiteral("C:\\Shell"));
    }

    // By hand: the pages one after the other, with the tick for the shell.
    void thePagesOfTheInstallerLeadThroughIt()
    {
        QVERIFY(setShell(QStringLiteral("explorer.exe")));
        QProcess installer;
        session->start(installer, WineSession::windowsPath(setup(QStringLiteral("present"))));
        const QString program = QFileInfo(setup(QStringLiteral("present"))).fileName();
        QVERIFY(session->waitForWindow(program, QStringLiteral("Quillet Setup")));
        QVERIFY(!session->screenshot(QStringLiteral("welcome")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        session->press(QStringLiteral("Down"));
        QVERIFY(pressAndWait(QStringLiteral("space")));
        QVERIFY(!session->screenshot(QStringLiteral("components")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        QVERIFY(!session->screenshot(QStringLiteral("folder")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        QVERIFY(
            QTest::qWaitFor([this] { return shellValue() == starter; }, patience)); // the last that is done
        QVERIFY(waitForRest());
        QVERIFY(!session->screenshot(QStringLiteral("finish")).isNull());
        session->press(QStringLiteral("Return"));
        QVERIFY(installer.waitForFinished(patience));
        QCOMPARE(installer.exitCode(), 0);
        QCOMPARE(shellValue(), starter);
        QVERIFY(remove());
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
    }
};

QTEST_GUILESS_MAIN(InstallerStory)
#include "tst_installer.moc"
