#pragma once

#include "support/twserver/twdata.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>
#include <QWaitCondition>

#include <functional>
#include <memory>

// How a reply goes wrong.
struct TwFault
{
    enum Kind
    {
        None,
        Late,    // `milliseconds` after the request
        Silent,  // never
        Cut,     // its first half only; the connection stays
        Split,   // in pieces of `pieceSize` bytes, `milliseconds` apart
        TooLong, // followed by `text`, in the same write
        Refused, // "Error: " and `text` instead
        Close,   // the connection is closed instead
        HangUp,  // the connection is closed after it
        Instead, // the bytes `text` instead, as they are
    };

    TwFault(Kind k = None, int ms = 0, const QByteArray& t = QByteArray(), int piece = 1)
        : kind(k)
        , milliseconds(ms)
        , text(t)
        , pieceSize(piece)
    {}

    Kind kind;
    int milliseconds;
    QByteArray text;
    int pieceSize;
};

// Something that happened on a connection.
struct TwEvent
{
    enum Kind
    {
        Connected,
        Request,
        Reply,
        Disconnected
    };
    Kind kind = Connected;
    qint64 time = 0;    // milliseconds since the server started
    int connection = 0; // counted from 1
    QByteArray bytes;   // of a request or reply
};

// A stand-in for the central server, listening on 127.0.0.1. It runs on a thread of its own, because its
// client blocks the one that it is on. It is started and stopped on one thread; the rest may be called on
// any.
class TwServer
{
public:
    TwServer();
    ~TwServer();
    Q_DISABLE_COPY(TwServer)

    // What it knows. Change it only while nobody asks.
    TwData data;

    // Called on the server's thread for every event; set it before start().
    std::function<void(const TwEvent&)> onEvent;

    // Listens on `port`, or on a free one. False when it cannot.
    bool start(quint16 port = 0);
    // Closes every connection and stops listening.
    void stop();
    quint16 port() const { return m_port; }

    // From now on the replies to `command` ("login?", "_byteArray_get_application_icon?", "end_session") go
    // wrong: the next `times` ones, or all of them when it is negative. The command "*" stands for every one
    // that has no fault of its own.
    void setFault(const QByteArray& command, const TwFault& fault, int times = -1);
    void clearFaults();

    QList<TwEvent> transcript() const;
    // The requests alone, in order.
    QList<QByteArray> requests() const;
    // Whether nobody has connected yet. The server accepts in order: it is enough to see that a connection of
    // this call's own is the first.
    bool nobodyConnected() const;
    // Waits until an event of `kind` with these bytes has happened.
    bool waitFor(TwEvent::Kind kind, const QByteArray& bytes, int milliseconds = 30000) const;

private:
    class Worker;

    void record(TwEvent::Kind kind, int connection, const QByteArray& bytes);
    TwFault takeFault(const QByteArray& command);

    struct PlannedFault
    {
        TwFault fault;
        int times = -1;
    };

    QThread m_thread;
    std::unique_ptr<Worker> m_worker; // lives on m_thread
    quint16 m_port = 0;
    QElapsedTimer m_clock;

    mutable QMutex m_lock; // guards what follows
    mutable QWaitCondition m_happened;
    QList<TwEvent> m_transcript;
    QHash<QByteArray, PlannedFault> m_faults;
};
