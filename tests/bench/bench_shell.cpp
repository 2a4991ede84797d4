// What the shell's own part of an action is: filling the launcher, beside the same instances with plain
// buttons; a new window's button, a switch between tasks, both until they are painted, beside the calls of
// Windows and plain widgets.
#include "catalogue/cataloguefiles.h"
#include "instances/appinstance.h"
#include "resources/resources.h"
#include "server/twclient.h"
#include "session/desktop.h"
#include "shell/menu.h"
#include "shell/tabbar.h"
#include "shell/threadbutton.h"
#include "winapi/windowoperations.h"

#include "bench/figures.h"
#include "bench/otherwindows.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QApplication>
#include <QBuffer>
#include <QGridLayout>
#include <QLabel>
#include <QScreen>

#include <cstdio>
#include <memory>

namespace {

constexpr int smallNumber = 48; // of applications
constexpr int largeNumber = 500;
constexpr QSize screen(1920, 1038); // above the task bar
constexpr QSize largestScreen(7680, 4278);
#ifdef Q_OS_WIN
constexpr int runs = 8;
constexpr int mostFromServer = smallNumber; // Wine takes minutes for more
#else
constexpr int runs = 20;
constexpr int mostFromServer = largeNumber;
#endif

void silent(QtMsgType, const QMessageLogContext&, const QString&) {}

// Lets events be processed until `widget` is painted, with everything that was to be painted with it.
class Painting : public QObject
{
public:
    explicit Painting(QWidget* widget) { widget->installEventFilter(this); }

    // False when nothing was painted.
    bool wait()
    {
        for (int i = 0; i < 10000 && !m_painted; ++i)
            QCoreApplication::processEvents();
        return m_painted;
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_painted |= event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_painted = false;
};

// What is to be deleted waits for an event loop, and there is none here.
void deletePosted()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

// --- The launcher

bool fillLauncher(const QStringList& ids, TWClient* client)
{
    Menu menu(nullptr, QStringLiteral("e6eaed"));
    menu.fill(ids, client);
    menu.resize(screen);
    menu.show();
    return Painting(&menu).wait();
}

bool fillPlainly(const QStringList& ids, TWClient* client)
{
    QWidget window;
    window.setFixedSize(screen);
    auto* const grid = new QGridLayout(&window);
    std::vector<std::unique_ptr<AppInstance>> instances;
    for (int i = 0; i < ids.size(); ++i) {
        instances.push_back(std::make_unique<AppInstance>(ids.at(i), client));
        auto* const button =
            new QPushButton(instances.back()->icon(), instances.back()->displayName(), &window);
        grid->addWidget(button, i % 9, i / 9);
    }
    window.show();
    return Painting(&window).wait();
}

bool measureLauncher(const char* road, const QStringList& known, TWClient* client, int most)
{
    bool right = !known.isEmpty();
    for (const int number : {smallNumber, largeNumber}) {
        if (number > most)
            continue;
        QStringList ids;
        while (right && ids.size() < number)
            ids.append(known.at(ids.size() % known.size()));
        const Figures figures = measure(
            number == largeNumber ? runs / 4 : runs, [&] { right &= fillLauncher(ids, client); },
            [&] { right &= fillPlainly(ids, client); }, deletePosted);
        printLine(qPrintable(QStringLiteral("launcher of %1, %2").arg(number).arg(QLatin1String(road))),
                  figures);
    }
    return right;
}

// A visible launcher on a screen that grows from the least size, beside a plain grid that is made anew.
bool measureLargerScreen(const QStringList& known)
{
    QStringList ids;
    while (!known.isEmpty() && ids.size() < largeNumber)
        ids.append(known.at(ids.size() % known.size()));
    Menu menu(nullptr, QStringLiteral("e6eaed"));
    menu.fill(ids, nullptr);
    menu.show();
    QWidget window;
    QList<QPushButton*> buttons;
    for (int i = 0; i < ids.size(); ++i)
        buttons.append(new QPushButton(ids.at(i), &window));
    window.show();
    bool right = ids.size() == largeNumber;
    const Figures figures = measure(
        runs / 4,
        [&] {
            menu.resize(largestScreen);
            right &= Painting(&menu).wait();
        },
        [&] {
            window.setFixedSize(largestScreen);
            auto* const grid = new QGridLayout(&window);
            for (int i = 0; i < buttons.size(); ++i)
                grid->addWidget(buttons.at(i), i % 38, i / 38);
            right &= Painting(&window).wait();
        },
        [&] {
            menu.resize(QSize(1, 1));
            window.setFixedSize(1, 1);
            delete window.layout();
            QCoreApplication::processEvents();
        });
    printLine("launcher of 500, larger screen", figures);
    return right;
}

// --- Tasks

// The calls of Windows that bringing a window to the front takes, and the picture that is taken of it.
void showWindow(qlonglong window)
{
    winapi::bringWindowToFront(window, false);
    QGuiApplication::primaryScreen()->grabWindow(static_cast<WId>(window), 0, 0, -1, -1);
}

bool measureTasks()
{
    const OtherWindows windows(2);
    const qlonglong first = windows.handles().value(0);
    const qlonglong second = windows.handles().value(1);
    if (!second)
        return false;
    Desktop& desktop = *new Desktop; // without a server; never deleted
    TabBar* bar = nullptr;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (auto* const candidate = qobject_cast<TabBar*>(widget))
            bar = candidate;
    }
    QWidget plainBar;
    auto* const plainLayout = new QHBoxLayout(&plainBar);
    auto* const plainLabel = new QLabel(&plainBar);
    plainLayout->addWidget(plainLabel);
    plainBar.resize(800, 42);
    plainBar.show();
    QCoreApplication::processEvents();

    bool right = bar != nullptr;
    desktop.mapWindow(first);
    std::unique_ptr<QPushButton> plainButton;
    printLine("a new window to its painted button",
              measure(
                  5 * runs,
                  [&] {
                      desktop.mapWindow(second);
                      right &= bar->count() == 5 && Painting(bar->buttonAt(4)).wait();
                  },
                  [&] {
                      showWindow(second);
                      plainButton = std::make_unique<QPushButton>(QStringLiteral("x"));
                      plainLayout->addWidget(plainButton.get());
                      plainLabel->setText(winapi::windowTitle(second));
                      right &= Painting(plainButton.get()).wait();
                  },
                  [&] {
                      desktop.unmapWindow(second);
                      plainButton.reset();
                      deletePosted();
                  }));

    desktop.mapWindow(second);
    auto* const panel = bar->findChild<QLabel*>(QStringLiteral("textLabel"));
    int position = 4;
    printLine("a switch by task button", measure(
                                             5 * runs,
                                             [&] {
                                                 position = 7 - position;
                                                 bar->setCurrentIndex(position);
                                                 right &= Painting(panel).wait();
                                             },
                                             [&] {
                                                 const qlonglong window = position == 3 ? first : second;
                                                 showWindow(window);
                                                 plainLabel->setText(winapi::windowTitle(window));
                                                 right &= Painting(plainLabel).wait();
                                             }));
    return right;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    initResources();
    const Sandbox sandbox;
    qInstallMessageHandler(silent);
    const MeasuredDesktop measured;
    printHeader();
    bool right = measureLauncher("built-in", catalogue::applicationIds(), nullptr, largeNumber);
    right &= measureLargerScreen(catalogue::applicationIds());

    TwServer server;
    QImage picture(64, 64, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QByteArray icon;
    QBuffer buffer(&icon);
    picture.save(&buffer, "PNG");
    server.data.servers.insert(QStringLiteral("host"),
                               {QStringLiteral("127.0.0.1"), QStringLiteral("windows")});
    TwData::Application letters;
    letters.name = letters.displayName = letters.execPath = letters.arguments = QStringLiteral("letters");
    letters.server = QStringLiteral("host");
    letters.icon = icon;
    server.data.applications.insert(QStringLiteral("letters"), letters);
    right &= server.start();
    sandbox.writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                          QByteArray::number(server.port()) + '\n');
    {
        TWClient client;
        right &= client.connectToServer() &&
                 measureLauncher("server", {QStringLiteral("letters")}, &client, mostFromServer);
    }
    sandbox.writeSettings("");
    right &= measureTasks();
    if (!right)
        std::fprintf(stderr, "something was not painted\n");
    std::fflush(stdout);
    // The threads never end.
    std::_Exit(right ? 0 : 1);
}
