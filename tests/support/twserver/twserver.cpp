#include "support/twserver/twserver.h"

#include <QMutexLocker>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

// Lives on the server's thread.
class TwServer::Worker : public QObject
{
public:
    explicit Worker(TwServer& owner)
        : m_owner(owner)
        , m_server(new QTcpServer(this))
    {
        connect(m_server, &QTcpServer::newConnection, this, &Worker::accept);
    }

    quint16 listen(quint16 port)
    {
        return m_server->listen(QHostAddress::LocalHost, port) ? m_server->serverPort() : quint16(0);
    }

    void close()
    {
        m_server->close();
        for (QTcpSocket* const socket : m_server->findChildren<QTcpSocket*>())
            socket->abort();
    }

private:
    void accept()
    {
        while (QTcpSocket* const socket = m_server->nextPendingConnection()) {
            const int connection = ++m_connections;
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            m_owner.record(TwEvent::Connected, connection, QByteArray());
            connect(socket, &QTcpSocket::readyRead, this, [=] { answer(socket, connection); });
            connect(socket, &QTcpSocket::disconnected, this, [=] {
                m_owner.record(TwEvent::Disconnected, connection, QByteArray());
                socket->deleteLater();
            });
        }
    }

    // A request has no end: what has come by now is one.
    void answer(QTcpSocket* socket, int connection)
    {
        const QByteArray request = socket->readAll();
        m_owner.record(TwEvent::Request, connection, request);
        QByteArray command;
        QByteArray reply = m_owner.data.reply(request, &command);
        const TwFault fault = m_owner.takeFault(command);
        switch (fault.kind) {
        case TwFault::None:
            break;
        case TwFault::Late: {
            const QPointer<QTcpSocket> guarded(socket);
            QTimer::singleShot(fault.milliseconds, this, [=] {
                if (guarded)
                    send(guarded, connection, reply);
            });
            return;
        }
        case TwFault::Silent:
            return;
        case TwFault::Cut:
            reply.truncate(reply.size() / 2);
            break;
        case TwFault::Split:
            sendInPieces(socket, connection, reply, fault);
            return;
        case TwFault::TooLong:
            reply += fault.text;
            break;
        case TwFault::Refused:
            reply = "Error: " + fault.text;
            break;
        case TwFault::Close:
            socket->disconnectFromHost();
            return;
        case TwFault::Instead:
            reply = fault.text;
            break;
        case TwFault::HangUp:
            break;
        }
        send(socket, connection, reply);
        if (command == "quit" || fault.kind == TwFault::HangUp)
            socket->disconnectFromHost();
    }

    void send(QTcpSocket* socket, int connection, const QByteArray& reply)
    {
        m_owner.record(TwEvent::Reply, connection, reply);
        socket->write(reply);
        socket->flush();
    }

    void sendInPieces(QTcpSocket* socket, int connection, const QByteArray& rest, const TwFault& fault)
    {
        if (rest.isEmpty())
            return;
        send(socket, connection, rest.left(fault.pieceSize));
        const QPointer<QTcpSocket> guarded(socket);
        QTimer::singleShot(fault.milliseconds, this, [=] {
            if (guarded)
                sendInPieces(guarded, connection, rest.mid(fault.pieceSize), fault);
        });
    }

    TwServer& m_owner;
    QTcpServer* const m_server;
    int m_connections = 0;
};

TwServer::TwServer()
{
    m_clock.start();
}

TwServer::~TwServer()
{
    stop();
}

bool TwServer::start(quint16 port)
{
    stop();
    m_worker = std::make_unique<Worker>(*this);
    m_worker->moveToThread(&m_thread);
    m_thread.start();
    QMetaObject::invokeMethod(
        m_worker.get(), [this, port] { m_port = m_worker->listen(port); }, Qt::BlockingQueuedConnection);
    if (m_port == 0)
        stop();
    return m_port != 0;
}

void TwServer::stop()
{
    if (!m_worker)
        return;
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this] {
            m_worker->close();
            m_worker.reset(); // on its own thread, like everything that it owns
        },
        Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
    m_port = 0;
}

void TwServer::setFault(const QByteArray& command, const TwFault& fault, int times)
{
    const QMutexLocker locker(&m_lock);
    m_faults.insert(command, {fault, times});
}

void TwServer::clearFaults()
{
    const QMutexLocker locker(&m_lock);
    m_faults.clear();
}

TwFault TwServer::takeFault(const QByteArray& command)
{
    const QMutexLocker locker(&m_lock);
    auto planned = m_faults.find(command);
    if (planned == m_faults.end())
        planned = m_faults.find("*");
    if (planned == m_faults.end() || planned->times == 0)
        return TwFault();
    if (planned->times > 0)
        --planned->times;
    return planned->fault;
}

void TwServer::record(TwEvent::Kind kind, int connection, const QByteArray& bytes)
{
    const TwEvent event = {kind, m_clock.elapsed(), connection, bytes};
    {
        const QMutexLocker locker(&m_lock);
        m_transcript.append(event);
    }
    m_happened.wakeAll();
    if (onEvent)
        onEvent(event);
}

QList<TwEvent> TwServer::transcript() const
{
    const QMutexLocker locker(&m_lock);
    return m_transcript;
}

QList<QByteArray> TwServer::requests() const
{
    QList<QByteArray> requests;
    for (const TwEvent& event : transcript()) {
        if (event.kind == TwEvent::Request)
            requests.append(event.bytes);
    }
    return requests;
}

bool TwServer::nobodyConnected() const
{
    QTcpSocket socket;
    socket.connectToHost(QHostAddress(QHostAddress::LocalHost), m_port);
    if (!socket.waitForConnected())
        return false;
    socket.write("is anybody here");
    return socket.waitForBytesWritten() && waitFor(TwEvent::Request, "is anybody here") &&
           transcript().constLast().connection == 1;
}

bool TwServer::waitFor(TwEvent::Kind kind, const QByteArray& bytes, int milliseconds) const
{
    QElapsedTimer timer;
    timer.start();
    const QMutexLocker locker(&m_lock);
    for (;;) {
        for (const TwEvent& event : m_transcript) {
            if (event.kind == kind && event.bytes == bytes)
                return true;
        }
        const qint64 left = milliseconds - timer.elapsed();
        if (left <= 0)
            return false;
        m_happened.wait(&m_lock, static_cast<unsigned long>(left));
    }
}
