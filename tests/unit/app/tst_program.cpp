// The whole program, natively, on the simulated Windows.
#include "env/paths.h"
#include "support/logreader.h"
#include "support/quillettest.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <csignal>

class ProgramTest : public QuilletTest
{
    Q_OBJECT

    QProcess m_program;
    QProcessEnvironment m_environment;

    QString explorerRecord() { return sandbox().scratch() + QStringLiteral("/explorer-was-started"); }

    void start(const QStringList& arguments = QStringList())
    {
        m_program.setProcessEnvironment(m_environment);
        m_program.setReadChannel(QProcess::StandardError);
        m_program.setWorkingDirectory(sandbox().scratch());
        m_program.start(QStringLiteral(QUILLET_PROGRAM), arguments);
        QVERIFY(m_program.waitForStarted());
    }

    // Waits until the shell has written its first log entry; returns what came on the debug output by then.
    QStringList debugOutputUpToTheFirstEntry()
    {
        QByteArray output;
        while (!output.contains(" - Info: Calling manager\n") && m_program.waitForReadyRead())
            output += m_program.readAllStandardError();
        return QString::fromUtf8(output).split(QLatin1Char('\n'));
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_environment = QProcessEnvironment::systemEnvironment();
        // The ordinary desktop, as a program that leaves a trace.
        const QString bin = sandbox().scratch() + QStringLiteral("/bin");
        QDir().mkpath(bin);
        Sandbox::writeFile(bin + QStringLiteral("/explorer.exe"),
                           "#!/bin/sh\necho \"$# $*\" >'" + explorerRecord().toUtf8() + "'\n");
        QFile::setPermissions(bin + QStringLiteral("/explorer.exe"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_environment.insert(QStringLiteral("PATH"), bin + QLatin1Char(':') + qgetenv("PATH"));
        m_environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    }

    void cleanup()
    {
        m_program.kill();
        m_program.waitForFinished();
        QuilletTest::cleanup();
    }

    void anAdministratorGetsTheOrdinaryDesktopBeforeAnyQtApplicationExists()
    {
        m_environment.insert(QStringLiteral("SIMWIN_ADMINISTRATOR"), QStringLiteral("1"));
        // An application object would end the process with an error.
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("nosuch"));
        start();
        QVERIFY(m_program.waitForFinished());
        QCOMPARE(m_program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_program.exitCode(), 0);
        QTRY_COMPARE(QFile::exists(explorerRecord()) ? Sandbox::readFile(explorerRecord()) : QByteArray(),
                     QByteArray("0 \n")); // no arguments
        QCOMPARE(sandbox().log(), QByteArray());
    }

    void anAdministratorsExplorerOutlivesTheProgram()
    {
        m_environment.insert(QStringLiteral("SIMWIN_ADMINISTRATOR"), QStringLiteral("1"));
        Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/bin/explorer.exe"),
                           "#!/bin/sh\nwhile ! test -e go; do sleep 0.05; done\necho gone >'" +
                               explorerRecord().toUtf8() + "'\n");
        start();
        QVERIFY(m_program.waitForFinished()); // it does not wait for it
        QVERIFY(!QFile::exists(explorerRecord()));
        Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/go"), "");
        QTRY_VERIFY(QFile::exists(explorerRecord()));
    }

    void anAdministratorWithoutAnExplorerStillEndsWithZero()
    {
        m_environment.insert(QStringLiteral("SIMWIN_ADMINISTRATOR"), QStringLiteral("1"));
        m_environment.insert(QStringLiteral("PATH"), QStringLiteral("/nonexistent"));
        start();
        QVERIFY(m_program.waitForFinished());
        QCOMPARE(m_program.exitCode(), 0);
    }

    void everybodyElseGetsTheShell_data()
    {
        QTest::addColumn<QString>("administrator");
        QTest::addColumn<QString>("failing");
        QTest::newRow("no member") << ""
                                   << "";
        QTest::newRow("a member whose identifier cannot be made") << "1"
                                                                  << "CreateWellKnownSid";
        QTest::newRow("a member whose membership cannot be checked") << "1"
                                                                     << "CheckTokenMembership";
    }
    void everybodyElseGetsTheShell()
    {
        QFETCH(QString, administrator);
        QFETCH(QString, failing);
        m_environment.insert(QStringLiteral("SIMWIN_ADMINISTRATOR"), administrator);
        m_environment.insert(QStringLiteral("SIMWIN_FAIL"), failing);
        start();
        QVERIFY(LogReader(env::logPath()).waitFor(QStringLiteral("Calling manager"), 30000));
        QCOMPARE(m_program.state(), QProcess::Running); // in its event loop
        QVERIFY(!QFile::exists(explorerRecord()));
    }

    void aCommandLineThatCannotBeSplitEndsTheProcessWithMinusOne()
    {
        m_environment.insert(QStringLiteral("SIMWIN_FAIL"), QStringLiteral("CommandLineToArgvW"));
        start();
        QVERIFY(m_program.waitForFinished());
        QCOMPARE(m_program.exitCode(), 255); // -1 where exit codes have eight bits
        QCOMPARE(sandbox().log(), QByteArray());
        QVERIFY(!QFile::exists(explorerRecord()));
    }

    void argumentsHaveNoEffect()
    {
        start({"-platform", "nosuch", "-style", "nosuch", "--help", "/?", "-reverse"});
        QVERIFY(LogReader(env::logPath()).waitFor(QStringLiteral("Calling manager"), 30000));
        QCOMPARE(m_program.state(), QProcess::Running);
    }

    void thePreferredStyleIsUsedWhenThereIsOne()
    {
        m_environment.insert(QStringLiteral("QT_PLUGIN_PATH"), QStringLiteral(TEST_PLUGINS));
        start();
        const QStringList lines = debugOutputUpToTheFirstEntry();
        QCOMPARE(lines.value(0), QStringLiteral("Oxygen loaded!"));
        QCOMPARE(lines.value(1), QStringLiteral("test style installed"));
        QVERIFY(lines.value(2).endsWith(QLatin1String(" - Info: Calling manager")));
        QVERIFY(!sandbox().log().contains("Oxygen")); // debug output, not the log
    }

    void withoutThePreferredStyleTheDefaultStaysSilently()
    {
        start();
        const QStringList lines = debugOutputUpToTheFirstEntry();
        QVERIFY2(lines.value(0).endsWith(QLatin1String(" - Info: Calling manager")),
                 qPrintable(lines.value(0)));
    }

    void theLogGrowsAcrossRuns()
    {
        for (int run = 1; run <= 2; ++run) {
            start();
            QTRY_COMPARE_WITH_TIMEOUT(sandbox().log().count("Info: Calling manager\n"), run, 30000);
            m_program.kill();
            QVERIFY(m_program.waitForFinished());
        }
    }

    void badFilesDoNotKeepTheShellFromStarting_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("noise") << QByteArray("\x00\xff\xfe[[[===\\\\\n\r\x01", 15);
        QTest::newRow("a megabyte") << QByteArray("\xf0[a]=\\x,").repeated(1 << 17);
        QTest::newRow("empty") << QByteArray("");
    }
    void badFilesDoNotKeepTheShellFromStarting()
    {
        QFETCH(QByteArray, content);
        sandbox().writeSettings(content);
        sandbox().writeCredentials(content);
        sandbox().writeToken(content);
        Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/quillet_es.qm"), content);
        start();
        QVERIFY(LogReader(env::logPath()).waitFor(QStringLiteral("Calling manager"), 30000));
        QCOMPARE(m_program.state(), QProcess::Running);
        QCOMPARE(Sandbox::readFile(env::settingsPath()), content);
        QCOMPARE(Sandbox::readFile(env::credentialsPath()), content);
        QCOMPARE(Sandbox::readFile(env::tokenPath()), content);
    }

    void aHomeThatCannotBeWrittenLosesOnlyTheLogsFile()
    {
        m_environment.insert(QStringLiteral("HOME"), QStringLiteral("/proc")); // not even by root
        start();
        const QStringList lines = debugOutputUpToTheFirstEntry();
        QVERIFY2(lines.value(0).endsWith(QLatin1String(" - Info: Calling manager")),
                 qPrintable(lines.value(0)));
        QCOMPARE(m_program.state(), QProcess::Running);
    }

    void settingsThatCannotBeReadMeanNoServer()
    {
        // A file that is there and fails on every read, for root too.
        QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), env::settingsPath()));
        start();
        QVERIFY(LogReader(env::logPath()).waitFor(QStringLiteral("Starting session with user"), 30000));
        QCOMPARE(m_program.state(), QProcess::Running);
    }

    void foldersInTheFilesPlacesDoNotKeepTheShellFromStarting()
    {
        for (const QString& path : {env::settingsPath(), env::credentialsPath(), env::tokenPath(),
                                    env::logPath(), sandbox().scratch() + QStringLiteral("/quillet_es.qm")})
            QVERIFY(QDir().mkpath(path));
        start();
        QByteArray output;
        QTRY_VERIFY_WITH_TIMEOUT(
            (output += m_program.readAllStandardError()).contains(" - Info: Calling manager"), 30000);
        QCOMPARE(m_program.state(), QProcess::Running);
    }
};

QTEST_GUILESS_MAIN(ProgramTest)
#include "tst_program.moc"
