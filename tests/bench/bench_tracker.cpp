// One look of the window tracker, beside the bare enumeration with its GetWindowInfo and title calls; and
// what memory it takes when nothing happens. Natively on the simulated desktop, built for Windows with real
// windows.
#include "winapi/windowtracker.h"

#include "bench/figures.h"
#include "support/testwindow.h"
#include "winapi/windowoperations.h"

#include <QApplication>
#include <QFile>

#include <windows.h>

#include <cstdio>
#include <memory>
#include <vector>

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

namespace {

std::vector<std::unique_ptr<TestWindow>> g_windows;

void openWindows(size_t number)
{
    while (g_windows.size() < number)
        g_windows.push_back(
            std::make_unique<TestWindow>(QStringLiteral("Window number %1").arg(g_windows.size())));
}

BOOL CALLBACK look(HWND window, LPARAM context)
{
    if (GetWindowLongW(window, GWL_STYLE) & static_cast<LONG>(WS_VISIBLE))
        reinterpret_cast<std::vector<HWND>*>(context)->push_back(window);
    return TRUE;
}

// The calls that a look cannot do without. The second pass names every top-level window again.
size_t bareLook(HWND desktop)
{
    std::vector<HWND> windows;
    EnumWindows(look, reinterpret_cast<LPARAM>(&windows));
    const size_t topLevel = windows.size();
    EnumChildWindows(desktop, look, reinterpret_cast<LPARAM>(&windows));
    size_t letters = 0;
    for (size_t i = 0; i < topLevel; ++i) {
        WINDOWINFO info = {};
        info.cbSize = sizeof info;
        GetWindowInfo(windows[i], &info);
        WCHAR title[257];
        letters += static_cast<size_t>(GetWindowTextW(windows[i], title, 256));
    }
    return letters;
}

#ifndef Q_OS_WIN
// Memory of this process that is in use, in KiB.
long memory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    file.open(QIODevice::ReadOnly);
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLong();
    }
    return 0;
}

void measureMemory()
{
    openWindows(20);
    winapi::WindowTracker tracker(winapi::desktopWidgetWindow());
    int events = 0;
    for (int i = 0; i < 1000; ++i)
        events += tracker.poll().size();
    const long before = memory();
    for (int i = 0; i < 100000; ++i)
        events += tracker.poll().size();
    std::printf("100,000 looks at 20 windows: %d events, memory from %ld to %ld KiB\n", events, before,
                memory());
}
#endif

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
#ifdef Q_OS_WIN
    const std::vector<size_t> numbers = {10, 100};
#else
    const std::vector<size_t> numbers = {10, 100, 500, 2000};
    simwin::reset();
    simwin::setRecording(false);
    measureMemory();
    g_windows.clear();
#endif
    const qlonglong desktop = winapi::desktopWidgetWindow();
    const HWND desktopHandle = reinterpret_cast<HWND>(static_cast<LONG_PTR>(desktop));
    printHeader();
    for (const size_t number : numbers) {
        openWindows(number);
        winapi::WindowTracker tracker(desktop);
        bool right = true; // a look that sees nothing is no figure
        const auto figures = measure(
            number > 100 ? 300 : 1000, [&] { right &= tracker.poll().isEmpty(); },
            [&] { right &= bareLook(desktopHandle) > number; });
        if (!right) {
            std::fprintf(stderr, "a look went wrong\n");
            return 1;
        }
        printLine(qPrintable(QStringLiteral("a look at %1 windows").arg(number)), figures);
    }
    g_windows.clear();
    return 0;
}
