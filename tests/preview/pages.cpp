#include "preview/pages.h"

#include "config/configure.h"
#include "config/mimeconfig.h"
#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "preview/pictures.h"
#include "preview/stage.h"
#include "session/busycursor.h"
#include "session/initscreen.h"
#include "session/userconfig.h"
#include "shell/appbutton.h"
#include "shell/closebutton.h"
#include "shell/focusframe.h"
#include "shell/menu.h"
#include "shell/plainbutton.h"
#include "shell/tabbar.h"
#include "shell/taskfitting.h"
#include "shell/threadbutton.h"
#include "shell/threadmanager.h"
#include "shell/threadwidget.h"
#include "support/runningshell.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <vector>

namespace {

const char pageColor[] = "e6eaed";

// --- What a person does

// The n-th of the page's widgets of a kind.
template <typename Widget>
Widget* nth(const Scene& scene, int n)
{
    const auto all = scene.page->findChildren<Widget*>();
    if (n >= all.size())
        qFatal("no such widget");
    return all.at(n);
}

void hover(QWidget* widget)
{
    widget->setAttribute(Qt::WA_UnderMouse);
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &enter);
}

void press(QWidget* widget)
{
    hover(widget);
    QTest::mousePress(widget, Qt::LeftButton);
}

void focus(QWidget* widget)
{
    widget->window()->activateWindow();
    if (!QTest::qWaitForWindowActive(widget->window()))
        qFatal("the window does not become active");
    FocusFrame::giveFocus(widget);
}

// --- Tasks

struct Task
{
    const char* application;
    const char* title;
};
const Task tasks[] = {
    {"libreofficewriter", "Minutes of the meeting.odt - Writer"},
    {"msexcel2013", "Budget 2014.xlsx - Excel"},
    {"notepad", "Notes - Notepad"},
    {"acrobatreader", "Annual report.pdf"},
    {"chrome", "Intranet"},
};
constexpr int taskCount = sizeof tasks / sizeof *tasks;

ThreadButton* makeTask(int n)
{
    const Task& task = tasks[n % taskCount];
    const QString title = QString::fromLatin1(task.title);
    const QString id = QString::fromLatin1(task.application);
    auto* const button = new ThreadButton(nullptr, ThreadButton::WindowButton, Stage::applicationPicture(id),
                                          id, title, Stage::openWindow(title), 1, 0); // its taker's
    button->setSnapshot(Stage::windowPicture(title));
    return button;
}

// --- Pages

void show(QWidget* page)
{
    page->show();
    if (!QTest::qWaitForWindowExposed(page))
        qFatal("the page does not show");
}

Scene openLogin(Stage& stage)
{
    const auto dialog = std::make_shared<InitScreen>();
    const QSize size = stage.isLive() ? stage.pageSize() : Stage::screenSize();
    dialog->setFixedSize(size);
    show(dialog.get());
    dialog->centrePanel(size);
    return {dialog.get(), dialog};
}

Scene openLauncher(Stage& stage)
{
    const auto launcher = std::make_shared<Menu>(nullptr, QLatin1String(pageColor));
    launcher->fill(stage.applications(), stage.connectClient());
    launcher->setLogo();
    launcher->resize(stage.pageSize());
    show(launcher.get());
    return {launcher.get(), launcher};
}

Scene openBar(Stage& stage)
{
    stage.connectClient();
    const auto bar = std::make_shared<TabBar>();
    const auto showTask = [bar = bar.get()](int position) {
        const ThreadButton* const button = bar->buttonAt(position);
        bar->setCurrentThreadName(button->name());
        bar->setCurrentThreadText(button->taskText());
    };
    QObject::connect(bar.get(), &TabBar::currentChanged, bar.get(), showTask);
    QObject::connect(bar.get(), &TabBar::exitApp, qApp, &QCoreApplication::quit);
    for (int i = 0; i < taskCount; ++i)
        bar->addButton(makeTask(i));
    for (int i = 0; i < bar->count(); ++i) {
        ThreadButton* const button = bar->buttonAt(i);
        QObject::connect(button, &QPushButton::clicked, bar.get(),
                         [bar = bar.get(), i] { bar->setCurrentIndex(i); });
    }
    bar->resize(Stage::screenSize() - QSize(0, shell::taskBarHeight));
    show(bar.get());
    return {bar.get(), bar};
}

Scene openOverview(int count)
{
    struct Overview
    {
        std::vector<std::unique_ptr<ThreadButton>> buttons;
        std::unique_ptr<ThreadManager> window;
    };
    const auto overview = std::make_shared<Overview>();
    QList<ThreadButton*> buttons;
    for (int i = 0; i < count; ++i) {
        overview->buttons.emplace_back(makeTask(i));
        buttons.append(overview->buttons.back().get());
    }
    overview->window = std::make_unique<ThreadManager>(buttons, 0, [](ThreadButton*) {});
    show(overview->window.get());
    return {overview->window.get(), overview};
}

Scene openSuspendNotice(Stage&)
{
    const auto overview = std::make_shared<ThreadManager>(QList<ThreadButton*>(), 0, [](ThreadButton*) {});
    overview->disconnect();
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* const widget : widgets) {
        if (qobject_cast<QLabel*>(widget) && widget->isVisible()) {
            const QPointer<QWidget> notice(widget);
            return {widget,
                    std::shared_ptr<void>(overview.get(), [overview, notice](void*) { delete notice; })};
        }
    }
    qFatal("no notice");
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

Scene openConfiguration(Stage& stage)
{
    stage.connectClient();
    const auto page = std::make_shared<Configure>(nullptr, QLatin1String(pageColor));
    page->resize(stage.pageSize());
    page->setUp();
    show(page.get());
    return {page.get(), page};
}

// One of its tools, in place, as the controller shows it.
template <typename Tool>
Scene openTool(Stage& stage)
{
    Scene scene = openConfiguration(stage);
    Tool* const tool = nth<Tool>(scene, 0);
    tool->setFixedSize(stage.pageSize());
    tool->move(0, 0);
    tool->setFocus(Qt::OtherFocusReason);
    tool->show();
    tool->raise();
    return scene;
}

void typePasswords(const Scene& s, const char* newPassword, const char* repeated)
{
    UserConfig* const dialog = nth<UserConfig>(s, 0);
    const auto fields = dialog->findChildren<QLineEdit*>();
    QTest::keyClicks(fields.at(1), QStringLiteral("tide"));
    QTest::keyClicks(fields.at(2), QLatin1String(newPassword));
    QTest::keyClicks(fields.at(3), QLatin1String(repeated));
}

Scene openAssociations(Stage& stage)
{
    stage.addAssociations();
    return openTool<MimeConfig>(stage);
}

// The n-th entry of one of its boxes, as a user chooses it.
void choose(const Scene& scene, const char* name, int index)
{
    auto* const box = scene.page->findChild<QComboBox*>(QLatin1String(name));
    box->setCurrentIndex(index);
    QMetaObject::invokeMethod(box, "activated", Q_ARG(int, index));
}

QListWidget* listOf(const Scene& scene, const char* name)
{
    return scene.page->findChild<QListWidget*>(QLatin1String(name));
}

void changeAssociations(const Scene& scene)
{
    choose(scene, "groupBox", 5); // Office
    choose(scene, "extensionsBox", 2);
    listOf(scene, "applicationsList")->setCurrentRow(1);
    scene.page->findChild<QPushButton*>(QStringLiteral("addButton"))->click();
    listOf(scene, "selectedList")->setCurrentRow(2);
    scene.page->findChild<QPushButton*>(QStringLiteral("upButton"))->click();
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

const QByteArray longPassword(500, 'w');

const QStringList strangeNames = {QString(),
                                  QStringLiteral("Text Editor"),
                                  QStringLiteral("<b>Bold</b> & <i>brave</i>"),
                                  QStringLiteral("A name of a great many words that goes on"),
                                  QStringLiteral("Donaudampfschifffahrtsgesellschaft"),
                                  QString::fromUtf8("עורך טקסט"),
                                  QString::fromUtf8("Diseño gráfico"),
                                  QStringLiteral("One\nline feed"),
                                  QString(300, QLatin1Char('W'))};

void offerMany(Stage& stage)
{
    QStringList names;
    for (int i = 1; i <= 500; ++i)
        names.append(QStringLiteral("Application %1").arg(i));
    stage.offer(names);
}

void addTasks(const Scene& scene, int count)
{
    const auto bar = static_cast<TabBar*>(scene.page);
    for (int i = 0; i < count; ++i)
        bar->addButton(makeTask(i));
}

ThreadButton* buttonAt(const Scene& scene, int position)
{
    return static_cast<TabBar*>(scene.page)->buttonAt(position);
}

ThreadButton* logOffButton(const Scene& scene)
{
    const auto all = scene.page->findChildren<ThreadButton*>();
    for (ThreadButton* const button : all) {
        if (button->kind() == ThreadButton::PowerButton)
            return button;
    }
    qFatal("no log-off button");
}

void speakSpanish(Stage& stage)
{
    stage.speakSpanish();
}

// Asks a question whose box stays open; the picture is taken within.
void ask(std::function<void()> question)
{
    QTimer::singleShot(0, qApp, std::move(question));
}

} // namespace

QList<Page> pages()
{
    const State rest{"rest", {}, {}};
    return {
        {"login",
         "the login dialog",
         openLogin,
         {rest,
          {"typed", [](const Scene& s) { QTest::keyClicks(nth<QLineEdit>(s, 0), "tide"); }, {}},
          {"spanish", {}, speakSpanish}}},
        {"launcher",
         "the launcher, with the catalogue's applications",
         openLauncher,
         {rest,
          {"hovered", [](const Scene& s) { hover(nth<AppButton>(s, 0)); }, {}},
          {"pressed", [](const Scene& s) { press(nth<AppButton>(s, 0)); }, {}},
          {"focused", [](const Scene& s) { focus(nth<AppButton>(s, 0)); }, {}},
          {"busy",
           [](const Scene& s) {
               session::showBusy();
               press(nth<AppButton>(s, 0));
           },
           {}},
          {"strange-names", {}, [](Stage& stage) { stage.offer(strangeNames); }},
          {"five-hundred", {}, offerMany},
          {"none", {}, [](Stage& stage) { stage.offer({}); }}}},
        {"bar",
         "the task bar, with a handful of tasks",
         openBar,
         {rest,
          {"page", [](const Scene& s) { buttonAt(s, 1)->click(); }, {}},
          {"task-pressed", [](const Scene& s) { press(buttonAt(s, 4)); }, {}},
          {"log-off-pressed", [](const Scene& s) { press(logOffButton(s)); }, {}},
          {"task-focused", [](const Scene& s) { focus(buttonAt(s, 4)); }, {}},
          {"close-pressed", [](const Scene& s) { press(nth<CloseButton>(s, 0)); }, {}},
          {"close-focused", [](const Scene& s) { focus(nth<CloseButton>(s, 0)); }, {}},
          {"many-tasks", [](const Scene& s) { addTasks(s, 60); }, {}},
          {"scrolled",
           [](const Scene& s) {
               addTasks(s, 60);
               nth<PlainButton>(s, 0)->click();
               focus(nth<PlainButton>(s, 1));
           },
           {}},
          {"long-title",
           [](const Scene& s) {
               static_cast<TabBar*>(s.page)->setCurrentThreadText(QStringLiteral(
                   "<b>A long title</b> that goes on & on & on, longer than the panel is wide"));
           },
           {}}}},
        {"overview",
         "the overview of tasks",
         [](Stage&) { return openOverview(taskCount); },
         {rest,
          {"focused", [](const Scene& s) { focus(nth<ThreadWidget>(s, 1)->focusProxy()); }, {}},
          {"terminate-focused", [](const Scene& s) { focus(nth<CloseButton>(s, 1)); }, {}},
          {"terminate-pressed", [](const Scene& s) { press(nth<CloseButton>(s, 1)); }, {}}}},
        {"overview-many", "the overview of sixty tasks", [](Stage&) { return openOverview(60); }, {rest}},
        {"terminate-question",
         "the question before a task is terminated",
         [](Stage&) {
             Scene scene = openOverview(taskCount);
             ask([button = QPointer<CloseButton>(nth<CloseButton>(scene, 1))] {
                 if (button)
                     button->click();
             });
             scene.page = nullptr;
             return scene;
         },
         {rest}},
        {"suspend-notice", "the notice that the session is being suspended", openSuspendNotice, {rest}},
        {"places",
         "the file manager",
         openPlaces,
         {rest,
          {"selected", selectFirst, {}},
          {"list", showList, {}},
          {"list-selected",
           [](const Scene& s) {
               selectFirst(s);
               showList(s);
           },
           {}}}},
        {"configuration", "the configuration panel", openConfiguration, {rest}},
        {"password",
         "the password dialog",
         openTool<UserConfig>,
         {rest,
          {"filled", [](const Scene& s) { typePasswords(s, "spring tide", "spring tide"); }, {}},
          {"long", [](const Scene& s) { typePasswords(s, longPassword.constData(), ""); }, {}},
          {"focused", [](const Scene& s) { focus(nth<PlainButton>(s, 1)); }, {}}}},
        {"password-refusal",
         "what the password dialog says of two passwords that differ",
         [](Stage& stage) {
             Scene scene = openTool<UserConfig>(stage);
             typePasswords(scene, "spring tide", "neap tide");
             ask([dialog = QPointer<UserConfig>(nth<UserConfig>(scene, 0))] {
                 if (dialog)
                     dialog->accept();
             });
             scene.page = nullptr;
             return scene;
         },
         {rest}},
        {"associations",
         "the association editor",
         openAssociations,
         {rest,
          {"chosen",
           [](const Scene& s) {
               choose(s, "groupBox", 5);
               listOf(s, "applicationsList")->setCurrentRow(1);
           },
           {}},
          {"changed", changeAssociations, {}},
          {"focused",
           [](const Scene& s) {
               changeAssociations(s);
               focus(s.page->findChild<QWidget*>(QStringLiteral("upButton")));
           },
           {}},
          {"empty-group", [](const Scene& s) { choose(s, "groupBox", 1); }, {}},
          {"strange-names", [](const Scene& s) { listOf(s, "selectedList")->setCurrentRow(8); },
           [](Stage& stage) { stage.offer(strangeNames); }},
          {"five-hundred", {}, offerMany}}},
        {"associations-question",
         "the question before associations are saved",
         [](Stage& stage) {
             Scene scene = openAssociations(stage);
             changeAssociations(scene);
             ask([page = QPointer<QWidget>(scene.page)] {
                 if (page)
                     page->findChild<QPushButton*>(QStringLiteral("acceptButton"))->click();
             });
             scene.page = nullptr;
             return scene;
         },
         {rest}},
        {"desktop",
         "the whole shell",
         openDesktop,
         {rest,
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
}
