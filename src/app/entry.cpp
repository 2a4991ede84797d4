#include "app/entry.h"

#include "app/shellmain.h"
#include "winapi/administrators.h"
#include "winapi/ansiarguments.h"

#include <QProcess>

#include <cstdlib>

namespace app {

int windowsEntry()
{
    std::optional<winapi::AnsiArguments> arguments = winapi::AnsiArguments::ofThisProcess();
    if (!arguments)
        return -1;
    return administratorGate(arguments->count(), arguments->data());
}

int administratorGate(int, char**)
{
    if (winapi::userIsAdministrator()) {
        QProcess::startDetached(QStringLiteral("explorer.exe"), QStringList());
        std::exit(0);
    }
    shellMain();
    return 0;
}

} // namespace app
