// The simulated Windows from inside; only tests/simwin/*.cpp include it.
#pragma once

#include "simwin.h"

#include <QHash>
#include <QMutex>
#include <QSet>

#include <vector>

namespace simwin {

struct Failure
{
    DWORD error = 0;
    int times = 0; // negative: for ever
};

struct State
{
    QMutex lock; // guards everything below
    QList<Call> calls;
    QHash<QByteArray, Failure> failures;
    std::vector<WCHAR> commandLine; // with its terminating zero
    QSet<void*> localBlocks;
    QHash<QString, quintptr> windowsByClass;
    QSet<QByteArray> groups; // SIDs of the token's enabled groups, in binary form
};

// The one state. Never destroyed. Lock it before use.
State& state();

// Records a call. Returns false, with the last error set, when a test wants this call to fail. The lock is
// held.
bool enter(State& windows, const char* function, const QStringList& arguments = QStringList());

// The binary form of S-1-5-32-544.
QByteArray administratorsSid();

} // namespace simwin
