#include "state.h"

#include <cstdlib>

namespace simwin {

State& state()
{
    static State* const windows = [] {
        auto* const fresh = new State; // never deleted: threads may outlive main()
        fresh->clock.start();
        return fresh;
    }();
    return *windows;
}

bool enter(State& windows, const char* function, const QStringList& arguments)
{
    if (windows.recording)
        windows.calls.append({function, arguments, windows.clock.elapsed()});
    const auto failure = windows.failures.find(function);
    if (failure == windows.failures.end() || failure->times == 0)
        return true;
    if (failure->times > 0)
        --failure->times;
    SetLastError(failure->error);
    return false;
}

void reset()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.calls.clear();
    windows.failures.clear();
    windows.commandLine = {u'\0'};
    for (void* const block : qAsConst(windows.localBlocks))
        std::free(block);
    windows.localBlocks.clear();
    windows.windowsByClass.clear();
    windows.groups.clear();
    windows.accountPassword = QStringLiteral("tide");
    windows.recording = true;
    windows.windows.clear();
    windows.zOrder.clear();
    windows.nextHandle = 0x20000;
    windows.windowProcess = otherProcess;
    windows.posted.clear();
    windows.answeredTitleLength = -1;
    windows.foregroundIsSet = false;
    windows.processes.clear();
    windows.processHandles.clear();
    windows.workArea = {};
    windows.localDrives = "AC";
    windows.resources.clear();
    windows.networkPageSize = 0;
    windows.endlessNetwork = false;
    windows.untrueNetworkCount = false;
    windows.enumerations.clear();
    windows.sessionEvents = 0;
    ++windows.resets;
}

void setRecording(bool records)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.recording = records;
}

QList<Call> calls()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    return windows.calls;
}

QList<QByteArray> callNames()
{
    QList<QByteArray> names;
    for (const Call& call : calls())
        names.append(call.function);
    return names;
}

void fail(const QByteArray& function, DWORD error, int times)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.failures.insert(function, {error, times});
}

} // namespace simwin

namespace {
thread_local DWORD t_lastError = ERROR_SUCCESS;
} // namespace

DWORD WINAPI GetLastError(void)
{
    return t_lastError;
}

void WINAPI SetLastError(DWORD error)
{
    t_lastError = error;
}
