#include "winapi/processes.h"

#include <windows.h>

#include <memory>

namespace winapi {

namespace {

struct Close
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};

} // namespace

quint32 processWaitResult(quint32 processId)
{
    const std::unique_ptr<void, Close> process(OpenProcess(SYNCHRONIZE, FALSE, processId));
    return WaitForSingleObject(process.get(), 0); // which refuses a null handle
}

} // namespace winapi
