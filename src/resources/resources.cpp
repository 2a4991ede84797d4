#include "resources/resources.h"

#include <QtGlobal>

void initResources()
{
    Q_INIT_RESOURCE(icons);
    Q_INIT_RESOURCE(mime);
}
