// preview PAGE | --list | --screenshots FOLDER [PAGE]
//
// In Spanish when the environment's LANGUAGE begins with "es".
// Opens a page of the shell, natively, for a person to look at; or writes a picture of every page in every
// state. Says on standard output what it did. The pages are those of pages().
#include "preview/pages.h"
#include "preview/stage.h"
#include "resources/resources.h"
#include "shell/ownwindow.h"
#include "simwin.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QDir>
#include <QPainter>
#include <QProxyStyle>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <cstdio>

namespace {

bool s_warned = false;

// As on Windows, where the buttons of boxes have no pictures.
class WindowsHints : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override
    {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

void tellWarnings(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    // The bar takes pictures of windows that only the simulation has. X refuses the keyboard to a window that
    // is just being hidden.
    if (type == QtDebugMsg || type == QtInfoMsg || text.contains(QLatin1String("BadDrawable")) ||
        text.contains(QLatin1String("(SetInputFocus)")))
        return;
    s_warned = true;
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

bool isSpanish()
{
    return qEnvironmentVariable("LANGUAGE").startsWith(QLatin1String("es"));
}

void list()
{
    for (const Page& page : pages())
        std::printf("  %-20s %s\n", qPrintable(page.name), qPrintable(page.about));
}

QWidgetList visibleWindows()
{
    QWidgetList windows;
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const window : all) {
        if (window->isVisible() && window->windowType() != Qt::Desktop)
            windows.append(window);
    }
    // From back to front: pages, what stays on top, boxes.
    const auto rank = [](const QWidget* window) {
        return window->isModal() ? 2 : window->windowFlags() & Qt::WindowStaysOnTopHint ? 1 : 0;
    };
    std::stable_sort(windows.begin(), windows.end(), [&](const QWidget* a, const QWidget* b) {
        const bool active = b->isActiveWindow();
        return rank(a) != rank(b) ? rank(a) < rank(b) : active && !a->isActiveWindow();
    });
    return windows;
}

QPixmap screenPicture()
{
    QPixmap picture(Stage::screenSize());
    picture.fill(Qt::black);
    QPainter painter(&picture);
    for (QWidget* const window : visibleWindows())
        painter.drawPixmap(window->pos(), window->grab());
    return picture;
}

bool photograph(const Page& page, const State& state, const QString& file)
{
    Stage stage(false);
    if (isSpanish())
        stage.speakSpanish();
    if (state.prepare)
        state.prepare(stage);
    bool written = false;
    {
        const Scene scene = page.open(stage);
        if (state.enter)
            state.enter(scene);
        // A box's own loop may be the one that runs by then; it is closed again.
        QTimer::singleShot(0, qApp, [&] {
            QTimer::singleShot(0, qApp, [&] {
                const QPixmap picture = scene.page ? scene.page->grab() : screenPicture();
                written = picture.save(file);
                if (auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                    box->reject(); // some boxes cannot be closed without an answer
            });
        });
        if (!QTest::qWaitFor([&] { return written; }))
            return false;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return written;
}

int photographAll(const QString& folder, const QString& only)
{
    if (!QDir().mkpath(folder))
        return 1;
    const QSize screen = Stage::screenSize();
    QCursor::setPos(screen.width() - 1, screen.height() - 60); // above nothing
    int count = 0;
    for (const Page& page : pages()) {
        if (!only.isEmpty() && page.name != only)
            continue;
        for (const State& state : page.states) {
            const QString file = QStringLiteral("%1/%2-%3-%4x%5.png")
                                     .arg(folder, page.name, state.name)
                                     .arg(screen.width())
                                     .arg(screen.height());
            if (!photograph(page, state, file)) {
                std::fprintf(stderr, "preview: no picture %s\n", qPrintable(file));
                return 1;
            }
            ++count;
        }
    }
    std::printf("%d pictures of %dx%d\n", count, screen.width(), screen.height());
    return s_warned || count == 0 ? 1 : 0;
}

int showPage(const QString& name)
{
    const QList<Page> all = pages();
    const auto page = std::find_if(all.begin(), all.end(), [&name](const Page& p) { return p.name == name; });
    if (page == all.end()) {
        std::fprintf(stderr, "preview: no page \"%s\"; there are\n", qPrintable(name));
        list();
        return 2;
    }
    Stage stage(true);
    if (isSpanish())
        stage.speakSpanish();
    const Scene scene = page->open(stage);
    if (scene.page && scene.page->windowTitle().isEmpty()) { // a page, which has no frame to close it by
        scene.page->setWindowFlags(Qt::Window);
        scene.page->setWindowTitle(QStringLiteral("Quillet: ") + name);
        scene.page->show();
    }
    std::printf("Close the window, or press Ctrl+C here, to end it.\n");
    std::fflush(stdout);
    const int code = QApplication::exec();
    simwin::setRecording(true); // the tracker's end is waited for by its calls
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--list") == 0) {
        list();
        return 0;
    }
    QApplication application(argc, argv);
    initResources();
    qInstallMessageHandler(tellWarnings);
    QApplication::setStyle(new WindowsHints); // the application's
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(12); // as on Windows
    QApplication::setFont(font);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() >= 2 && arguments.at(0) == QLatin1String("--screenshots"))
        return photographAll(arguments.at(1), arguments.value(2));
    if (arguments.size() == 1)
        return showPage(arguments.at(0));
    std::fprintf(stderr, "usage: preview PAGE | --list | --screenshots FOLDER [PAGE]\n");
    return 2;
}
