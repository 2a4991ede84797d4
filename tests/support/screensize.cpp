// screensize WIDTH HEIGHT
//
// Gives the screen another size while programs run, as a remote-desktop client with another screen does. Exit
// code 0 when the screen has that size then; Wine has the usual sizes, up to the one of its own display.
#include <windows.h>

#include <cstdlib>

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    DEVMODEW mode = {};
    mode.dmSize = sizeof mode;
    mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT;
    mode.dmPelsWidth = static_cast<DWORD>(std::atoi(argv[1]));
    mode.dmPelsHeight = static_cast<DWORD>(std::atoi(argv[2]));
    // Stored, so that it stays when this program ends.
    return ChangeDisplaySettingsW(&mode, CDS_UPDATEREGISTRY) == DISP_CHANGE_SUCCESSFUL ? 0 : 1;
}
