// testapp [OPTION | ARGUMENT]...
//
// An application for stories: windows that do what the options say, and an account of what happened to it.
//
//   --title TEXT         title of its window ("testapp")
//   --colour RRGGBB      what its windows are filled with (white)
//   --delay MS           its window comes so late
//   --no-window          none comes; it runs until it is ended
//   --window TEXT        a further window with this title, at the same time as the first; may be repeated
//   --dialog TEXT        the same, but owned by the first, as dialogs are
//   --open MS TEXT       a further window, so long after the start
//   --retitle MS TEXT    the first window gets this title, so long after the start
//   --ask                asked to close a window, it shows a box "Save?" with Yes, No and Cancel
//   --stubborn           asked to close a window, it does nothing
//   --end MS             it ends by itself, so long after the start
//   --exit CODE          its exit code (0)
//   --evidence FILE      the account is appended to this file, a line for each:
//                          started, argument TEXT (each that is no option), window HANDLE TITLE, typed C,
//                          pointer X Y, click X Y, double click X Y (the last three on the screen), retitled
//                          TEXT, close asked, answered yes|no|cancel, quit asked (a WM_QUIT from outside),
//                          session ends, ended CODE (missing when it was killed)
//
// The lines of a file beside the program that has its name and ".options" for ".exe" come before what stands
// on the command line. It ends when its last window is closed. Text is UTF-8.
#include <windows.h>

#include <shellapi.h>
#include <windowsx.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <map>
#include <string>
#include <vector>

namespace {

struct Step
{
    enum Kind
    {
        OpenFirst,
        Open,
        Retitle,
        End
    } kind;
    std::wstring text;
};

std::wstring g_title = L"testapp";
std::vector<std::wstring> g_windows;
std::vector<std::wstring> g_dialogs;
std::wstring g_evidence;
COLORREF g_colour = RGB(255, 255, 255);
bool g_asks = false;
bool g_isStubborn = false;
int g_exitCode = 0;

std::map<UINT_PTR, Step> g_steps; // by timer
HWND g_first = nullptr;
int g_open = 0;             // windows
bool g_isEnding = false;    // of its own will
bool g_isAsking = false;    // the box is open
POINT g_pointer = {-1, -1}; // the last that was told

std::string utf8(const std::wstring& text)
{
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, &bytes[0], size, nullptr, nullptr);
    return bytes;
}

std::wstring wide(const std::string& bytes)
{
    const int length = static_cast<int>(bytes.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, nullptr, 0);
    std::wstring text(static_cast<size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, &text[0], size);
    return text;
}

void tell(const std::wstring& line)
{
    std::FILE* const file = g_evidence.empty() ? nullptr : _wfopen(g_evidence.c_str(), L"ab");
    if (!file)
        return;
    std::fprintf(file, "%s\n", utf8(line).c_str());
    std::fclose(file);
}

void tellPointer(const std::wstring& what, HWND window, LPARAM position)
{
    POINT point = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ClientToScreen(window, &point);
    if (what == L"pointer" && point.x == g_pointer.x && point.y == g_pointer.y)
        return;
    g_pointer = point;
    tell(what + L" " + std::to_wstring(point.x) + L" " + std::to_wstring(point.y));
}

void end()
{
    g_isEnding = true;
    PostQuitMessage(0);
}

void closeWindow(HWND window)
{
    tell(L"close asked");
    if (g_isStubborn || g_isAsking)
        return;
    if (g_asks) {
        g_isAsking = true;
        const int answer = MessageBoxW(window, L"Save?", g_title.c_str(), MB_YESNOCANCEL);
        g_isAsking = false;
        tell(answer == IDYES ? L"answered yes" : answer == IDNO ? L"answered no" : L"answered cancel");
        if (answer != IDYES && answer != IDNO)
            return;
    }
    DestroyWindow(window);
}

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_CLOSE:
        closeWindow(window);
        return 0;
    case WM_DESTROY:
        if (--g_open == 0)
            end();
        return 0;
    case WM_ENDSESSION:
        if (wParam)
            tell(L"session ends");
        return 0;
    case WM_CHAR:
        tell(L"typed " + std::wstring(1, static_cast<wchar_t>(wParam)));
        return 0;
    case WM_MOUSEMOVE:
        tellPointer(L"pointer", window, lParam);
        return 0;
    case WM_LBUTTONDOWN:
        tellPointer(L"click", window, lParam);
        return 0;
    case WM_LBUTTONDBLCLK:
        tellPointer(L"double click", window, lParam);
        return 0;
    default:
        return DefWindowProcW(window, message, wParam, lParam);
    }
}

HWND open(const std::wstring& title, HWND owner = nullptr)
{
    const int at = 40 + 30 * g_open;
    const HWND window = CreateWindowExW(0, L"testapp", title.c_str(), WS_OVERLAPPEDWINDOW, at, at, 500, 300,
                                        owner, nullptr, GetModuleHandleW(nullptr), nullptr);
    ++g_open;
    ShowWindow(window, SW_SHOW);
    tell(L"window " + std::to_wstring(reinterpret_cast<LONG_PTR>(window)) + L" " + title);
    return window;
}

void take(const Step& step)
{
    switch (step.kind) {
    case Step::OpenFirst:
        g_first = open(g_title);
        for (const std::wstring& title : g_windows)
            open(title);
        for (const std::wstring& title : g_dialogs)
            open(title, g_first);
        break;
    case Step::Open:
        open(step.text);
        break;
    case Step::Retitle:
        SetWindowTextW(g_first, step.text.c_str());
        tell(L"retitled " + step.text);
        break;
    case Step::End:
        end();
        break;
    }
}

void CALLBACK handleTimer(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    const auto found = g_steps.find(timer);
    if (found == g_steps.end())
        return;
    const Step step = found->second;
    g_steps.erase(found);
    take(step);
}

void plan(const std::wstring& milliseconds, const Step& step)
{
    const UINT after = static_cast<UINT>(std::wcstoul(milliseconds.c_str(), nullptr, 10));
    g_steps[SetTimer(nullptr, 0, after, handleTimer)] = step;
}

std::vector<std::wstring> allArguments()
{
    std::vector<std::wstring> all;
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring options = path;
    options = options.substr(0, options.find_last_of(L'.')) + L".options";
    if (std::FILE* const file = _wfopen(options.c_str(), L"r")) {
        char line[1024];
        while (std::fgets(line, sizeof line, file)) {
            std::string text = line;
            text.erase(text.find_last_not_of("\r\n") + 1);
            all.push_back(wide(text));
        }
        std::fclose(file);
    }
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int i = 1; i < count; ++i)
        all.push_back(arguments[i]);
    LocalFree(arguments);
    return all;
}

// The arguments that are no options.
std::vector<std::wstring> applyOptions(std::vector<std::wstring> all)
{
    std::vector<std::wstring> others;
    std::wstring delay = L"0";
    bool hasWindow = true;
    all.insert(all.end(), 2, std::wstring()); // an option at the end may lack its values
    for (size_t i = 0; i + 2 < all.size(); ++i) {
        const std::wstring& option = all[i];
        if (option == L"--title")
            g_title = all[++i];
        else if (option == L"--colour") {
            const unsigned long rgb = std::wcstoul(all[++i].c_str(), nullptr, 16);
            g_colour = RGB(rgb >> 16 & 255, rgb >> 8 & 255, rgb & 255);
        } else if (option == L"--delay")
            delay = all[++i];
        else if (option == L"--no-window")
            hasWindow = false;
        else if (option == L"--window")
            g_windows.push_back(all[++i]);
        else if (option == L"--dialog")
            g_dialogs.push_back(all[++i]);
        else if (option == L"--open") {
            plan(all[i + 1], {Step::Open, all[i + 2]});
            i += 2;
        } else if (option == L"--retitle") {
            plan(all[i + 1], {Step::Retitle, all[i + 2]});
            i += 2;
        } else if (option == L"--ask")
            g_asks = true;
        else if (option == L"--stubborn")
            g_isStubborn = true;
        else if (option == L"--end")
            plan(all[++i], {Step::End, {}});
        else if (option == L"--exit")
            g_exitCode = static_cast<int>(std::wcstol(all[++i].c_str(), nullptr, 10));
        else if (option == L"--evidence")
            g_evidence = all[++i];
        else
            others.push_back(option);
    }
    if (hasWindow)
        plan(delay, {Step::OpenFirst, {}});
    return others;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int)
{
    const std::vector<std::wstring> others = applyOptions(allArguments());
    WNDCLASSW windowClass = {};
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = handleMessage;
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // IDC_ARROW
    windowClass.hbrBackground = CreateSolidBrush(g_colour);
    windowClass.lpszClassName = L"testapp";
    RegisterClassW(&windowClass);
    tell(L"started");
    for (const std::wstring& argument : others)
        tell(L"argument " + argument);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (!g_isEnding)
        tell(L"quit asked");
    tell(L"ended " + std::to_wstring(g_exitCode));
    return g_exitCode;
}
