#include "env/identity.h"
#include "env/paths.h"
#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

class IdentityTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void init()
    {
        QuilletTest::init();
        env::setCredentialsUserName(QString());
        env::setCredentialsPassword(QString());
    }

    void theUserNameIsUSER()
    {
        sandbox().setVariable("USER", "ada");
        sandbox().setVariable("USERNAME", "clerk");
        QCOMPARE(env::userName(), QStringLiteral("ada"));
        QCOMPARE(debugOutput(), QStringList("Full username: ada"));
    }

    void theDebugOutputHasTheNameInUtf8()
    {
        const QString name = QString::fromUtf8("señora");
        sandbox().setVariable("USERNAME", name.toLocal8Bit());
        QCOMPARE(env::userName(), name);
        QCOMPARE(debugOutput(), QStringList(QStringLiteral("Full username: ") + name));
    }

    void withoutUSERItIsUSERNAME()
    {
        sandbox().setVariable("USER", QByteArray());
        QCOMPARE(env::userName(), QStringLiteral("clerk"));
        QCOMPARE(debugOutput(), QStringList("Full username: clerk"));
    }

    void anEmptyUSERCountsAsNone()
    {
        sandbox().setVariable("USER", "");
        QCOMPARE(env::userName(), QStringLiteral("clerk"));
    }

    void withNeitherItComesFromTheCredentialsFile()
    {
        sandbox().setVariable("USER", "");
        sandbox().setVariable("USERNAME", "");
        sandbox().writeCredentials("filed\nsecret\n");
        QCOMPARE(env::userName(), QStringLiteral("filed"));
        QCOMPARE(debugOutput(), QStringList("Falling back to getUserName()"));
    }

    void withNeitherItMayComeFromTheCache()
    {
        sandbox().setVariable("USER", QByteArray());
        sandbox().setVariable("USERNAME", QByteArray());
        env::setCredentialsUserName(QStringLiteral("set before"));
        QCOMPARE(env::userName(), QStringLiteral("set before"));
    }

    void theEnvironmentIsAskedBeforeTheCache()
    {
        env::setCredentialsUserName(QStringLiteral("set before"));
        QCOMPARE(env::userName(), QStringLiteral("clerk"));
    }

    void credentialsAreTheFirstTwoLines_data()
    {
        QTest::addColumn<QByteArray>("content"); // null: no such file
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("password");
        QTest::newRow("two lines") << QByteArray("ada\nsecret\n") << "ada"
                                   << "secret";
        QTest::newRow("no final newline") << QByteArray("ada\nsecret") << "ada"
                                          << "secret";
        QTest::newRow("CRLF stays a CR") << QByteArray("ada\r\nsecret\r\n") << "ada\r"
                                         << "secret\r";
        QTest::newRow("more lines") << QByteArray("ada\nsecret\nthird\n") << "ada"
                                    << "secret";
        QTest::newRow("one line") << QByteArray("ada\n") << "ada"
                                  << "";
        QTest::newRow("one line, no newline") << QByteArray("ada") << "ada"
                                              << "";
        QTest::newRow("empty file") << QByteArray("") << ""
                                    << "";
        QTest::newRow("blank first line") << QByteArray("\nsecret\n") << ""
                                          << "secret";
        QTest::newRow("blanks stay") << QByteArray(" ada \n se cret \n") << " ada "
                                     << " se cret ";
        QTest::newRow("UTF-8") << QByteArray("señora\ncontraseña\n") << QString::fromUtf8("señora")
                               << QString::fromUtf8("contraseña");
        QTest::newRow("no file") << QByteArray() << ""
                                 << "";
        QTest::newRow("huge") << QByteArray(1 << 20, 'n') + '\n' + QByteArray(1 << 20, 'p')
                              << QString(1 << 20, QLatin1Char('n')) << QString(1 << 20, QLatin1Char('p'));
    }
    void credentialsAreTheFirstTwoLines()
    {
        QFETCH(QByteArray, content);
        if (!content.isNull())
            sandbox().writeCredentials(content);
        QTEST(env::credentialsPassword(), "password");
        QTEST(env::credentialsUserName(), "name");
        if (!content.isNull())
            QCOMPARE(Sandbox::readFile(env::credentialsPath()), content); // never written
    }

    void binaryCredentialsAreReadWithoutHarm()
    {
        QByteArray noise;
        for (int i = 0; i < 65536; ++i)
            noise.append(static_cast<char>(i * 7919 >> 4));
        sandbox().writeCredentials(noise);
        env::credentialsUserName();
        env::credentialsPassword();
        QCOMPARE(Sandbox::readFile(env::credentialsPath()), noise);
    }

    void aFolderInTheCredentialsFilesPlaceReadsEmpty()
    {
        QDir().mkpath(env::credentialsPath());
        QCOMPARE(env::credentialsUserName(), QString());
        QCOMPARE(env::credentialsPassword(), QString());
    }

    void credentialsOnceReadAreKept()
    {
        sandbox().writeCredentials("ada\nsecret\n");
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("secret"));
        sandbox().writeCredentials("bob\nother\n");
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("secret"));
    }

    void anEmptyPasswordIsReadAgainOnEveryRequest()
    {
        sandbox().writeCredentials("ada\n");
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
        QCOMPARE(env::credentialsPassword(), QString());
        sandbox().writeCredentials("bob\nsecret\n");
        QCOMPARE(env::credentialsPassword(), QStringLiteral("secret"));
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
    }

    void aMissingFileIsTriedAgain()
    {
        QCOMPARE(env::credentialsUserName(), QString());
        sandbox().writeCredentials("ada\nsecret\n");
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
    }

    void settersReplaceTheCacheAndSpareTheFile()
    {
        sandbox().writeCredentials("ada\nsecret\n");
        env::setCredentialsUserName(QStringLiteral("set"));
        env::setCredentialsPassword(QStringLiteral("changed"));
        QCOMPARE(env::credentialsUserName(), QStringLiteral("set"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("changed"));
        env::setCredentialsPassword(QStringLiteral("again"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("again"));
        QCOMPARE(Sandbox::readFile(env::credentialsPath()), QByteArray("ada\nsecret\n"));
    }

    void anEmptyNameThatIsSetSendsTheNextRequestToTheFile()
    {
        env::setCredentialsUserName(QStringLiteral("set"));
        env::setCredentialsUserName(QString());
        sandbox().writeCredentials("ada\n");
        QCOMPARE(env::credentialsUserName(), QStringLiteral("ada"));
    }

    void thePlatformIsWindows() { QCOMPARE(env::platformName(), QStringLiteral("windows")); }
};

QTEST_GUILESS_MAIN(IdentityTest)
#include "tst_identity.moc"
