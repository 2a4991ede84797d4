// A round through the shipped shell, in both languages and on the usual screens: every page comes up,
// and its picture is taken. The pictures in docs/screenshots/ are from here.
#include "support/sandbox.h"
#include "support/shellstory.h"

#include <QDir>
#include <QtTest>

#include <functional>

namespace {

constexpr int listViewFromRight = 89; // pixels, the middle of the tool
constexpr int toolsMiddle = 35;

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

    // Shows another page or tool, and waits until it is there.
    static bool change(ShellStory& story, const std::function<void()>& act)
    {
        const QImage before = story.windows().screen();
        act();
        return story.waitForPageChange(before);
    }
    // Starts a program and, if there is a text, writes it into its window.
    static bool launchAndWrite(ShellStory& story, const QString& id, const QString& text, int tasks)
    {
        const QString program = ShellStory::program(id);
        if (!change(story, [&] { story.launch(id); }) ||
            !QTest::qWaitFor([&] { return story.front().program == program; }, 60000) ||
            !story.waitForTaskButtons(tasks))
            return false;
        return text.isEmpty() || change(story, [&] { story.windows().type(text); });
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
        QVERIFY(story.waitForColour(Qt::white)); // the panel in its middle
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

        QVERIFY(change(story, [&] { story.click(story.fixedButton(1)); }));
        QVERIFY(story.waitForPage());
        story.look(QStringLiteral("files-icons"));
        QVERIFY(change(story,
                       [&] { story.click(QPoint(story.page().right() - listViewFromRight, toolsMiddle)); }));
        story.look(QStringLiteral("files-list"));

        QVERIFY(change(story, [&] { story.click(story.fixedButton(2)); }));
        story.look(QStringLiteral("configuration"));
        QVERIFY(change(story, [&] { story.windows().press(QStringLiteral("Down")); })); // the focus frame
        QVERIFY(change(story, [&] { story.windows().press(QStringLiteral("Return")); }));
        // The editor's lists.
        QCOMPARE(story.windows().screen().pixelColor(story.page().center()), QColor(Qt::white));
        story.look(QStringLiteral("associations"));

        QCOMPARE(story.startsAndEnds(), QStringList({"start notepad", "start taskmgr", "start wordpad"}));
        QCOMPARE(story.warnings(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TourStory)
#include "tst_tour.moc"
