#include "shell/labelbreak.h"

#include "support/quillettest.h"

#include <QFontMetrics>
#include <QtTest>

class LabelBreakTest : public QuilletTest
{
    Q_OBJECT

    static QFont labelFont()
    {
        QFont font(QStringLiteral("Helvetica"));
        font.setPixelSize(13);
        return font;
    }

private slots:
    void aLabelBreaksAtOneBlank_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("broken");
        const auto row = [](const char* name, const QString& label, const QString& broken) {
            QTest::newRow(name) << label << broken;
        };
        row("nothing", QString(), QString());
        row("one word", "Calculator", "Calculator");
        row("two words", "Text Editor", "Text\nEditor");
        row("two words of different lengths", "A spreadsheet", "A\nspreadsheet");
        row("one of three in the middle", "Microsoft Word 2010", "Microsoft\nWord 2010");
        // The search for the second blank starts at the second character and finds the first blank again.
        row("the second blank is not seen", "Google Drive Sync", "Google\nDrive Sync");
        row("the first blank of three short words", "A B C", "A\nB C");
        row("not even where the second is much nearer", "Ab spreadsheet x", "Ab\nspreadsheet x");
        row("the blank in the very middle", "a b c d e f g h", "a b c d\ne f g h");
        row("many words: the last blank that is seen", "abcdef g h i j k l m n", "abcdef g\nh i j k l m n");
        row("a run of two blanks", "A  B", "A\n B");
        row("a run up to the middle", "abc      d", "abc  \n   d");
        // The seventh lies in the middle, but the eighth is near enough for a label broken so late.
        row("a run beyond the middle", "abc        d", "abc    \n   d");
        row("the first blank exactly as near as its place", "a bb c", "a\nbb c");
        row("a later blank exactly as near as the chosen place", "a bcd e f", "a\nbcd e f");
        row("other white space is none", "a\tb\u00a0c", "a\tb\u00a0c");
        row("a line feed inside stays", "One\nTwo", "One\nTwo");
        row("a line feed and a blank", "One\nTwo Three", "One\nTwo\nThree");
        row("HTML is text", "<b>Bold</b> <i>x</i>", "<b>Bold</b>\n<i>x</i>");
        row("right to left", QString::fromUtf8("עורך טקסט"), QString::fromUtf8("עורך\nטקסט"));
        row("outside the basic plane", QString::fromUtf8("😀😀 🌊🌊"), QString::fromUtf8("😀😀\n🌊🌊"));
        // Its 16-bit units are counted: 3 and 5 of 7, the middle is 3.
        row("halves of pairs count", QString::fromUtf8("a😀 b c"), QString::fromUtf8("a😀\nb c"));
    }
    void aLabelBreaksAtOneBlank()
    {
        QFETCH(QString, label);
        QTEST(shell::breakLabel(label), "broken");
    }

    void aLongLabelOfManyBlanksBreaksOnce()
    {
        const QString label = QStringLiteral("x ").repeated(150) + QLatin1Char('x');
        const QString broken = shell::breakLabel(label);
        QCOMPARE(broken.count('\n'), 1);
        QCOMPARE(broken.count(' '), 149);
        QCOMPARE(broken.size(), label.size());
    }

    void aLabelThatFitsIsShownAsItIs_data()
    {
        QTest::addColumn<QString>("label");
        QTest::newRow("nothing") << "";
        QTest::newRow("one line") << "Calculator";
        QTest::newRow("two lines") << "Text\nEditor";
        QTest::newRow("HTML") << "<b>a</b>\n&amp;";
        QTest::newRow("an ampersand") << "R&D";
        QTest::newRow("an empty first line") << "\nEditor";
        QTest::newRow("an empty second line") << "Text\n";
    }
    void aLabelThatFitsIsShownAsItIs()
    {
        QFETCH(QString, label);
        QCOMPARE(shell::fitLabel(label, QFontMetrics(labelFont()), 74), label);
    }

    void eachLineIsElidedOnItsOwn()
    {
        const QFontMetrics metrics(labelFont());
        const QString wide = QStringLiteral("Spreadsheets and more");
        const QString cut = metrics.elidedText(wide, Qt::ElideRight, 74);
        QVERIFY(cut.endsWith(QChar(0x2026)));
        QCOMPARE(shell::fitLabel(wide, metrics, 74), cut);
        QCOMPARE(shell::fitLabel(wide + "\nshort", metrics, 74), QString(cut + "\nshort"));
        QCOMPARE(shell::fitLabel("short\n" + wide, metrics, 74), QString("short\n" + cut));
        QCOMPARE(shell::fitLabel(wide + '\n' + wide, metrics, 74), QString(cut + '\n' + cut));
    }

    void aLineIsElidedOnlyWhenItIsTooWide()
    {
        const QFontMetrics metrics(labelFont());
        const QString line = QStringLiteral("Calculator");
        const int width = metrics.horizontalAdvance(line);
        QCOMPARE(shell::fitLabel(line, metrics, width + 1), line);
        QVERIFY(shell::fitLabel(line, metrics, width - 1) != line);
    }

    void furtherLinesGoIntoTheSecond_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("shown");
        QTest::newRow("three lines") << "a\nb\nc"
                                     << "a\nb c";
        QTest::newRow("five lines") << "a\nb\nc\nd\ne"
                                    << "a\nb c d e";
        QTest::newRow("empty lines between") << "a\n\nb"
                                             << "a\n b";
        QTest::newRow("carriage return") << "a\rb"
                                         << "a\nb";
        QTest::newRow("both line ends") << "a\r\nb"
                                        << "a\n b";
        QTest::newRow("line separator") << QString::fromUtf8("a\u2028b") << "a\nb";
        QTest::newRow("paragraph separator") << QString::fromUtf8("a\u2029b\u2028c") << "a\nb c";
    }
    void furtherLinesGoIntoTheSecond()
    {
        QFETCH(QString, label);
        QTEST(shell::fitLabel(label, QFontMetrics(labelFont()), 74), "shown");
    }

    void noLineIsEverTooWide_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("300 characters") << QString(300, QLatin1Char('m'));
        QTest::newRow("300 words") << QStringLiteral("word ").repeated(300).trimmed();
        QTest::newRow("300 lines") << QStringLiteral("line\n").repeated(300).trimmed();
        QTest::newRow("300 of a right-to-left script") << QString::fromUtf8("ש").repeated(300);
        QTest::newRow("300 outside the basic plane") << QString::fromUtf8("🌊").repeated(300);
        QTest::newRow("one half of a pair, many times") << QString(300, QChar(0xd83c));
        QTest::newRow("marks upon marks") << QLatin1Char('e') + QString(300, QChar(0x301));
        QTest::newRow("zero characters") << QString(300, QChar(0));
    }
    void noLineIsEverTooWide()
    {
        QFETCH(QString, name);
        const QFontMetrics metrics(labelFont());
        const QStringList lines = shell::fitLabel(shell::breakLabel(name), metrics, 74).split('\n');
        QVERIFY(lines.size() <= 2);
        for (const QString& line : lines)
            QVERIFY2(metrics.horizontalAdvance(line) <= 74, qPrintable(line));
    }
};

QTEST_MAIN(LabelBreakTest)
#include "tst_labelbreak.moc"
