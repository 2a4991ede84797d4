// A round through the shipped shell, in both languages and on the usual screens: every page comes up, whole,
// and its picture is taken. The pictures in docs/screenshots/ are from here.
#include "support/sandbox.h"
#include "support/shellstory.h"

#include <QDir>
#include <QtTest>

namespace {

constexpr int listViewFromRight = 89; // pixels, the middle of the tool
constexpr int toolsMiddle = 35;
const QString shellProgram = QStringLiteral("quillet.exe");

} // namespace

class TourStory : public QObject
{
    Q_OBJECT

    static void fillHome(const QDir& home, bool inSpanish)
    {
        const QStringList folders = inSpanish
                                        ? QStringList({"Cartas", "Facturas 2026", "Fotos del puerto"})
                                        : QStringList({"Invoices 2026", "Letters", "Photos of the harbour"});
        const QStringList files = inSpanish ? QStringList({"Acta de la reunión.odt", "Informe anual.pdf",
                                                           "Notas.txt", "Presupuesto.ods", "puerto.png"})
                                            : QStringList({"Annual report.pdf", "Budget.ods", "harbour.png",
                                                           "Minutes of the meeting.odt", "Notes.txt"});
        for (const QString& folder : folders)
            home.mkpath(folder);
        for (int i = 0; i < files.size(); ++i)
            Sandbox::writeFile(home.filePath(files.at(i)), QByteArray(9000 * (i + 1), ' '));
    }

    // Starts a program and writes into it.
    static bool launchAndWrite(ShellStory& story, const QString& id, const QString& text, int tasks)
    {
        const QImage before = story.windows().screen();
        story.launch(id);
        const QString program = ShellStory::program(id);
        if (!QTest::qWaitFor([&] { return story.front().program == program; }, 60000) ||
            !story.waitForTaskButtons(tasks))
            return false;
        story.windows().type(text);
        return story.waitForPageChange(before);
    }

private slots:
    void everyPage_data()
    {
        QTest::addColumn<bool>("inSpanish");
        QTest::addColumn<QSize>("screen");
        QTest::newRow("en") << false << QSize(1024, 768);
        QTest::newRow("es") << true << QSize(1366, 768);
        QTest::newRow("es-large") << true << QSize(1920, 1080);
    }
    void everyPage()
    {
        QFETCH(bool, inSpanish);
        QFETCH(QSize, screen);
        ShellStory story(QStringLiteral("tour-") + QTest::currentDataTag(), screen.width(), screen.height());
        QVERIFY(story.publishFrom(QStringLiteral("tour.json")));
        if (inSpanish)
            story.windows().speakSpanish();
        fillHome(QDir(story.windows().home()), inSpanish);

        QVERIFY(story.startWithPassword(inSpanish ? QStringLiteral("Diálogo") : QStringLiteral("Dialog")));
        story.look(QStringLiteral("login"));
        story.windows().type(QStringLiteral("tide"));
        story.windows().press(QStringLiteral("Return"));
        QVERIFY(story.waitForLauncher());
        story.look(QStringLiteral("launcher"));

        QVERIFY(launchAndWrite(story, QStringLiteral("notepad"), QStringLiteral("2026"), 1));
        QVERIFY(story.showLauncher());
        QVERIFY(launchAndWrite(story, QStringLiteral("taskmgr"), QString(), 2));
        QVERIFY(story.showLauncher());
        QVERIFY(launchAndWrite(
            story, QStringLiteral("wordpad"),
            inSpanish ? QStringLiteral("Acta del lunes") : QStringLiteral("Minutes of Monday"), 3));
        story.look(QStringLiteral("windows"));

        QImage before = story.windows().screen();
        story.click(story.fixedButton(1));
        QVERIFY(story.waitForPage());
        QVERIFY(story.waitForPageChange(before));
        story.look(QStringLiteral("files-icons"));
        before = story.windows().screen();
        story.click(QPoint(story.page().right() - listViewFromRight, toolsMiddle));
        QVERIFY(story.waitForPageChange(before));
        story.look(QStringLiteral("files-list"));

        before = story.windows().screen();
        story.click(story.fixedButton(2));
        QVERIFY(story.waitForPageChange(before));
        story.look(QStringLiteral("configuration"));
        before = story.windows().screen();
        story.windows().press(QStringLiteral("Down"));
        story.windows().press(QStringLiteral("Return"));
        QVERIFY(story.waitForPageChange(before));
        story.look(QStringLiteral("associations"));
        story.windows().press(QStringLiteral("Escape"));

        QCOMPARE(story.startsAndEnds(), QStringList({"start notepad", "start taskmgr", "start wordpad"}));
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TourStory)
#include "tst_tour.moc"
