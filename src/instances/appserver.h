#pragma once

#include <QTcpServer>

class QTcpSocket;

// The shell's end of the text channel to the launcher that runs an application on a serving host. Nothing
// starts one yet. It talks to one peer: while that is connected, further connections are closed at once.
//
// Connections are taken at once: there are no pending ones. Slots on its signals must not delete it, but may
// use deleteLater(): the signals come from within the peer's own.
//
// Messages are raw ASCII text (a file name is UTF-8), one per read, without length or terminator: "running",
// "close" and "filename=NAME" from the peer; "close", "kill" and "disconnect" to it. Unknown ones are
// ignored, and one that comes in two reads counts as two.
class AppServer : public QTcpServer
{
    Q_OBJECT

public:
    explicit AppServer(QObject* parent = nullptr);

signals:
    void running();
    void closeTab();
    // The file that the application shows now, as it came.
    void renameTab(QString name);

public slots:
    // Ask the peer; nothing is sent while nobody is connected.
    void closeApp();
    void killApp();
    void disconnectSession();

    // Takes what has arrived as one message.
    void readData();

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void send(const char* message);

    QTcpSocket* m_peer = nullptr; // a child; null while nobody is connected
};
