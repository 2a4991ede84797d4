#include "catalogue/validity.h"

#include "catalogue/cataloguefiles.h"
#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

using namespace catalogue;

class ValidityTest : public QuilletTest
{
    Q_OBJECT

    // Makes `folder`/`name`; on Windows `name` is the catalogue's command for a program along the PATH.
    void makeProgram(const QString& folder, const QString& name)
    {
        QVERIFY(QDir().mkpath(folder));
        Sandbox::writeFile(folder + QLatin1Char('/') + name, "x");
    }

    QString folder(int number) { return sandbox().scratch() + QStringLiteral("/folder %1").arg(number); }

    void setPath(const QStringList& folders)
    {
        sandbox().setVariable("PATH", folders.join(QLatin1Char(';')).toLocal8Bit());
    }

private slots:
    void whatCanBeStartedFollowsFileHostSystemAndProtocol_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<bool>("localHost");
        QTest::addColumn<QString>("os");
        QTest::addColumn<QString>("protocol");
        QTest::addColumn<bool>("valid");
        const auto row = [](bool exists, bool localHost, const char* os, const char* protocol, bool valid) {
            QTest::addRow("%s, %s host, os '%s', protocol '%s'", exists ? "there" : "not there",
                          localHost ? "local" : "other", os, protocol)
                << exists << localHost << os << protocol << valid;
        };
        row(true, true, "windows", "", true);
        row(true, true, "WINDOWS", "rdp", true);
        row(true, true, "linux", "", false);
        row(true, true, "linux", "rdp", false);
        row(true, true, "", "rdp", false);
        row(true, false, "windows", "", false);
        row(true, false, "windows", "rdp", true);
        row(true, false, "linux", "rdp", true);
        row(false, true, "windows", "", false);
        row(false, true, "windows", "rdp", false);
        row(false, false, "windows", "", false);
        row(false, false, "linux", "rdp", true);
    }
    void whatCanBeStartedFollowsFileHostSystemAndProtocol()
    {
        QFETCH(bool, exists);
        QFETCH(bool, localHost);
        QFETCH(QString, os);
        QFETCH(QString, protocol);
        makeProgram(folder(1), QStringLiteral("there.exe"));
        const QString path =
            folder(1) + (exists ? QStringLiteral("/there.exe") : QStringLiteral("/not there.exe"));
        QTEST(isValid(path, localHost, {QString(), os, protocol}), "valid");
    }

    void everyHostCountsAsLocal()
    {
        makeProgram(folder(1), QStringLiteral("a.exe"));
        for (const char* host : {"localhost", "127.0.0.1", "10.0.0.5", "apps.example.net", ""}) {
            const Place place = {QLatin1String(host), QStringLiteral("windows"), QStringLiteral("rdp")};
            QVERIFY(isValid(folder(1) + QStringLiteral("/a.exe"), place));
            QVERIFY(!isValid(folder(1) + QStringLiteral("/b.exe"), place)); // a protocol does not help
        }
    }

    // --- Along the PATH

    void aBareCommandIsLookedForAlongThePath()
    {
        sandbox().writeUserApplications("[mine]\ncommand=mine.exe\nos=windows\nserver=localhost\n");
        const QStringList ids(QStringLiteral("mine"));
        setPath({folder(1), QString(), folder(2), folder(3)});
        QCOMPARE(validAmong(ids), QStringList());
        makeProgram(folder(3), QStringLiteral("mine.exe"));
        QCOMPARE(validAmong(ids), ids);
        makeProgram(folder(2), QStringLiteral("mine.exe"));
        QCOMPARE(validAmong(ids), ids); // once
    }

    void thePathIsCutAtSemicolonsAlone()
    {
        sandbox().writeUserApplications("[mine]\ncommand=mine.exe\nos=windows\n");
        makeProgram(folder(1), QStringLiteral("mine.exe"));
        sandbox().setVariable("PATH", (folder(2) + QLatin1Char('|') + folder(1)).toLocal8Bit());
        QCOMPARE(validAmong({QStringLiteral("mine")}), QStringList());
        sandbox().setVariable("PATH", (folder(2) + QLatin1Char(';') + folder(1)).toLocal8Bit());
        QCOMPARE(validAmong({QStringLiteral("mine")}), QStringList(QStringLiteral("mine")));
    }

    void anotherSystemsProgramIsNotValidThoughItIsThere()
    {
        makeProgram(folder(1), QStringLiteral("ark"));
        setPath({folder(1)});
        QVERIFY(!validAmong(applicationIds()).contains(QStringLiteral("ark")));
    }

    void aBareCommandIsNotExpanded()
    {
        sandbox().setVariable("temp", "mine");
        sandbox().writeUserApplications("[mine]\ncommand=%temp%.exe\nos=windows\n");
        makeProgram(folder(1), QStringLiteral("mine.exe"));
        setPath({folder(1)});
        QCOMPARE(validAmong({QStringLiteral("mine")}), QStringList());
    }

    void noPathIsCalm()
    {
        sandbox().setVariable("PATH", QByteArray());
        sandbox().writeUserApplications("[mine]\ncommand=no such program.exe\nos=windows\n");
        QCOMPARE(validAmong({QStringLiteral("mine"), QString(), QStringLiteral("nobody")}), QStringList());
    }

    // --- With a folder

    void aCommandWithAFolderIsExpandedAndNotLookedFor()
    {
        const QString program =
            QDir::toNativeSeparators(sandbox().scratch() + QStringLiteral("/in/mine.exe"));
        sandbox().setVariable("tmp", QDir::toNativeSeparators(sandbox().scratch()).toLocal8Bit());
        const QByteArray separator = QDir::separator() == QLatin1Char('/') ? "/" : "\\\\";
        sandbox().writeUserApplications("[mine]\ncommand=%TMP%" + separator + "in" + separator +
                                        "mine.exe\nos=Windows\nserver=elsewhere\n");
        const QStringList ids(QStringLiteral("mine"));
        QCOMPARE(validAmong(ids), QStringList());
        makeProgram(sandbox().scratch() + QStringLiteral("/in"), QStringLiteral("mine.exe"));
        QCOMPARE(validAmong(ids), ids);
        QVERIFY(QFile::remove(program));
        setPath({sandbox().scratch() + QStringLiteral("/path")});
        makeProgram(sandbox().scratch() + QStringLiteral("/path/in"), QStringLiteral("mine.exe"));
        QCOMPARE(validAmong(ids), QStringList());
    }

    void aWindowsEntryOfTheUsersFileNeedsItsSystem()
    {
        makeProgram(folder(1), QStringLiteral("mine.exe"));
        setPath({folder(1)});
        sandbox().writeUserApplications("[mine]\ncommand=mine.exe\n"); // without one
        QCOMPARE(validAmong({QStringLiteral("mine")}), QStringList());
    }

    // --- The catalogue's own

    void everyIdIsNamedInTheDebugOutputInOrder()
    {
        clearDebugOutput();
        validAmong({QStringLiteral("notepad"), QStringLiteral("ark")});
        QCOMPARE(debugOutput(),
                 QStringList({QStringLiteral("Application: notepad"), QStringLiteral("Application: ark")}));
    }

#ifdef Q_OS_WIN
    void windowsOwnProgramsAreValid()
    {
        const QStringList valid = validAmong(applicationIds());
        QVERIFY(valid.contains(QStringLiteral("notepad")));
        for (const QString& id : valid)
            QCOMPARE(applicationValue(id, QStringLiteral("os")), QStringLiteral("windows"));
    }
#endif
};

QTEST_GUILESS_MAIN(ValidityTest)
#include "tst_validity.moc"
