// The file manager of the shipped shell, with mouse and keyboard, on the Windows user's real files.
#include "support/shellstory.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

const QColor teal("#12566b");
const QString shellProgram = QStringLiteral("quillet.exe");
const QString writer = QStringLiteral("writer");
const QString writerTitle = QStringLiteral("Writer");

} // namespace

class FilesStory : public QObject
{
    Q_OBJECT

private slots:
    // Everything by keyboard but the first click: a folder, a copy, a move, a new name, a removal; then a
    // double-click on a file, which its application opens.
    void aMorningOfFiling()
    {
        ShellStory story(QStringLiteral("files"));
        story.publish(writer, teal, {"--title", writerTitle});
        story.server().data.extensions.append({".txt", "text/plain", {writer}});
        QVERIFY(story.start());
        WineSession& windows = story.windows();
        const QDir home(windows.home());
        const auto exists = [&home](const QString& name) { return QFile::exists(home.filePath(name)); };
        QFile letter(home.filePath(QStringLiteral("0 letter.txt"))); // the first file of the home folder
        QVERIFY(letter.open(QFile::WriteOnly));
        QCOMPARE(letter.write("the letter"), qint64(10));
        letter.close();

        story.click(story.fixedButton(1));
        QVERIFY(story.waitForPage());
        QTest::qWait(2000); // the folder is read
        story.look(QStringLiteral("icons"));

        // The keyboard is in the folder: a new folder, made and entered.
        windows.press(QStringLiteral("ctrl+shift+n"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("New folder")));
        windows.type(QStringLiteral("00 archive"));
        story.look(QStringLiteral("new-folder"));
        windows.press(QStringLiteral("Return"));
        QTRY_VERIFY_WITH_TIMEOUT(exists(QStringLiteral("00 archive")), 60000);
        QVERIFY(story.waitForPage());

        // The letter is cut and pasted there.
        windows.type(QStringLiteral("0 l"));
        windows.press(QStringLiteral("ctrl+x"));
        QTest::qWait(1500); // the next name that is typed is a new one
        windows.type(QStringLiteral("00"));
        windows.press(QStringLiteral("Return"));
        QTest::qWait(1500); // the folder is read
        windows.press(QStringLiteral("ctrl+v"));
        QTRY_VERIFY_WITH_TIMEOUT(exists(QStringLiteral("00 archive/0 letter.txt")), 60000);
        QTRY_VERIFY_WITH_TIMEOUT(!exists(QStringLiteral("0 letter.txt")), 60000);
        story.look(QStringLiteral("moved"));

        // It gets another name.
        QTest::qWait(1500);
        windows.type(QStringLiteral("0"));
        windows.press(QStringLiteral("F2"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Rename")));
        windows.type(QStringLiteral("report.txt"));
        windows.press(QStringLiteral("Return"));
        QTRY_VERIFY_WITH_TIMEOUT(exists(QStringLiteral("00 archive/report.txt")), 60000);
        QVERIFY(story.waitForPage());

        // Its application opens it.
        QTest::qWait(1500);
        windows.type(QStringLiteral("rep"));
        windows.press(QStringLiteral("Return"));
        QVERIFY(story.waitForFront(ShellStory::program(writer), writerTitle));
        QVERIFY(story.waitForTaskButtons(1));
        story.look(QStringLiteral("opened"));
        QVERIFY2(!story.evidence(writer).filter(QStringLiteral("report.txt")).isEmpty(),
                 qPrintable(story.evidence(writer).join('\n')));

        // Back in the list view, by mouse: the report is removed.
        story.click(story.fixedButton(1));
        QVERIFY(story.waitForPage());
        story.click(QPoint(story.page().right() - 85, 35)); // the list view
        QTest::qWait(1000);
        story.look(QStringLiteral("list"));
        windows.type(QStringLiteral("rep"));
        windows.press(QStringLiteral("Delete"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Remove file")));
        story.look(QStringLiteral("remove"));
        windows.press(QStringLiteral("alt+y"));
        QTRY_VERIFY_WITH_TIMEOUT(!exists(QStringLiteral("00 archive/report.txt")), 60000);
        QVERIFY(exists(QStringLiteral("00 archive")));
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(FilesStory)
#include "tst_files.moc"
