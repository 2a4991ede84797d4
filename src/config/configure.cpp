#include "config/configure.h"

void Configure::launchConfigurationApplication(QWidget* widget)
{
    emit selectWidget(widget, true);
}
