// What a test says to the simulated Windows, and what it reads back. There is one Windows per process; it
// outlives main(), because threads may still call it then. All functions may be called on any thread.
#pragma once

#include <windows.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace simwin {

// Back to a fresh Windows: no failures, no recorded calls, a user outside the Administrators group.
void reset();

// --- Calls

struct Call
{
    QByteArray function;
    QStringList arguments; // as text, where they say something
};

// Every call of the program since the last reset, in order; GetLastError and SetLastError excepted.
QList<Call> calls();
// The names alone.
QList<QByteArray> callNames();

// Lets the next `times` calls of `function` fail with `error` (for ever when negative).
void fail(const QByteArray& function, DWORD error, int times = -1);

// --- The process

// The process's command line; the ANSI code page is 1252.
void setCommandLine(const QString& commandLine);

// Blocks that the program was given and has not freed with LocalFree.
int localBlocks();

// --- Windows' own shell

// The window that FindWindowW finds for a class name; none at first.
void setWindowOfClass(const QString& className, quintptr window);

// --- The user

// Whether the token has the local Administrators group.
void setAdministrator(bool isAdministrator);

} // namespace simwin
