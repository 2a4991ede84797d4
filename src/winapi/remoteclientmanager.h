#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

// Gives drive letters to what the remote-desktop client shares ("\\TSCLIENT\name") and has none yet, and
// takes them back. Every connected disk resource counts, the client's or not. Lives on the GUI thread, which
// Windows' network calls block.
class RemoteClientManager : public QObject
{
    Q_OBJECT

public:
    explicit RemoteClientManager(QObject* parent = nullptr);

    // Local names ("E:"), and the name of the share behind each: without "\\TSCLIENT\", or whole when it is
    // somewhere else.
    QStringList drives() const { return m_drives; }
    QStringList shares() const { return m_shares; }

signals:
    // After each scan.
    void update();

public slots:
    // Looks for shares and connects those without a letter. Wanted: a drive that could not be connected is
    // listed all the same. Meant to be called once.
    void start();
    // Removes the drives that start() added; the lists stay.
    void stop();

private:
    void add(const QString& drive, const QString& share, bool connectedHere);

    QStringList m_drives;
    QStringList m_shares;
    QList<bool> m_added; // whether start() connected it; never cleared
};
