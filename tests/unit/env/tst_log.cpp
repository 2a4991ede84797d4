#include "env/log.h"
#include "env/paths.h"
#include "support/logreader.h"
#include "support/quillettest.h"

#ifndef Q_OS_WIN
#include "support/forbidden.h"
#endif

#include <QDir>
#include <QtTest>

class LogTest : public QuilletTest
{
    Q_OBJECT

    QList<QByteArray> lines()
    {
        QByteArray log = sandbox().log();
        if (log.endsWith('\n'))
            log.chop(1);
        return log.split('\n');
    }

private slots:
    void aLineIsDateLevelAndMessage_data()
    {
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("expected");
        const auto at = [](int y, int m, int d, int h, int min, int s) {
            return QDateTime(QDate(y, m, d), QTime(h, min, s));
        };
        QTest::newRow("one-digit day") << at(2016, 7, 5, 14, 3, 7) << "Tue Jul 5 14:03:07 2016 - Info: text";
        QTest::newRow("two-digit day")
            << at(2026, 11, 20, 0, 0, 0) << "Fri Nov 20 00:00:00 2026 - Info: text";
        QTest::newRow("last second") << at(1999, 12, 31, 23, 59, 59)
                                     << "Fri Dec 31 23:59:59 1999 - Info: text";
        QTest::newRow("leap day") << at(2024, 2, 29, 9, 8, 7) << "Thu Feb 29 09:08:07 2024 - Info: text";
    }
    void aLineIsDateLevelAndMessage()
    {
        QFETCH(QDateTime, time);
        QTEST(env::logLine(time, QStringLiteral("Info"), QStringLiteral("text")), "expected");
    }

    void dayAndMonthNamesAreEnglishWhateverTheLocale()
    {
        const QDateTime time(QDate(2016, 7, 5), QTime(14, 3, 7));
        for (const QLocale& locale :
             {QLocale(QLocale::Spanish), QLocale(QLocale::Japanese), QLocale(QLocale::Arabic)}) {
            QLocale::setDefault(locale);
            QCOMPARE(env::logLine(time, QStringLiteral("Error"), QStringLiteral("x")),
                     QStringLiteral("Tue Jul 5 14:03:07 2016 - Error: x"));
        }
        QLocale::setDefault(QLocale::c());
    }

    void everyDayAndMonthHasItsEnglishName()
    {
        const QStringList days = {"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
        for (int i = 0; i < 7; ++i) {
            const QDateTime time(QDate(2026, 6, 1 + i), QTime(0, 0)); // the first was a Monday
            QVERIFY(env::logLine(time, QString(), QString()).startsWith(days[i] + QLatin1String(" Jun ")));
        }
        const QStringList months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
        for (int i = 0; i < 12; ++i) {
            const QDateTime time(QDate(2026, 1 + i, 1), QTime(0, 0));
            QCOMPARE(env::logLine(time, QString(), QString()).mid(4, 3), months[i]);
        }
    }

    void anEntryHasTheCurrentTimeAndItsLevel()
    {
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        env::logInfo(QStringLiteral("Calling manager"));
        env::logError(QStringLiteral("Cannot connect to twserver"));
        const QDateTime after = QDateTime::currentDateTime();

        QCOMPARE(lines().size(), 2);
        LogEntry entry;
        QVERIFY(parseLogLine(QString::fromUtf8(lines()[0]), &entry));
        QCOMPARE(entry.level, QStringLiteral("Info"));
        QCOMPARE(entry.message, QStringLiteral("Calling manager"));
        QVERIFY(entry.time > before && entry.time <= after);
        QVERIFY(parseLogLine(QString::fromUtf8(lines()[1]), &entry));
        QCOMPARE(entry.level, QStringLiteral("Error"));
        QCOMPARE(entry.message, QStringLiteral("Cannot connect to twserver"));
    }

    void entriesStandInCallOrderEachOnItsLineAndTheFileGrows()
    {
        Sandbox::writeFile(env::logPath(), "an earlier run\n");
        for (int i = 0; i < 200; ++i)
            env::logInfo(QStringLiteral("entry %1").arg(i));
        const QList<QByteArray> written = lines();
        QCOMPARE(written.size(), 201);
        QCOMPARE(written[0], QByteArray("an earlier run"));
        for (int i = 0; i < 200; ++i)
            QVERIFY(written[i + 1].endsWith(" - Info: entry " + QByteArray::number(i)));
    }

    void aLineEndsInASingleLineFeed()
    {
        env::logInfo(QStringLiteral("x"));
        QVERIFY(sandbox().log().endsWith("Info: x\n"));
        QVERIFY(!sandbox().log().contains('\r'));
    }

    void theSameLineGoesToTheDebugOutput()
    {
        env::logInfo(QString::fromUtf8("año %1 %s"));
        QCOMPARE(debugOutput().size(), 1);
        QVERIFY(debugOutput().first().endsWith(QString::fromUtf8(" - Info: año %1 %s")));
        const QByteArray withoutLineEnd = sandbox().log().chopped(1);
        QCOMPARE(debugOutput().first(), QString::fromLocal8Bit(withoutLineEnd));
    }

    void theFileIsInTheSystemsEncoding()
    {
        env::logInfo(QString::fromUtf8("año"));
        QVERIFY(sandbox().log().endsWith(QString::fromUtf8("año\n").toLocal8Bit()));
    }

    void withoutAFileTheDebugOutputStillGetsTheEntry()
    {
        QDir().mkpath(env::logPath()); // a folder in the file's place
        env::logError(QStringLiteral("unheard"));
        QCOMPARE(debugOutput().size(), 1);
        QVERIFY(debugOutput().first().endsWith(QStringLiteral(" - Error: unheard")));
        QVERIFY(QFileInfo(env::logPath()).isDir());
    }

#ifndef Q_OS_WIN
    void aHomeThatCannotBeWrittenLosesOnlyTheFile()
    {
        const ForbiddenFolder home(sandbox().home());
        env::logInfo(QStringLiteral("unheard"));
        QCOMPARE(debugOutput().size(), 1);
        QVERIFY(!QFile::exists(env::logPath()));
    }

    void aLogThatMayOnlyBeReadIsNeitherWrittenNorLost()
    {
        Sandbox::writeFile(env::logPath(), "kept\n");
        QFile::setPermissions(env::logPath(), QFile::ReadOwner);
        {
            const ForbiddenFolder home(sandbox().home());
            env::logInfo(QStringLiteral("unheard"));
        }
        QCOMPARE(sandbox().log(), QByteArray("kept\n"));
    }
#endif

    void longAndEmptyMessagesAreWrittenWhole()
    {
        env::logInfo(QString());
        env::logInfo(QString(100000, QLatin1Char('x')));
        QCOMPARE(lines().size(), 2);
        QVERIFY(lines()[0].endsWith(" - Info: "));
        QVERIFY(lines()[1].endsWith(" - Info: " + QByteArray(100000, 'x')));
    }
};

QTEST_GUILESS_MAIN(LogTest)
#include "tst_log.moc"
