// lockshell deny|allow
//
// Forbids everybody to write the values beside the machine's shell value, as a hardened machine may, or
// allows it again. Exit code 0 when that was done.
#include <windows.h>

#include <sddl.h>

#include <string>

int wmain(int argc, wchar_t** argv)
{
    if (argc != 2)
        return 2;
    const bool isDenied = std::wstring(argv[1]) == L"deny"; // 0x2 is KEY_SET_VALUE, 0xf003f KEY_ALL_ACCESS
    const wchar_t* const text = isDenied ? L"D:P(D;;0x2;;;WD)(A;;0xf003f;;;WD)" : L"D:P(A;;0xf003f;;;WD)";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor, nullptr))
        return 1;
    HKEY key = nullptr;
    LONG result = RegOpenKeyExW(
        HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon", 0, WRITE_DAC, &key);
    if (result == ERROR_SUCCESS) {
        result = RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
        RegCloseKey(key);
    }
    LocalFree(descriptor);
    return result == ERROR_SUCCESS ? 0 : 1;
}
