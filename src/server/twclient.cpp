#include "server/twclient.h"

#include "env/log.h"
#include "env/settings.h"

#include <QMutexLocker>
#include <QTcpSocket>
#include <QTimer>

namespace {

constexpr int connectWait = 15;       // ms
constexpr int exchangeWait = 30000;   // ms, for each wait of an exchange
constexpr int readSize = 256;         // bytes
constexpr int byteArrayTimer = 15000; // ms

// The length in front of a byte array; bytes that did not come count as 0.
qint32 announcedLength(const QByteArray& bytes)
{
    quint32 length = 0;
    for (int i = 0; i < 4; ++i)
        length = length << 8 | (i < bytes.size() ? static_cast<quint8>(bytes[i]) : 0u);
    return static_cast<qint32>(length);
}

} // namespace

TWClient::TWClient()
    : m_socket(new QTcpSocket(this))
{}

TWClient::~TWClient()
{
    if (m_connected) {
        m_socket->write("quit\n");
        m_socket->waitForReadyRead(exchangeWait);
        m_socket->readAll();
    }
    delete m_socket;
}

bool TWClient::connectToServer()
{
    const quint16 port = static_cast<quint16>(env::serverPort());
    const QString address = env::readSetting(QLatin1String(env::key::serverAddress));
    m_socket->connectToHost(address, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
    m_connected = m_socket->waitForConnected(connectWait);
    qDebug(m_connected ? "Connected" : "Cannot connect");
    return m_connected;
}

bool TWClient::isConnected() const
{
    return m_connected;
}

bool TWClient::waitForConnected(int milliseconds)
{
    return m_socket->waitForConnected(milliseconds);
}

bool TWClient::login(const QString& user, const QString& password)
{
    if (!m_connected)
        return false;
    const bool written =
        request(QLatin1String("login?") + user + QLatin1String("&&") + password + QLatin1Char('\n'));
    const QString reply = QString::fromUtf8(m_socket->readAll());
    return written && !reply.startsWith(QLatin1String("Error"));
}

QString TWClient::sendCommand(const QString& command)
{
    const QMutexLocker locker(&m_lock);
    if (!m_connected)
        return QString();
    request(command);
    QByteArray reply; // decoded as a whole: a letter may lie across two reads
    while (!m_socket->atEnd())
        reply += m_socket->read(readSize);
    m_socket->flush();
    return QString::fromUtf8(reply).trimmed();
}

QByteArray TWClient::sendCommandForBytes(const QString& command)
{
    const QMutexLocker locker(&m_lock);
    QByteArray result;
    if (!m_connected)
        return result;
    request(QLatin1String("_byteArray_") + command);
    const QByteArray lengthBytes = m_socket->read(4);
    env::logInfo(QStringLiteral("resSize size: %1").arg(lengthBytes.size()));
    const qint32 length = announcedLength(lengthBytes);
    env::logInfo(QStringLiteral("Response size: %1").arg(length));

    // Wanted: without an event loop the timer never fires. The loop ends only when enough bytes have come,
    // ...
    QTimer timer(this);
    timer.start(byteArrayTimer);
    while (result.size() < length && timer.isActive()) {
        if (m_socket->bytesAvailable() < 1) {
            // ... or when none can come any more.
            if (m_socket->state() != QAbstractSocket::ConnectedState)
                break;
            m_socket->waitForReadyRead(exchangeWait);
        } else {
            result += m_socket->readAll();
        }
        env::logInfo(QStringLiteral("Message size: %1").arg(result.size()));
        m_socket->flush();
    }
    return result;
}

bool TWClient::request(const QString& text)
{
    const bool written = m_socket->write(text.toUtf8()) != -1;
    if (written) {
        m_socket->waitForBytesWritten(exchangeWait);
        m_socket->waitForReadyRead(exchangeWait);
    }
    return written;
}
