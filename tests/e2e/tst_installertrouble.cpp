// The installer when something is in its way: it says so, the machine keeps a shell, and what is there can be
// made whole or taken away.
#include "support/installstory.h"
#include "support/sandbox.h"

#include <QDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using packages::filesOf;
using packages::setup;

namespace {

const QString kiosk = QStringLiteral("%windir%\\kiosk.exe");

// A program that cannot write more than `limit` bytes into any one file, as on a disk that gets full.
class LimitedProcess : public QProcess
{
public:
    static constexpr rlim_t limit = 4 << 20; // less than some libraries have

protected:
    void setupChildProcess() override
    {
        const rlimit size = {limit, limit};
        setrlimit(RLIMIT_FSIZE, &size);
        std::signal(SIGXFSZ, SIG_IGN);
    }
};

} // namespace

class InstallerTroubleStory : public QObject, private InstallStory
{
    Q_OBJECT

    QString uninstaller() const { return folder() + QStringLiteral("/uninstall.exe"); }
    QString displayName() { return registry(programs, QStringLiteral("DisplayName")); }
    QString displayVersion() { return registry(programs, QStringLiteral("DisplayVersion")); }

    // The present version, silent, with a folder where one of its libraries belongs.
    int installWithAFolderInTheWay(const QString& switches = QString())
    {
        const QString library = folder() + QStringLiteral("/Qt5Network.dll"); // neither first nor last
        QFile::remove(library);
        const bool made = QDir().mkpath(library);
        const int code = install(QStringLiteral("present"), switches);
        return QDir().rmdir(library) && made ? code : -1;
    }

    bool lockShell(const QString& what) // "deny" or "allow"
    {
        return runLine(
                   QStringLiteral("\"%1\" %2")
                       .arg(WineSession::windowsPath(WineSession::tools() + QStringLiteral("/lockshell.exe")),
                            what)) == 0;
    }

    int installOnAFullDisk()
    {
        LimitedProcess process;
        session->start(process, WineSession::windowsPath(setup(QStringLiteral("present"))), {"/S"});
        return process.waitForFinished(patience) ? process.exitCode() : -1;
    }

    QStringList allFiles() // of the present version, installed
    {
        QTemporaryDir unpacked;
        QStringList files = filesOf(packages::unpack(QStringLiteral("present"), unpacked.path()));
        files << QStringLiteral("quillet.ini.written") << QStringLiteral("uninstall.exe");
        files.sort();
        return files;
    }

private slots:
    void init()
    {
        begin(QStringLiteral("trouble-") + QString::fromLatin1(QTest::currentTestFunction()));
        if (QTest::currentTestFailed())
            return;
        QVERIFY(setValue(winlogon, QStringLiteral("Shell"), kiosk, QStringLiteral("REG_EXPAND_SZ")));
    }
    void cleanup() { session.reset(); }

    void anUpgradeThatFailsLeavesTheEarlierShellAndTheNextOneMakesItGood()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(shellValue(), starter);

        QCOMPARE(installWithAFolderInTheWay(), failed);
        QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + kiosk);
        QCOMPARE(displayName(), QStringLiteral("Quillet (not installed completely)"));
        QVERIFY(displayVersion().isNull());
        QVERIFY(registry(own, QStringLiteral("Version")).isNull());

        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayName(), QStringLiteral("Quillet"));
        QCOMPARE(displayVersion(), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(filesOf(folder()), allFiles());
        QVERIFY(registry(own, QStringLiteral("ShellWanted")).isNull());
        QVERIFY(remove());
        QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + kiosk);
    }

    void filesThatAreReadOnlyAreReplacedAndRemoved()
    {
        QCOMPARE(install(QStringLiteral("older")), done);
        QCOMPARE(runLine(QStringLiteral("attrib +r \"C:\\Program Files\\Quillet\\*.*\"")), 0);
        QVERIFY(!(QFile::permissions(folder() + QStringLiteral("/obsolete.txt")) & QFile::WriteOwner));
        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(filesOf(folder()), allFiles());
        QCOMPARE(runLine(QStringLiteral("attrib +r \"C:\\Program Files\\Quillet\\*.*\"")), 0);
        QVERIFY(remove());
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
    }

    void nothingIsChangedWhereTheFilesCannotBeUnpacked()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        const QStringList before = filesOf(folder());
        QCOMPARE(installOnAFullDisk(), failed);
        QCOMPARE(filesOf(folder()), before);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayName(), QStringLiteral("Quillet"));
        QCOMPARE(displayVersion(), QStringLiteral("0.0.9"));
    }

    void aFirstInstallationThatFailsIsCompletedByTheNext()
    {
        QCOMPARE(installWithAFolderInTheWay(QStringLiteral("/SHELL=1")), failed);
        QCOMPARE(shellValue(), kiosk);
        QCOMPARE(displayName(), QStringLiteral("Quillet (not installed completely)"));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayName(), QStringLiteral("Quillet"));
        QCOMPARE(filesOf(folder()), allFiles());
    }

    void whatIsNotCompleteCanBeRemoved()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(installWithAFolderInTheWay(), failed);
        QVERIFY(filesOf(folder()).contains(QStringLiteral("Qt5Core.dll"))); // so far it had come
        QVERIFY(remove());
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
        QCOMPARE(shellValue(), kiosk);
        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(shellValue(), kiosk); // nobody wants ours any more
    }

    void aShellThatSomebodySetAfterAFailureStays()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(installWithAFolderInTheWay(), failed);
        QVERIFY(setShell(QStringLiteral("other.exe")));
        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(shellValue(), QStringLiteral("other.exe"));
        QVERIFY(registry(own, QStringLiteral("ShellWanted")).isNull()); // and nobody thinks of ours later
    }

    void withoutItsUninstallerAVersionStaysUntilThatIsClearedAway()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        Sandbox::writeFile(uninstaller(), "no program");
        QCOMPARE(install(QStringLiteral("present")), failed);
        QCOMPARE(shellValue(), kiosk);
        QVERIFY(QFile::exists(folder() + QStringLiteral("/obsolete.txt")));
        QCOMPARE(displayVersion(), QStringLiteral("0.0.9"));
        QVERIFY(QFile::remove(uninstaller()));
        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayVersion(), QStringLiteral(PROJECT_VERSION));
    }

    void aFolderThatCannotBeOursIsRefused()
    {
        const QString other = session->driveC() + QStringLiteral("/Other program");
        for (const char* name : {"/One/uninstall.exe", "/Two/Qt5Core.dll"}) {
            QVERIFY(QDir().mkpath(QFileInfo(other + QString::fromLatin1(name)).path()));
            Sandbox::writeFile(other + QString::fromLatin1(name), "not ours");
        }
        const QStringList before = filesOf(session->driveC());
        for (const char* folder :
             {"\"C:\\Ours\"", "Ours", "\\Ours", "C:", "C:Ours", "C:/Ours", "C:\\Ours/Quillet", "C:\\",
              "C:\\\\", "C:\\Ours\\..", "\\\\localhost\\c$\\Ours", "C:\\Other program\\One",
              "C:\\Other program\\Two"}) {
            const QString text = QString::fromLatin1(folder);
            QVERIFY2(install(QStringLiteral("present"), "/D=" + text) == failed, folder);
            QVERIFY2(filesOf(session->driveC()) == before, folder);
        }
        QCOMPARE(remains(), QStringList());
    }

    void nothingIsChangedWhereTheShellValueIsNoText()
    {
        QVERIFY(setValue(winlogon, QStringLiteral("Shell"), QStringLiteral("a.exe"),
                         QStringLiteral("REG_MULTI_SZ")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), failed);
        QCOMPARE(remains(), QStringList());
        QCOMPARE(shellType(), QStringLiteral("REG_MULTI_SZ a.exe"));
    }

    // Its libraries are replaced like those of a version that an installer brought.
    void whatWasUnpackedAndMadeTheShellByHandIsNotTheShellWhileItIsReplaced()
    {
        QVERIFY(QDir().rename(packages::unpack(QStringLiteral("present"), session->driveC() + "/Unpacked"),
                              folder()));
        QVERIFY(setShell(starter + QStringLiteral(" -x")));
        QCOMPARE(installWithAFolderInTheWay(), failed);
        QCOMPARE(shellValue(), QStringLiteral("explorer.exe"));
        QCOMPARE(install(QStringLiteral("present")), done);
        QCOMPARE(shellValue(), starter + QStringLiteral(" -x"));
    }

    void aRemovalThatFailsIsFinishedByTheNext()
    {
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), done);
        const QString library = folder() + QStringLiteral("/Qt5Network.dll");
        QVERIFY(QFile::remove(library));
        QVERIFY(QFile::copy(WineSession::tools() + QStringLiteral("/testapp.exe"), library));
        QProcess program; // Windows does not let anybody remove a program that runs
        session->start(program, QStringLiteral("C:\\Program Files\\Quillet\\Qt5Network.dll"));
        QVERIFY(session->waitForWindow(QStringLiteral("Qt5Network.dll"), QStringLiteral("testapp")));
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(removeInPlace(), failed);
            QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + kiosk);
            QCOMPARE(filesOf(folder()),
                     QStringList({"Qt5Network.dll", "quillet.ini.written", "uninstall.exe"}));
            QVERIFY(QFile::exists(settings()));
            QCOMPARE(displayName(), QStringLiteral("Quillet (not installed completely)"));
            QVERIFY(displayVersion().isNull());
            QVERIFY(registry(own, QStringLiteral("Version")).isNull());
        }
        QVERIFY(session->killProgram(QStringLiteral("Qt5Network.dll")));
        QVERIFY(program.waitForFinished(patience));
        QVERIFY(remove());
        QTRY_COMPARE_WITH_TIMEOUT(remains(), QStringList(), patience);
        QVERIFY(!QFile::exists(settings()));
    }

    void anUninstallerStartedAsAnUpgradeDoesLeavesAShell()
    {
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(runLine(QStringLiteral("\"C:\\Program Files\\Quillet\\uninstall.exe\" /S /UPGRADE=1 "
                                        "_?=C:\\Program Files\\Quillet")),
                 done);
        QVERIFY(!QFile::exists(folder() + QStringLiteral("/quillet-session.exe")));
        QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + kiosk);
    }

    void anUninstallerRemovesNothingFromElsewhere()
    {
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(runLine(QStringLiteral("\"C:\\Program Files\\Quillet\\uninstall.exe\" /S _?=C:\\windows")),
                 failed);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayVersion(), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(filesOf(folder()), allFiles());
        QVERIFY(QFile::exists(settings()));
    }

    // Nothing of it needs another shell value: that is the earlier one already.
    void whatIsNotCompleteCanBeRemovedWhereTheShellCannotBeChanged()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        QCOMPARE(installWithAFolderInTheWay(), failed);
        QVERIFY(lockShell(QStringLiteral("deny")));
        QCOMPARE(removeInPlace(), done);
        QCOMPARE(remains(), QStringList({folder(), QStringLiteral("uninstall.exe")}));
        // What stays behind is no other program's.
        QCOMPARE(install(QStringLiteral("present")), done);
    }

    void nothingIsChangedWhereThereIsNoRoom()
    {
        QCOMPARE(install(QStringLiteral("older"), QStringLiteral("/SHELL=1")), done);
        const QStringList before = filesOf(folder());
        // A file system that never has room, and that nothing can be written to.
        QVERIFY(
            QFile::link(QStringLiteral("/proc"), session->driveC() + QStringLiteral("/../dosdevices/q:")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/D=Q:\\Programs\\Quillet")), noRoom);
        QCOMPARE(filesOf(folder()), before);
        QCOMPARE(shellValue(), starter);
        QCOMPARE(displayName(), QStringLiteral("Quillet"));
        QCOMPARE(displayVersion(), QStringLiteral("0.0.9"));
    }

    void nothingIsDoneThatNeedsAnotherShellWhereItCannotBeChanged()
    {
        QVERIFY(lockShell(QStringLiteral("deny")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), failed);
        QCOMPARE(shellValue(), kiosk);
        QCOMPARE(displayName(), QStringLiteral("Quillet")); // the program itself is there

        QVERIFY(lockShell(QStringLiteral("allow")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), done);
        QVERIFY(lockShell(QStringLiteral("deny")));
        QCOMPARE(install(QStringLiteral("present")), failed);
        QCOMPARE(filesOf(folder()), allFiles());
        QCOMPARE(removeInPlace(), failed);
        QCOMPARE(filesOf(folder()), allFiles());
        QCOMPARE(displayVersion(), QStringLiteral(PROJECT_VERSION));
        QCOMPARE(shellValue(), starter);
        QVERIFY(registry(own, QStringLiteral("ShellWanted")).isNull());
        QVERIFY(registry(own, QStringLiteral("OwnShell")).isNull());

        QVERIFY(lockShell(QStringLiteral("allow")));
        QVERIFY(remove());
        QCOMPARE(shellType(), QStringLiteral("REG_EXPAND_SZ ") + kiosk);
    }

    void onlyOneInstallerOrUninstallerIsAtWork()
    {
        QCOMPARE(install(QStringLiteral("present")), done);
        QProcess first; // waits on its first page
        session->start(first, WineSession::windowsPath(setup(QStringLiteral("present"))));
        const QString program = QFileInfo(setup(QStringLiteral("present"))).fileName();
        QVERIFY(session->waitForWindow(program, QStringLiteral("Quillet Setup")));
        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/SHELL=1")), notAlone);
        QCOMPARE(shellValue(), kiosk);
        QCOMPARE(removeInPlace(), notAlone);
        QCOMPARE(filesOf(folder()), allFiles());
        QVERIFY(session->killProgram(program));
        QVERIFY(first.waitForFinished(patience));
        QCOMPARE(install(QStringLiteral("present")), done); // with an uninstaller within
    }

    void nothingIsChangedWithoutAnAdministratorsRights()
    {
        QProcess installer;
        session->startAsUser(installer, WineSession::windowsPath(setup(QStringLiteral("present"))), {"/S"},
                             {});
        QVERIFY(installer.waitForFinished(patience));
        QCOMPARE(installer.exitCode(), static_cast<int>(noRights));
        QCOMPARE(remains(), QStringList());

        QCOMPARE(install(QStringLiteral("present"), QStringLiteral("/D=C:\\Quillet")), done);
        QProcess remover;
        session->startAsUser(remover, QStringLiteral("C:\\Quillet\\uninstall.exe"), {"/S", "_?=C:\\Quillet"},
                             {});
        QVERIFY(remover.waitForFinished(patience));
        QCOMPARE(remover.exitCode(), static_cast<int>(noRights));
        QCOMPARE(filesOf(session->driveC() + QStringLiteral("/Quillet")), allFiles());
        QCOMPARE(displayName(), QStringLiteral("Quillet"));
    }

    // By hand there is a box, and then a page that says what to do.
    void thePagesOfTheInstallerSayThatItFailed()
    {
        QVERIFY(QDir().mkpath(folder() + QStringLiteral("/Qt5Network.dll")));
        QProcess installer;
        session->start(installer, WineSession::windowsPath(setup(QStringLiteral("present"))));
        const QString program = QFileInfo(setup(QStringLiteral("present"))).fileName();
        QVERIFY(session->waitForWindow(program, QStringLiteral("Quillet Setup")));
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        QVERIFY(pressAndWait(QStringLiteral("Return")));
        session->press(QStringLiteral("Return"));
        QTRY_VERIFY_WITH_TIMEOUT(displayName().contains(QStringLiteral("not installed")), patience);
        QVERIFY(waitForRest());
        QVERIFY(!session->screenshot(QStringLiteral("box")).isNull());
        QVERIFY(pressAndWait(QStringLiteral("Escape")));
        QVERIFY(!session->screenshot(QStringLiteral("page")).isNull());
        session->press(QStringLiteral("Escape"));
        QVERIFY(installer.waitForFinished(patience));
        QCOMPARE(installer.exitCode(), static_cast<int>(failed));
    }
};

QTEST_GUILESS_MAIN(InstallerTroubleStory)
#include "tst_installertrouble.moc"
