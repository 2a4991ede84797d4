// Starts a program that has a Windows entry point on the simulated Windows. Its command line is this
// process's; the environment sets the scene:
//   SIMWIN_ADMINISTRATOR=1    the user is a member of the local Administrators group
//   SIMWIN_FAIL=Function ...  these calls fail
#include "simwin.h"

int main(int argc, char** argv)
{
    simwin::reset();
    QString commandLine;
    for (int i = 0; i < argc; ++i)
        commandLine += QLatin1Char('"') + QString::fromLocal8Bit(argv[i]) + QLatin1String("\" ");
    simwin::setCommandLine(commandLine.trimmed());
    simwin::setAdministrator(qgetenv("SIMWIN_ADMINISTRATOR") == "1");
    for (const QByteArray& function : qgetenv("SIMWIN_FAIL").split(' '))
        simwin::fail(function, ERROR_ACCESS_DENIED);
    return WinMain(nullptr, nullptr, nullptr, 1);
}
