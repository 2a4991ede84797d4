// Holds the simulation's declarations against the real SDK, line by line, at compile time: a wrong value of a
// constant, size of a type or signature of a function does not build.
#include "support/quillettest.h"

#include <QtTest>

#include <windows.h>

#include <lm.h>
#include <shellapi.h>
#include <winnetwk.h>
#include <wtsapi32.h>

#include <cstddef>
#include <type_traits>

#define SIMWIN_CONSTANT(type, name, value)                                                                   \
    static_assert(static_cast<unsigned long long>(name) == static_cast<unsigned long long>(value), #name);
#include "../simwin/include/lm_constants.def"
#include "../simwin/include/shellapi_constants.def"
#include "../simwin/include/windows_constants.def"
#include "../simwin/include/winnetwk_constants.def"
#include "../simwin/include/wtsapi32_constants.def"
#undef SIMWIN_CONSTANT

#define SIMWIN_FUNCTION(result, name, parameters)                                                            \
    static_assert(std::is_same_v<decltype(&name), result(WINAPI*) parameters>, #name);
#include "../simwin/include/lm_functions.def"
#include "../simwin/include/shellapi_functions.def"
#include "../simwin/include/windows_functions.def"
#include "../simwin/include/winnetwk_functions.def"
#include "../simwin/include/wtsapi32_functions.def"
#undef SIMWIN_FUNCTION

static_assert(sizeof(BOOL) == 4 && std::is_signed_v<BOOL>);
static_assert(sizeof(BYTE) == 1 && std::is_unsigned_v<BYTE>);
static_assert(sizeof(WORD) == 2 && std::is_unsigned_v<WORD>);
static_assert(sizeof(DWORD) == 4 && std::is_unsigned_v<DWORD>);
static_assert(sizeof(UINT) == 4 && std::is_unsigned_v<UINT>);
static_assert(sizeof(LONG) == 4 && std::is_signed_v<LONG>);
static_assert(sizeof(WPARAM) == 8 && std::is_unsigned_v<WPARAM>);
static_assert(sizeof(LPARAM) == 8 && std::is_signed_v<LPARAM>);
static_assert(sizeof(INT_PTR) == 8 && std::is_signed_v<INT_PTR>);
static_assert(sizeof(UINT_PTR) == 8 && std::is_unsigned_v<UINT_PTR>);
static_assert(sizeof(LONG_PTR) == 8 && std::is_signed_v<LONG_PTR>);
static_assert(sizeof(LRESULT) == 8 && std::is_signed_v<LRESULT>);
static_assert(sizeof(WCHAR) == 2);
static_assert(sizeof(HANDLE) == 8);
static_assert(sizeof(RECT) == 16 && offsetof(RECT, right) == 8);
static_assert(sizeof(WINDOWINFO) == 60 && offsetof(WINDOWINFO, dwStyle) == 36 &&
              offsetof(WINDOWINFO, dwExStyle) == 40 && offsetof(WINDOWINFO, wCreatorVersion) == 58);
static_assert(sizeof(NETRESOURCEW) == 48 && offsetof(NETRESOURCEW, lpLocalName) == 16 &&
              offsetof(NETRESOURCEW, lpRemoteName) == 24);
static_assert(sizeof(APPBARDATA) == 48 && offsetof(APPBARDATA, hWnd) == 8 &&
              offsetof(APPBARDATA, lParam) == 40);

class SdkTest : public QuilletTest
{
    Q_OBJECT

private slots:
    // The buffer for a security identifier is large enough for the one that is put into it.
    void theAdministratorsSidFitsItsBuffer()
    {
        BYTE sid[SECURITY_MAX_SID_SIZE];
        DWORD size = sizeof sid;
        QVERIFY(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &size));
        QCOMPARE(size, DWORD(16)); // and has the size that the simulation gives it
    }
};

QTEST_GUILESS_MAIN(SdkTest)
#include "tst_sdk.moc"
