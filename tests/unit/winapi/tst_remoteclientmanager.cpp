#include "winapi/remoteclientmanager.h"

#include "simwin.h"
#include "support/quillettest.h"

#include <QSignalSpy>
#include <QtTest>

class RemoteClientManagerTest : public QuilletTest
{
    Q_OBJECT

    // The calls of one function, their arguments joined.
    static QStringList callsOf(const char* function)
    {
        QStringList list;
        for (const simwin::Call& call : simwin::calls()) {
            if (call.function == function)
                list.append(call.arguments.join(QLatin1Char('|')));
        }
        return list;
    }

    static void share(const char* remoteName, const char* localName = nullptr)
    {
        simwin::addNetworkResource(QString::fromUtf8(remoteName), QString::fromUtf8(localName));
    }

    static QString connection(const char* drive, const char* share)
    {
        return QStringLiteral("0|0|0|0|(null)|(null)|%1|\\\\tsclient\\%2|(null)|(null)|0")
            .arg(QLatin1String(drive), QLatin1String(share));
    }

private slots:
    // --- The scan

    void theConnectedDisksAreEnumerated()
    {
        RemoteClientManager manager;
        const QSignalSpy update(&manager, SIGNAL(update()));
        manager.start();
        QCOMPARE(update.count(), 1);
        QCOMPARE(simwin::callNames(), QList<QByteArray>({"WNetOpenEnumW", "LocalAlloc", "WNetEnumResourceW",
                                                         "LocalFree", "WNetCloseEnum"}));
        QCOMPARE(callsOf("WNetOpenEnumW"), QStringList(QStringLiteral("1|1|0")));
        QCOMPARE(callsOf("LocalAlloc"), QStringList(QStringLiteral("0|65536")));
        QCOMPARE(callsOf("WNetEnumResourceW"), QStringList(QStringLiteral("4294967295|65536")));
        QCOMPARE(simwin::localBlocks(), 0);
        QCOMPARE(simwin::openEnumerations(), 0);
        QCOMPARE(manager.drives(), QStringList());
        QCOMPARE(manager.shares(), QStringList());
    }

    void theUpdateComesAfterTheScan()
    {
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        QStringList drives;
        connect(&manager, &RemoteClientManager::update, [&] { drives = manager.drives(); });
        manager.start();
        QCOMPARE(drives, QStringList(QStringLiteral("E:")));
    }

    void aShareWithALetterIsListedOnceAndLeftAlone()
    {
        share("\\\\tsclient\\C", "F:");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("F:")));
        QCOMPARE(manager.shares(), QStringList(QStringLiteral("C")));
        manager.stop();
        QCOMPARE(callsOf("WNetAddConnection2W"), QStringList());
        QCOMPARE(callsOf("WNetCancelConnection2W"), QStringList());
    }

    void sharesWithoutALetterGetTheFreeOnesFromE()
    {
        share("\\\\tsclient\\C");
        share("\\\\tsclient\\USB stick");
        RemoteClientManager manager;
        clearDebugOutput();
        manager.start();
        QCOMPARE(manager.drives(), QStringList({"E:", "F:"}));
        QCOMPARE(manager.shares(), QStringList({"C", "USB stick"}));
        QCOMPARE(callsOf("WNetAddConnection2W"),
                 QStringList({connection("E:", "C"), connection("F:", "USB stick")}));
        QCOMPARE(debugOutput(), QStringList({"name: \\\\tsclient\\C, drive: E:\n",
                                             "name: \\\\tsclient\\USB stick, drive: F:\n"}));
    }

    void aPagesLettersAreListedBeforeItsSharesAreConnected()
    {
        share("\\\\tsclient\\C");
        share("\\\\tsclient\\D", "E:");
        share("\\\\tsclient\\C", "G:"); // the same share, with a letter
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList({"E:", "G:"}));
        QCOMPARE(manager.shares(), QStringList({"D", "C"}));
        QCOMPARE(callsOf("WNetAddConnection2W"), QStringList());
    }

    void pagesAreTakenOneByOne()
    {
        share("\\\\tsclient\\C");
        share("\\\\tsclient\\D", "H:");
        share("\\\\tsclient\\C", "I:"); // too late: C has been connected when this page comes
        simwin::setNetworkPageSize(1);
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList({"E:", "H:", "I:"}));
        QCOMPARE(manager.shares(), QStringList({"C", "D", "C"}));
    }

    void aShareIsComparedWithItsCase()
    {
        share("\\\\tsclient\\data", "F:");
        share("\\\\tsclient\\DATA");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.shares(), QStringList({"data", "DATA"}));
        QCOMPARE(callsOf("WNetAddConnection2W"), QStringList(connection("E:", "DATA")));
    }

    void theNameOfAShare_data()
    {
        QTest::addColumn<QString>("remoteName");
        QTest::addColumn<QString>("name");
        QTest::newRow("the client's") << "\\\\tsclient\\C"
                                      << "C";
        QTest::newRow("in capitals") << "\\\\TSCLIENT\\C"
                                     << "C";
        QTest::newRow("mixed") << "\\\\TsClient\\c$"
                               << "c$";
        QTest::newRow("with blanks") << "\\\\tsclient\\ My documents "
                                     << " My documents ";
        QTest::newRow("below a share") << "\\\\tsclient\\C\\Users"
                                       << "C\\Users";
        QTest::newRow("somebody else's") << "\\\\files\\everybody"
                                         << "\\\\files\\everybody";
        QTest::newRow("nothing but the prefix") << "\\\\tsclient\\"
                                                << "";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("no string at all") << QString() << "";
        QTest::newRow("the prefix twice") << "\\\\tsclient\\\\\\tsclient\\C"
                                          << "C";
        QTest::newRow("letters of other scripts")
            << QString::fromUtf8("\\\\tsclient\\Диск ñ") << QString::fromUtf8("Диск ñ");
        QTest::newRow("signs") << "\\\\tsclient\\100%s%n%1"
                               << "100%s%n%1";
        QTest::newRow("long") << "\\\\tsclient\\" + QString(2000, 'x') << QString(2000, 'x');
    }
    void theNameOfAShare()
    {
        QFETCH(QString, remoteName);
        QFETCH(QString, name);
        simwin::addNetworkResource(remoteName, QStringLiteral("F:"));
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.shares(), QStringList(name));
        simwin::reset();
        simwin::addNetworkResource(remoteName);
        manager.start();
        QCOMPARE(manager.shares(), QStringList(name));
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("E:")));
        QCOMPARE(callsOf("WNetAddConnection2W").first().section(QLatin1Char('|'), 7, 7),
                 QStringLiteral("\\\\tsclient\\") + name);
    }

    void anEmptyLocalNameIsNoLetter()
    {
        share("\\\\tsclient\\C", "");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("E:")));
    }

    // --- Letters

    void lettersFromEToZAreGivenOut_data()
    {
        QTest::addColumn<QByteArray>("used");
        QTest::addColumn<QString>("drive");
        QTest::newRow("none used") << QByteArray() << "E:";
        QTest::newRow("A to D are not given out") << QByteArray("C") << "E:";
        QTest::newRow("a gap") << QByteArray("CEFH") << "G:";
        QTest::newRow("the last one") << QByteArray("CEFGHIJKLMNOPQRSTUVWXY") << "Z:";
    }
    void lettersFromEToZAreGivenOut()
    {
        QFETCH(QByteArray, used);
        QFETCH(QString, drive);
        simwin::setLocalDrives(used);
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList(drive));
    }

    void withoutAFreeLetterAShareIsTriedWithoutOneAndNotListed()
    {
        simwin::setLocalDrives("EFGHIJKLMNOPQRSTUVWXYZ");
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(callsOf("WNetAddConnection2W"), QStringList(connection("", "C")));
        QCOMPARE(manager.drives(), QStringList());
        QCOMPARE(manager.shares(), QStringList());
    }

    void whenTheDrivesCannotBeReadEverythingLooksFree()
    {
        simwin::setLocalDrives("CE");
        simwin::fail("GetLogicalDriveStringsW", ERROR_ACCESS_DENIED);
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("E:"))); // though it is in use
        QCOMPARE(callsOf("GetLogicalDriveStringsW"), QStringList(QStringLiteral("260")));
    }

    void allLettersGoRound()
    {
        for (int i = 0; i < 30; ++i)
            simwin::addNetworkResource(QStringLiteral("\\\\tsclient\\share %1").arg(i));
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives().size(), 22);
        QCOMPARE(manager.drives().first(), QStringLiteral("E:"));
        QCOMPARE(manager.drives().last(), QStringLiteral("Z:"));
        QCOMPARE(callsOf("WNetAddConnection2W").size(), 30);
    }

    // --- Failures

    void aShareThatCannotBeConnectedIsListedAndRemovedAllTheSame()
    {
        share("\\\\tsclient\\C");
        simwin::fail("WNetAddConnection2W", ERROR_BAD_NETPATH);
        RemoteClientManager manager;
        clearDebugOutput();
        manager.start();
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("E:")));
        QCOMPARE(manager.shares(), QStringList(QStringLiteral("C")));
        QCOMPARE(debugOutput().last(), QStringLiteral("Something failed connecting C to local drive E:"));
        manager.stop();
        QCOMPARE(callsOf("WNetCancelConnection2W"), QStringList(QStringLiteral("E:|0|1")));
    }

    void twoSharesThatCannotBeConnectedGetTheSameLetter()
    {
        share("\\\\tsclient\\C");
        share("\\\\tsclient\\D");
        simwin::fail("WNetAddConnection2W", ERROR_BAD_NETPATH);
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList({"E:", "E:"}));
        manager.stop();
        QCOMPARE(callsOf("WNetCancelConnection2W"), QStringList({"E:|0|1", "E:|0|1"}));
    }

    void failuresOfTheScanEndItCalmly_data()
    {
        QTest::addColumn<QByteArray>("function");
        QTest::newRow("opening") << QByteArray("WNetOpenEnumW");
        QTest::newRow("memory") << QByteArray("LocalAlloc");
        QTest::newRow("reading") << QByteArray("WNetEnumResourceW");
    }
    void failuresOfTheScanEndItCalmly()
    {
        QFETCH(QByteArray, function);
        share("\\\\tsclient\\C");
        simwin::fail(function, ERROR_NOT_ENOUGH_MEMORY);
        RemoteClientManager manager;
        const QSignalSpy update(&manager, SIGNAL(update()));
        manager.start();
        QCOMPARE(update.count(), 1);
        QCOMPARE(manager.drives(), QStringList());
        QCOMPARE(callsOf("WNetEnumResourceW").size(), 1);
        QCOMPARE(simwin::localBlocks(), 0);
        QCOMPARE(simwin::openEnumerations(), 0);
    }

    void anEnumerationThatDoesNotEndIsEnded_data()
    {
        QTest::addColumn<int>("pageSize"); // 0: everything
        QTest::addColumn<bool>("letters");
        QTest::addColumn<bool>("free");
        QTest::addColumn<int>("listed");
        QTest::newRow("one page, no letters") << 0 << false << true << 3;
        QTest::newRow("pages of one, no letters") << 1 << false << true << 3;
        QTest::newRow("one page, letters") << 0 << true << true << 3;
        QTest::newRow("pages of two, letters") << 2 << true << true << 3;
        QTest::newRow("no letter is free") << 1 << false << false << 0;
    }
    void anEnumerationThatDoesNotEndIsEnded()
    {
        QFETCH(int, pageSize);
        QFETCH(bool, letters);
        QFETCH(bool, free);
        if (!free)
            simwin::setLocalDrives("EFGHIJKLMNOPQRSTUVWXYZ");
        for (int i = 0; i < 3; ++i) {
            simwin::addNetworkResource(QStringLiteral("\\\\tsclient\\share %1").arg(i),
                                       letters ? QStringLiteral("%1:").arg(QChar('P' + i)) : QString());
        }
        simwin::setEndlessNetwork(true);
        simwin::setNetworkPageSize(pageSize);
        RemoteClientManager manager;
        const QSignalSpy update(&manager, SIGNAL(update()));
        manager.start();
        QCOMPARE(update.count(), 1);
        QTEST(manager.drives().size(), "listed");
        QVERIFY(callsOf("WNetEnumResourceW").size() <= 6);
        QCOMPARE(callsOf("WNetAddConnection2W").size(), letters ? 0 : 3);
        QCOMPARE(simwin::localBlocks(), 0);
    }

    void aPageThatAnnouncesMoreEntriesThanItCanHoldEndsTheScan()
    {
        share("\\\\tsclient\\C");
        simwin::setUntrueNetworkCount(true);
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives(), QStringList());
        QCOMPARE(simwin::openEnumerations(), 0);
    }

    void tenThousandResourcesAreRead()
    {
        for (int i = 0; i < 10000; ++i)
            simwin::addNetworkResource(QStringLiteral("\\\\files\\share %1").arg(i),
                                       QStringLiteral("LPT%1:").arg(i));
        simwin::setLocalDrives("");
        RemoteClientManager manager;
        manager.start();
        QCOMPARE(manager.drives().size(), 10000);
        QVERIFY(callsOf("WNetEnumResourceW").size() > 1); // they do not fit one page
    }

    // --- The end

    void onlyWhatWasAddedIsRemovedInOrder()
    {
        share("\\\\tsclient\\C", "F:");
        share("\\\\tsclient\\D");
        share("\\\\files\\everybody");
        RemoteClientManager manager;
        manager.start();
        // There is no such resource as the third one's name makes: it is listed all the same.
        QCOMPARE(manager.drives(), QStringList({"F:", "E:", "G:"}));
        clearDebugOutput();
        manager.stop();
        QCOMPARE(callsOf("WNetCancelConnection2W"), QStringList({"E:|0|1", "G:|0|1"}));
        QCOMPARE(debugOutput(), QStringList({"Removing drive E:", "Removing drive G:"}));
        QCOMPARE(manager.drives(), QStringList({"F:", "E:", "G:"})); // the lists stay
        QCOMPARE(manager.shares(), QStringList({"C", "D", "\\\\files\\everybody"}));
        manager.stop();
        QCOMPARE(callsOf("WNetCancelConnection2W").size(), 4);
    }

    void aDriveThatCannotBeRemovedIsLeft()
    {
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        manager.start();
        simwin::fail("WNetCancelConnection2W", ERROR_ACCESS_DENIED);
        manager.stop();
        QCOMPARE(callsOf("WNetCancelConnection2W").size(), 1);
    }

    void aShareThatHasGoneByTheNextScanIsListedNoMore()
    {
        share("\\\\tsclient\\C", "F:");
        share("\\\\tsclient\\D", "G:");
        RemoteClientManager manager;
        manager.start();
        simwin::removeNetworkResource(QStringLiteral("\\\\tsclient\\C"));
        manager.start();
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("G:")));
        QCOMPARE(manager.shares(), QStringList(QStringLiteral("D")));
    }

    void stoppingWithoutAStartDoesNothing()
    {
        RemoteClientManager manager;
        manager.stop();
        QCOMPARE(simwin::callNames(), QList<QByteArray>());
    }

    void aSecondScanStartsAnewButRemembersWhatWasAdded()
    {
        share("\\\\tsclient\\C");
        RemoteClientManager manager;
        const QSignalSpy update(&manager, SIGNAL(update()));
        manager.start(); // E:, added
        manager.start(); // finds E: by its letter
        QCOMPARE(update.count(), 2);
        QCOMPARE(manager.drives(), QStringList(QStringLiteral("E:")));
        manager.stop(); // the first scan's answer counts for the first drive
        QCOMPARE(callsOf("WNetCancelConnection2W"), QStringList(QStringLiteral("E:|0|1")));
    }

    void theSignalAndSlotsStandInTheirOrder()
    {
        const QMetaObject& meta = RemoteClientManager::staticMetaObject;
        QStringList found;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(found, QStringList({"update()", "start()", "stop()"}));
    }
};

QTEST_GUILESS_MAIN(RemoteClientManagerTest)
#include "tst_remoteclientmanager.moc"
