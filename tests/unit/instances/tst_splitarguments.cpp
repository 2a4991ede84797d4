#include "instances/splitarguments.h"

#include <QtTest>

class SplitArgumentsTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsCutAtBlanksOutsideQuotes_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QStringList>("arguments");
        const auto list = [](std::initializer_list<const char*> items) {
            QStringList strings;
            for (const char* item : items)
                strings.append(QString::fromUtf8(item));
            return strings;
        };
        QTest::newRow("nothing") << "" << list({});
        QTest::newRow("blanks alone") << "   " << list({});
        QTest::newRow("one") << "-a" << list({"-a"});
        QTest::newRow("two") << "-a -b" << list({"-a", "-b"});
        QTest::newRow("runs of blanks") << "  -a   -b " << list({"-a", "-b"});
        QTest::newRow("double quotes") << "-t \"two words\" -b" << list({"-t", "two words", "-b"});
        QTest::newRow("single quotes") << "-t 'two words' -b" << list({"-t", "two words", "-b"});
        QTest::newRow("single within double") << "\"it's one\"" << list({"it's one"});
        QTest::newRow("double within single") << "'say \"one\"'" << list({"say \"one\""});
        QTest::newRow("quotes within an argument")
            << "--title=\"two words\"x" << list({"--title=two wordsx"});
        QTest::newRow("stretches that touch") << "\"a b\"'c d'" << list({"a bc d"});
        QTest::newRow("empty quotes") << "-t \"\" '' -b" << list({"-t", "", "", "-b"});
        QTest::newRow("double quote not closed") << "-a \"to the end" << list({"-a", "to the end"});
        QTest::newRow("single quote not closed") << "-a 'to the  end " << list({"-a", "to the  end "});
        QTest::newRow("a quote at the end") << "-a \"" << list({"-a", ""});
        QTest::newRow("backslashes mean nothing")
            << "C:\\a\\ \"C:\\b c\\\" d" << list({"C:\\a\\", "C:\\b c\\", "d"});
        QTest::newRow("tabs and line ends are no blanks") << "a\tb\nc" << list({"a\tb\nc"});
        QTest::newRow("letters of other scripts")
            << "\u00f1and\u00fa \"\u4e00 \u4e8c\"" << list({"\u00f1and\u00fa", "\u4e00 \u4e8c"});
    }
    void aLineIsCutAtBlanksOutsideQuotes()
    {
        QFETCH(QString, line);
        QTEST(instances::splitArguments(line), "arguments");
    }

    void aHugeLineIsCutToo()
    {
        const QString word = QStringLiteral("word ");
        QCOMPARE(instances::splitArguments(word.repeated(200000)).size(), 200000);
    }
};

QTEST_GUILESS_MAIN(SplitArgumentsTest)
#include "tst_splitarguments.moc"
