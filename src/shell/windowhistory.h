#pragma once

#include <QObject>

// A window of an application, as the history is told of it. Still an empty value.
struct ApplicationWindow
{};

// The task bar's history of windows. Wanted: it keeps none; which button follows a removed one is decided by
// the foreground window and the last position.
class WindowHistory : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    void removeWindow(ApplicationWindow appWindow);
};
