#include "app/entry.h"
#include "catalogue/cataloguefiles.h"
#include "support/logreader.h"
#include "support/quillettest.h"

#include "env/paths.h"
#include "env/settings.h"
#include "simwin.h"

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QStyle>
#include <QtTest>

#include <functional>
#include <thread>

// The shell within this process. A thread stands in for everything that happens to it from outside.
class GateTest : public QuilletTest
{
    Q_OBJECT

    // Runs the program from its Windows entry, `inside` in its event loop, and ends that with
    // `eventLoopResult`. Returns the exit code.
    static int run(int eventLoopResult, const std::function<void()>& inside)
    {
        std::thread observer([&] {
            LogReader(env::logPath()).waitFor(QStringLiteral("Calling manager"), 60000);
            QTimer::singleShot(0, qApp, [&] {
                inside();
                // Again and again: what runs now may be the loop of a dialog that comes before.
                const auto timer = new QTimer(qApp);
                QObject::connect(timer, &QTimer::timeout, [&] { QCoreApplication::exit(eventLoopResult); });
                timer->start(10);
            });
        });
        const int exitCode = app::windowsEntry();
        observer.join();
        return exitCode;
    }

private slots:
    void init()
    {
        QuilletTest::init();
        QDir::setCurrent(sandbox().scratch());
    }

    void cleanup()
    {
        QDir::setCurrent(QDir::rootPath());
        QuilletTest::cleanup();
    }

    // The table lives as long as the process: this test comes first.
    void theTableOfExtensionsIsThereBeforeAnyWindow()
    {
        QCOMPARE(catalogue::mimeTypeForExtension(QStringLiteral(".csv")), QString());
        sandbox().writeSettings(
            "[Server]\nTidewellServerPort=1\nTidewellServerAddress=127.0.0.1\n"); // nobody there
        QString type;
        run(0, [&] {
            if (const auto box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                type = catalogue::mimeTypeForExtension(QStringLiteral(".csv"));
                box->accept();
            }
        });
        QCOMPARE(type, QStringLiteral("text/csv"));
    }

    void theExitCodeIsZeroWhateverTheEventLoopReturned()
    {
        QCOMPARE(run(7, [] {}), 0);
        QVERIFY(!qApp); // the application object is gone
        QCOMPARE(simwin::callNames().count("CheckTokenMembership"), 1);
    }

    void qtDoesNotSeeTheCommandLine()
    {
        simwin::setCommandLine(QStringLiteral("quillet.exe -platform nosuch -style nosuch --help"));
        QStringList arguments;
        QCOMPARE(run(0, [&] { arguments = QCoreApplication::arguments(); }), 0);
        QCOMPARE(arguments, QStringList());
    }

    void theEntryForTheManagerIsWrittenOnceAndTheControllerReadsItsSetting()
    {
        sandbox().writeSettings("[Desktop]\nWindowManagerBehaviour=standard\n");
        QVERIFY(!env::standardWindowManager());
        run(0, [] {});
        QVERIFY(env::standardWindowManager());
        const QList<QByteArray> lines = sandbox().log().split('\n');
        QVERIFY(lines.value(0).endsWith(" - Info: Calling manager"));
        QVERIFY(lines.value(1).endsWith(" - Info: Starting session with user 'clerk'"));
        QVERIFY(debugOutput().first().endsWith(QLatin1String(" - Info: Calling manager")));
    }

    void theTextsAreSpanishWithATranslationInTheCurrentDirectory()
    {
        QVERIFY(QFile::copy(QStringLiteral(TRANSLATION), QStringLiteral("quillet_es.qm")));
        QString text;
        run(0, [&] { text = QCoreApplication::translate("Desktop", "Suspend session"); });
        QCOMPARE(text, QString::fromUtf8("Suspender sesión"));
    }

    void theFirstWindowIsSpanishAlreadyAndComesAfterTheLogEntry()
    {
        QVERIFY(QFile::copy(QStringLiteral(TRANSLATION), QStringLiteral("quillet_es.qm")));
        sandbox().writeSettings(
            "[Server]\nTidewellServerPort=1\nTidewellServerAddress=127.0.0.1\n"); // nobody there
        QString title;
        run(0, [&] {
            if (const auto box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                title = box->windowTitle();
                box->accept();
            }
        });
        QCOMPARE(title, QString::fromUtf8("Conexión con el servidor"));
        QVERIFY(simwin::callNames().contains("ExitWindowsEx"));
    }

    void theTextsAreEnglishWithoutAUsableTranslation_data()
    {
        QTest::addColumn<QByteArray>("content"); // null: no such file
        QTest::newRow("no file") << QByteArray();
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("noise") << QByteArray("no translation at all").repeated(1000);
        QTest::newRow("cut") << Sandbox::readFile(QStringLiteral(TRANSLATION)).left(40);
    }
    void theTextsAreEnglishWithoutAUsableTranslation()
    {
        QFETCH(QByteArray, content);
        if (!content.isNull())
            Sandbox::writeFile(QStringLiteral("quillet_es.qm"), content);
        QString text;
        QCOMPARE(run(0, [&] { text = QCoreApplication::translate("Desktop", "Suspend session"); }), 0);
        QCOMPARE(text, QStringLiteral("Suspend session"));
    }

    void theApplicationsStyleIsThePlatformsDefaultWithoutThePreferredOne()
    {
        QString style;
        run(0, [&] { style = QApplication::style()->objectName(); });
        QCOMPARE(style, QStringLiteral("fusion"));
        QVERIFY(!debugOutput().contains(QStringLiteral("Oxygen loaded!")));
    }

    void aCommandLineThatCannotBeSplitEndsWithMinusOneAtOnce()
    {
        const QList<QByteArray> expected{"GetCommandLineW", "CommandLineToArgvW"};
        constexpr int tries = 20; // a thread of an earlier function's shell may call in between
        for (int i = 0; i < tries && simwin::callNames() != expected; ++i) {
            simwin::reset();
            simwin::fail("CommandLineToArgvW", ERROR_NOT_ENOUGH_MEMORY);
            QCOMPARE(app::windowsEntry(), -1);
        }
        QCOMPARE(simwin::callNames(), expected);
        QCOMPARE(sandbox().log(), QByteArray());
    }
};

QTEST_APPLESS_MAIN(GateTest)
#include "tst_gate.moc"
