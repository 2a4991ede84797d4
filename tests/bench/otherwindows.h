#pragma once

#include <QList>
#include <QProcess>

// The desktop around a shell that is measured: natively the simulated one, which keeps no record of calls; on
// Windows a stand-in for the system's task bar, whose real one may let its callers wait.
class MeasuredDesktop
{
public:
    MeasuredDesktop();
    ~MeasuredDesktop();
    Q_DISABLE_COPY(MeasuredDesktop)
};

// Windows of another program. There must be an application object.
class OtherWindows
{
public:
    explicit OtherWindows(int number);
    ~OtherWindows();
    Q_DISABLE_COPY(OtherWindows)

    // Fewer than were asked for when they did not come within 30 s.
    QList<qlonglong> handles() const { return m_handles; }
    // Hides or shows them all; as the tracker sees it, they go and come.
    void setVisible(bool visible) const;

private:
    QList<qlonglong> m_handles;
    QProcess m_program; // on Windows alone
};
