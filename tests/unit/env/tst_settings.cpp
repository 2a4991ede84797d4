#include "env/paths.h"
#include "env/settings.h"
#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

class SettingsTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void everyKeyIsReadFromItsPlace_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");
        QTest::newRow("port") << env::key::serverPort << "8000";
        QTest::newRow("address") << env::key::serverAddress << "tide.example";
        QTest::newRow("behaviour") << env::key::windowManagerBehaviour << "standard";
        QTest::newRow("samba server") << env::key::sambaServer << "files";
        QTest::newRow("samba shared path") << env::key::sambaSharedPath << "\\shared";
        QTest::newRow("samba domain") << env::key::sambaDomain << "OFFICE";
        QTest::newRow("chroot") << env::key::chrootEnvironment << "true";
    }
    void everyKeyIsReadFromItsPlace()
    {
        sandbox().writeSettings(
            "SambaServer=files\nSambaSharedPath=\\\\shared\nSambaDomain=OFFICE\n"
            "ChrootEnvironment=true\n[Server]\nTidewellServerPort=8000\n"
            "TidewellServerAddress=tide.example\n[Desktop]\nWindowManagerBehaviour=standard\n");
        QFETCH(QString, key);
        QTEST(env::readSetting(key), "expected");
    }

    void anEmptyKeyReadsNull()
    {
        sandbox().writeSettings("x=1\n");
        QVERIFY(env::readSetting(QString()).isNull());
    }

    void withoutProgramFilesEverythingReadsEmptyAndThePortIsZero()
    {
        sandbox().writeSettings(
            "SambaServer=files\nChrootEnvironment=1\n[Server]\nTidewellServerPort=8000\n");
        sandbox().setVariable("PROGRAMW6432", QByteArray());
        for (const char* key :
             {env::key::serverPort, env::key::serverAddress, env::key::windowManagerBehaviour,
              env::key::sambaServer, env::key::sambaSharedPath, env::key::sambaDomain,
              env::key::chrootEnvironment})
            QCOMPARE(env::readSetting(QLatin1String(key)), QString());
        QVERIFY(!env::readBooleanSetting(QLatin1String(env::key::chrootEnvironment)));
        QCOMPARE(env::serverPort(), 0);
    }

    void aNumberButZeroOrTheWordTrueIsTrue_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("expected");
        for (const char* value : {"1", "2", "-1", "+5", "007", "TRUE", "True", "true", "tRuE"})
            QTest::newRow(value) << value << true;
        for (const char* value :
             {"0", "-0", "00", "yes", "on", "false", "true!", "0x10", "1.5", "99999999999"})
            QTest::newRow(value) << value << false;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("null") << QString() << false;
    }
    void aNumberButZeroOrTheWordTrueIsTrue()
    {
        QFETCH(QString, value);
        QTEST(env::isTrue(value), "expected");
    }

    void aBooleanSettingIsReadByThatRule_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("expected");
        for (const char* value : {"1", "2", "-1", "TRUE", "True"})
            QTest::newRow(value) << "ChrootEnvironment=" + QByteArray(value) << true;
        for (const char* value : {"0", "yes", ""})
            QTest::newRow(value) << "ChrootEnvironment=" + QByteArray(value) << false;
        QTest::newRow("missing") << QByteArray() << false;
    }
    void aBooleanSettingIsReadByThatRule()
    {
        QFETCH(QByteArray, line);
        sandbox().writeSettings(line + '\n');
        QTEST(env::readBooleanSetting(QLatin1String(env::key::chrootEnvironment)), "expected");
    }

    void aPortThatIsNoNumberIsZero_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("expected");
        QTest::newRow("port") << QByteArray("8000") << 8000;
        QTest::newRow("abc") << QByteArray("abc") << 0;
        QTest::newRow("zero") << QByteArray("0") << 0;
        QTest::newRow("negative") << QByteArray("-5") << -5;
        QTest::newRow("empty") << QByteArray("") << 0;
        QTest::newRow("too large for an integer") << QByteArray("99999999999") << 0;
        QTest::newRow("list") << QByteArray("1,2") << 0;
        QTest::newRow("hexadecimal") << QByteArray("0x50") << 0;
    }
    void aPortThatIsNoNumberIsZero()
    {
        QFETCH(QByteArray, value);
        sandbox().writeSettings("[Server]\nTidewellServerPort=" + value + "\n");
        QTEST(env::serverPort(), "expected");
    }

    void standardBehaviourSetsTheWindowManagerFlag_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("expected");
        QTest::newRow("standard") << QByteArray("standard") << true;
        QTest::newRow("Standard") << QByteArray("Standard") << true;
        QTest::newRow("STANDARD") << QByteArray("STANDARD") << true;
        QTest::newRow("maximised") << QByteArray("maximised") << false;
        QTest::newRow("standards") << QByteArray("standards") << false;
        QTest::newRow("empty") << QByteArray("") << false;
    }
    void standardBehaviourSetsTheWindowManagerFlag()
    {
        QFETCH(QByteArray, value);
        QFETCH(bool, expected);
        // From the opposite value, so that both setting and clearing are seen.
        sandbox().writeSettings(expected ? "x=1\n" : "[Desktop]\nWindowManagerBehaviour=standard\n");
        env::readWindowManagerBehaviour();
        QCOMPARE(env::standardWindowManager(), !expected);
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=" + value + "\nother=changed\n");
        QCOMPARE(env::standardWindowManager(), !expected); // it is read once, not followed
        env::readWindowManagerBehaviour();
        QCOMPARE(env::standardWindowManager(), expected);
    }

    void aMissingSettingsFileClearsTheWindowManagerFlag()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=standard\n");
        env::readWindowManagerBehaviour();
        QVERIFY(env::standardWindowManager());
        QVERIFY(QFile::remove(env::settingsPath()));
        env::readWindowManagerBehaviour();
        QVERIFY(!env::standardWindowManager());
    }

    void aFolderInTheSettingsFilesPlaceMeansNoServer()
    {
        QDir().mkpath(env::settingsPath());
        QVERIFY(QFileInfo(env::settingsPath()).isDir());
        QCOMPARE(env::serverPort(), 0);
        QVERIFY(!env::readBooleanSetting(QLatin1String(env::key::chrootEnvironment)));
    }
};

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
