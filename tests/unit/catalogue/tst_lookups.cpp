#include "catalogue/cataloguefiles.h"

#include "env/inifile.h"
#include "support/quillettest.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest>

#ifndef Q_OS_WIN
#include <sys/inotify.h>
#include <unistd.h>
#endif

using namespace catalogue;

class LookupsTest : public QuilletTest
{
    Q_OBJECT

    QString file(const QString& name)
    {
        QString path = sandbox().scratch() + QLatin1Char('/') + name;
        Sandbox::writeFile(path, "x");
        return path;
    }

private slots:
    // --- Where the files lie

    void builtInPathsUseThePlatformsSeparator()
    {
        const QString folder = QStringLiteral(":/mime") + QDir::separator();
        QCOMPARE(applicationsPath(), folder + QStringLiteral("applications"));
        QCOMPARE(groupsPath(), folder + QStringLiteral("groups"));
        QCOMPARE(typesPath(), folder + QStringLiteral("types"));
        QCOMPARE(extensionsPath(), folder + QStringLiteral("extensions"));
        for (const QString& path : {applicationsPath(), groupsPath(), typesPath(), extensionsPath()})
            QVERIFY2(QFile::exists(path), qPrintable(path));
    }

    void theUsersFileLiesInTheHomeFolder()
    {
        QCOMPARE(userApplicationsPath(), QDir::homePath() + QStringLiteral("/.quillet/mime/applications"));
    }

    // --- applicationValue()

    void aBuiltInValueIsReadWithItsBackslashesSingle()
    {
        QCOMPARE(applicationValue(QStringLiteral("chrome"), QStringLiteral("command")),
                 QStringLiteral("%programfiles(x86)%\\Google\\Chrome\\Application\\chrome.exe"));
        QCOMPARE(applicationValue(QStringLiteral("ark"), QStringLiteral("command")), QStringLiteral("ark"));
    }

    void theBuiltInFileWinsOverTheUsers()
    {
        const QString builtIn = applicationValue(QStringLiteral("calculator"), QStringLiteral("command"));
        QVERIFY(!builtIn.isEmpty());
        sandbox().writeUserApplications("[calculator]\ncommand=evil.exe\n");
        QCOMPARE(env::readValue(userApplicationsPath(), QStringLiteral("calculator/command")),
                 QStringLiteral("evil.exe")); // it is there
        QCOMPARE(applicationValue(QStringLiteral("calculator"), QStringLiteral("command")), builtIn);
    }

    void theUsersFileFillsWhatTheBuiltInOneLeavesOut()
    {
        sandbox().writeUserApplications("[calculator]\nprotocol=rdp\n");
        QCOMPARE(applicationValue(QStringLiteral("calculator"), QStringLiteral("protocol")),
                 QStringLiteral("rdp"));
    }

    void theGuidesExampleOfAUsersFileGivesAnApplicationArguments()
    {
        const QString guide = QString::fromUtf8(Sandbox::readFile(QStringLiteral(GUIDE)));
        const QString page = guide.section(QStringLiteral("## The user's own applications file\n"), 1)
                                 .section(QStringLiteral("\n## "), 0, 0);
        QByteArray example;
        for (const QString& line : page.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1String("    ")))
                example += line.trimmed().toUtf8() + '\n';
        }
        sandbox().writeUserApplications(example);
        const QStringList ids = env::childGroups(userApplicationsPath());
        QVERIFY(!ids.isEmpty());
        const QString key = QStringLiteral("arguments");
        for (const QString& id : ids) {
            QVERIFY2(applicationIds().contains(id), qPrintable(id));
            const QString given = env::readValue(userApplicationsPath(), id + QLatin1Char('/') + key);
            QVERIFY(!given.isEmpty());
            QCOMPARE(applicationValue(id, key), given);
        }
    }

    void anApplicationOfTheUsersFileAloneHasEveryKeyButIsNotListed()
    {
        const QStringList keys = {QStringLiteral("os"),
                                  QStringLiteral("server"),
                                  QStringLiteral("command"),
                                  QStringLiteral("arguments"),
                                  QStringLiteral("icon"),
                                  QStringLiteral("name"),
                                  QStringLiteral("description"),
                                  QStringLiteral("description-es"),
                                  QStringLiteral("only-one-instance"),
                                  QStringLiteral("groups"),
                                  QStringLiteral("protocol")};
        QByteArray content = "[mine]\n";
        for (const QString& key : keys)
            content += key.toUtf8() + "=value of " + key.toUtf8() + '\n';
        sandbox().writeUserApplications(content);
        for (const QString& key : keys)
            QCOMPARE(applicationValue(QStringLiteral("mine"), key), QStringLiteral("value of ") + key);
        QVERIFY(!applicationIds().contains(QStringLiteral("mine")));
    }

    void whatNobodyHasIsEmpty()
    {
        QCOMPARE(applicationValue(QStringLiteral("nobody"), QStringLiteral("command")), QString());
        QCOMPARE(applicationValue(QStringLiteral("calculator"), QStringLiteral("nothing")), QString());
        QCOMPARE(applicationValue(QString(), QStringLiteral("command")), QString());
        QCOMPARE(applicationValue(QString(), QString()), QString());
        sandbox().writeUserApplications("[mine]\nname=Mine\n"); // without its other keys
        QCOMPARE(applicationValue(QStringLiteral("mine"), QStringLiteral("command")), QString());
    }

    void anEditOfTheUsersFileTakesEffectOnTheNextLookup()
    {
        sandbox().writeUserApplications("[mine]\nname=Before\n");
        QCOMPARE(applicationValue(QStringLiteral("mine"), QStringLiteral("name")), QStringLiteral("Before"));
        sandbox().writeUserApplications("[mine]\nname=And after\n");
        QCOMPARE(applicationValue(QStringLiteral("mine"), QStringLiteral("name")),
                 QStringLiteral("And after"));
    }

    void aUsersFileThatIsNoneIsCalm_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("zero bytes") << QByteArray(1000, '\0');
        QTest::newRow("no sections") << QByteArray("command=x\n=\n==\n");
        QTest::newRow("binary") << QByteArray("\xff\xfe[\x80mine]\n\\x\n\"");
        QTest::newRow("one long line") << QByteArray(1 << 20, '[');
    }
    void aUsersFileThatIsNoneIsCalm()
    {
        QFETCH(QByteArray, content);
        sandbox().writeUserApplications(content);
        QCOMPARE(applicationValue(QStringLiteral("mine"), QStringLiteral("name")), QString());
        QVERIFY(!applicationValue(QStringLiteral("calculator"), QStringLiteral("name")).isEmpty());
    }

    void aUsersFileOfTenThousandApplicationsIsRead()
    {
        QByteArray content;
        for (int i = 0; i < 10000; ++i)
            content += "[mine" + QByteArray::number(i) + "]\nname=Number " + QByteArray::number(i) + "\n\n";
        sandbox().writeUserApplications(content);
        QCOMPARE(applicationValue(QStringLiteral("mine9999"), QStringLiteral("name")),
                 QStringLiteral("Number 9999"));
    }

#ifndef Q_OS_WIN
    void aLookupOpensTheUsersFileOnceAndOnlyWhenTheBuiltInOneHasNothing()
    {
        sandbox().writeUserApplications("[mine]\nname=Mine\n");
        const int events = inotify_init1(IN_NONBLOCK);
        QVERIFY(events >= 0);
        QVERIFY(inotify_add_watch(events, QFile::encodeName(userApplicationsPath()), IN_OPEN) >= 0);
        const auto opens = [events] {
            char buffer[4096];
            const ssize_t size = read(events, buffer, sizeof buffer);
            return size < 0 ? 0 : static_cast<int>(static_cast<size_t>(size) / sizeof(inotify_event));
        };
        QVERIFY(!applicationValue(QStringLiteral("calculator"), QStringLiteral("command")).isEmpty());
        QCOMPARE(opens(), 0);
        QVERIFY(!applicationValue(QStringLiteral("mine"), QStringLiteral("name")).isEmpty());
        QCOMPARE(opens(), 1);
        ::close(events);
    }
#endif

    // --- applicationIds()

    void theIdsAreSorted()
    {
        const QStringList ids = applicationIds();
        QCOMPARE(ids.size(), 48);
        QStringList sorted = ids;
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(ids, sorted);
        QCOMPARE(ids.first(), QStringLiteral("acadlt2013")); // acrobatpro in the file
    }

    // --- preferredApplications()

    void preferredApplicationsAreTheTypesListInItsOrder_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QStringList>("ids");
        const auto list = [](const char* ids) { return QString::fromLatin1(ids).split(QLatin1Char(':')); };
        QTest::newRow("text/plain") << "text/plain" << list("kwrite:notepad");
        QTest::newRow("application/pdf") << "application/pdf" << list("acrobatreader:acrobatpro:okular");
        QTest::newRow("an id without a section") << "application/zip" << list("7zip:ark");
        QTest::newRow("a subtype with a sign") << "image/svg+xml" << list("chrome");
        QTest::newRow("a subtype with dots")
            << "application/vnd.oasis.opendocument.text" << list("libreofficewriter");
        QTest::newRow("no list: one empty id") << "inode/directory" << QStringList(QString());
        QTest::newRow("unknown: one empty id") << "application/unheard-of" << QStringList(QString());
        QTest::newRow("no type: one empty id") << "" << QStringList(QString());
        QTest::newRow("a link's pseudo-type") << "recursivelink" << QStringList(QString());
        QTest::newRow("slashes alone") << "//" << QStringList(QString());
    }
    void preferredApplicationsAreTheTypesListInItsOrder()
    {
        QFETCH(QString, type);
        QTEST(preferredApplications(type), "ids");
    }

    void theUsersAssociationsHaveNoSayInPreferredApplications()
    {
        QDir().mkpath(QDir::homePath() + QStringLiteral("/.quillet/mime"));
        Sandbox::writeFile(QDir::homePath() + QStringLiteral("/.quillet/mime/extensions"),
                           ".txt=chrome\n[text]\nplain=chrome\n");
        QCOMPARE(preferredApplications(QStringLiteral("text/plain")),
                 QStringList({QStringLiteral("kwrite"), QStringLiteral("notepad")}));
    }

    // --- The extension map. (It lives as long as the process: the first test sees it empty.)

    void anUnknownOrEmptyExtensionHasNoType_data()
    {
        QTest::addColumn<bool>("loaded");
        QTest::newRow("before loading") << false;
        QTest::newRow("after loading") << true;
    }
    void anUnknownOrEmptyExtensionHasNoType()
    {
        QFETCH(bool, loaded);
        if (loaded)
            loadExtensionMap();
        QCOMPARE(mimeTypeForExtension(QStringLiteral(".csv")).isEmpty(), !loaded);
        QVERIFY(mimeTypeForExtension(QString()).isNull());
        QVERIFY(mimeTypeForExtension(QStringLiteral("")).isNull());
        QCOMPARE(mimeTypeForExtension(QStringLiteral(".unheard-of")), QString());
    }

    void anExtensionsTypeHasNoBlankInFront_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("type");
        QTest::newRow("csv") << ".csv"
                             << "text/csv";
        QTest::newRow("pdf") << ".pdf"
                             << "application/pdf";
        QTest::newRow("first line") << ".123"
                                    << "application/vnd.lotus-1-2-3";
        QTest::newRow("docx") << ".docx"
                              << "application/vnd.openxmlformats-officedocument.wordprocessingml.document";
        QTest::newRow("case matters") << ".CSV"
                                      << "";
        QTest::newRow("with its dot") << "csv"
                                      << "";
        QTest::newRow("a prefix of others") << ".do"
                                            << "";
    }
    void anExtensionsTypeHasNoBlankInFront()
    {
        loadExtensionMap();
        QFETCH(QString, extension);
        QTEST(mimeTypeForExtension(extension), "type");
    }

    void everyLineOfTheFileIsInTheMap()
    {
        loadExtensionMap();
        const QList<QByteArray> lines = Sandbox::readFile(extensionsPath()).split('\n');
        QCOMPARE(lines.size(), 817);
        for (const QByteArray& line : lines) {
            const int colon = line.indexOf(": ");
            QCOMPARE(mimeTypeForExtension(QString::fromUtf8(line.left(colon))),
                     QString::fromUtf8(line.mid(colon + 2)));
        }
    }

    // --- mimeTypeForFile()

    void aFilesTypeFollowsItsSuffix_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("type");
        const QString unknown = QStringLiteral("application/octet-stream");
        QTest::newRow("pdf") << "a.pdf"
                             << "application/pdf";
        QTest::newRow("several dots") << "a.b.pdf"
                                      << "application/pdf";
        QTest::newRow("last line's extension") << "a.zip"
                                               << "application/zip";
        QTest::newRow("no suffix") << "readme" << unknown;
        QTest::newRow("a dot at the end") << "readme." << unknown;
        QTest::newRow("upper case") << "x.PDF" << unknown;
        QTest::newRow("unknown suffix") << "x.unheard-of" << unknown;
        QTest::newRow("hidden file of a known suffix") << ".pdf"
                                                       << "application/pdf";
        QTest::newRow("a blank in the suffix") << "x.p df" << unknown;
        QTest::newRow("letters of other scripts") << QString::fromUtf8("x.\u0434\u043e\u043a") << unknown;
        QTest::newRow("one of many with the same beginning") << "main.c"
                                                             << "text/x-csrc";
        QTest::newRow("quotes and signs") << "it's 100% & more;.csv"
                                          << "text/csv";
    }
    void aFilesTypeFollowsItsSuffix()
    {
        QFETCH(QString, name);
        QTEST(mimeTypeForFile(QFileInfo(file(name))), "type");
    }

    void aSuffixWithoutALineThatBeginsAnotherAnswersWithThatWholeLine()
    {
        QCOMPARE(mimeTypeForExtension(QStringLiteral(".do")), QString()); // no line of its own
        QString first;
        for (const QByteArray& line : Sandbox::readFile(extensionsPath()).split('\n')) {
            if (first.isEmpty() && line.startsWith(".do"))
                first = QString::fromUtf8(line);
        }
        QVERIFY(first.contains(QStringLiteral(": ")));
        QCOMPARE(mimeTypeForFile(QFileInfo(file(QStringLiteral("x.do")))), first);
    }

    void aFileThatIsNotThereIsJudgedByItsName()
    {
        QCOMPARE(mimeTypeForFile(QFileInfo(QStringLiteral("/no/such/file.csv"))), QStringLiteral("text/csv"));
        QCOMPARE(mimeTypeForFile(QFileInfo(QString())), QStringLiteral("application/octet-stream"));
    }

    void aVeryLongNameIsCalm()
    {
        const QString name = QString(100000, QLatin1Char('x'));
        QCOMPARE(mimeTypeForFile(QFileInfo(QLatin1Char('/') + name)),
                 QStringLiteral("application/octet-stream"));
        QCOMPARE(mimeTypeForFile(QFileInfo(QStringLiteral("/a.") + name)),
                 QStringLiteral("application/octet-stream"));
    }

    // On Windows these are shortcuts, which have a suffix of their own.
    static QString linkName(const QString& name)
    {
#ifdef Q_OS_WIN
        return name + QStringLiteral(".lnk");
#else
        return name;
#endif
    }

    void aChainOfLinksIsFollowedForTenSteps_data()
    {
        QTest::addColumn<int>("links");
        QTest::addColumn<QString>("type");
        QTest::newRow("1") << 1 << "application/pdf";
        QTest::newRow("9") << 9 << "application/pdf";
        QTest::newRow("10") << 10 << "application/pdf";
        QTest::newRow("11") << 11 << "recursivelink";
        QTest::newRow("30") << 30 << "recursivelink";
    }
    void aChainOfLinksIsFollowedForTenSteps()
    {
        QFETCH(int, links);
        QString target = file(QStringLiteral("end.pdf"));
        for (int i = 0; i < links; ++i) {
            const QString link = linkName(sandbox().scratch() + QStringLiteral("/link%1.txt").arg(i));
            QVERIFY(QFile::link(target, link));
            target = link;
        }
        QTEST(mimeTypeForFile(QFileInfo(target)), "type");
    }

#ifndef Q_OS_WIN // no shortcut can be made to what is not there yet
    void linksInACircleAreRecursive()
    {
        const QString a = sandbox().scratch() + QStringLiteral("/a.pdf");
        const QString b = sandbox().scratch() + QStringLiteral("/b.pdf");
        QVERIFY(QFile::link(a, b));
        QVERIFY(QFile::link(b, a));
        QCOMPARE(mimeTypeForFile(QFileInfo(a)), QStringLiteral("recursivelink"));
        const QString self = sandbox().scratch() + QStringLiteral("/self.pdf");
        QVERIFY(QFile::link(self, self));
        QCOMPARE(mimeTypeForFile(QFileInfo(self)), QStringLiteral("recursivelink"));
    }

#endif

    void aLinkToNothingIsJudgedByItsTargetsName()
    {
        const QString link = linkName(sandbox().scratch() + QStringLiteral("/link.pdf"));
        QVERIFY(QFile::link(file(QStringLiteral("gone.csv")), link));
        QVERIFY(QFile::remove(sandbox().scratch() + QStringLiteral("/gone.csv")));
        QCOMPARE(mimeTypeForFile(QFileInfo(link)), QStringLiteral("text/csv"));
    }
};

QTEST_GUILESS_MAIN(LookupsTest)
#include "tst_lookups.moc"
