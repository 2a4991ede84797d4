#include "env/inifile.h"
#include "support/quillettest.h"

#ifndef Q_OS_WIN
#include "support/forbidden.h"
#endif

#include <QDir>
#include <QtTest>

class IniFileTest : public QuilletTest
{
    Q_OBJECT

    QString file(const char* name) { return sandbox().scratch() + QLatin1Char('/') + QLatin1String(name); }
    QString fileWith(const char* name, const QByteArray& content)
    {
        Sandbox::writeFile(file(name), content);
        return file(name);
    }

private slots:
    void anEmptyKeyReadsNull()
    {
        const QString path = fileWith("a.ini", "x=1\n");
        QVERIFY(env::readValue(path, QString()).isNull());
        QVERIFY(env::readValue(path, QLatin1String("")).isNull());
        QVERIFY(env::readValueWithFallback(
                    path, [this] { return file("a.ini"); }, QString())
                    .isNull());
        QVERIFY(env::readValueWithFallback(
                    path, [this] { return file("a.ini"); }, QLatin1String(""))
                    .isNull());
    }

    void aValueIsReadFromTheTopLevelAndFromAGroup()
    {
        const QString path = fileWith("a.ini", "top=1\n[Group]\nkey=two words\n");
        QCOMPARE(env::readValue(path, QStringLiteral("top")), QStringLiteral("1"));
        QCOMPARE(env::readValue(path, QStringLiteral("Group/key")), QStringLiteral("two words"));
    }

    void aMissingKeyFileOrGroupReadsEmpty()
    {
        const QString path = fileWith("a.ini", "top=1\n");
        QCOMPARE(env::readValue(path, QStringLiteral("other")), QString());
        QCOMPARE(env::readValue(path, QStringLiteral("Group/top")), QString());
        QCOMPARE(env::readValue(file("none.ini"), QStringLiteral("top")), QString());
        QVERIFY(!QFile::exists(file("none.ini")));
    }

    void anEditTakesEffectOnTheNextRead()
    {
        const QString path = fileWith("a.ini", "key=before\n");
        QCOMPARE(env::readValue(path, QStringLiteral("key")), QStringLiteral("before"));
        fileWith("a.ini", "key=and after\n");
        QCOMPARE(env::readValue(path, QStringLiteral("key")), QStringLiteral("and after"));
        QVERIFY(QFile::remove(path));
        QCOMPARE(env::readValue(path, QStringLiteral("key")), QString());
    }

    void theFallbackIsNotLookedForWhenThePrimaryHasAValue()
    {
        bool asked = false;
        QCOMPARE(env::readValueWithFallback(
                     fileWith("primary.ini", "k=p\n"),
                     [&] {
                         asked = true;
                         return QString();
                     },
                     QStringLiteral("k")),
                 QStringLiteral("p"));
        QVERIFY(!asked);
    }

    void theFallbackIsUsedWhenThePrimaryValueIsEmpty_data()
    {
        QTest::addColumn<QByteArray>("primary"); // null: no such file
        QTest::addColumn<QByteArray>("fallback");
        QTest::addColumn<QString>("expected");
        QTest::newRow("both have it") << QByteArray("k=p\n") << QByteArray("k=f\n") << "p";
        QTest::newRow("primary lacks the key") << QByteArray("x=p\n") << QByteArray("k=f\n") << "f";
        QTest::newRow("primary's value is empty") << QByteArray("k=\n") << QByteArray("k=f\n") << "f";
        QTest::newRow("primary is no file") << QByteArray() << QByteArray("k=f\n") << "f";
        QTest::newRow("fallback is no file") << QByteArray("k=p\n") << QByteArray() << "p";
        QTest::newRow("neither has it") << QByteArray("x=p\n") << QByteArray("x=f\n") << "";
        QTest::newRow("neither is a file") << QByteArray() << QByteArray() << "";
    }
    void theFallbackIsUsedWhenThePrimaryValueIsEmpty()
    {
        QFETCH(QByteArray, primary);
        QFETCH(QByteArray, fallback);
        if (!primary.isNull())
            fileWith("primary.ini", primary);
        if (!fallback.isNull())
            fileWith("fallback.ini", fallback);
        QTEST(env::readValueWithFallback(
                  file("primary.ini"), [this] { return file("fallback.ini"); }, QStringLiteral("k")),
              "expected");
    }

    void childGroupsAreSortedAndLeaveOutTheTopLevel()
    {
        const QString path = fileWith("a.ini", "top=1\n[zebra]\nk=1\n[apple]\nk=2\n[mango]\nk=3\n");
        QCOMPARE(env::childGroups(path), QStringList({"apple", "mango", "zebra"}));
        QCOMPARE(env::childGroups(file("none.ini")), QStringList());
    }

    void valuesPerGroupHasOneValueForEveryGroupAlsoWhenEmpty()
    {
        const QString path =
            fileWith("a.ini", "name=top\n[b]\nname=second\n[c]\nother=x\n[a]\nname=first\n[d]\nname=\n");
        QCOMPARE(env::valuesPerGroup(path, QStringLiteral("name")), QStringList({"first", "second", "", ""}));
        QCOMPARE(env::valuesPerGroup(file("none.ini"), QStringLiteral("name")), QStringList());
    }

    void writeCreatesTheFileAndKeepsOtherKeys()
    {
        env::writeValue(file("new.ini"), QStringLiteral("UserToken"), QStringLiteral("abc"));
        QCOMPARE(Sandbox::readFile(file("new.ini")).replace("\r\n", "\n"),
                 QByteArray("[General]\nUserToken=abc\n"));
        env::writeValue(file("new.ini"), QStringLiteral("Group/key"), QStringLiteral("1"));
        QCOMPARE(env::readValue(file("new.ini"), QStringLiteral("UserToken")), QStringLiteral("abc"));
        QCOMPARE(env::readValue(file("new.ini"), QStringLiteral("Group/key")), QStringLiteral("1"));
    }

    void writingWithoutAKeyChangesNothing()
    {
        env::writeValue(file("none.ini"), QString(), QStringLiteral("x"));
        QVERIFY(!QFile::exists(file("none.ini")));
    }

    void whatIsWrittenIsReadBack_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("comma") << "a,b";
        QTest::newRow("semicolon") << "a;b";
        QTest::newRow("quotes") << "\"a\" 'b'";
        QTest::newRow("percent") << "100%20%PATH%";
        QTest::newRow("backslash") << "C:\\new\\x41\\";
        QTest::newRow("letters") << QString::fromUtf8("señal ß 漢字 😀");
        QTest::newRow("blanks") << "  both ends  ";
        QTest::newRow("at sign") << "@Invalid()";
        QTest::newRow("equals") << "a=b=";
        QTest::newRow("line feed") << "a\nb\r\n";
        QTest::newRow("empty") << "";
        QTest::newRow("long") << QString(100000, QLatin1Char('x'));
    }
    void whatIsWrittenIsReadBack()
    {
        QFETCH(QString, value);
        env::writeValue(file("w.ini"), QStringLiteral("UserToken"), value);
        // A copy under another name: Qt must not answer from its memory.
        QVERIFY(QFile::copy(file("w.ini"), file("copy.ini")));
        QCOMPARE(env::readValue(file("copy.ini"), QStringLiteral("UserToken")), value);
    }

    void aFileThatCannotBeWrittenStaysAsItIs()
    {
        QDir().mkpath(file("folder.ini/inside"));
        env::writeValue(file("folder.ini"), QStringLiteral("UserToken"), QStringLiteral("abc"));
        QVERIFY(QDir(file("folder.ini/inside")).exists());
        env::writeValue(file("a.txt/below.ini"), QStringLiteral("UserToken"), QStringLiteral("abc"));
    }

#ifndef Q_OS_WIN
    void aFolderThatCannotBeWrittenKeepsItsFileAsItIs()
    {
        env::writeValue(file("kept.ini"), QStringLiteral("UserToken"), QStringLiteral("kept"));
        const QByteArray before = Sandbox::readFile(file("kept.ini"));
        {
            const ForbiddenFolder folder(sandbox().scratch());
            env::writeValue(file("kept.ini"), QStringLiteral("UserToken"), QStringLiteral("lost"));
            env::writeValue(file("new.ini"), QStringLiteral("UserToken"), QStringLiteral("lost"));
        }
        QCOMPARE(Sandbox::readFile(file("kept.ini")), before);
        QVERIFY(!QFile::exists(file("new.ini")));
    }

    void aFileThatCannotBeReadHasNoKeys()
    {
        const QString path = fileWith("secret.ini", "k=v\n");
        QFile::setPermissions(path, QFile::Permissions());
        const ForbiddenFolder folder(sandbox().scratch());
        QCOMPARE(env::readValue(path, QStringLiteral("k")), QString());
        QCOMPARE(env::childGroups(path), QStringList());
    }
#endif

    void aFileThatIsNoIniFileHasNoSuchKey_data()
    {
        QByteArray noise;
        quint32 seed = 12345;
        for (int i = 0; i < 1 << 20; ++i) {
            seed = seed * 1664525u + 1013904223u;
            noise.append(static_cast<char>(seed >> 24));
        }
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("zeros") << QByteArray(4096, '\0');
        QTest::newRow("noise") << noise.left(4096);
        QTest::newRow("a megabyte of noise") << noise;
        QTest::newRow("a megabyte on one line") << QByteArray(1 << 20, 'x');
        QTest::newRow("a megabyte of groups") << QByteArray("[x]\n").repeated(1 << 18);
        QTest::newRow("unclosed group") << QByteArray("[Server");
        QTest::newRow("no line end, no value") << QByteArray("Server/Tidewell");
        QTest::newRow("escape at the end") << QByteArray("k=\\");
        QTest::newRow("quote at the end") << QByteArray("k=\"");
    }
    void aFileThatIsNoIniFileHasNoSuchKey()
    {
        QFETCH(QByteArray, content);
        const QString path = fileWith("noise.ini", content);
        QCOMPARE(env::readValue(path, QStringLiteral("Server/TidewellServerPort")), QString());
        env::childGroups(path);
        env::valuesPerGroup(path, QStringLiteral("k"));
        QCOMPARE(Sandbox::readFile(path), content); // reading changes nothing
    }

    void aFolderInTheFilesPlaceHasNoKeys()
    {
        QDir().mkpath(file("folder.ini"));
        QCOMPARE(env::readValue(file("folder.ini"), QStringLiteral("k")), QString());
        QCOMPARE(env::readValueWithFallback(
                     file("folder.ini"), [this] { return fileWith("f.ini", "k=f\n"); }, QStringLiteral("k")),
                 QStringLiteral("f"));
        QCOMPARE(env::childGroups(file("folder.ini")), QStringList());
    }
};

QTEST_GUILESS_MAIN(IniFileTest)
#include "tst_inifile.moc"
