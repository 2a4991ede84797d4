#include "preview/shellpages.h"

#include "preview/person.h"
#include "preview/stage.h"
#include "session/busycursor.h"
#include "shell/appbutton.h"
#include "shell/closebutton.h"
#include "shell/menu.h"
#include "shell/plainbutton.h"
#include "shell/tabbar.h"
#include "shell/taskfitting.h"
#include "shell/threadbutton.h"
#include "shell/threadmanager.h"
#include "shell/threadwidget.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include <vector>

using namespace preview;

namespace {

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

} // namespace

QList<Page> shellPages()
{
    return {
        {"launcher",
         "the launcher, with the catalogue's applications",
         openLauncher,
         {rest(),
          {"hovered", [](const Scene& s) { hover(nth<AppButton>(s, 0)); }, {}},
          {"pressed", [](const Scene& s) { press(nth<AppButton>(s, 0)); }, {}},
          {"focused", [](const Scene& s) { focus(nth<AppButton>(s, 0)); }, {}},
          {"busy",
           [](const Scene& s) {
               session::showBusy();
               press(nth<AppButton>(s, 0));
           },
           {}},
          {"strange-names", {}, [](Stage& stage) { stage.offer(strangeNames()); }},
          {"five-hundred", {}, offerMany},
          {"none", {}, [](Stage& stage) { stage.offer({}); }}}},
        {"bar",
         "the task bar, with a handful of tasks",
         openBar,
         {rest(),
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
         {rest(),
          {"focused", [](const Scene& s) { focus(nth<ThreadWidget>(s, 1)->focusProxy()); }, {}},
          {"terminate-focused", [](const Scene& s) { focus(nth<CloseButton>(s, 1)); }, {}},
          {"terminate-pressed", [](const Scene& s) { press(nth<CloseButton>(s, 1)); }, {}}}},
        {"overview-many", "the overview of sixty tasks", [](Stage&) { return openOverview(60); }, {rest()}},
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
         {rest()}},
        {"suspend-notice", "the notice that the session is being suspended", openSuspendNotice, {rest()}},
    };
}
