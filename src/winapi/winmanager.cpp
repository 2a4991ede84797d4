#include "winapi/winmanager.h"

#include "winapi/windowoperations.h"
#include "winapi/windowtracker.h"
#include "winapi/workarea.h"

#include <QMutexLocker>

namespace {
constexpr unsigned long period = 300; // ms
} // namespace

WinManager::WinManager(QObject* parent)
    : QThread(parent)
    , m_desktopWidget(winapi::desktopWidgetWindow())
{}

WinManager::~WinManager() = default;

bool WinManager::nativeEventFilter(const QByteArray&, void*, long*)
{
    return false;
}

void WinManager::resize(QRect rect)
{
    winapi::setWorkArea(rect);
}

void WinManager::stop()
{
    const QMutexLocker locker(&m_stopLock);
    m_stopped = true;
}

bool WinManager::isStopped()
{
    const QMutexLocker locker(&m_stopLock);
    return m_stopped;
}

void WinManager::run()
{
    {
        const QMutexLocker locker(&m_stopLock);
        m_stopped = false;
    }
    winapi::WindowTracker tracker(m_desktopWidget);
    do {
        const QList<winapi::WindowEvent> events = tracker.poll();
        for (const winapi::WindowEvent& event : events) {
            switch (event.kind) {
            case winapi::WindowEvent::Unmapped:
                emit unmapWindow(event.window);
                break;
            case winapi::WindowEvent::Mapped:
                emit mapWindow(event.window);
                break;
            case winapi::WindowEvent::Retitled:
                emit titleChanged(event.window, winapi::windowTitle(event.window)); // as it is by now
                break;
            }
        }
        msleep(period);
    } while (!isStopped());
}
