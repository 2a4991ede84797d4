#include "env/log.h"
#include "env/paths.h"
#include "support/logreader.h"
#include "support/quillettest.h"

#include <QProcess>
#include <QtTest>

class LogReaderTest : public QuilletTest
{
    Q_OBJECT

    static void append(const QByteArray& bytes)
    {
        QFile file(env::logPath());
        QVERIFY(file.open(QIODevice::Append));
        file.write(bytes);
    }

    int logwait(const QStringList& arguments, QByteArray* output = nullptr)
    {
        QProcess process;
        process.start(QStringLiteral(LOGWAIT), arguments);
        process.waitForFinished();
        if (output)
            *output = process.readAllStandardOutput();
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void whatTheLogWritesIsParsed()
    {
        const QDateTime time(QDate(2016, 7, 5), QTime(14, 3, 7));
        LogEntry entry;
        QVERIFY(
            parseLogLine(env::logLine(time, QStringLiteral("Error"), QStringLiteral("a - b: c")), &entry));
        QCOMPARE(entry.time, time);
        QCOMPARE(entry.level, QStringLiteral("Error"));
        QCOMPARE(entry.message, QStringLiteral("a - b: c"));
    }

    void anythingElseIsNoEntry_data()
    {
        QTest::addColumn<QString>("line");
        QTest::newRow("empty") << "";
        QTest::newRow("other level") << "Tue Jul 5 14:03:07 2016 - Debug: x";
        QTest::newRow("no level") << "Tue Jul 5 14:03:07 2016 - x";
        QTest::newRow("foreign month") << "Tue Juillet 5 14:03:07 2016 - Info: x";
        QTest::newRow("wrong weekday") << "Mon Jul 5 14:03:07 2016 - Info: x";
        QTest::newRow("no such day") << "Tue Jul 35 14:03:07 2016 - Info: x";
        QTest::newRow("two blanks") << "Tue Jul  5 14:03:07 2016 - Info: x";
        QTest::newRow("blank in front") << " Tue Jul 5 14:03:07 2016 - Info: x";
    }
    void anythingElseIsNoEntry()
    {
        QFETCH(QString, line);
        LogEntry entry;
        QVERIFY(!parseLogLine(line, &entry));
    }

    void entriesComeOnceAndOnlyWhenComplete()
    {
        LogReader reader(env::logPath());
        QVERIFY(reader.next().isEmpty()); // no file yet
        append("Tue Jul 5 14:03:07 2016 - Info: one\nnoise\nTue Jul 5 14:03:08 2016 - Inf");
        const QList<LogEntry> first = reader.next();
        QCOMPARE(first.size(), 2);
        QCOMPARE(first[0].message, QStringLiteral("one"));
        QCOMPARE(first[1].level, QString());
        QCOMPARE(first[1].message, QStringLiteral("noise"));
        QVERIFY(reader.next().isEmpty());
        append("o: two\n");
        const QList<LogEntry> second = reader.next();
        QCOMPARE(second.size(), 1);
        QCOMPARE(second[0].message, QStringLiteral("two"));
    }

    void waitingConsumesUpToTheEntryAndNoFurther()
    {
        append("Tue Jul 5 14:03:07 2016 - Info: one\nTue Jul 5 14:03:07 2016 - Info: two\n"
               "Tue Jul 5 14:03:07 2016 - Info: three\n");
        LogReader reader(env::logPath());
        QStringList seen;
        QVERIFY(reader.waitFor(QStringLiteral("two"), 0, &seen));
        QCOMPARE(seen, QStringList("one"));
        QVERIFY(!reader.waitFor(QStringLiteral("two"), 0));
        append("Tue Jul 5 14:03:07 2016 - Info: four\n");
        QVERIFY(reader.waitFor(QStringLiteral("four"), 0));
    }

    void theToolFindsAnEntryThatIsThere()
    {
        append("Tue Jul 5 14:03:07 2016 - Info: Calling manager\n");
        QByteArray output;
        QCOMPARE(logwait({env::logPath(), "Calling manager"}, &output), 0);
        QCOMPARE(output, QByteArray("Calling manager\n"));
    }

    void theToolWaitsForAnEntryThatComes()
    {
        QProcess process;
        process.start(QStringLiteral(LOGWAIT), {env::logPath(), "late", "30"});
        QVERIFY(process.waitForStarted());
        append("Tue Jul 5 14:03:07 2016 - Info: early\n");
        append("Tue Jul 5 14:03:07 2016 - Info: late\n");
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardOutput(), QByteArray("early\nlate\n"));
    }

    void theToolPassesOverWhatWasThereBefore()
    {
        append("Tue Jul 5 14:03:07 2016 - Info: Calling manager\n");
        const QString size = QString::number(QFileInfo(env::logPath()).size());
        QCOMPARE(logwait({env::logPath(), "Calling manager", "0", size}), 1);
        append("Tue Jul 5 14:03:08 2016 - Info: Calling manager\n");
        QCOMPARE(logwait({env::logPath(), "Calling manager", "0", size}), 0);
    }

    void theToolGivesUp() { QCOMPARE(logwait({env::logPath(), "never", "0"}), 1); }

    void theToolRefusesAWrongCall_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("no text") << QStringList("file");
        QTest::newRow("empty text") << QStringList({"file", ""});
        QTest::newRow("no number") << QStringList({"file", "text", "soon"});
        QTest::newRow("negative") << QStringList({"file", "text", "-1"});
        QTest::newRow("offset is no number") << QStringList({"file", "text", "1", "x"});
        QTest::newRow("negative offset") << QStringList({"file", "text", "1", "-1"});
        QTest::newRow("too much") << QStringList({"file", "text", "1", "2", "3"});
    }
    void theToolRefusesAWrongCall()
    {
        QFETCH(QStringList, arguments);
        QCOMPARE(logwait(arguments), 2);
    }
};

QTEST_GUILESS_MAIN(LogReaderTest)
#include "tst_logreader.moc"
