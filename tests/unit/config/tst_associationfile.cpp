// What the association editor writes, byte by byte.
#include "catalogue/application.h"
#include "support/mimeconfigtest.h"

#ifndef Q_OS_WIN
#include "support/forbidden.h"
#endif

#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QSignalSpy>
#include <QtTest>

namespace {

// Lines as the platform's files have them.
QByteArray lines(QByteArray text)
{
#ifdef Q_OS_WIN
    text.replace("\n", "\r\n");
#endif
    return text;
}

} // namespace

class AssociationFileTest : public MimeConfigTest
{
    Q_OBJECT

    void saveChanges()
    {
        expectQuestion(QMessageBox::Save);
        editor().accept();
    }

private slots:
    void theServersKeysAreWrittenAsShown_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char* extension, const QByteArray& bytes) {
            QTest::newRow(extension) << QString::fromUtf8(extension) << bytes;
        };
        row(".odt", "[General]\n.odt=b:a\n");
        row("odt", "[General]\nodt=b:a\n");
        row(".ODT", "[General]\n.ODT=b:a\n");
        row(".tar.gz", "[General]\n.tar.gz=b:a\n");
        row(".a_b-c", "[General]\n.a_b-c=b:a\n");
        row(" .odt", "[General]\n%20.odt=b:a\n");
        row(".a b", "[General]\n.a%20b=b:a\n");
        row(".c++", "[General]\n.c%2B%2B=b:a\n");
        row(".100%", "[General]\n.100%25=b:a\n");
        row(".a=b", "[General]\n.a%3Db=b:a\n");
        row(".a\\b", "[General]\n.a%5Cb=b:a\n");
        row(".a;b", "[General]\n.a%3Bb=b:a\n");
        row("[x]", "[General]\n%5Bx%5D=b:a\n");
        row(".\xC3\xB1", "[General]\n.%F1=b:a\n");
        row(".\xE6\x96\x87", "[General]\n.%U6587=b:a\n");
        // A slash begins a group.
        row(".a/b", "[.a]\nb=b:a\n");
        row(".a/b/c", "[.a]\nb\\c=b:a\n");
        row(".a/", "[General]\n.a=b:a\n");
        row("/.a", "[General]\n.a=b:a\n");
        row("General/.a", "[%General]\n.a=b:a\n");
        row(".odt: application/x.y", "[.odt%3A%20application]\nx.y=b:a\n");
    }
    void theServersKeysAreWrittenAsShown()
    {
        QFETCH(QString, extension);
        startServer();
        addExtension(QStringLiteral(".other"), "a");
        addExtension(extension, "a:b");
        connectServer();
        open();
        choose(extensions(), 1);
        QCOMPARE(shown(), QStringLiteral("a:b"));
        select(selected(), QStringLiteral("b"));
        click("upButton");
        saveChanges();
        QFETCH(QByteArray, bytes);
        QCOMPARE(file(), lines(bytes));
        QVERIFY(debugOutput().contains(QLatin1String("key: ") + extension));
    }

    void theBuiltInListsKeysAreWholeLines_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow(".pdf") << ".pdf: application/pdf"
                              << QByteArray("[.pdf%3A%20application]\npdf=calculator\n");
        QTest::newRow(".c++") << ".c++: text/x-c++src"
                              << QByteArray("[.c%2B%2B%3A%20text]\nx-c%2B%2Bsrc=calculator\n");
        QTest::newRow("the first") << ".123: application/vnd.lotus-1-2-3"
                                   << QByteArray("[.123%3A%20application]\nvnd.lotus-1-2-3=calculator\n");
    }
    void theBuiltInListsKeysAreWholeLines()
    {
        Application::setValidApplications({"calculator", "notepad"});
        open();
        QFETCH(QString, line);
        const int index = extensions()->findText(line);
        QVERIFY(index >= 0);
        choose(extensions(), index);
        choose(groups(), groups()->findData("utilities"));
        add(QStringLiteral("calculator"));
        saveChanges();
        QFETCH(QByteArray, bytes);
        QCOMPARE(file(), lines(bytes));
    }

    void theValueIsTheOrderedIdsAndThenTheDeletedOnes_data()
    {
        QTest::addColumn<QString>("changes"); // +id, -id, ^id: added, removed, moved up
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("reordered") << "^b" << QByteArray("b:a:c");
        QTest::newRow("reordered, one removed") << "^b -c" << QByteArray("b:a:!c");
        QTest::newRow("one added") << "+d" << QByteArray("a:b:c:d");
        QTest::newRow("added and moved up") << "+d ^d ^d" << QByteArray("a:d:b:c");
        QTest::newRow("one removed") << "-b" << QByteArray("a:c:!b");
        QTest::newRow("all removed") << "-b -a -c" << QByteArray("!b:!a:!c");
        QTest::newRow("removed and added again") << "-a +a" << QByteArray("b:c:a");
        QTest::newRow("added and removed again") << "+d -d" << QByteArray("!d");
    }
    void theValueIsTheOrderedIdsAndThenTheDeletedOnes()
    {
        startServer();
        data().groups[0].applications.append(QStringLiteral("d"));
        addExtension(QStringLiteral(".odt"), "a:b:c");
        connectServer();
        open();
        QFETCH(QString, changes);
        for (const QString& change : changes.split(QLatin1Char(' '))) {
            const QString id = change.mid(1);
            if (change.startsWith(QLatin1Char('+')))
                add(id);
            else if (change.startsWith(QLatin1Char('-')))
                remove(id);
            else {
                select(selected(), id);
                click("upButton");
            }
        }
        saveChanges();
        QFETCH(QByteArray, value);
        QCOMPARE(file(), lines("[General]\n.odt=" + value + '\n'));
    }

    void removingTheOnlyApplicationWritesTheRemovalAlone()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a");
        connectServer();
        open();
        remove(QStringLiteral("a"));
        saveChanges();
        QCOMPARE(file(), lines("[General]\n.odt=!a\n"));
    }

    void idsOfAllKindsAreEscapedAsIniFilesHaveThem_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QByteArray>("value");
        QTest::newRow("semicolon") << "x;y" << QByteArray("\"a:x;y\"");
        QTest::newRow("equals") << "x=y" << QByteArray("\"a:x=y\"");
        QTest::newRow("quote") << "x\"y" << QByteArray("a:x\\\"y");
        QTest::newRow("backslash") << "x\\y" << QByteArray("a:x\\\\y");
        QTest::newRow("blank") << "x y" << QByteArray("a:x y");
        QTest::newRow("percent and slash") << "x%/y" << QByteArray("a:x%/y");
        QTest::newRow("Latin") << QString::fromUtf8("x\xC3\xB1") << QByteArray("a:x\\xf1");
    }
    void idsOfAllKindsAreEscapedAsIniFilesHaveThem()
    {
        startServer();
        QFETCH(QString, id);
        addApplication(id, QStringLiteral("Strange"));
        data().groups[0].applications.append(id);
        addExtension(QStringLiteral(".odt"), "a");
        connectServer();
        open();
        add(id);
        saveChanges();
        QFETCH(QByteArray, value);
        QCOMPARE(file(), lines("[General]\n.odt=" + value + '\n'));
    }

    void otherKeysStay()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        QDir(sandbox().home()).mkpath(QStringLiteral(".quillet/mime"));
        Sandbox::writeFile(filePath(),
                           lines("[.pdf%3A%20application]\npdf=x:!y\n\n[General]\n.doc=y\n.odt=z\n"));
        open();
        remove(QStringLiteral("a"));
        saveChanges();
        QCOMPARE(file(), lines("[General]\n.doc=y\n.odt=b:!a\n\n[.pdf%3A%20application]\npdf=x:!y\n"));
    }

    void aDamagedFileKeepsWhatCanBeReadAndGetsTheNewKey_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        const QByteArray saved("[General]\n.doc=y\n.odt=b:!a\n");
        QTest::newRow("a line without a value") << QByteArray("[General]\n.doc=y\nnonsense\n") << saved;
        QTest::newRow("an open section") << QByteArray("[General]\n.doc=y\n[General\n") << saved;
        QTest::newRow("an open quote") << QByteArray("[General]\n.doc=y\n.gif=\"x")
                                       << QByteArray("[General]\n.doc=y\n.gif=x\n.odt=b:!a\n");
        QTest::newRow("no key") << QByteArray("[General]\n=x\n.doc=y\n")
                                << QByteArray("[General]\n=x\n.doc=y\n.odt=b:!a\n");
        QTest::newRow("zeros") << QByteArray("[General]\n.doc=y\n\0\0\0\n", 21) << saved;
        QTest::newRow("cut off") << QByteArray("[General]\n.doc=y\n.p") << saved;
        QTest::newRow("no text") << QByteArray("\x7F\x45LF\x02\xFF\xFE\0\x80", 9)
                                 << QByteArray("[General]\n.odt=b:!a\n");
        QTest::newRow("empty") << QByteArray() << QByteArray("[General]\n.odt=b:!a\n");
    }
    void aDamagedFileKeepsWhatCanBeReadAndGetsTheNewKey()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        QDir(sandbox().home()).mkpath(QStringLiteral(".quillet/mime"));
        QFETCH(QByteArray, before);
        Sandbox::writeFile(filePath(), lines(before));
        open();
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        remove(QStringLiteral("a"));
        saveChanges();
        QCOMPARE(saved.size(), 1);
        QFETCH(QByteArray, after);
        QCOMPARE(file(), lines(after));
    }

    void everyExtensionHasAKeyOfItsOwn()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        addExtension(QStringLiteral(".doc"), "c");
        connectServer();
        open();
        remove(QStringLiteral("a"));
        expectQuestion(QMessageBox::Save);
        choose(extensions(), 1);
        remove(QStringLiteral("c"));
        saveChanges();
        QCOMPARE(file(), lines("[General]\n.doc=!c\n.odt=b:!a\n"));
    }

    void aFileThatCannotBeWrittenIsNotNoticed()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        QDir().mkpath(filePath() + QStringLiteral("/a folder in its place"));
        open();
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        remove(QStringLiteral("a"));
        saveChanges();
        QCOMPARE(saved.size(), 1);
        QVERIFY(QDir(filePath() + QStringLiteral("/a folder in its place")).exists());
    }

#ifndef Q_OS_WIN
    void aHomeThatCannotBeWrittenIsNotNoticed()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        open();
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        remove(QStringLiteral("a"));
        {
            const ForbiddenFolder home(sandbox().home());
            saveChanges();
        }
        QCOMPARE(saved.size(), 1);
        QVERIFY(!QFile::exists(sandbox().home() + QStringLiteral("/.quillet")));
    }
#endif

    void theCatalogueDoesNotReadTheFile()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        addExtension(QStringLiteral(".doc"), "c");
        connectServer();
        open();
        remove(QStringLiteral("a"));
        expectQuestion(QMessageBox::Save);
        choose(extensions(), 1);
        choose(extensions(), 0);
        QCOMPARE(shown(), QStringLiteral("a:b"));
        QCOMPARE(file(), lines("[General]\n.odt=b:!a\n"));
    }
};

QTEST_MAIN(AssociationFileTest)
#include "tst_associationfile.moc"
