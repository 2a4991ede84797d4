#pragma once

#include <QtGlobal>

namespace winapi {

// What WaitForSingleObject says of a process without waiting: 0 when it has ended, 258 while it runs,
// 0xFFFFFFFF when there is no such process or it may not be asked. Never 259: that is an exit code's value
// for a process that runs.
quint32 processWaitResult(quint32 processId);

} // namespace winapi
