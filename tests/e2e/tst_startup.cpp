// The shipped program on Windows, from its start to its first log line.
#include "support/logreader.h"
#include "support/sandbox.h"
#include "support/winesession.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QtTest>

class StartupStory : public QObject
{
    Q_OBJECT

private slots:
    // A clerk's session opens: the shell runs, with its entry in the clerk's log.
    void anOrdinaryUserGetsTheShell()
    {
        WineSession session(QStringLiteral("user"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        QProcess shell;
        // Neither style nor platform exists: the command line has no effect.
        session.startShell(shell, {"-style", "nosuch", "-platform", "nosuch", "--help"});
        LogReader log(session.home() + QStringLiteral("/.quillet.log"));
        QStringList seen;
        QVERIFY2(log.waitFor(QStringLiteral("Calling manager"), 60000, &seen),
                 qPrintable(seen.join('\n') + QString::fromLocal8Bit(shell.readAllStandardError())));
        QCOMPARE(seen, QStringList());

        const QList<QByteArray> lines =
            Sandbox::readFile(session.home() + QStringLiteral("/.quillet.log")).split('\n');
        QVERIFY2(lines.value(0).endsWith(" - Info: Calling manager"), lines.value(0));
        LogEntry entry;
        QVERIFY(parseLogLine(QString::fromLatin1(lines.value(0)), &entry));
        QVERIFY(entry.time >= before && entry.time <= QDateTime::currentDateTime());

        QVERIFY(!shell.waitForFinished(2000)); // it stays in its event loop
        QCOMPARE(session.screenshot(QStringLiteral("shell")).size(), QSize(1280, 800));
        for (const QString& window : session.windows())
            QVERIFY2(window.startsWith(QLatin1String("quillet.exe\t")), qPrintable(window));
        session.killShell(shell);
    }

    // An administrator logs on: the ordinary desktop comes up and the shell is gone.
    void anAdministratorGetsExplorer()
    {
        WineSession session(QStringLiteral("administrator"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        QVERIFY(!session.windows().join('\n').contains(QLatin1String("ExplorerWClass")));
        QProcess shell;
        session.startShellAsAdministrator(shell);
        QVERIFY(shell.waitForFinished(60000));
        QCOMPARE(shell.exitStatus(), QProcess::NormalExit);
        QCOMPARE(shell.exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(session.windows().join('\n').contains(QRegularExpression(
                                     QStringLiteral("explorer\\.exe\t\\w*ExplorerWClass"))),
                                 60000);
        QVERIFY(!QFile::exists(session.home() + QStringLiteral("/.quillet.log")));
        QVERIFY(!session.screenshot(QStringLiteral("explorer")).isNull());
    }

    // Files are not what they should be, and the log cannot be written: the shell starts all the same.
    void badFilesDoNotKeepTheShellFromStarting()
    {
        WineSession session(QStringLiteral("bad-files"));
        QVERIFY2(session.isRunning(), qPrintable(session.error()));
        const QByteArray noise = QByteArray("\xf0[a]=\\x,\0\xff", 9).repeated(1 << 17);
        const QString settings = session.driveC() + QStringLiteral("/Program Files/Tidewell Desktop");
        QVERIFY(QDir().mkpath(settings));
        Sandbox::writeFile(settings + QStringLiteral("/quillet.ini"), noise);
        Sandbox::writeFile(session.home() + QStringLiteral("/.credentials"), noise);
        Sandbox::writeFile(session.home() + QStringLiteral("/.tidewell.ini"), noise);
        QVERIFY(QDir().mkpath(session.home() + QStringLiteral("/.quillet.log/folder")));
        QProcess shell;
        shell.setProcessChannelMode(QProcess::MergedChannels);
        session.startShell(shell, QStringList(), {"QT_FORCE_STDERR_LOGGING=1"});
        QByteArray output;
        while (!output.contains(" - Info: Calling manager") && shell.waitForReadyRead(60000))
            output += shell.readAll();
        QVERIFY2(output.contains(" - Info: Calling manager"), output);
        QVERIFY(!shell.waitForFinished(1000));
        QCOMPARE(Sandbox::readFile(settings + QStringLiteral("/quillet.ini")), noise);
        QCOMPARE(Sandbox::readFile(session.home() + QStringLiteral("/.credentials")), noise);
        QCOMPARE(Sandbox::readFile(session.home() + QStringLiteral("/.tidewell.ini")), noise);
        QVERIFY(QDir(session.home() + QStringLiteral("/.quillet.log/folder")).exists());
        session.killShell(shell);
    }

    // The folder is all that a Windows without Qt needs.
    void everyLibraryIsInTheFolderOrPartOfWindows()
    {
        // What Windows has had since version 7.
        const QStringList windows = {
            "advapi32.dll", "crypt32.dll",  "d3d11.dll",   "d3d9.dll",   "dnsapi.dll",
            "dwmapi.dll",   "dwrite.dll",   "dxgi.dll",    "gdi32.dll",  "imm32.dll",
            "iphlpapi.dll", "kernel32.dll", "mpr.dll",     "msvcrt.dll", "netapi32.dll",
            "ole32.dll",    "oleaut32.dll", "shell32.dll", "user32.dll", "userenv.dll",
            "uxtheme.dll",  "version.dll",  "winmm.dll",   "ws2_32.dll", "wtsapi32.dll"};
        QStringList here;
        for (const QString& name : QDir(WineSession::dist()).entryList(QDir::Files))
            here.append(name.toLower());
        QVERIFY(here.contains(QStringLiteral("quillet.exe")));
        QDirIterator files(WineSession::dist(), {"*.exe", "*.dll"}, QDir::Files,
                           QDirIterator::Subdirectories);
        int imports = 0;
        while (files.hasNext()) {
            QProcess process;
            process.start(QStringLiteral("x86_64-w64-mingw32-objdump"), {"-p", files.next()});
            QVERIFY(process.waitForFinished());
            const QRegularExpression form(QStringLiteral("\tDLL Name: (\\S+)"));
            auto matches = form.globalMatch(QString::fromLatin1(process.readAllStandardOutput()));
            while (matches.hasNext()) {
                const QString name = matches.next().captured(1).toLower();
                QVERIFY2(here.contains(name) || windows.contains(name),
                         qPrintable(files.filePath() + ": " + name));
                ++imports;
            }
        }
        QVERIFY(imports > 20);
    }
};

QTEST_GUILESS_MAIN(StartupStory)
#include "tst_startup.moc"
