// Configuration by the keyboard alone: an association is changed, and the password; what remains of it is in
// the user's file and in Windows' record.
#include "support/sandbox.h"
#include "support/shellstory.h"

#include <QtTest>

namespace {

const QColor sand("#f2e3c6");
const QColor teal("#12566b");
const QString letters = QStringLiteral("letters");
const QString ledger = QStringLiteral("ledger");
const QString shellProgram = QStringLiteral("quillet.exe");
constexpr int patience = 60000; // ms

} // namespace

class ConfigurationStory : public QObject
{
    Q_OBJECT

    static void press(ShellStory& story, const QString& key) { story.windows().press(key); }

    static bool waitForChange(ShellStory& story, const QImage& before, const QString& name)
    {
        const bool changed = story.waitForPageChange(before);
        story.look(name);
        return changed;
    }
    // Presses a key that shows another page or tool.
    static bool pressAndWait(ShellStory& story, const QString& key, const QString& name)
    {
        const QImage before = story.windows().screen();
        press(story, key);
        return waitForChange(story, before, name);
    }

private slots:
    void byTheKeyboardAlone()
    {
        ShellStory story(QStringLiteral("configuration"));
        story.publish(letters, sand, {"--title", "Letters"});
        story.publish(ledger, teal, {"--title", "Ledger"});
        story.server().data.extensions.append({".odt", {letters, ledger}});
        QVERIFY(story.start());
        const QString file = story.windows().home() + QStringLiteral("/.quillet/mime/extensions");
        QVERIFY(!QFile::exists(file));

        // To the panel, and to its first tool.
        press(story, QStringLiteral("F6"));
        press(story, QStringLiteral("Right"));
        press(story, QStringLiteral("Right"));
        QVERIFY(pressAndWait(story, QStringLiteral("space"), QStringLiteral("panel")));
        QVERIFY(pressAndWait(story, QStringLiteral("Down"), QStringLiteral("button")));
        QVERIFY(pressAndWait(story, QStringLiteral("Return"), QStringLiteral("editor")));

        // From the extensions to what opens them; the first of these goes down.
        QVERIFY(pressAndWait(story, QStringLiteral("Tab"), QStringLiteral("chosen")));
        QVERIFY(pressAndWait(story, QStringLiteral("alt+Down"), QStringLiteral("moved")));
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Modified configuration")));
        story.look(QStringLiteral("question"));
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForPage());
        QTRY_COMPARE_WITH_TIMEOUT(Sandbox::readFile(file), QByteArray("[General]\r\n.odt=ledger:letters\r\n"),
                                  patience);

        // Back on the tool's button, and on to the password.
        QVERIFY(pressAndWait(story, QStringLiteral("Down"), QStringLiteral("second-button")));
        QVERIFY(pressAndWait(story, QStringLiteral("Return"), QStringLiteral("password")));
        for (const char* const text : {"tide", "spring", "sprang"}) {
            story.windows().type(QLatin1String(text));
            press(story, QStringLiteral("Tab"));
        }
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Password mismatch")));
        story.look(QStringLiteral("mismatch"));
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForPage());
        QCOMPARE(story.windows().passwordChanges(), QStringList());
        press(story, QStringLiteral("shift+Tab"));
        story.windows().type(QStringLiteral("spring")); // replaces what was there
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Password change succesful")));
        story.look(QStringLiteral("changed"));
        QCOMPARE(story.windows().passwordChanges(), QStringList("\\0\t\\0\ttide\tspring"));
        const QImage before = story.windows().screen();
        press(story, QStringLiteral("Return"));
        QVERIFY(waitForChange(story, before, QStringLiteral("end")));
        QVERIFY(story.waitForPage());

        // Windows refuses the next one.
        QVERIFY(story.windows().setPasswordResult(2245));
        QVERIFY(pressAndWait(story, QStringLiteral("Return"), QStringLiteral("password-again")));
        story.windows().type(QStringLiteral("x")); // the old password is there already
        press(story, QStringLiteral("Tab"));
        story.windows().type(QStringLiteral("x"));
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForFront(shellProgram, QStringLiteral("Cannot change password")));
        story.look(QStringLiteral("refused"));
        press(story, QStringLiteral("Return"));
        QVERIFY(story.waitForPage());
        QCOMPARE(story.windows().passwordChanges().value(1), QStringLiteral("\\0\t\\0\tspring\tx"));
        QVERIFY(pressAndWait(story, QStringLiteral("Escape"), QStringLiteral("back")));
        QCOMPARE(story.startsAndEnds(), QStringList());
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(ConfigurationStory)
#include "tst_configuration.moc"
