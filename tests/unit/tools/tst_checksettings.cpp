// The settings checker's idea of a value is the program's: both read the same texts.
#include "env/inifile.h"
#include "env/paths.h"
#include "env/settings.h"
#include "support/quillettest.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

namespace {

const char* const keys[] = {env::key::serverPort,       env::key::serverAddress,
                            env::key::sambaServer,      env::key::windowManagerBehaviour,
                            env::key::sambaSharedPath,  env::key::sambaDomain,
                            env::key::chrootEnvironment};

// What the checker says that the shell reads, an object for each file.
QList<QJsonObject> valuesByChecker(const QStringList& files)
{
    QProcess checker;
    checker.start(QStringLiteral(CHECKER), QStringList{QStringLiteral("--values")} + files);
    if (!checker.waitForFinished(60000) || checker.exitCode() != 0)
        qFatal("the checker failed: %s", checker.readAllStandardError().constData());
    QList<QJsonObject> values;
    const QList<QByteArray> output = checker.readAllStandardOutput().trimmed().split('\n');
    for (const QByteArray& line : output)
        values.append(QJsonDocument::fromJson(line).object());
    return values;
}

// A file for each text.
QStringList writtenTo(const QString& folder, const QList<QByteArray>& texts)
{
    QStringList files;
    for (const QByteArray& text : texts) {
        files.append(folder + QStringLiteral("/%1.ini").arg(files.size()));
        Sandbox::writeFile(files.last(), text);
    }
    return files;
}

} // namespace

class CheckSettingsTest : public QuilletTest
{
    Q_OBJECT

    QList<QByteArray> m_texts;    // of all rows
    QList<QJsonObject> m_checked; // the checker's values of them

    // Asks the checker once for all rows: its start takes longer than the rest.
    QString checkedValue(const QByteArray& text, const QString& key)
    {
        if (m_checked.isEmpty())
            m_checked = valuesByChecker(writtenTo(sandbox().scratch(), m_texts));
        return m_checked.value(m_texts.indexOf(text)).value(key).toString(QStringLiteral("none"));
    }

private slots:
    void aValueIsReadAsTheProgramReadsIt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("expected");
        m_texts.clear();
        const auto add = [this](const char* name, const QByteArray& text, const char* key,
                                const QString& expected) {
            m_texts.append(text);
            QTest::newRow(name) << text << key << expected;
        };
        const auto shared = [add](const char* name, const QByteArray& value, const QString& expected) {
            add(name, "SambaSharedPath=" + value + "\n", env::key::sambaSharedPath, expected);
        };
        shared("plain", "files", "files");
        shared("doubled backslash", "\\\\shared", "\\shared");
        shared("single backslash", "\\shared", "hared");
        shared("line feed", "\\new", "\new");
        shared("every short escape", "\\a\\b\\f\\n\\r\\t\\v\\\"\\?\\'\\\\.", "\a\b\f\n\r\t\v\"?'\\.");
        shared("hexadecimal", "\\xf1", QString(QChar(0xf1)));
        shared("hexadecimal takes all digits", "\\xf1abcz", QString(QChar(0xf1abc & 0xffff)) + "z");
        shared("hexadecimal without digits", "a\\xz", "az");
        shared("octal", "\\101", "A");
        shared("octal takes all digits", "\\10148", QString(QChar(01014)) + "8");
        shared("backslash at the very end", "a\\", "a");
        shared("blanks around", " \t two words \t ", "two words");
        shared("blanks in quotes", "\" a \"  ", " a ");
        shared("blanks behind a quote", "\"a\"  b", "ab");
        shared("quotes within", "a\"b\"c", "abc");
        shared("quote that is escaped", "\"a\\\"b\"", "a\"b");
        shared("escaped blank at the end", "a\\x20", "a ");
        shared("comma", "a,b", "");
        shared("comma in quotes", "\"a,b\"", "a,b");
        shared("comma at the end", "a,", "");
        shared("comment behind", "a ; b", "a");
        shared("semicolon", "a;b", "a");
        shared("semicolon in quotes", "\"a;b\"", "a;b");
        shared("semicolon escaped", "a\\;b", "ab");
        shared("equals", "a=b", "a=b");
        shared("hash", "a#b", "a#b");
        shared("percent", "%41", "%41");
        shared("latin-1",
               "se\xf1"
               "al",
               QString::fromLatin1("se\xf1"
                                   "al"));
        shared("utf-8",
               "se\xc3\xb1"
               "al",
               QString::fromLatin1("se\xc3\xb1"
                                   "al"));
        shared("at signs", "@@a", "@a");
        shared("an at sign", "@a", "@a");
        shared("invalid", "@Invalid()", "");
        shared("string", "@String(a b)", "a b");
        shared("bytes", "@ByteArray(ab)", "ab");
        shared("size", "@Size(1 2)", "");
        shared("no size", "@Size(1)", "@Size(1)");
        shared("next line joined", "a\\\nSambaDomain=b", "aSambaDomain=b");
        shared("next line joined, carriage return", "a\\\r\nb", "ab");
        shared("quote over lines", "\"a\nSambaDomain=b\"", "a\nSambaDomain=b");
        shared("quote never closed", "\"a\n[Server]\nb", "a\n[Server]\nb\n");
        shared("carriage returns", "a\r\nSambaDomain=b\r", "a");

        const auto port = [add](const char* name, const QByteArray& text, const QString& expected) {
            add(name, text, env::key::serverPort, expected);
        };
        port("section", "[Server]\nTidewellServerPort=1\n", "1");
        port("blanks before", "  [Server]\n\t TidewellServerPort \t=1\n", "1");
        port("blanks in the section", "[ Server ]\nTidewellServerPort=1\n", "1");
        port("something behind the section", "[Server] x\nTidewellServerPort=1\n", "1");
        port("section not closed", "[Server\nTidewellServerPort=1\n", "1");
        port("twice", "[Server]\nTidewellServerPort=1\nTidewellServerPort=2\n", "2");
        port("section twice", "[Server]\nTidewellServerPort=1\n[A]\nb=c\n[Server]\nx=y\n", "1");
        port("encoded", "[%53erver]\nTidewell%U0053erverPort=1\n", "1");
        port("badly encoded", "[Server]\nTidewell%zzServerPort=1\n", "");
        port("comment", ";[Server]\nTidewellServerPort=1\n", "");
        port("comment behind", "[Server];a\nTidewellServerPort=1;b\n", "1");
        port("hash", "[Server]\n#TidewellServerPort=1\n", "");
        port("hash with a quote", "[Server]\n# the \"port\nTidewellServerPort=1\n", "");
        port("another section", "[Desktop]\nTidewellServerPort=1\n", "");
        port("top level with a slash", "Server/TidewellServerPort=1\n", "");
        port("top level with a backslash", "Server\\TidewellServerPort=1\n", "");
        port("hidden by a section below", "[Server]\nTidewellServerPort=1\n[Server/A]\nb=c\n", "");
        port("section below behind", "[Server]\nTidewellServerPort=1\n[Server/Z]\nb=c\n", "1");
        port("byte order mark", "\xef\xbb\xbf[Server]\nTidewellServerPort=1\n", "1");

        const auto domain = [add](const char* name, const QByteArray& text, const QString& expected) {
            add(name, text, env::key::sambaDomain, expected);
        };
        domain("general", "[A]\nb=c\n[General]\nSambaDomain=d\n", "d");
        domain("general in small letters", "[general]\nSambaDomain=d\n", "d");
        domain("percent general", "[%General]\nSambaDomain=d\n", "");
        domain("in a section", "[Server]\nSambaDomain=d\n", "");
        domain("byte order mark before a key", "\xef\xbb\xbfSambaDomain=d\n", "");
        domain("byte order mark before a line end", "\xef\xbb\xbf\nSambaDomain=\xc3\xb1\n",
               QString(QChar(0xf1)));
        domain("carriage returns alone", "a=b\rSambaDomain=d\r", "d");
        domain("no line end", "SambaDomain=d", "d");
        domain("no value", "SambaDomain=\n", "");
        domain("no equals sign", "SambaDomain\n", "");
        domain("zeros", QByteArray("S\0a\0m\0b\0a\0=\0d\0\n\0", 16), "");
        domain("empty", "", "");
    }
    void aValueIsReadAsTheProgramReadsIt()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, key);
        sandbox().writeSettings(text);
        QTEST(env::readSetting(key), "expected");
        QCOMPARE(checkedValue(text, key), env::readSetting(key));
    }

    void textsOfAllKindsAreReadAsTheProgramReadsThem()
    {
        const QList<QByteArray> pieces = {"\\",
                                          "\"",
                                          ";",
                                          ",",
                                          "=",
                                          "[",
                                          "]",
                                          "%",
                                          "x",
                                          "f",
                                          "7",
                                          " ",
                                          "\t",
                                          "\n",
                                          "\r",
                                          "\r\n",
                                          "@",
                                          "#",
                                          "\xf1",
                                          "n",
                                          "\\\\",
                                          "\\x4",
                                          "\\6",
                                          "\\\n",
                                          "\"a\"",
                                          "/",
                                          "S",
                                          "[Server]",
                                          "\n[General]\n",
                                          "\nSambaServer=",
                                          "\n[Server/A]\n",
                                          "\nTidewellServerPort=",
                                          "\n[Desktop]\nWindowManagerBehaviour="};
        QRandomGenerator random(20);
        QList<QByteArray> texts;
        for (int i = 0; i < 1000; ++i) {
            QByteArray text = "SambaServer=a\nSambaSharedPath=";
            for (int left = random.bounded(20); left > 0; --left)
                text += pieces.at(random.bounded(pieces.size()));
            text += "\nSambaDomain=b\n[Server]\nTidewellServerAddress=";
            for (int left = random.bounded(20); left > 0; --left)
                text += pieces.at(random.bounded(pieces.size()));
            texts.append(text);
        }
        const QStringList files = writtenTo(sandbox().scratch(), texts);
        const QList<QJsonObject> values = valuesByChecker(files);
        QCOMPARE(values.size(), files.size());
        for (int i = 0; i < files.size(); ++i) {
            for (const char* const key : keys) {
                const QString read = env::readValue(files.at(i), QLatin1String(key));
                const QString checked = values.at(i).value(QLatin1String(key)).toString();
                QVERIFY2(read == checked,
                         qPrintable(
                             QStringLiteral("%1: the program reads \"%2\", the checker \"%3\" in\n%4")
                                 .arg(QLatin1String(key), read, checked, QString::fromLatin1(texts.at(i)))));
            }
        }
    }
};

QTEST_GUILESS_MAIN(CheckSettingsTest)
#include "tst_checksettings.moc"
