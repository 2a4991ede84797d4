#include "state.h"

#include <shellapi.h>

#include <QTextCodec>

#include <cstdlib>
#include <cstring>

namespace simwin {

void setCommandLine(const QString& commandLine)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.commandLine.assign(static_cast<size_t>(commandLine.size()) + 1, u'\0');
    commandLine.toWCharArray(windows.commandLine.data());
}

void setProcessRuns(DWORD process, bool runs)
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    windows.processes.insert(process, runs);
}

int openHandles()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    return windows.processHandles.size();
}

int localBlocks()
{
    State& windows = state();
    const QMutexLocker locker(&windows.lock);
    return windows.localBlocks.size();
}

namespace {

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t');
}

// "Parsing C++ Command-Line Arguments": the program's name knows no escapes; in arguments 2n backslashes
// before a quote give n and the quote toggles, 2n+1 give n and a quote; two quotes within quotes give one.
QStringList splitCommandLine(const QString& line)
{
    QStringList arguments;
    int at = 0;
    QString program;
    if (line.startsWith(QLatin1Char('"'))) {
        for (at = 1; at < line.size() && line[at] != QLatin1Char('"'); ++at)
            program += line[at];
        ++at;
    } else {
        for (; at < line.size() && !isBlank(line[at]); ++at)
            program += line[at];
    }
    arguments.append(program);

    for (;;) {
        while (at < line.size() && isBlank(line[at]))
            ++at;
        if (at >= line.size())
            return arguments;
        QString argument;
        bool quoted = false;
        for (; at < line.size() && (quoted || !isBlank(line[at])); ++at) {
            int backslashes = 0;
            for (; at < line.size() && line[at] == QLatin1Char('\\'); ++at)
                ++backslashes;
            const bool quote = at < line.size() && line[at] == QLatin1Char('"');
            argument += QString(quote ? backslashes / 2 : backslashes, QLatin1Char('\\'));
            if (!quote) {
                --at;
                if (backslashes == 0)
                    argument += line[++at];
            } else if (backslashes % 2 == 1) {
                argument += QLatin1Char('"');
            } else if (quoted && at + 1 < line.size() && line[at + 1] == QLatin1Char('"')) {
                argument += QLatin1Char('"');
                ++at;
                quoted = false;
            } else {
                quoted = !quoted;
            }
        }
        arguments.append(argument);
    }
}

} // namespace
} // namespace simwin

using simwin::State;

LPWSTR WINAPI GetCommandLineW(void)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    simwin::enter(windows, "GetCommandLineW");
    return windows.commandLine.data();
}

LPWSTR* WINAPI CommandLineToArgvW(LPCWSTR commandLine, int* count)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const QString line = QString::fromWCharArray(commandLine);
    if (!simwin::enter(windows, "CommandLineToArgvW", {line}))
        return nullptr;

    const QStringList arguments = simwin::splitCommandLine(line);
    // One block, as Windows allocates it: the array of pointers, then the strings.
    size_t size = (static_cast<size_t>(arguments.size()) + 1) * sizeof(LPWSTR);
    for (const QString& argument : arguments)
        size += (static_cast<size_t>(argument.size()) + 1) * sizeof(WCHAR);
    const auto block = static_cast<LPWSTR*>(std::malloc(size));
    auto text = reinterpret_cast<LPWSTR>(block + arguments.size() + 1);
    for (int i = 0; i < arguments.size(); ++i) {
        block[i] = text;
        text += arguments[i].toWCharArray(text);
        *text++ = u'\0';
    }
    block[arguments.size()] = nullptr;
    windows.localBlocks.insert(block);
    *count = arguments.size();
    return block;
}

HANDLE WINAPI OpenProcess(DWORD access, BOOL inherit, DWORD processId)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "OpenProcess",
                       {QString::number(access, 16), QString::number(inherit), QString::number(processId)}) ||
        !windows.processes.contains(processId))
        return nullptr;
    static quintptr last = 0x800000;
    auto* const handle = reinterpret_cast<HANDLE>(++last);
    windows.processHandles.insert(handle, processId);
    return handle;
}

DWORD WINAPI WaitForSingleObject(HANDLE object, DWORD milliseconds)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "WaitForSingleObject", {QString::number(milliseconds)}) ||
        !windows.processHandles.contains(object))
        return WAIT_FAILED;
    return windows.processes.value(windows.processHandles.value(object)) ? WAIT_TIMEOUT : WAIT_OBJECT_0;
}

BOOL WINAPI CloseHandle(HANDLE object)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    return simwin::enter(windows, "CloseHandle") && windows.processHandles.remove(object) ? TRUE : FALSE;
}

HLOCAL WINAPI LocalAlloc(UINT flags, SIZE_T size)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "LocalAlloc", {QString::number(flags), QString::number(size)}))
        return nullptr;
    void* const memory = std::malloc(size);
    windows.localBlocks.insert(memory);
    return memory;
}

HLOCAL WINAPI LocalFree(HLOCAL memory)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    if (!simwin::enter(windows, "LocalFree") || !windows.localBlocks.remove(memory))
        return memory;
    std::free(memory);
    return nullptr;
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int wideSize, LPSTR bytes,
                               int bytesSize, LPCSTR defaultChar, LPBOOL usedDefaultChar)
{
    State& windows = simwin::state();
    const QMutexLocker locker(&windows.lock);
    const QString text = QString::fromWCharArray(wide, wideSize);
    if (!simwin::enter(windows, "WideCharToMultiByte",
                       {QString::number(codePage), text, QString::number(bytesSize)}))
        return 0;
    if (codePage != CP_ACP || flags != 0 || defaultChar || usedDefaultChar) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    QByteArray ansi = QTextCodec::codecForName("windows-1252")->fromUnicode(text);
    if (wideSize < 0)
        ansi.append('\0');
    if (bytesSize == 0)
        return ansi.size();
    if (bytesSize < ansi.size()) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::memcpy(bytes, ansi.constData(), static_cast<size_t>(ansi.size()));
    return ansi.size();
}
