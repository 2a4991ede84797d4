// The same test on the simulated and on the real Windows. There a process cannot change its command line, so
// the test starts itself with the one it wants and reads what came of it.
#include "support/quillettest.h"
#include "winapi/ansiarguments.h"

#include <QtTest>

#include <cstdio>

#ifdef Q_OS_WIN
#include <QProcess>
#else
#include "simwin.h"

#include <windows.h>
#endif

namespace {

// The arguments behind the program's name, each as its bytes in hexadecimal; a line each.
QByteArray describe(winapi::AnsiArguments& arguments)
{
    QByteArray text;
    for (int i = 1; i < arguments.count(); ++i)
        text += QByteArray(arguments.data()[i]).toHex() + '\n';
    text += arguments.data()[arguments.count()] ? "not ended by null\n" : "end\n";
    return text;
}

QByteArray argumentsOf(const QString& commandLine)
{
#ifdef Q_OS_WIN
    QProcess process;
    process.setProgram(QCoreApplication::applicationFilePath());
    process.setNativeArguments(commandLine);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PRINT_ARGUMENTS"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.start();
    process.waitForFinished();
    return process.readAllStandardOutput().replace("\r\n", "\n");
#else
    simwin::setCommandLine(QLatin1String("\"C:\\Program Files\\quillet.exe\" ") + commandLine);
    auto arguments = winapi::AnsiArguments::ofThisProcess();
    return arguments ? describe(*arguments) : QByteArray("none");
#endif
}

} // namespace

class AnsiArgumentsTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void theCommandLineIsSplitAndConverted_data()
    {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<QList<QByteArray>>("expected");
        using L = QList<QByteArray>;
        QTest::newRow("nothing") << "" << L();
        QTest::newRow("words") << "one two\tthree" << L({"one", "two", "three"});
        QTest::newRow("quoted blanks") << "\"one two\" three" << L({"one two", "three"});
        QTest::newRow("empty argument") << "\"\" x" << L({"", "x"});
        QTest::newRow("backslashes") << "C:\\a\\b\\ x" << L({"C:\\a\\b\\", "x"});
        QTest::newRow("backslash before a quote") << "a\\\"b c" << L({"a\"b", "c"});
        QTest::newRow("two backslashes before a quote") << "\"a\\\\\" b" << L({"a\\", "b"});
        QTest::newRow("three backslashes before a quote") << "a\\\\\\\"b" << L({"a\\\"b"});
        QTest::newRow("two quotes within quotes") << "\"a\"\"b\" c" << L({"a\"b c"});
        QTest::newRow("unclosed quote") << "\"one two" << L({"one two"});
        QTest::newRow("quote within a word") << "a\"b c\"d e" << L({"ab cd", "e"});
        QTest::newRow("letters of the code page")
            << QString::fromUtf8("año café") << L({"a\xf1o", "caf\xe9"});
        QTest::newRow("letters outside it") << QString::fromUtf8("漢 x") << L({"?", "x"});
        QTest::newRow("long") << QString(8000, QLatin1Char('x')) << L({QByteArray(8000, 'x')});
    }
    void theCommandLineIsSplitAndConverted()
    {
        QFETCH(QString, commandLine);
        QFETCH(QList<QByteArray>, expected);
        QByteArray text;
        for (const QByteArray& argument : expected)
            text += argument.toHex() + '\n';
        QCOMPARE(argumentsOf(commandLine), text + "end\n");
    }

#ifndef Q_OS_WIN
    void eachArgumentIsMeasuredThenConvertedAndTheWideArrayIsFreed()
    {
        simwin::setCommandLine(QStringLiteral("quillet.exe one"));
        {
            const auto arguments = winapi::AnsiArguments::ofThisProcess();
            QVERIFY(arguments);
        }
        QCOMPARE(simwin::callNames(),
                 QList<QByteArray>({"GetCommandLineW", "CommandLineToArgvW", "WideCharToMultiByte",
                                    "WideCharToMultiByte", "WideCharToMultiByte", "WideCharToMultiByte",
                                    "LocalFree"}));
        QCOMPARE(simwin::calls()[2].arguments, QStringList({"0", "quillet.exe", "0"}));
        QCOMPARE(simwin::calls()[3].arguments, QStringList({"0", "quillet.exe", "12"}));
        QCOMPARE(simwin::localBlocks(), 0);
    }

    void thereAreNoneWhenTheCommandLineCannotBeSplit()
    {
        simwin::fail("CommandLineToArgvW", ERROR_NOT_ENOUGH_MEMORY);
        QVERIFY(!winapi::AnsiArguments::ofThisProcess());
        QCOMPARE(simwin::callNames(), QList<QByteArray>({"GetCommandLineW", "CommandLineToArgvW"}));
    }

    void anArgumentThatCannotBeConvertedIsEmpty()
    {
        simwin::setCommandLine(QStringLiteral("quillet.exe one two"));
        simwin::fail("WideCharToMultiByte", ERROR_INVALID_PARAMETER, 2);
        auto arguments = winapi::AnsiArguments::ofThisProcess();
        QVERIFY(arguments);
        QCOMPARE(arguments->count(), 3);
        QCOMPARE(describe(*arguments), "\n" + QByteArray("two").toHex() + "\nend\n");
        QCOMPARE(simwin::localBlocks(), 0);
    }
#endif
};

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet("PRINT_ARGUMENTS")) {
        auto arguments = winapi::AnsiArguments::ofThisProcess();
        std::fputs(arguments ? describe(*arguments).constData() : "none", stdout);
        return 0;
    }
    const QCoreApplication application(argc, argv);
    AnsiArgumentsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_ansiarguments.moc"
