#pragma once

#include "support/sandbox.h"

#include <QObject>
#include <QStringList>

#include <memory>

// What every test class derives from: each test function gets a fresh sandbox and, natively, a fresh
// simulated Windows, and fails when Qt warned about something. (A misspelt SIGNAL() or SLOT() only warns.)
class QuilletTest : public QObject
{
    Q_OBJECT

protected:
    Sandbox& sandbox() { return *m_sandbox; }

    // What the program wrote to Qt's debug output since the test function began, or since clearDebugOutput().
    static QStringList debugOutput();
    static void clearDebugOutput();

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};
