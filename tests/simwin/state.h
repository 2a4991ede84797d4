// The simulated Windows from inside; only tests/simwin/*.cpp include it.
#pragma once

#include "simwin.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QWaitCondition>

#include <vector>

namespace simwin {

struct Failure
{
    DWORD error = 0;
    int times = 0; // negative: for ever
};

struct Window
{
    qlonglong parent = 0; // 0: a top-level window
    qlonglong owner = 0;  // of a top-level window; goes with it
    DWORD process = 0;
    DWORD style = 0;
    DWORD extendedStyle = 0;
    QString className;
    QString title;
    bool refusesToClose = false;
    bool wasMaximised = false; // when it was minimised
};

struct PostedMessage
{
    qlonglong window = 0;
    UINT message = 0;
    WPARAM wParam = 0;
};

struct NetworkResource
{
    QString remoteName;
    QString localName;
};

// What was there when it was opened, and how far it has come.
struct Enumeration
{
    QList<NetworkResource> resources;
    int next = 0;
};

// The desktop's own window.
constexpr qlonglong desktopHandle = 0x10010;

struct State
{
    QMutex lock; // guards everything below
    QList<Call> calls;
    QElapsedTimer clock;
    bool recording = true;
    QHash<QByteArray, Failure> failures;
    std::vector<WCHAR> commandLine; // with its terminating zero
    QSet<void*> localBlocks;
    QHash<DWORD, bool> processes;       // whether each runs
    QHash<void*, DWORD> processHandles; // that are open
    QHash<QString, quintptr> windowsByClass;

    QHash<qlonglong, Window> windows;
    QList<qlonglong> zOrder; // of all windows, children too, from the top down
    qlonglong nextHandle = 0;
    DWORD windowProcess = otherProcess; // of the windows that are opened
    QList<PostedMessage> posted;        // not yet seen by their windows
    int answeredTitleLength = -1;
    bool foregroundIsSet = false;
    qlonglong foreground = 0;
    RECT workArea = {};

    QByteArray localDrives;
    QList<NetworkResource> resources;
    int networkPageSize = 0; // 0: no limit
    bool endlessNetwork = false;
    bool untrueNetworkCount = false;
    QHash<void*, Enumeration> enumerations; // that are open

    QWaitCondition sessionEventHappened;
    DWORD sessionEvents = 0; // not yet waited for
    int resets = 0;          // an event is for those who began to wait after the last one
    QString accountPassword;
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
