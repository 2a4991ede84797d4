#pragma once

#include <QObject>

// The controller of the shell: everything that happens in a session passes through it. Created once by
// start-up, on the GUI thread, and never destroyed.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop();
};
