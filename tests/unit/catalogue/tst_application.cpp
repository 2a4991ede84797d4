#include "catalogue/application.h"

#include "catalogue/cataloguefiles.h"
#include "env/inifile.h"
#include "env/serverslot.h"
#include "server/twclient.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaMethod>
#include <QtTest>

#include <memory>

#ifndef Q_OS_WIN
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {

// As pixmaps hold a picture. (A picture that was one differs from its file where it is nearly transparent.)
QImage onScreen(const QImage& picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class ApplicationTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<TWClient> m_client;
    int m_requests = 0; // before the question

    void useServer()
    {
        m_server = std::make_unique<TwServer>();
        QVERIFY(m_server->start());
        sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                                QByteArray::number(m_server->port()) + '\n');
        m_client = std::make_unique<TWClient>();
        QVERIFY(m_client->connectToServer());
        env::setServerClient(m_client.get());
        m_requests = 0;
    }

    void leaveServer()
    {
        env::setServerClient(nullptr);
        m_client.reset();
        m_server.reset();
    }

    // The server answers `command` with these bytes.
    void answer(const QByteArray& command, const QByteArray& bytes)
    {
        m_server->setFault(command, {TwFault::Instead, 0, bytes});
        m_requests = m_server->requests().size();
    }

    QList<QByteArray> asked() { return m_server->requests().mid(m_requests); }

    // These ids are valid; joined with ",".
    static void setValid(const char* ids)
    {
        Application::setValidApplications(QString::fromUtf8(ids).split(QLatin1Char(',')));
    }

    static QStringList idsOf(const QList<Application*>& applications)
    {
        QStringList ids;
        for (const Application* application : applications)
            ids.append(application->id());
        qDeleteAll(applications);
        return ids;
    }

    static QStringList list(const char* ids) { return QString::fromUtf8(ids).split(QLatin1Char(':')); }

    QStringList log()
    {
        QStringList messages;
        for (const QByteArray& line : sandbox().log().split('\n')) {
            if (!line.isEmpty())
                messages.append(QString::fromLocal8Bit(line).section(QStringLiteral(" - "), 1));
        }
        return messages;
    }

private slots:
    void initTestCase() { catalogue::loadExtensionMap(); }

    void init()
    {
        QuilletTest::init();
        Application::setValidApplications(QStringList());
    }

    void cleanup()
    {
        leaveServer();
        QuilletTest::cleanup();
    }

    // --- The constructor

    void withoutAServerTheIconIsBuiltIn()
    {
        const Application application(QStringLiteral("kcalc"));
        QCOMPARE(application.id(), QStringLiteral("kcalc"));
        QCOMPARE(onScreen(application.icon().pixmap(64).toImage()),
                 onScreen(QImage(QStringLiteral(":/icons/applications/kcalc.png"))));
    }

    void everyBuiltInApplicationHasItsIcon()
    {
        for (const QString& id : catalogue::applicationIds())
            QVERIFY2(!Application(id).icon().pixmap(48).isNull(), qPrintable(id));
    }

    void theUsersFileHasNoSayInTheIcon()
    {
        sandbox().writeUserApplications("[mine]\nicon=kcalc.png\n");
        QVERIFY(Application(QStringLiteral("mine")).icon().isNull());
    }

    void anUnknownApplicationsIconIsNull()
    {
        QVERIFY(Application(QStringLiteral("nobody")).icon().isNull());
        QVERIFY(Application(QString()).icon().isNull());
    }

    void theServersIconIsAskedForAsBytes()
    {
        useServer();
        m_server->data.applications[QStringLiteral("kcalc")].icon =
            Sandbox::readFile(QStringLiteral(":/icons/64x64/logo.png"));
        const Application application(QStringLiteral("kcalc"));
        QCOMPARE(m_server->requests().last(), QByteArray("_byteArray_get_application_icon?kcalc"));
        QCOMPARE(onScreen(application.icon().pixmap(64).toImage()),
                 onScreen(QImage(QStringLiteral(":/icons/64x64/logo.png"))));
    }

    void aServersIconThatIsNoPictureIsNull()
    {
        useServer();
        m_server->data.applications[QStringLiteral("kcalc")].icon = "no picture";
        QVERIFY(Application(QStringLiteral("kcalc")).icon().isNull()); // and not the built-in one
    }

    void aClientThatIsNotConnectedGivesNoIcon()
    {
        TWClient client;
        env::setServerClient(&client);
        QVERIFY(Application(QStringLiteral("kcalc")).icon().isNull());
    }

    void itHasNoSignalsOrSlots()
    {
        const QMetaObject& meta = Application::staticMetaObject;
        QCOMPARE(meta.methodCount(), meta.methodOffset());
    }

    // --- Groups

    void withoutAServerGroupsAreTheSectionsAndTheirEnglishNames()
    {
        QCOMPARE(Application::groupIds(),
                 list("development:games:graphics:internet:multimedia:office:other:utilities"));
        QCOMPARE(Application::groupNames(),
                 list("Development:Games:Graphics Applications:Internet Applications:"
                      "Multimedia:Office:Other:Utilities"));
    }

    void theServersGroupIdsAreCutAtColons_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("ids");
        QTest::newRow("two") << QByteArray("a:b") << list("a:b");
        QTest::newRow("empty parts stay") << QByteArray("a::b:") << list("a::b:");
        QTest::newRow("one") << QByteArray("a") << list("a");
        QTest::newRow("an empty reply is one empty id") << QByteArray(" ") << QStringList(QString());
        QTest::newRow("refusal") << QByteArray("Error: no groups") << QStringList();
        QTest::newRow("a refusal is told by its case") << QByteArray("error: no") << list("error: no");
        QTest::newRow("a refusal is told by its colon") << QByteArray("Errors") << list("Errors");
    }
    void theServersGroupIdsAreCutAtColons()
    {
        useServer();
        QFETCH(QByteArray, reply);
        answer("get_application_group_ids", reply);
        QTEST(Application::groupIds(), "ids");
        QCOMPARE(asked(), QList<QByteArray>{"get_application_group_ids"});
    }

    void theServersGroupNamesLoseTheirLeadingWhiteSpace_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("a blank") << QByteArray("Office: Internet") << list("Office:Internet");
        QTest::newRow("more, and inside")
            << QByteArray("A:\t \nB b :  ") << QStringList({"A", "B b ", ""}); // the reply comes trimmed
        QTest::newRow("white space alone") << QByteArray("A:   :B") << list("A::B");
        QTest::newRow("refusal") << QByteArray("Error: no groups") << QStringList();
    }
    void theServersGroupNamesLoseTheirLeadingWhiteSpace()
    {
        useServer();
        QFETCH(QByteArray, reply);
        answer("get_application_groups", reply);
        QFETCH(QStringList, names);
        QCOMPARE(Application::groupNames(), names);
        QCOMPARE(asked(), QList<QByteArray>{"get_application_groups"});
    }

    // --- Names

    void displayNames()
    {
        sandbox().writeUserApplications("[mine]\nname=Mine\n");
        QCOMPARE(Application::displayName(QStringLiteral("calculator")), QStringLiteral("Calculator"));
        QCOMPARE(Application::displayName(QStringLiteral("mine")), QString()); // built-in only
        QCOMPARE(Application::displayName(QString()), QString());
        useServer();
        answer("get_application_display_name?", " El editor \n");
        QCOMPARE(Application::displayName(QStringLiteral("kwrite")), QStringLiteral("El editor"));
        QCOMPARE(asked(), QList<QByteArray>{"get_application_display_name?kwrite"});
        answer("get_application_display_name?", "Error: unknown");
        QCOMPARE(Application::displayName(QStringLiteral("kwrite")), QStringLiteral("Error: unknown"));
    }

    // --- The valid applications

    void theServersValidListIsCutAtCommasAndLogged_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("valid");
        QTest::newRow("two") << QByteArray("a,b") << list("a:b");
        QTest::newRow("empty fields stay") << QByteArray("a,b,,c") << list("a:b::c");
        QTest::newRow("colons do not cut") << QByteArray("a:b,c") << QStringList({"a:b", "c"});
        QTest::newRow("blanks stay") << QByteArray("a,  b  c") << QStringList({"a", "  b  c"});
        QTest::newRow("blank") << QByteArray(" \n") << QStringList();
        QTest::newRow("refusal") << QByteArray("Error: a,b") << QStringList();
    }
    void theServersValidListIsCutAtCommasAndLogged()
    {
        setValid("before");
        useServer();
        QFETCH(QByteArray, reply);
        QFETCH(QStringList, valid);
        answer("get_valid_applications", reply);
        Application::updateValidApplications();
        QCOMPARE(Application::validApplications(), valid);
        QCOMPARE(asked(), QList<QByteArray>{"get_valid_applications"});
        QCOMPARE(log().last(), QStringLiteral("Info: Valid applications: ") + valid.join(QLatin1Char(',')));
    }

    void aHugeValidListIsTakenAsFarAsItCame()
    {
        useServer();
        QByteArray reply = "application0";
        for (int i = 1; i < 10000; ++i)
            reply += ",application" + QByteArray::number(i);
        answer("get_valid_applications", reply);
        Application::updateValidApplications();
        // A text reply is what has come after the first wait: all of it, or its beginning.
        const QString taken = Application::validApplications().join(QLatin1Char(','));
        QVERIFY(taken.size() > 1000);
        QVERIFY(QString::fromLatin1(reply).startsWith(taken));
    }

    void withoutAServerTheCataloguesProgramsAreLookedFor()
    {
        setValid("before");
        const int lines = log().size();
        // The native separator is no backslash everywhere: there such a command is a bare one.
        QString command = catalogue::applicationValue(QStringLiteral("notepad"), QStringLiteral("command"));
        const QString folder = sandbox().scratch() + QStringLiteral("/windows/system32");
        QVERIFY(QDir().mkpath(folder));
        sandbox().setVariable(
            "windir",
            QDir::toNativeSeparators(sandbox().scratch() + QStringLiteral("/windows")).toLocal8Bit());
        sandbox().setVariable("PATH", folder.toLocal8Bit());
#ifdef Q_OS_WIN
        command = QStringLiteral("notepad.exe");
        for (const char* variable : {"programw6432", "programfiles", "programfiles(x86)"})
            sandbox().setVariable(variable, "Q:\\nowhere");
#endif
        Sandbox::writeFile(folder + QLatin1Char('/') + command, "x");
        clearDebugOutput();
        Application::updateValidApplications();
        QCOMPARE(Application::validApplications(), list("notepad"));
        QStringList expected;
        for (const QString& id : catalogue::applicationIds())
            expected.append(QStringLiteral("Application: ") + id);
        QCOMPARE(debugOutput(), expected);
        QCOMPARE(log().size(), lines); // nothing in the log
    }

#ifndef Q_OS_WIN
    void withoutAServerTheUsersFileIsOpenedForTheProtocolsAlone()
    {
        sandbox().writeUserApplications("[mine]\nname=Mine\n");
        const int events = inotify_init1(IN_NONBLOCK);
        QVERIFY(events >= 0);
        QVERIFY(inotify_add_watch(events, QFile::encodeName(catalogue::userApplicationsPath()), IN_OPEN) >=
                0);
        Application::updateValidApplications();
        char buffer[65536];
        const ssize_t size = read(events, buffer, sizeof buffer);
        const size_t opens = size < 0 ? 0 : static_cast<size_t>(size) / sizeof(inotify_event);
        QVERIFY2(opens >= 1 && opens <= 48, qPrintable(QString::number(opens)));
        ::close(events);
    }
#endif

    void withoutAServerTheUsersApplicationsAreNotListed()
    {
        sandbox().writeUserApplications("[mine]\ncommand=mine.exe\nos=windows\nserver=localhost\n");
        Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/mine.exe"), "x");
        sandbox().setVariable("PATH", QDir::toNativeSeparators(sandbox().scratch()).toLocal8Bit());
        Application::updateValidApplications();
        QVERIFY(!Application::validApplications().contains(QStringLiteral("mine")));
    }

    void theLauncherMayReplaceTheList()
    {
        const QStringList ids = list("b:a");
        Application::setValidApplications(ids);
        QCOMPARE(Application::validApplications(), ids);
    }

    void whileNothingIsValidEveryListIsEmpty()
    {
        QCOMPARE(Application::validApplications(), QStringList());
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".pdf"))), QStringList());
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("office"))), QStringList());
    }

    // --- Applications of a group

    void withoutAServerAGroupsApplicationsComeInTheValidListsOrder()
    {
        setValid("kwrite,nobody,kcalc,,calculator,gwenview");
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("utilities"))),
                 list("kwrite:kcalc:calculator"));
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("graphics"))), list("gwenview"));
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("Utilities"))), QStringList());
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("nobody's"))), QStringList());
        sandbox().writeUserApplications("[nobody]\ngroups=utilities\n"); // which has no say here
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("utilities"))),
                 list("kwrite:kcalc:calculator"));
    }

    void theServersGroupComesInItsOrderWithoutWhatIsNotValid()
    {
        setValid("a,b,,c");
        useServer();
        answer("get_applications_by_group?", "c:x:a::b:a");
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("office"))), list("c:a:b:a"));
        QCOMPARE(asked(),
                 QList<QByteArray>({"get_applications_by_group?office", "_byteArray_get_application_icon?c",
                                    "_byteArray_get_application_icon?a", "_byteArray_get_application_icon?b",
                                    "_byteArray_get_application_icon?a"}));
        answer("get_applications_by_group?", "Error: a:b");
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("office"))), QStringList());
        answer("get_applications_by_group?", "\n");
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("office"))), QStringList());
    }

    // --- Applications of an extension

    void withoutAServerApplicationsComeInTheCataloguesOrder()
    {
        setValid("okular,acrobatreader");
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".pdf"))), list("acrobatreader:okular"));
        QCOMPARE(Application::defaultApplication(QStringLiteral(".pdf")), QStringLiteral("acrobatreader"));
        setValid("okular");
        QCOMPARE(Application::defaultApplication(QStringLiteral(".pdf")), QStringLiteral("okular"));
        setValid("Okular,7zip");
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".pdf"))), QStringList());
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".zip"))),
                 list("7zip")); // though without a section
    }

    void anUnknownExtensionHasNoApplications_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("unknown") << ".unheard-of";
        QTest::newRow("without its dot") << "pdf";
        QTest::newRow("in capitals") << ".PDF";
        QTest::newRow("empty") << "";
        QTest::newRow("a dot") << ".";
        QTest::newRow("slashes") << ".a/b//";
        QTest::newRow("a line of the list") << ".pdf: application/pdf";
    }
    void anUnknownExtensionHasNoApplications()
    {
        setValid("okular,acrobatreader");
        QFETCH(QString, key);
        QCOMPARE(idsOf(Application::applicationsFor(key)), QStringList());
        QCOMPARE(Application::defaultApplication(key), QString());
        QVERIFY(Application::iconForFile(QFileInfo(QLatin1Char('x') + key)).isNull());
    }

    void theServersListLosesItsExclusionMarks_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("ids");
        const QStringList all = list("msword2013:libreofficewriter:a:b");
        QTest::newRow("marked and plain") << QByteArray("msword2013:!libreofficewriter:libreofficewriter")
                                          << list("msword2013:libreofficewriter");
        QTest::newRow("marked only") << QByteArray("msword2013:!libreofficewriter") << list("msword2013");
        QTest::newRow("marks in a row") << QByteArray("!a:!b:a:b") << list("a:b");
        QTest::newRow("the same mark twice") << QByteArray("!a:a:!a:b") << list("a:b");
        QTest::newRow("duplicates: the first stays") << QByteArray("b:a:b:a") << list("b:a");
        QTest::newRow("not valid") << QByteArray("x:a") << list("a");
        QTest::newRow("empty fields") << QByteArray(":a::") << list("a");
        QTest::newRow("a mark alone") << QByteArray("!:a") << list("a");
        QTest::newRow("refusal") << QByteArray("Error: a:b") << QStringList();
        QTest::newRow("nothing") << QByteArray("\n") << QStringList();
        QTest::newRow("commas do not cut") << QByteArray("a,b") << QStringList();
    }
    void theServersListLosesItsExclusionMarks()
    {
        setValid("libreofficewriter,msword2013,b,a,");
        useServer();
        QFETCH(QByteArray, reply);
        QFETCH(QStringList, ids);
        answer("get_applications?", reply);
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".doc"))), ids);
        QList<QByteArray> expected = {"get_applications?.doc"};
        for (const QString& id : ids)
            expected.append("_byteArray_get_application_icon?" + id.toUtf8());
        QCOMPARE(asked(), expected);
        QCOMPARE(Application::defaultApplication(QStringLiteral(".doc")), ids.value(0));
    }

    void theIconOfAFileIsThatOfItsDefaultApplication()
    {
        setValid("okular,acrobatreader");
        const QIcon icon = Application::iconForFile(QFileInfo(QStringLiteral("/some/where/x.y.pdf")));
        QCOMPARE(icon.pixmap(64).toImage(),
                 Application(QStringLiteral("acrobatreader")).icon().pixmap(64).toImage());
        QVERIFY(Application::iconForFile(QFileInfo(QStringLiteral("x.unheard-of"))).isNull());
        QVERIFY(Application::iconForFile(QFileInfo(QStringLiteral("x"))).isNull());
        QVERIFY(Application::iconForFile(QFileInfo()).isNull());
    }

    void theServerIsAskedForAFilesIconByItsExtension()
    {
        setValid("a,b");
        useServer();
        answer("get_applications?", "b:a");
        m_server->data.applications[QStringLiteral("b")].icon =
            Sandbox::readFile(QStringLiteral(":/icons/64x64/logo.png"));
        QVERIFY(!Application::iconForFile(QFileInfo(QStringLiteral("X.Y.DOC"))).isNull());
        QCOMPARE(asked(), QList<QByteArray>({"get_applications?.DOC", "_byteArray_get_application_icon?b",
                                             "_byteArray_get_application_icon?a",
                                             "_byteArray_get_application_icon?b"}));
    }

    // --- Types

    void aPathsTypeIsReadFromTheBuiltInExtensions()
    {
        QCOMPARE(Application::mimeType(QStringLiteral("/x/a.csv")), QStringLiteral("text/csv"));
        QCOMPARE(Application::mimeType(QString()), QStringLiteral("application/octet-stream"));
        useServer();
        m_requests = m_server->requests().size();
        QCOMPARE(Application::mimeType(QStringLiteral("/x/a.csv")), QStringLiteral("text/csv"));
        QCOMPARE(asked(), QList<QByteArray>());
    }

    // --- What the association editor asks

    void withoutAServerTheExtensionsListHasWholeLines()
    {
        const QStringList lines = Application::extensionsList();
        QCOMPARE(lines.join(QLatin1Char('\n')).toUtf8(), Sandbox::readFile(catalogue::extensionsPath()));
        QCOMPARE(lines.size(), 817);
        QVERIFY(lines.contains(QStringLiteral(".pdf: application/pdf")));
    }

    void theServersExtensionsListIsCutAtCommas_data()
    {
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("two") << QByteArray(".a,.b") << list(".a:.b");
        QTest::newRow("colons do not cut") << QByteArray(".a: x/y, .b") << QStringList({".a: x/y", " .b"});
        QTest::newRow("empty fields stay") << QByteArray(",,") << list("::");
        QTest::newRow("refusal") << QByteArray("Error: .a,.b") << QStringList();
        QTest::newRow("nothing") << QByteArray(" ") << QStringList(QString());
    }
    void theServersExtensionsListIsCutAtCommas()
    {
        useServer();
        QFETCH(QByteArray, reply);
        answer("get_application_extensions_list", reply);
        QTEST(Application::extensionsList(), "lines");
        QCOMPARE(asked(), QList<QByteArray>{"get_application_extensions_list"});
    }

    void nothingIsEverExcludedByTheBuiltInExtensions()
    {
        for (const char* key : {".pdf", ".pdf: application/pdf", "", "/", "unheard-of"})
            QCOMPARE(idsOf(Application::excludedApplications(QLatin1String(key))), QStringList());
    }

    void clearingAnAssociationChangesNothing()
    {
        const QByteArray before = Sandbox::readFile(catalogue::extensionsPath());
        setValid("okular,acrobatreader");
        for (const char* key : {".pdf", ".pdf: application/pdf", "", "unheard-of"})
            Application::clearAssociation(QLatin1String(key));
        QCOMPARE(Sandbox::readFile(catalogue::extensionsPath()), before);
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".pdf"))), list("acrobatreader:okular"));
        QCOMPARE(idsOf(Application::excludedApplications(QStringLiteral(".pdf"))), QStringList());
        QVERIFY(!QFileInfo::exists(sandbox().home() + QStringLiteral("/.quillet")));
    }

    // --- A client that is not connected

    void aClientThatIsNotConnectedGivesEmptyLists()
    {
        setValid("okular,acrobatreader,calculator");
        TWClient client;
        env::setServerClient(&client);
        QCOMPARE(Application::groupIds(), QStringList(QString()));
        QCOMPARE(Application::groupNames(), QStringList(QString()));
        QCOMPARE(Application::displayName(QStringLiteral("calculator")), QString());
        QCOMPARE(idsOf(Application::applicationsByGroup(QStringLiteral("utilities"))), QStringList());
        QCOMPARE(idsOf(Application::applicationsFor(QStringLiteral(".pdf"))), QStringList());
        QCOMPARE(Application::extensionsList(), QStringList(QString()));
        Application::updateValidApplications();
        QCOMPARE(Application::validApplications(), QStringList());
        QCOMPARE(log().last(), QStringLiteral("Info: Valid applications: "));
    }

    void aServerThatGoesInTheMiddleGivesEmptyAnswers()
    {
        setValid("a,b");
        useServer();
        m_server->setFault("get_applications?", {TwFault::HangUp});
        m_server->data.extensions.append({QStringLiteral(".doc"), list("a:b")});
        const QList<Application*> applications = Application::applicationsFor(QStringLiteral(".doc"));
        for (const Application* application : applications)
            QVERIFY(application->icon().isNull());
        QCOMPARE(idsOf(applications), list("a:b"));
        QCOMPARE(Application::groupIds(), QStringList(QString()));
    }
};

QTEST_MAIN(ApplicationTest)
#include "tst_application.moc"
