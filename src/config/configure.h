#pragma once

#include "shell/menu.h"

// The configuration panel, a page of the shell: the launcher's grid with a button for each configuration
// tool. Still without tools. Created and owned by the task bar.
class Configure : public Menu
{
    Q_OBJECT

public:
    using Menu::Menu;

public slots:
    // Brings a tool's widget to the front, also when it is there already.
    void launchConfigurationApplication(QWidget* widget);
};
