#include "state.h"

#include <cstdlib>

namespace simwin {

State& state()
{
    static State* const windows = new State; // never deleted: threads may outlive main()
    return *windows;
}

bool enter(State& windows, const char* function, const QStringList& arguments)
{
    windows.calls.append({function, arguments});
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
