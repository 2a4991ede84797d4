// A morning of filing: the shipped shell's file manager on the files of its Windows.
#include "resources/resources.h"
#include "support/sandbox.h"
#include "support/shellstory.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

namespace {

constexpr int patience = 60000;  // ms
constexpr int searchEnds = 500;  // ms after the last letter, the next letter begins another search by name
constexpr int iconViewIcon = 64; // pixels
constexpr int listViewIcon = 22;
constexpr int toolIcon = 40;
constexpr int menuIcon = 16;
const QColor sand("#f2e3c6");
const QString letters = QStringLiteral("letters");
const QString lettersTitle = QStringLiteral("Letters");
const QString shellProgram = QStringLiteral("quillet.exe");

bool waitUntil(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, patience);
}

QImage resourcePicture(const char* folder, const char* name)
{
    return QImage(QStringLiteral(":/icons/%1/%2.png").arg(QLatin1String(folder), QLatin1String(name)));
}

// The middle of the picture wherever it stands on the screen at this size, in reading order. What is disabled
// or selected looks otherwise.
QList<QPoint> middlesOf(const QImage& picture, int size, const QImage& screen)
{
    constexpr int tolerance = 8; // of scaling
    const QImage sought = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                              .scaled(size, size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage seen = screen.convertToFormat(QImage::Format_RGB32);
    QList<QPoint> opaque;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            if (qAlpha(sought.pixel(x, y)) == 255)
                opaque.append(QPoint(x, y));
        }
    }
    const auto isLike = [](QRgb a, QRgb b) {
        return qAbs(qRed(a) - qRed(b)) <= tolerance && qAbs(qGreen(a) - qGreen(b)) <= tolerance &&
               qAbs(qBlue(a) - qBlue(b)) <= tolerance;
    };
    QList<QPoint> middles;
    for (int top = 0; top + size <= seen.height(); ++top) {
        for (int left = 0; left + size <= seen.width(); ++left) {
            const bool isThere = std::all_of(opaque.begin(), opaque.end(), [&](const QPoint& at) {
                return isLike(seen.pixel(left + at.x(), top + at.y()), sought.pixel(at));
            });
            const QPoint middle(left + size / 2, top + size / 2);
            const bool isKnown = std::any_of(middles.begin(), middles.end(), [&](const QPoint& other) {
                return (other - middle).manhattanLength() < size / 2;
            });
            if (!opaque.isEmpty() && isThere && !isKnown)
                middles.append(middle);
        }
    }
    return middles;
}

// A session with a folder "Accounts" in the user's home, the first there, and an application for its files.
class Filing
{
public:
    explicit Filing(const QString& name)
        : story(name)
        , m_folder(story.windows().home() + QStringLiteral("/Accounts"))
    {
        QDir().mkpath(m_folder);
        story.publish(letters, sand, {"--title", lettersTitle});
        story.server().data.extensions.append({".txt", {letters}});
        for (const char* const file : {"bill.txt", "note.txt", "old.txt"})
            Sandbox::writeFile(path(QLatin1String(file)), file);
    }

    // Of an entry in the folder, on this machine.
    QString path(const QString& name) const { return m_folder + QLatin1Char('/') + name; }
    bool has(const QString& name, const QByteArray& content) const
    {
        return waitUntil(
            [&] { return QFile::exists(path(name)) && Sandbox::readFile(path(name)) == content; });
    }
    bool waitForEntries(const QStringList& expected, const QString& folder = QString())
    {
        const QDir dir(path(folder));
        QStringList last;
        const bool came = waitUntil([&] {
            last = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
            return last == expected;
        });
        if (!came)
            qWarning("there is: %s", qPrintable(last.join(QLatin1Char(' '))));
        return came;
    }

    // Waits until the folder shows so many folders and files, none of them selected, and remembers where.
    bool waitForView(int size, int folders, int files)
    {
        const QImage file = QImage::fromData(story.server().data.applications.value(letters).icon);
        int seen[] = {-1, -1};
        const bool came = waitUntil([&] {
            const QImage screen = story.windows().screen();
            m_entries = middlesOf(resourcePicture("64x64", "folder"), size, screen);
            seen[0] = m_entries.size();
            const QList<QPoint> others = middlesOf(file, size, screen);
            seen[1] = others.size();
            m_entries += others;
            return seen[0] == folders && seen[1] == files;
        });
        if (!came)
            qWarning("in view: %d folders, %d files", seen[0], seen[1]);
        return came;
    }
    bool waitForIcons(int folders, int files) { return waitForView(iconViewIcon, folders, files); }
    bool waitForList(int folders, int files) { return waitForView(listViewIcon, folders, files); }
    // Of the last view that was waited for; folders come first.
    QPoint entry(int index) const { return m_entries.value(index); }
    void open(int index) { story.windows().doubleClick(entry(index).x(), entry(index).y()); }

    // Clicks on a picture once it is there; a tool that is disabled is not.
    bool clickPicture(const QImage& picture, int size)
    {
        QList<QPoint> middles;
        if (!waitUntil(
                [&] { return !(middles = middlesOf(picture, size, story.windows().screen())).isEmpty(); }))
            return false;
        story.click(middles.first());
        return true;
    }
    bool clickTool(const char* name) { return clickPicture(resourcePicture("48x48", name), toolIcon); }
    bool clickMenu(const char* name) { return clickPicture(resourcePicture("32x32", name), menuIcon); }
    // Waits until something, or nothing, is selected.
    bool waitForSelection(bool isThere = true)
    {
        const QImage picture = resourcePicture("48x48", "rename");
        return waitUntil(
            [&] { return middlesOf(picture, toolIcon, story.windows().screen()).isEmpty() != isThere; });
    }
    bool select(int index)
    {
        story.click(entry(index));
        return waitForSelection();
    }
    // By the keyboard: the first entry whose name begins like this.
    bool search(const QString& name)
    {
        QTest::qWait(searchEnds);
        story.windows().type(name);
        return waitForSelection();
    }
    void press(const QString& key) { story.windows().press(key); }
    // Gives the dialog with this title a name.
    bool answer(const QString& title, const QString& name)
    {
        if (!story.waitForFront(shellProgram, title))
            return false;
        story.look(title.section(QLatin1Char(' '), 0, 0).toLower());
        story.windows().type(name);
        press(QStringLiteral("Return"));
        return story.waitForPage();
    }
    // Answers the question with this title by the button of this letter.
    bool answerBox(const QString& title, const QString& letter)
    {
        if (!story.waitForFront(shellProgram, title))
            return false;
        story.look(QStringLiteral("question"));
        press(QStringLiteral("alt+") + letter);
        return story.waitForPage();
    }
    // Waits for the application with this file.
    bool isOpened(const QString& name)
    {
        const QRegularExpression argument(QStringLiteral("\\Aargument C:.*[/\\\\]Accounts[/\\\\]%1\\z")
                                              .arg(QRegularExpression::escape(name)));
        return story.waitForFront(ShellStory::program(letters), lettersTitle) && story.waitForColour(sand) &&
               story.waitForTaskButtons(1) &&
               waitUntil([&] { return story.evidence(letters).filter(argument).size() == 1; });
    }

    ShellStory story;

private:
    const QString m_folder;
    QList<QPoint> m_entries;
};

} // namespace

class FilesStory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }

    void withTheMouse()
    {
        Filing filing(QStringLiteral("files-mouse"));
        ShellStory& story = filing.story;
        const int home = QDir(story.windows().home()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        QVERIFY(story.start());
        story.click(story.fixedButton(1));
        QVERIFY(filing.waitForIcons(home, 0));
        story.look(QStringLiteral("home"));
        filing.open(0);
        QVERIFY(filing.waitForIcons(0, 3));
        story.look(QStringLiteral("icons"));

        // A new folder, a new name.
        QVERIFY(filing.clickTool("folder-new"));
        QVERIFY(filing.answer(QStringLiteral("New folder"), QStringLiteral("Done")));
        QVERIFY(filing.waitForEntries({"Done", "bill.txt", "note.txt", "old.txt"}));
        QVERIFY(filing.waitForIcons(1, 3));
        QVERIFY(filing.select(1));
        story.look(QStringLiteral("selected"));
        QVERIFY(filing.clickTool("rename"));
        QVERIFY(filing.answer(QStringLiteral("Rename"), QStringLiteral("paid.txt")));
        QVERIFY(filing.waitForEntries({"Done", "note.txt", "old.txt", "paid.txt"}));
        QVERIFY(filing.has(QStringLiteral("paid.txt"), "bill.txt"));

        // A copy into the folder, and back out of it.
        QVERIFY(filing.waitForIcons(1, 3));
        QVERIFY(filing.select(1));
        QVERIFY(filing.clickTool("copy"));
        filing.open(0);
        QVERIFY(filing.waitForIcons(0, 0));
        story.look(QStringLiteral("empty"));
        QVERIFY(filing.clickTool("paste"));
        QVERIFY(filing.waitForEntries({"note.txt"}, QStringLiteral("Done")));
        QVERIFY(filing.waitForIcons(0, 1));
        QVERIFY(filing.clickTool("up"));
        QVERIFY(filing.waitForIcons(1, 3));
        QVERIFY(filing.waitForEntries({"Done", "note.txt", "old.txt", "paid.txt"}));

        // A move, with the menus.
        story.windows().click(filing.entry(3).x(), filing.entry(3).y(), 3);
        QVERIFY(filing.waitForSelection());
        QVERIFY(filing.clickMenu("cut"));
        filing.open(0);
        QVERIFY(filing.waitForIcons(0, 1));
        const QPoint space(story.page().right() - 40, story.page().bottom() - 60);
        story.windows().click(space.x(), space.y(), 3);
        story.look(QStringLiteral("menu"));
        QVERIFY(filing.clickMenu("paste"));
        QVERIFY(filing.waitForEntries({"note.txt", "paid.txt"}, QStringLiteral("Done")));
        QVERIFY(filing.has(QStringLiteral("Done/paid.txt"), "bill.txt"));
        QVERIFY(filing.waitForEntries({"Done", "note.txt", "old.txt"}));
        QVERIFY(filing.waitForIcons(0, 2));
        QVERIFY(filing.clickTool("up"));
        QVERIFY(filing.waitForIcons(1, 2));

        // In the list: what is removed goes when the user says so.
        QVERIFY(filing.clickTool("list-view"));
        QVERIFY(filing.waitForList(1, 2));
        story.look(QStringLiteral("list"));
        QVERIFY(filing.select(2));
        story.look(QStringLiteral("list-selected"));
        QVERIFY(filing.clickTool("remove"));
        QVERIFY(filing.answerBox(QStringLiteral("Remove file"), QStringLiteral("n")));
        QVERIFY(filing.clickTool("remove"));
        QVERIFY(filing.has(QStringLiteral("old.txt"), "old.txt"));
        QVERIFY(filing.answerBox(QStringLiteral("Remove file"), QStringLiteral("y")));
        QVERIFY(filing.waitForEntries({"Done", "note.txt"}));
        QVERIFY(filing.waitForList(1, 1));
        filing.open(0);
        QVERIFY(filing.waitForList(0, 2));
        QVERIFY(filing.clickTool("icon-view"));
        QVERIFY(filing.waitForIcons(0, 2));

        // A place, and back to what is opened.
        QVERIFY(filing.clickPicture(resourcePicture("64x64", "folder-home"), iconViewIcon));
        QVERIFY(filing.waitForIcons(home, 0));
        filing.open(0);
        QVERIFY(filing.waitForIcons(1, 1));
        filing.open(1);
        QVERIFY(filing.isOpened(QStringLiteral("note.txt")));
        story.look(QStringLiteral("opened"));
        story.click(story.fixedButton(1));
        QVERIFY(filing.waitForSelection());
        story.look(QStringLiteral("back"));
        QCOMPARE(story.startsAndEnds(), QStringList("start letters"));
        QCOMPARE(story.warnings(), QStringList());
    }

    void withTheKeyboard()
    {
        Filing filing(QStringLiteral("files-keyboard"));
        ShellStory& story = filing.story;
        const int home = QDir(story.windows().home()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
        QVERIFY(story.start());
        filing.press(QStringLiteral("F6"));
        filing.press(QStringLiteral("Right"));
        filing.press(QStringLiteral("space"));
        QVERIFY(filing.waitForIcons(home, 0));
        QVERIFY(filing.search(QStringLiteral("acc")));
        story.look(QStringLiteral("home"));
        filing.press(QStringLiteral("Return"));
        QVERIFY(filing.waitForIcons(0, 3));

        filing.press(QStringLiteral("ctrl+shift+n"));
        QVERIFY(filing.answer(QStringLiteral("New folder"), QStringLiteral("Done")));
        QVERIFY(filing.waitForEntries({"Done", "bill.txt", "note.txt", "old.txt"}));
        QVERIFY(filing.waitForIcons(1, 3));
        QVERIFY(filing.search(QStringLiteral("bill")));
        filing.press(QStringLiteral("F2"));
        QVERIFY(filing.answer(QStringLiteral("Rename"), QStringLiteral("paid.txt")));
        QVERIFY(filing.waitForEntries({"Done", "note.txt", "old.txt", "paid.txt"}));
        QVERIFY(filing.waitForIcons(1, 3));

        // A copy.
        QVERIFY(filing.search(QStringLiteral("note")));
        filing.press(QStringLiteral("ctrl+c"));
        QVERIFY(filing.search(QStringLiteral("done")));
        filing.press(QStringLiteral("Return"));
        QVERIFY(filing.waitForIcons(0, 0));
        filing.press(QStringLiteral("ctrl+v"));
        QVERIFY(filing.waitForEntries({"note.txt"}, QStringLiteral("Done")));
        QVERIFY(filing.waitForIcons(0, 1));
        filing.press(QStringLiteral("BackSpace"));
        QVERIFY(filing.waitForIcons(1, 3));

        // A move.
        QVERIFY(filing.search(QStringLiteral("paid")));
        filing.press(QStringLiteral("ctrl+x"));
        QVERIFY(filing.search(QStringLiteral("done")));
        filing.press(QStringLiteral("Return"));
        QVERIFY(filing.waitForIcons(0, 1));
        filing.press(QStringLiteral("ctrl+v"));
        QVERIFY(filing.waitForEntries({"note.txt", "paid.txt"}, QStringLiteral("Done")));
        QVERIFY(filing.waitForEntries({"Done", "note.txt", "old.txt"}));
        QVERIFY(filing.waitForIcons(0, 2));
        filing.press(QStringLiteral("alt+Up"));
        QVERIFY(filing.waitForIcons(1, 2));

        // A removal, in the list: two tab stops away is the button of the other view.
        filing.press(QStringLiteral("shift+Tab"));
        filing.press(QStringLiteral("shift+Tab"));
        filing.press(QStringLiteral("space"));
        QVERIFY(filing.waitForList(1, 2));
        QVERIFY(filing.search(QStringLiteral("old")));
        story.look(QStringLiteral("list"));
        filing.press(QStringLiteral("Delete"));
        QVERIFY(filing.answerBox(QStringLiteral("Remove file"), QStringLiteral("n")));
        QVERIFY(filing.has(QStringLiteral("old.txt"), "old.txt"));
        filing.press(QStringLiteral("Delete"));
        QVERIFY(filing.answerBox(QStringLiteral("Remove file"), QStringLiteral("y")));
        QVERIFY(filing.waitForEntries({"Done", "note.txt"}));
        QVERIFY(filing.waitForList(1, 1));
        filing.press(QStringLiteral("shift+Tab"));
        filing.press(QStringLiteral("shift+Tab"));
        filing.press(QStringLiteral("space"));
        QVERIFY(filing.waitForIcons(1, 1));

        QVERIFY(filing.search(QStringLiteral("note")));
        story.look(QStringLiteral("icons"));
        filing.press(QStringLiteral("Return"));
        QVERIFY(filing.isOpened(QStringLiteral("note.txt")));
        story.look(QStringLiteral("opened"));
        QCOMPARE(story.startsAndEnds(), QStringList("start letters"));
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(FilesStory)
#include "tst_files.moc"
