// groundprobe
//
// Does with the stand-ins what the shell does, and says on standard output what came of it, a line for each:
// tells the system's task bar of a work area ("told"), disconnects the session ("disconnected 1"), changes
// the user's password twice ("password 2245"), waits for session events ("event 8") and follows the screen
// ("screen 1280x800").
#include <windows.h>

#include <lm.h>
#include <wtsapi32.h>

#include <QApplication>
#include <QDesktopWidget>
#include <QWidget>

#include <cstdio>
#include <thread>

namespace {

void tellScreen()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    const QSize size = QApplication::desktop()->size();
    QT_WARNING_POP
    std::printf("screen %dx%d\n", size.width(), size.height());
    std::fflush(stdout);
}

void tellEvents()
{
    for (;;) {
        DWORD events = 0;
        if (WTSWaitSystemEvent(WTS_CURRENT_SERVER_HANDLE, WTS_EVENT_ALL, &events))
            std::printf("event %lu\n", events);
        else
            std::printf("failed\n");
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const HWND bar = FindWindowW(L"Shell_TrayWnd", nullptr);
    for (const WPARAM command : {419, 416})
        SendMessageW(bar, WM_COMMAND, command, 0);
    std::printf("told\n");
    std::printf("disconnected %d\n",
                WTSDisconnectSession(WTS_CURRENT_SERVER_HANDLE, WTS_CURRENT_SESSION, FALSE));
    std::printf("password %lu\n",
                NetUserChangePassword(nullptr, nullptr, L"tide", L"ebb \u00E9\xD83C\xDF0A"));
    std::printf("password %lu\n", NetUserChangePassword(L"", nullptr, L"a\\b\tc", L"d\r\n"));
    std::thread(tellEvents).detach();
    QApplication application(argc, argv);
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QObject::connect(QApplication::desktop(), &QDesktopWidget::resized, &application, tellScreen);
    QT_WARNING_POP
    QWidget window; // Windows tells windows of the screen's size
    window.show();
    tellScreen();
    return application.exec();
}
