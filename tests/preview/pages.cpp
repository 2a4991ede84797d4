#include "preview/pages.h"

#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "preview/person.h"
#include "preview/pictures.h"
#include "preview/shellpages.h"
#include "preview/stage.h"
#include "preview/toolpages.h"
#include "session/initscreen.h"
#include "shell/appbutton.h"
#include "shell/menu.h"
#include "shell/tabbar.h"
#include "shell/threadbutton.h"
#include "support/runningshell.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace preview;

namespace {

Scene openLogin(Stage& stage)
{
    const auto dialog = std::make_shared<InitScreen>();
    const QSize size = stage.isLive() ? stage.pageSize() : Stage::screenSize();
    dialog->setFixedSize(size);
    show(dialog.get());
    dialog->centrePanel(size);
    return {dialog.get(), dialog};
}

// A folder with something of everything.
QString exampleFolder(const QString& root)
{
    QDir folder(root);
    for (const char* const name : {"Invoices 2014", "Letters", "Photos from the harbour"})
        folder.mkpath(QString::fromLatin1(name));
    for (const char* const name :
         {"Minutes of the meeting.odt", "Budget_2014_final_version_3.xlsx", "Notes.txt", "harbour.png",
          "Annual report.pdf", "Read me",
          "A name that goes on and on until no cell of the grid can hold it.txt", "<b>bold & more.txt"}) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        if (!file.open(QFile::WriteOnly) || file.write(name) < 0)
            qFatal("cannot write an example");
    }
    return folder.path();
}

Scene openPlaces(Stage& stage)
{
    struct Places
    {
        QTemporaryDir root;
        std::unique_ptr<FileSystemWidget> page;
    };
    stage.connectClient();
    const auto places = std::make_shared<Places>();
    places->page = std::make_unique<FileSystemWidget>(nullptr, true, exampleFolder(places->root.path()));
    FileSystemWidget* const page = places->page.get();
    page->adjustLayout();
    page->setFixedSize(stage.pageSize());
    show(page);
    QTest::qWait(500); // the folder is read, icons come
    return {page, places};
}

void selectFirst(const Scene& s)
{
    auto* const view = s.page->findChild<QListView*>(QStringLiteral("iconView"));
    view->setFocus();
    view->setCurrentIndex(view->model()->index(3, 0, view->rootIndex()));
}

void showList(const Scene& s)
{
    QTest::mouseClick(s.page->findChild<QWidget*>(QStringLiteral("listViewButton")), Qt::LeftButton);
    QTest::qWait(200); // icons come
}

// The whole shell. What it starts opens a window on the simulated Windows a moment later.
Scene openDesktop(Stage&)
{
    const auto shell = std::make_shared<RunningShell>();
    if (!shell->bar())
        return {nullptr, shell}; // the login was given up
    QObject::connect(shell->bar(), &TabBar::launchApplication, shell->bar(), [](AppInstance* application) {
        constexpr int start = 700; // ms
        const QString title = QStringLiteral("Untitled - ") + application->displayName();
        QTimer::singleShot(start, qApp, [title] { Stage::openWindow(title); });
    });
    return {nullptr, shell};
}

RunningShell& shellOf(const Scene& scene)
{
    return *static_cast<RunningShell*>(scene.owner.get());
}

// Starts applications of the launcher, one after the other.
void launch(const Scene& scene, int count)
{
    RunningShell& shell = shellOf(scene);
    for (int i = 0; i < count; ++i) {
        const auto buttons = shell.launcher()->findChildren<AppButton*>();
        const int before = shell.bar()->count();
        buttons.at(i * 3 % buttons.size())->click();
        if (!QTest::qWaitFor([&] { return shell.bar()->count() > before; }, 20000))
            qFatal("no window came");
    }
}

void speakSpanish(Stage& stage)
{
    stage.speakSpanish();
}

} // namespace

QList<Page> pages()
{
    QList<Page> all = {
        {"login",
         "the login dialog",
         openLogin,
         {rest(),
          {"typed", [](const Scene& s) { QTest::keyClicks(nth<QLineEdit>(s, 0), "tide"); }, {}},
          {"spanish", {}, speakSpanish}}},
    };
    all += shellPages();
    all += {
        {"places",
         "the file manager",
         openPlaces,
         {rest(),
          {"selected", selectFirst, {}},
          {"list", showList, {}},
          {"list-selected",
           [](const Scene& s) {
               selectFirst(s);
               showList(s);
           },
           {}}}},
    };
    all += toolPages();
    all += {
        {"desktop",
         "the whole shell",
         openDesktop,
         {rest(),
          {"tasks", [](const Scene& s) { launch(s, 5); }, {}},
          {"busy",
           [](const Scene& s) {
               nth<AppButton>({shellOf(s).launcher(), {}}, 0)->click();
           },
           {}},
          {"suspend-question",
           [](const Scene& s) {
               launch(s, 2);
               ask([button = QPointer<ThreadButton>(shellOf(s).powerButton())] {
                   if (button)
                       button->click();
               });
           },
           {}}}},
        picturesPage(),
    };
    return all;
}
