#pragma once

#include <QMutex>
#include <QObject>

class QTcpSocket;

// The shell's only connection to the central server. Every exchange blocks the calling thread, the GUI
// thread, until the reply is there or the wait has run out; no event loop runs meanwhile. One instance exists
// per process: the session start creates it and puts it into the process-wide slot (env/serverslot.h).
//
// The stream: a request is the UTF-8 text of one command, sent in one write and not terminated. A text reply
// is raw UTF-8, as much as has arrived after the first wait; a zero byte ends it. A byte-array reply is a
// length of four bytes, the most significant first, and that many bytes. What a refusal looks like is the
// callers' business, except for the login's.
//
// Wanted: time-outs are not told from empty replies, a lost connection is not noticed (later exchanges come
// back empty), and after a late or split reply every answer is one behind.
class TWClient : public QObject
{
    Q_OBJECT

public:
    // Does not connect.
    TWClient();
    // Says "quit\n" when connected, and waits up to 30 s for the server's last word.
    ~TWClient() override;

    // Connects to the address and port of the settings. Gives up after 15 ms: a server that is there answers
    // at once, and the user must not wait for one that is not. The lookup of a name counts; one that takes
    // longer is waited for, and then it is too late.
    bool connectToServer();
    // Whether connectToServer() succeeded; never cleared afterwards.
    bool isConnected() const;
    // Waits until the socket itself is connected, for `milliseconds` at most.
    bool waitForConnected(int milliseconds);

    // Sends the user's password, or the token in its place, in clear text. False when not connected, when the
    // request could not be written, or when the reply begins with "Error"; an empty reply accepts. Does not
    // take the lock: nobody else has the client yet.
    bool login(const QString& user, const QString& password);

    // Sends `command` and returns the reply without white space at its ends; empty when not connected or when
    // no reply came within 30 s.
    QString sendCommand(const QString& command);

    // Sends `command` as a request for a byte array and returns the array: empty when not connected. A server
    // that announces more than it sends keeps the caller waiting, for as long as it stays connected. Bytes
    // beyond the announced length that came in the same read are part of the result.
    QByteArray sendCommandForBytes(const QString& command);

private:
    // Sends one request and waits for the first bytes of its reply. False when it could not be written.
    bool request(const QString& text);

    QTcpSocket* const m_socket; // a child
    bool m_connected = false;
    QMutex m_lock; // one text or byte-array exchange at a time
};
