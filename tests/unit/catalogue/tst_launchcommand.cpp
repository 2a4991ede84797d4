#include "catalogue/launchcommand.h"

#include "env/identity.h"
#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

using namespace catalogue;

class LaunchCommandTest : public QuilletTest
{
    Q_OBJECT

    static constexpr const char* m_variables[] = {
        "programw6432", "programfiles(x86)", "programfiles", "windir", "systemroot", "system32",
        "system",       "homepath",          "temp",         "tmp"};

    // The remote form of a plain launch.
    static QStringList remote(const QString& file = QString(), const QStringList& arguments = QStringList(),
                              quint16 port = 0, const QSize& size = QSize())
    {
        return launchArguments(QStringLiteral("C:\\App\\app.exe"), arguments, file, 0, size, port,
                               QStringLiteral("linux"), QStringLiteral("apps.example.net"));
    }

    static QStringList local(const QStringList& arguments, const QString& file,
                             const QString& execPath = QStringLiteral("app.exe"))
    {
        return launchArguments(execPath, arguments, file, 0, QSize(), 0, QString(), QString());
    }

private slots:
    void init()
    {
        QuilletTest::init();
        for (const char* variable : m_variables) {
            if (qstrcmp(variable, "programw6432") != 0) // the settings lie there
                sandbox().setVariable(variable, QByteArray());
        }
        env::setCredentialsUserName(QStringLiteral("ana"));
        env::setCredentialsPassword(QStringLiteral("s3cret word"));
    }

    // --- expandEnvironment()

    void aTokenIsReplacedByItsVariable_data()
    {
        QTest::addColumn<QByteArray>("variable");
        for (const char* variable : m_variables)
            QTest::newRow(variable) << QByteArray(variable);
    }
    void aTokenIsReplacedByItsVariable()
    {
        QFETCH(QByteArray, variable);
        sandbox().setVariable(variable.constData(), "C:\\The Place");
        const QString token = QLatin1Char('%') + QString::fromLatin1(variable) + QLatin1Char('%');
        QCOMPARE(expandEnvironment(token + QStringLiteral("\\a.exe")),
                 QStringLiteral("C:\\The Place\\a.exe"));
        QCOMPARE(expandEnvironment(token.toUpper() + QStringLiteral("\\a.exe")),
                 QStringLiteral("C:\\The Place\\a.exe"));
        QCOMPARE(expandEnvironment(token + token), QStringLiteral("C:\\The PlaceC:\\The Place"));
    }

    void anUnsetVariableLeavesNothing_data() { aTokenIsReplacedByItsVariable_data(); }
    void anUnsetVariableLeavesNothing()
    {
        QFETCH(QByteArray, variable);
        sandbox().setVariable(variable.constData(), QByteArray());
        const QString token = QLatin1Char('%') + QString::fromLatin1(variable) + QLatin1Char('%');
        QCOMPARE(expandEnvironment(token + QStringLiteral("\\a.exe")), QStringLiteral("\\a.exe"));
    }

    void commandsAreExpanded_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("expanded");
        QTest::newRow("system32 in mixed case") << "%System32%\\calc.exe"
                                                << "\\calc.exe";
        QTest::newRow("no token") << "C:\\App\\app.exe"
                                  << "C:\\App\\app.exe";
        QTest::newRow("doubled backslashes") << "C:\\\\App\\\\app.exe"
                                             << "C:\\App\\app.exe";
        QTest::newRow("three backslashes") << "C:\\\\\\App"
                                           << "C:\\App";
        QTest::newRow("five backslashes") << "a\\\\\\\\\\b"
                                          << "a\\\\b"; // 5, 3, 2
        QTest::newRow("an unknown token") << "%foo%\\a.exe"
                                          << "foo\\a.exe";
        QTest::newRow("stray signs") << "100%%.exe%"
                                     << "100.exe";
        QTest::newRow("a sign alone") << "%"
                                      << "";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("a token cut short") << "%windir\\a.exe"
                                           << "windir\\a.exe";
        QTest::newRow("bare name") << "kwrite"
                                   << "kwrite";
    }
    void commandsAreExpanded()
    {
        QFETCH(QString, command);
        QTEST(expandEnvironment(command), "expanded");
    }

    void system32IsTakenFromTheEnvironmentWhenItIsThere()
    {
        sandbox().setVariable("system32", "C:\\Windows\\System32");
        QCOMPARE(expandEnvironment(QStringLiteral("%System32%\\calc.exe")),
                 QStringLiteral("C:\\Windows\\System32\\calc.exe"));
    }

    void backslashesThatMeetAfterTheReplacementBecomeOne()
    {
        sandbox().setVariable("windir", "C:\\Windows\\");
        QCOMPARE(expandEnvironment(QStringLiteral("%windir%\\notepad.exe")),
                 QStringLiteral("C:\\Windows\\notepad.exe"));
    }

    void longerTokensComeBeforeThoseTheyBeginWith()
    {
        sandbox().setVariable("programfiles(x86)", "X86");
        sandbox().setVariable("programfiles", "PF");
        sandbox().setVariable("system32", "S32");
        sandbox().setVariable("system", "S");
        QCOMPARE(expandEnvironment(QStringLiteral("%programfiles(x86)%|%programfiles%|%system32%|%system%")),
                 QStringLiteral("X86|PF|S32|S"));
    }

    void tokensAreReplacedInTheOrderOfTheTable()
    {
        // A value that itself looks like a token is expanded only by those that come later.
        sandbox().setVariable("programw6432", "%tmp%");
        sandbox().setVariable("tmp", "%programw6432%");
        QCOMPARE(expandEnvironment(QStringLiteral("%programw6432%")), QStringLiteral("programw6432"));
        for (size_t i = 0; i + 1 < std::size(m_variables); ++i) {
            for (const char* variable : m_variables)
                sandbox().setVariable(variable, QByteArray());
            sandbox().setVariable(m_variables[i],
                                  '%' + QByteArray(m_variables[i + 1]) + '%'); // the next one in the table
            sandbox().setVariable(m_variables[i + 1], "found");
            QCOMPARE(expandEnvironment(QLatin1Char('%') + QLatin1String(m_variables[i]) + QLatin1Char('%')),
                     QStringLiteral("found"));
            sandbox().setVariable(m_variables[i], "found");
            sandbox().setVariable(m_variables[i + 1], '%' + QByteArray(m_variables[i]) + '%');
            QCOMPARE(
                expandEnvironment(QLatin1Char('%') + QLatin1String(m_variables[i + 1]) + QLatin1Char('%')),
                QLatin1String(m_variables[i]));
        }
    }

    // --- needsRemote()

    void onlyWindowsHostsNeedNoRemoteClient_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("remote");
        QTest::newRow("localhost") << "localhost"
                                   << "windows" << false;
        QTest::newRow("any host") << "10.0.0.5"
                                  << "windows" << false;
        QTest::newRow("127.0.0.1") << "127.0.0.1"
                                   << "windows" << false;
        QTest::newRow("in any case") << "localhost"
                                     << "WinDows" << false;
        QTest::newRow("another system") << "localhost"
                                        << "linux" << true;
        QTest::newRow("a longer name") << "localhost"
                                       << "windows2012" << true;
        QTest::newRow("no system") << "localhost"
                                   << "" << true;
        QTest::newRow("no address") << ""
                                    << "windows" << false;
    }
    void onlyWindowsHostsNeedNoRemoteClient()
    {
        QFETCH(QString, address);
        QFETCH(QString, type);
        QTEST(needsRemote(address, type), "remote");
    }

    // --- The remote form

    void theRemoteListHasTwentyOneElements()
    {
        sandbox().writeSettings("SambaDomain=WARD\n");
        const QStringList list = launchArguments(
            QStringLiteral("C:\\App\\app.exe"), {QStringLiteral("-a"), QStringLiteral("-b")}, QString(), -7,
            QSize(1280, 1024), 4711, QStringLiteral("linux"), QStringLiteral("apps.example.net"));
        const QStringList expected = {
            QStringLiteral("-u"),
            QStringLiteral("ana"),
            QStringLiteral("-d"),
            QStringLiteral("WARD"),
            QStringLiteral("-p"),
            QStringLiteral("s3cret word"),
            QStringLiteral("-g"),
            QStringLiteral("1280x1024"),
            QStringLiteral("-X"),
            QStringLiteral("-7"),
            QStringLiteral("-s"),
            QStringLiteral(
                "%programfiles%\\Quillet\\fullscreenshell.exe \"C:\\App\\app.exe-a -b\" \"\" \"4711\""),
            QStringLiteral("--no-nla"),
            QStringLiteral("--plugin"),
            QStringLiteral("cliprdr"),
            QStringLiteral("--plugin"),
            QStringLiteral("rdpdr"),
            QStringLiteral("--data"),
            QStringLiteral("printer"),
            QStringLiteral("--"),
            QStringLiteral("apps.example.net"),
        };
        QCOMPARE(list, expected);
        QCOMPARE(list.size(), 21);
    }

    void theGeometryOfNoSizeIsMinusOne() { QCOMPARE(remote().at(7), QStringLiteral("-1x-1")); }

    void theShellLineOfAPlainStart()
    {
        QCOMPARE(remote(QString(), {QStringLiteral("-a"), QStringLiteral("-b")}).at(11),
                 QStringLiteral(
                     "%programfiles%\\Quillet\\fullscreenshell.exe \"C:\\App\\app.exe-a -b\" \"\" \"0\""));
        QCOMPARE(remote(QString(), {}, 65535).at(11),
                 QStringLiteral(
                     "%programfiles%\\Quillet\\fullscreenshell.exe \"C:\\App\\app.exe\" \"\" \"65535\""));
    }

    void theShellLinesFileIsTranslatedForTheServingHost_data()
    {
        QTest::addColumn<QString>("file"); // "~" stands for the home folder
        QTest::addColumn<QString>("translated");
        QTest::newRow("in the home folder") << "~/doc.odt"
                                            << "\\\\files\\ana\\doc.odt";
        QTest::newRow("in the shared folder") << "/shared/a/b.odt"
                                              << "\\\\files\\everybody\\a\\b.odt";
        QTest::newRow("elsewhere") << "D:/x/y.odt"
                                   << "D:\\x\\y.odt";
        QTest::newRow("another case") << "/Shared/x"
                                      << "\\Shared\\x";
        QTest::newRow("twice shared") << "/shared/shared/x"
                                      << "\\\\files\\everybody\\\\files\\everybody\\x";
        QTest::newRow("both") << "/shared~/x"
                              << "\\\\files\\everybody\\\\files\\ana\\x";
        QTest::newRow("with blanks and quotes") << "/a b/\"c\".odt"
                                                << "\\a b\\\"c\".odt";
    }
    void theShellLinesFileIsTranslatedForTheServingHost()
    {
        sandbox().writeSettings("SambaServer=files\nSambaSharedPath=\\\\everybody\n");
        QFETCH(QString, file);
        QFETCH(QString, translated);
        const QStringList list = remote(file.replace(QLatin1Char('~'), QDir::homePath()));
        QCOMPARE(list.size(), 21);
        QCOMPARE(list.at(11),
                 QStringLiteral(
                     "%programfiles%\\Quillet\\fullscreenshell.exe \"C:\\App\\app.exe\" \"\" \"0\" \"") +
                     translated + QLatin1Char('"'));
    }

    void theSharedFolderIsTranslatedBeforeTheHomeFolder()
    {
        // What comes in for the home folder is not looked at again.
        sandbox().writeSettings("SambaServer=files/shared\nSambaSharedPath=\\\\everybody\n");
        QCOMPARE(remote(QDir::homePath() + QStringLiteral("/x")).at(11).section(QLatin1Char('"'), 7, 7),
                 QStringLiteral("\\\\files\\shared\\ana\\x"));
    }

    void theRemoteListNeverHasTheAlternativeOptions()
    {
        QVERIFY(remote().contains(QStringLiteral("--no-nla")));
        QVERIFY(!remote().contains(QStringLiteral("-r")));
        QVERIFY(!remote().contains(QStringLiteral("sound:local")));
    }

    void theRemoteFormWinsOverTheChrootForm()
    {
        sandbox().writeSettings("ChrootEnvironment=true\n");
        QCOMPARE(remote().size(), 21);
    }

    void theRemoteFormNeedsAddressAndType_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("type");
        QTest::newRow("no address") << ""
                                    << "linux";
        QTest::newRow("no type") << "apps.example.net"
                                 << "";
        QTest::newRow("neither") << ""
                                 << "";
        QTest::newRow("windows") << "apps.example.net"
                                 << "windows";
    }
    void theRemoteFormNeedsAddressAndType()
    {
        QFETCH(QString, address);
        QFETCH(QString, type);
        QCOMPARE(launchArguments(QStringLiteral("app.exe"), {QStringLiteral("-a")}, QString(), 0, QSize(), 0,
                                 type, address),
                 QStringList(QStringLiteral("-a")));
    }

    // --- The local and chroot forms

    void theLocalFormIsTheArgumentsAndTheFile()
    {
        const QStringList arguments = {QStringLiteral("-a"), QStringLiteral("b/c")};
        QCOMPARE(local(arguments, QString()), arguments);
        QCOMPARE(local(arguments, QStringLiteral("C:/Users/ana/doc.odt")),
                 arguments + QStringList(QStringLiteral("C:\\Users\\ana\\doc.odt")));
        QCOMPARE(local({}, QString()), QStringList());
    }

    void theLocalFileIsNotTranslatedForAnotherHost()
    {
        sandbox().writeSettings("SambaServer=files\nSambaSharedPath=\\\\everybody\n");
        QCOMPARE(local({}, QStringLiteral("/shared/x.odt")), QStringList(QStringLiteral("\\shared\\x.odt")));
    }

    void theChrootFormNamesUserProgramArgumentsAndFile()
    {
        sandbox().writeSettings("ChrootEnvironment=1\n");
        QCOMPARE(
            local({QStringLiteral("-a")}, QStringLiteral("/h/x.odt"), QStringLiteral("  run  this app ")),
            QStringList({QStringLiteral("-p"), QStringLiteral("-c"), QStringLiteral("chroot:ana"),
                         QStringLiteral("--"), QStringLiteral("run"), QString(), QStringLiteral("this"),
                         QStringLiteral("app"), QStringLiteral("-a"), QStringLiteral("\\h\\x.odt")}));
        QCOMPARE(local({}, QString()),
                 QStringList({QStringLiteral("-p"), QStringLiteral("-c"), QStringLiteral("chroot:ana"),
                              QStringLiteral("--"), QStringLiteral("app.exe")}));
    }
};

QTEST_GUILESS_MAIN(LaunchCommandTest)
#include "tst_launchcommand.moc"
