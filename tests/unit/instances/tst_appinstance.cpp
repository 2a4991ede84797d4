#include "instances/appinstance.h"

#include "catalogue/cataloguefiles.h"
#include "env/identity.h"
#include "server/twclient.h"
#include "support/probereport.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class AppInstanceTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<TWClient> m_client;

    // Puts the probe where `path`, written as on Windows, leads. (Elsewhere a backslash is a letter like any
    // other.)
    static void installProbe(const QString& nativePath)
    {
        const QString path = QDir::fromNativeSeparators(nativePath);
        QDir().mkpath(QFileInfo(path).path());
        if (!QFile::copy(QStringLiteral(PROBE), path))
            qFatal("cannot copy the probe to %s", qPrintable(path));
    }

    QString reportPath() { return sandbox().scratch() + QStringLiteral("/report"); }

    // A folder that is alone in the PATH.
    QString programsOnThePath()
    {
        QString folder = sandbox().scratch() + QStringLiteral("/bin");
        QDir().mkpath(folder);
        sandbox().setVariable("PATH", QDir::toNativeSeparators(folder).toLocal8Bit());
        return folder;
    }

    // The catalogue's web browser is the probe; the catalogue has two arguments for it.
    void installBrowser()
    {
        const QString folder = QDir::toNativeSeparators(sandbox().scratch()) + QStringLiteral("_programs");
        sandbox().setVariable("programfiles(x86)", folder.toLocal8Bit());
        installProbe(folder + QStringLiteral("\\Google\\Chrome\\Application\\chrome.exe"));
    }

    // A server that has the probe as the application "probe", on a Windows host.
    void startServer()
    {
        m_server = std::make_unique<TwServer>();
        TwData::Application application;
        application.name = QStringLiteral("The probe");
        application.displayName = QString::fromUtf8("Sonda n\u00famero 1");
        application.execPath = sandbox().scratch() + QStringLiteral("/probe.exe");
        application.arguments = QStringLiteral("-a \"b c\"");
        application.server = QStringLiteral("here");
        application.icon = Sandbox::readFile(QStringLiteral(":/icons/64x64/logo.png"));
        m_server->data.applications.insert(QStringLiteral("probe"), application);
        m_server->data.servers.insert(QStringLiteral("here"),
                                      {QStringLiteral("127.0.0.1"), QStringLiteral("Windows")});
        QVERIFY(m_server->start());
        sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                                QByteArray::number(m_server->port()) + '\n');
        m_client = std::make_unique<TWClient>();
        QVERIFY(m_client->connectToServer());
        installProbe(QDir::toNativeSeparators(application.execPath));
    }

    // The log's messages at level Info, those of the server's byte arrays left out.
    QStringList log()
    {
        QStringList messages;
        for (const QByteArray& line : sandbox().log().split('\n')) {
            const QString message = QString::fromLocal8Bit(line).section(QStringLiteral(" - Info: "), 1);
            if (!message.isEmpty() && !message.contains(QStringLiteral(" size: ")))
                messages.append(message);
        }
        return messages;
    }

    // The requests from now on.
    QList<QByteArray> requestsSince(int count) { return m_server->requests().mid(count); }

    static void waitForEnd(const QSignalSpy& finished)
    {
        QVERIFY(QTest::qWaitFor([&] { return finished.count() == 1; }, 30000));
    }

    // Launches, waits for the end, and returns what the program was started with.
    ProbeReport run(AppInstance& instance)
    {
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        instance.launch(QSize(), 0);
        ProbeReport report = ProbeReport::take(reportPath());
        waitForEnd(finished);
        return report;
    }

private slots:
    void initTestCase() { qRegisterMetaType<QProcess::ExitStatus>("QProcess::ExitStatus"); } // for the spies

    void init()
    {
        QuilletTest::init();
        sandbox().setVariable("PROBE_REPORT", QDir::toNativeSeparators(reportPath()).toLocal8Bit());
        for (const char* variable : {"PROBE_EXIT", "PROBE_STAY", "OOO_FORCE_DESKTOP", "LANG"})
            sandbox().setVariable(variable, QByteArray());
        env::setCredentialsUserName(QStringLiteral("ana"));
        env::setCredentialsPassword(QStringLiteral("s3cret"));
    }

    void cleanup()
    {
        m_client.reset();
        m_server.reset();
        QuilletTest::cleanup();
    }

    // --- What an instance knows without a server

    void withoutAServerTheCatalogueTells()
    {
        const AppInstance instance(QStringLiteral("calculator"), nullptr);
        QCOMPARE(instance.server(), nullptr);
        QCOMPARE(instance.name(), QStringLiteral("calculator"));
        QCOMPARE(instance.applicationName(), QStringLiteral("Calculator"));
        QCOMPARE(instance.displayName(), QStringLiteral("Calculator"));
        QCOMPARE(instance.execPath(), QStringLiteral("%windir%\\system32\\calc.exe")); // not expanded
        QCOMPARE(instance.serverType(), QStringLiteral("windows"));
        QCOMPARE(instance.serverAddress(), QString());
        QCOMPARE(instance.preferredServer(), QString());
        QCOMPARE(instance.arguments(), QStringList());
        QCOMPARE(instance.processId(), quint64(0));
        QCOMPARE(instance.windowId(), 0);
        QCOMPARE(instance.file(), QString());
        QVERIFY(instance.onlyOne());
        QVERIFY(!instance.icon().pixmap(48).isNull());
        QCOMPARE(log(), QStringList(QStringLiteral("AppInstance. appName: calculator")));
    }

    void withoutAServerTheUsersFileTellsTheRest()
    {
        sandbox().writeUserApplications(
            "[mine]\ncommand=mine.exe\nos=linux\nname=Mine\nicon=kcalc.png\nserver=elsewhere\n");
        const AppInstance instance(QStringLiteral("mine"), nullptr);
        QCOMPARE(instance.execPath(), QStringLiteral("mine.exe"));
        QCOMPARE(instance.serverType(), QStringLiteral("linux"));
        QCOMPARE(instance.displayName(), QStringLiteral("Mine"));
        QCOMPARE(instance.serverAddress(), QString()); // the key "server" is not asked for
        QVERIFY(!instance.icon().isNull());
    }

    void anUnknownApplicationIsEmpty_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("unknown") << "nobody";
        QTest::newRow("empty") << "";
        QTest::newRow("a path") << "../../etc";
        QTest::newRow("signs") << "%1 & %2 = \"x\"";
        QTest::newRow("long") << QString(100000, QLatin1Char('x'));
    }
    void anUnknownApplicationIsEmpty()
    {
        QFETCH(QString, name);
        const AppInstance instance(name, nullptr);
        QCOMPARE(instance.name(), name);
        QCOMPARE(instance.execPath(), QString());
        QCOMPARE(instance.arguments(), QStringList());
        QVERIFY(instance.icon().isNull());
        QVERIFY(!instance.onlyOne());
        QCOMPARE(log(), QStringList(QStringLiteral("AppInstance. appName: ") + name));
    }

    void onlyTheExactValueTrueMeansOnlyOne_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("onlyOne");
        QTest::newRow("true") << QByteArray("true") << true;
        QTest::newRow("True") << QByteArray("True") << false;
        QTest::newRow("1") << QByteArray("1") << false;
        QTest::newRow("false") << QByteArray("false") << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    void onlyTheExactValueTrueMeansOnlyOne()
    {
        QFETCH(QByteArray, value);
        sandbox().writeUserApplications("[mine]\nonly-one-instance=" + value + '\n');
        QTEST(AppInstance(QStringLiteral("mine"), nullptr).onlyOne(), "onlyOne");
    }

    void catalogueArgumentsAreCutAtBlanksAlone()
    {
        sandbox().writeUserApplications("[mine]\narguments=\"  -a  'b c'   -d \"\n");
        QCOMPARE(AppInstance(QStringLiteral("mine"), nullptr).arguments(),
                 QStringList({QStringLiteral("-a"), QStringLiteral("'b"), QStringLiteral("c'"),
                              QStringLiteral("-d")}));
    }

    // --- What an instance knows with a server

    void theServerIsAskedInAFixedOrder()
    {
        startServer();
        const int before = m_server->requests().size();
        const AppInstance instance(QStringLiteral("probe"), m_client.get());
        const QList<QByteArray> expected = {"_byteArray_get_application_icon?probe",
                                            "get_application_exec_path?probe",
                                            "get_application_arguments?probe",
                                            "get_preferred_server?probe&0.5",
                                            "get_server_address?here",
                                            "get_server_type?here",
                                            "get_application_onlyone?probe",
                                            "get_application_name?probe",
                                            "get_application_display_name?probe"};
        QCOMPARE(requestsSince(before), expected);
        QCOMPARE(instance.server(), m_client.get());
        QCOMPARE(instance.execPath(), m_server->data.applications[QStringLiteral("probe")].execPath);
        QCOMPARE(instance.arguments(), QStringList({QStringLiteral("-a"), QStringLiteral("b c")}));
        QCOMPARE(instance.preferredServer(), QStringLiteral("here"));
        QCOMPARE(instance.serverAddress(), QStringLiteral("127.0.0.1"));
        QCOMPARE(instance.serverType(), QStringLiteral("Windows"));
        QCOMPARE(instance.applicationName(), QStringLiteral("The probe"));
        QCOMPARE(instance.displayName(), QString::fromUtf8("Sonda n\u00famero 1"));
        QVERIFY(!instance.onlyOne());
        QCOMPARE(instance.icon().pixmap(64).size(), QSize(64, 64));
        QCOMPARE(log(), QStringList(QStringLiteral("AppInstance. appName: probe")));
        // It is written before anything is asked: the icon's exchange has lines of its own.
        QVERIFY(sandbox().log().split('\n').first().endsWith(" - Info: AppInstance. appName: probe"));
    }

    void onlyTheReplyOneMeansOnlyOne_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("onlyOne");
        QTest::newRow("1") << QByteArray("1") << true;
        QTest::newRow("1 and white space") << QByteArray(" 1\r\n") << true;
        QTest::newRow("0") << QByteArray("0") << false;
        QTest::newRow("true") << QByteArray("true") << false;
        QTest::newRow("yes") << QByteArray("yes") << false;
        QTest::newRow("01") << QByteArray("01") << false;
        QTest::newRow("refusal") << QByteArray("Error: 1") << false;
    }
    void onlyTheReplyOneMeansOnlyOne()
    {
        startServer();
        QFETCH(QByteArray, reply);
        m_server->setFault("get_application_onlyone?", {TwFault::Instead, 0, reply});
        QTEST(AppInstance(QStringLiteral("probe"), m_client.get()).onlyOne(), "onlyOne");
    }

    void refusalsAreTakenAsTheyCome()
    {
        startServer();
        m_server->setFault("get_preferred_server?", {TwFault::Refused, 0, "no host is free"});
        const AppInstance instance(QStringLiteral("probe"), m_client.get());
        QCOMPARE(instance.preferredServer(), QStringLiteral("Error: no host is free"));
        QCOMPARE(instance.serverAddress(), QStringLiteral("Error: unknown server"));
        QCOMPARE(instance.serverType(), QStringLiteral("Error: unknown server"));
        QCOMPARE(instance.applicationName(), QStringLiteral("The probe")); // the sequence went on
        QCOMPARE(m_server->requests().last(), QByteArray("get_application_display_name?probe"));
    }

    void aServerThatGoesInTheMiddleLeavesTheRestEmpty()
    {
        startServer();
        m_server->setFault("get_application_arguments?", {TwFault::Close});
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        QVERIFY(!instance.execPath().isEmpty());
        QCOMPARE(instance.arguments(), QStringList());
        QCOMPARE(instance.serverType(), QString());
        QCOMPARE(instance.displayName(), QString());
    }

    void anIconThatIsNoPictureIsNull_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArray("Error: no icon");
        QTest::newRow("half a picture")
            << Sandbox::readFile(QStringLiteral(":/icons/64x64/logo.png")).left(40);
    }
    void anIconThatIsNoPictureIsNull()
    {
        startServer();
        QFETCH(QByteArray, bytes);
        m_server->data.applications[QStringLiteral("probe")].icon = bytes;
        QVERIFY(AppInstance(QStringLiteral("probe"), m_client.get()).icon().isNull());
    }

    void aClientThatIsNotConnectedLeavesEverythingEmpty()
    {
        TWClient client;
        const AppInstance instance(QStringLiteral("calculator"), &client);
        QCOMPARE(instance.name(), QStringLiteral("calculator"));
        QCOMPARE(instance.execPath() + instance.applicationName() + instance.displayName() +
                     instance.serverType() + instance.serverAddress() + instance.preferredServer(),
                 QString());
        QVERIFY(instance.icon().isNull());
        QVERIFY(!instance.onlyOne());
        QCOMPARE(log(), QStringList(QStringLiteral("AppInstance. appName: calculator")));
    }

    // --- Launch and end without a server

    void aLaunchPassesTheCataloguesArgumentsTwice()
    {
        installBrowser();
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QStringList once = instance.arguments();
        QCOMPARE(once.size(), 2);
        clearDebugOutput();
        const QSignalSpy gone(&instance, SIGNAL(deleteAppInstance()));
        QCOMPARE(run(instance).arguments, once + once);
        QCOMPARE(instance.arguments(), once + once);
        const QString program = QDir::toNativeSeparators(sandbox().scratch()) +
                                QStringLiteral("_programs\\Google\\Chrome\\Application\\chrome.exe");
        QCOMPARE(log(), QStringList({QStringLiteral("AppInstance. appName: chrome"),
                                     QStringLiteral("Launching: ") + program + QLatin1Char(' ') +
                                         (once + once).join(QLatin1Char(' '))}));
        QVERIFY(
            debugOutput().contains(QStringLiteral("Command: '") + instance.execPath() + QLatin1Char('\'')));
        QCOMPARE(instance.processId(), quint64(0)); // nobody to tell it to
        QCOMPARE(gone.count(), 0);
    }

    void anotherLaunchAppendsItsArgumentsOnceMore()
    {
        installBrowser();
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QStringList once = instance.arguments();
        run(instance);
        QCOMPARE(run(instance).arguments, once + once + once + once);
    }

    void theFileIsTheLastArgument()
    {
        installBrowser();
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        instance.setFile(QStringLiteral("C:/Users/ana/my doc.odt"));
        const QStringList arguments = run(instance).arguments;
        QCOMPARE(arguments.size(), 5);
        QCOMPARE(arguments.last(), QStringLiteral("C:\\Users\\ana\\my doc.odt"));
    }

    void theProgramRunsInTheHomeFolderInSpanish()
    {
        installBrowser();
        sandbox().setVariable("LANG", "fr_FR.UTF-8");
        sandbox().setVariable("PASSED_ON", "yes");
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const ProbeReport report = run(instance);
        QCOMPARE(report.environment.value(QStringLiteral("LANG")), QStringLiteral("es_ES.UTF-8"));
        QCOMPARE(report.environment.value(QStringLiteral("OOO_FORCE_DESKTOP")), QStringLiteral("kde4"));
        QCOMPARE(report.environment.value(QStringLiteral("PASSED_ON")), QStringLiteral("yes"));
        QCOMPARE(QFileInfo(report.folder).canonicalFilePath(),
                 QFileInfo(QDir::homePath()).canonicalFilePath());
        QCOMPARE(qgetenv("LANG"), QByteArray("fr_FR.UTF-8")); // our own stays
    }

    void theEndIsReportedWithItsExitCode()
    {
        installBrowser();
        sandbox().setVariable("PROBE_EXIT", "7");
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(!process.isNull());
        QCOMPARE(process->parent(), nullptr);
        waitForEnd(finished);
        QCOMPARE(finished.first().at(0).toInt(), 7);
        QCOMPARE(finished.first().at(1).value<QProcess::ExitStatus>(), QProcess::NormalExit);
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); })); // it deletes itself
        ProbeReport::take(reportPath());
    }

    void aKilledProgramHasCrashed()
    {
        installBrowser();
        sandbox().setVariable("PROBE_STAY", "1");
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        ProbeReport::take(reportPath());
        QCOMPARE(finished.count(), 0); // it runs
        process->kill();
        waitForEnd(finished);
        QCOMPARE(finished.first().at(1).value<QProcess::ExitStatus>(), QProcess::CrashExit);
    }

    void aProgramOutlivesItsInstance()
    {
        installBrowser();
        sandbox().setVariable("PROBE_STAY", "1");
        auto instance = std::make_unique<AppInstance>(QStringLiteral("chrome"), nullptr);
        const QPointer<QProcess> process(instance->launch(QSize(), 0));
        ProbeReport::take(reportPath());
        instance.reset();
        QVERIFY(!process.isNull());
        QVERIFY(!process->waitForFinished(300));
        QCOMPARE(process->state(), QProcess::Running);
        process->kill();
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); }, 30000));
    }

#ifdef Q_OS_LINUX
    void aProgramsInputIsOpenAndItsOutputGoesToTheNullDevice()
    {
        installBrowser();
        sandbox().setVariable("PROBE_STAY", "1");
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        QProcess* const process = instance.launch(QSize(), 0);
        ProbeReport::take(reportPath());
        const QString folder = QStringLiteral("/proc/%1/fd/").arg(process->processId());
        QCOMPARE(QFile::symLinkTarget(folder + QLatin1Char('1')), QStringLiteral("/dev/null"));
        QCOMPARE(QFile::symLinkTarget(folder + QLatin1Char('2')), QStringLiteral("/dev/null"));
        QVERIFY(QFile::symLinkTarget(folder + QLatin1Char('0')).contains(QStringLiteral("pipe:")));
        process->kill();
        waitForEnd(finished);
    }
#endif

#ifdef Q_OS_WIN
    void aProgramOfWindowsItselfRuns()
    {
        AppInstance instance(QStringLiteral("notepad"), nullptr);
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QCOMPARE(process->state(), QProcess::Running);
        // It ends when its window is closed, which it first has to have.
        QVERIFY(QTest::qWaitFor(
            [&] {
                if (process)
                    process->terminate();
                return finished.count() == 1;
            },
            30000));
        QCOMPARE(finished.first().at(1).value<QProcess::ExitStatus>(), QProcess::NormalExit);
    }
#endif

    void aProgramThatCannotStartNeverEnds_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::newRow("no such file") << QByteArray("C:\\\\nowhere\\\\nothing.exe");
        QTest::newRow("a folder") << QByteArray("/");
        QTest::newRow("no command") << QByteArray();
    }
    void aProgramThatCannotStartNeverEnds()
    {
        QFETCH(QByteArray, command);
        sandbox().writeUserApplications("[mine]\ncommand=" + command + '\n');
        AppInstance instance(QStringLiteral("mine"), nullptr);
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); })); // nor does it stay
        QTest::qWait(50);
        QCOMPARE(finished.count(), 0);
        QCOMPARE(log().size(), 2); // no word of it
    }

    // --- Launch and end with a server

    void startAndEndAreToldToTheServerAndLogged()
    {
        startServer();
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        const int before = m_server->requests().size();
        m_server->setFault("start_application?", {TwFault::Instead, 0, " noted \n"});
        m_server->setFault("end_application?", {TwFault::Refused, 0, "unheard of"});
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        sandbox().setVariable("PROBE_EXIT", "3");
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(instance.processId() != 0);
#ifndef Q_OS_WIN
        QCOMPARE(instance.processId(), static_cast<quint64>(process->processId()));
#endif
        const QByteArray pid = QByteArray::number(instance.processId());
        QCOMPARE(requestsSince(before), QList<QByteArray>{"start_application?probe&" + pid});
        const ProbeReport report = ProbeReport::take(reportPath());
        const QStringList once = {QStringLiteral("-a"), QStringLiteral("b c")};
        QCOMPARE(report.arguments, once + once);
        waitForEnd(finished);
        QCOMPARE(finished.first().first().toInt(), 3);
        QCOMPARE(requestsSince(before),
                 QList<QByteArray>({"start_application?probe&" + pid, "end_application?probe&" + pid}));
        const QString id = QString::fromLatin1(pid);
        QCOMPARE(
            log(),
            QStringList(
                {QStringLiteral("AppInstance. appName: probe"),
                 QStringLiteral("Launching: ") + instance.execPath() + QStringLiteral(" -a b c -a b c"),
                 QStringLiteral("start_application?probe&%1 with result: noted").arg(id),
                 QStringLiteral("Sending end_application?probe&%1 with result: Error: unheard of").arg(id)}));
    }

    void theNameIsTrimmedForTheServerAndNotInTheLog()
    {
        startServer();
        m_server->data.applications.insert(QStringLiteral(" probe "),
                                           m_server->data.applications[QStringLiteral("probe")]);
        AppInstance instance(QStringLiteral(" probe "), m_client.get());
        run(instance);
        const QByteArray pid = QByteArray::number(instance.processId());
        const QList<QByteArray> requests = m_server->requests();
        QVERIFY(requests.contains("get_application_exec_path? probe "));
        QCOMPARE(requests.mid(requests.size() - 2),
                 QList<QByteArray>({"start_application?probe&" + pid, "end_application?probe&" + pid}));
        QVERIFY(log().last().startsWith(QStringLiteral("Sending end_application? probe &")));
        QVERIFY(log().at(2).startsWith(QStringLiteral("start_application? probe &")));
    }

    void aProgramThatCannotStartIsToldToTheServerAllTheSame()
    {
        startServer();
        m_server->data.applications[QStringLiteral("probe")].execPath =
            QStringLiteral("C:\\nowhere\\nothing.exe");
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); }));
        QCOMPARE(m_server->requests().last(), QByteArray("start_application?probe&0"));
        QCOMPARE(log().last(), QStringLiteral("start_application?probe&0 with result: OK"));
    }

    void finishWithoutAConnectionTellsOnlyTheOwner_data()
    {
        QTest::addColumn<QString>("client");
        QTest::newRow("none") << "none";
        QTest::newRow("not connected") << "not connected";
        QTest::newRow("deleted") << "deleted";
    }
    void finishWithoutAConnectionTellsOnlyTheOwner()
    {
        QFETCH(QString, client);
        std::unique_ptr<TWClient> unconnected;
        if (client == QLatin1String("deleted"))
            startServer();
        else if (client == QLatin1String("not connected"))
            unconnected = std::make_unique<TWClient>();
        AppInstance instance(QStringLiteral("calculator"), m_client ? m_client.get() : unconnected.get());
        m_client.reset();
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        instance.finish(5, QProcess::CrashExit);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.first().at(0).toInt(), 5);
        QCOMPARE(finished.first().at(1).value<QProcess::ExitStatus>(), QProcess::CrashExit);
        QCOMPARE(instance.server(), unconnected.get());
        QCOMPARE(log(), QStringList(QStringLiteral("AppInstance. appName: calculator")));
        if (m_server)
            QVERIFY(!m_server->requests().contains("end_application?calculator&0"));
    }

    void theServersArgumentsArriveAsTheyWereMeant()
    {
        startServer();
        m_server->data.applications[QStringLiteral("probe")].arguments =
            QString::fromUtf8("plain \"two words\" 'say \"hi\"' C:\\path\\ \"C:\\with blank\\\" \"it's\" "
                              "\"\" \\\\server\\share \"\\\\\" \\\" ñandú \"日本 語\" %PATH% ^& *.txt");
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        const QStringList once = {QStringLiteral("plain"),
                                  QStringLiteral("two words"),
                                  QStringLiteral("say \"hi\""),
                                  QStringLiteral("C:\\path\\"),
                                  QStringLiteral("C:\\with blank\\"),
                                  QStringLiteral("it's"),
                                  QString(),
                                  QStringLiteral("\\\\server\\share"),
                                  QStringLiteral("\\\\"),
                                  QString::fromUtf8("\\ ñandú 日本"),
                                  QString::fromUtf8("語 %PATH% ^& *.txt")};
        QCOMPARE(instance.arguments(), once); // a quote after a backslash is a quote
        QCOMPARE(run(instance).arguments, once + once);
    }

    // --- Remote launches

    void aRemoteLaunchGivesTheClientTheCataloguesArgumentsFirst()
    {
        startServer();
        m_server->data.servers[QStringLiteral("here")] = {QStringLiteral("apps.example.net"),
                                                          QStringLiteral("linux")};
        m_server->data.applications[QStringLiteral("probe")].execPath = QStringLiteral("%windir%\\app.exe");
#ifdef Q_OS_WIN
        installProbe(programsOnThePath() + QStringLiteral("\\xfreerdp.exe"));
#else
        installProbe(programsOnThePath() + QStringLiteral("/xfreerdp"));
#endif
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        const QStringList arguments = run(instance).arguments;
        QCOMPARE(arguments, QStringList({QStringLiteral("-a"),
                                         QStringLiteral("b c"),
                                         QStringLiteral("-u"),
                                         QStringLiteral("ana"),
                                         QStringLiteral("-d"),
                                         QString(),
                                         QStringLiteral("-p"),
                                         QStringLiteral("s3cret"),
                                         QStringLiteral("-g"),
                                         QStringLiteral("-1x-1"),
                                         QStringLiteral("-X"),
                                         QStringLiteral("0"),
                                         QStringLiteral("-s"),
                                         QStringLiteral("%programfiles%\\Quillet\\fullscreenshell.exe "
                                                        "\"%windir%\\app.exe-a b c\" \"\" \"0\""),
                                         QStringLiteral("--no-nla"),
                                         QStringLiteral("--plugin"),
                                         QStringLiteral("cliprdr"),
                                         QStringLiteral("--plugin"),
                                         QStringLiteral("rdpdr"),
                                         QStringLiteral("--data"),
                                         QStringLiteral("printer"),
                                         QStringLiteral("--"),
                                         QStringLiteral("apps.example.net")}));
        QVERIFY(log().contains(QStringLiteral("Launching: xfreerdp ") + arguments.join(QLatin1Char(' '))));
        QVERIFY(debugOutput().contains(QStringLiteral("Command: '%windir%\\app.exe'")));
        QVERIFY(m_server->requests().last().startsWith("end_application?probe&"));
    }

    void aRemoteLaunchIsGivenSizePortAndTheSameEnvironment()
    {
        startServer();
        m_server->data.servers[QStringLiteral("here")] = {QStringLiteral("apps.example.net"),
                                                          QStringLiteral("linux")};
#ifdef Q_OS_WIN
        installProbe(programsOnThePath() + QStringLiteral("\\xfreerdp.exe"));
#else
        installProbe(programsOnThePath() + QStringLiteral("/xfreerdp"));
#endif
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        instance.setFile(QStringLiteral("/x/y.odt"));
        const QSignalSpy finished(&instance, SIGNAL(finished(int, QProcess::ExitStatus)));
        instance.launch(QSize(800, 600), 4711);
        const ProbeReport report = ProbeReport::take(reportPath());
        waitForEnd(finished);
        QCOMPARE(report.arguments.at(9), QStringLiteral("800x600"));
        QVERIFY(report.arguments.at(13).endsWith(QStringLiteral(" \"\" \"4711\" \"\\x\\y.odt\"")));
        QCOMPARE(report.environment.value(QStringLiteral("LANG")), QStringLiteral("es_ES.UTF-8"));
        QCOMPARE(report.environment.value(QStringLiteral("OOO_FORCE_DESKTOP")), QStringLiteral("kde4"));
    }

    // --- Chroot environments

    void aChrootLaunchHasNoRunnerAndFails()
    {
        installBrowser();
        sandbox().writeSettings("ChrootEnvironment=true\n");
        AppInstance instance(QStringLiteral("chrome"), nullptr);
        const QStringList once = instance.arguments();
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); }));
        QCOMPARE(log().last(), QStringLiteral("Launching:  ") + once.join(QLatin1Char(' ')) +
                                   QStringLiteral(" -p -c chroot:ana -- ") + instance.execPath() +
                                   QLatin1Char(' ') + once.join(QLatin1Char(' ')));
    }

    void aRemoteLaunchTakesTheClientInAChrootEnvironmentToo()
    {
        startServer();
        m_server->data.servers[QStringLiteral("here")] = {QStringLiteral("apps.example.net"),
                                                          QStringLiteral("linux")};
        AppInstance instance(QStringLiteral("probe"), m_client.get());
        sandbox().writeSettings("ChrootEnvironment=true\n");
        programsOnThePath(); // without a client
        const QPointer<QProcess> process(instance.launch(QSize(), 0));
        QVERIFY(QTest::qWaitFor([&] { return process.isNull(); }));
        const QStringList messages = log();
        QVERIFY(messages.at(1).startsWith(QStringLiteral("Launching: xfreerdp -a b c -u ana ")));
    }

    // --- The interface

    void theSignalsAndSlotStandInTheirOrder()
    {
        const QStringList expected = {QStringLiteral("finished(int,QProcess::ExitStatus)"),
                                      QStringLiteral("deleteAppInstance()"),
                                      QStringLiteral("finish(int,QProcess::ExitStatus)")};
        const QMetaObject& meta = AppInstance::staticMetaObject;
        QStringList found;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(found, expected);
    }
};

QTEST_MAIN(AppInstanceTest)
#include "tst_appinstance.moc"
