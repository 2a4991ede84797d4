// What a test says to the simulated Windows, and what it reads back. There is one Windows per process; it
// outlives main(), because threads may still call it then. All functions may be called on any thread.
#pragma once

#include <windows.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace simwin {

// Back to a fresh Windows: no failures, no recorded calls, no windows, the drives A: and C:, a user outside
// the Administrators group. Who waits for session events waits for ever then.
void reset();

// --- Calls

struct Call
{
    QByteArray function;
    QStringList arguments; // as text, where they say something
    qint64 time = 0;       // milliseconds
};

// Every call since the last reset, the test's own included, in order; GetLastError and SetLastError excepted.
QList<Call> calls();
// The names alone.
QList<QByteArray> callNames();

// Whether calls are kept for calls(). They are; a test that makes a great many may do without.
void setRecording(bool records);

// Lets the next `times` calls of `function` fail with `error` (for ever when negative).
void fail(const QByteArray& function, DWORD error, int times = -1);

// --- The process

// The process's command line; the ANSI code page is 1252.
void setCommandLine(const QString& commandLine);

// A process that runs, or has ended and is still known. Processes that were never named here are not there.
void setProcessRuns(DWORD process, bool runs);
// Handles that were opened and not closed.
int openHandles();

// Blocks that the program was given and has not freed with LocalFree.
int localBlocks();

// --- Windows
//
// A window is its HWND's value. Tests open, change and close windows with the calls of Windows itself, as
// other programs would: CreateWindowExW, SetWindowTextW, SetWindowLongW, ShowWindow, DestroyWindow. What
// those cannot do stands here. The z-order is the order of enumeration: what is opened or brought to the top
// comes first.

// The next window gets this handle; one that is in use is not given twice.
void setNextHandle(qlonglong handle);

// Whose windows are opened from now on; at first a process of somebody else's. (Windows itself would open
// them for this process.) Returns whose they were. Titles of this process's own windows are answered by the
// GUI thread, when it processes events.
constexpr DWORD otherProcess = 5000;
DWORD setCurrentWindowProcess(DWORD process);

// Gives a window to another owner (0: none) or another process, as its program may.
void setOwner(qlonglong window, qlonglong owner);
void setProcess(qlonglong window, DWORD process);

// The window that the user works with: the topmost visible one, unless it is said here (0: none).
void setForegroundWindow(qlonglong window);

// A window that is asked to close does so, unless it refuses or is disabled; one that is told to quit takes
// its process's windows with it.
void setRefusesToClose(qlonglong window, bool refuses);

// From now on titles come with this length, whatever they are, as a window procedure may answer; -1: as they
// are.
void setAnsweredTitleLength(int length);

// --- Drives and network resources

// Drives besides those that network resources stand for: their letters, "AC" at first.
void setLocalDrives(const QByteArray& letters);

// A connected disk resource. `localName` may be empty, or null to be no string at all.
void addNetworkResource(const QString& remoteName, const QString& localName = QString());
// The resource goes, with its letter.
void removeNetworkResource(const QString& remoteName);
// Local names and remote names of the connected resources, in their order.
QList<QPair<QString, QString>> networkResources();
// How many entries a page of an enumeration holds; everything at first.
void setNetworkPageSize(int entries);
// From now on an enumeration never ends: after its last entry it starts again.
void setEndlessNetwork(bool endless);
// From now on a page says that it has as many entries as were asked for, whatever it has.
void setUntrueNetworkCount(bool untrue);
// Enumerations that were opened and not closed.
int openEnumerations();

// --- Sessions

// Something happened to sessions of this machine (WTS_EVENT_...). What nobody waited for yet comes together.
void sessionEvent(DWORD events);

// --- Windows' own shell

// The window that FindWindowW finds for a class name; none at first.
void setWindowOfClass(const QString& className, quintptr window);

// --- The user

// Whether the token has the local Administrators group.
void setAdministrator(bool isAdministrator);

// The password of the user's account; "tide" at first.
QString accountPassword();
void setAccountPassword(const QString& password);

} // namespace simwin
