#include "session/desktop.h"

#include "env/settings.h"

Desktop::Desktop()
{
    env::readWindowManagerBehaviour();
}
