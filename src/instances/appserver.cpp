#include "instances/appserver.h"

#include "env/log.h"
#include "instances/channeladdress.h"

#include <QTcpSocket>

#include <memory>

AppServer::AppServer(QObject* parent)
    : QTcpServer(parent)
{}

void AppServer::incomingConnection(qintptr descriptor)
{
    auto socket = std::make_unique<QTcpSocket>();
    if (!socket->setSocketDescriptor(descriptor) || m_peer)
        return;
    m_peer = socket.release();
    m_peer->setParent(this);
    connect(m_peer, SIGNAL(readyRead()), this, SLOT(readData()));
    connect(m_peer, &QTcpSocket::disconnected, this, [this] {
        m_peer->deleteLater();
        m_peer = nullptr;
    });
}

void AppServer::readData()
{
    if (!m_peer)
        return;
    qDebug("Ready to read %d bytes", static_cast<int>(m_peer->bytesAvailable()));
    QString text = QString::fromUtf8(m_peer->readAll());
    qDebug("Command: '%s'", qUtf8Printable(text));
    const QString filePrefix = QStringLiteral("filename=");
    if (text.trimmed() == QLatin1String("running"))
        emit running();
    if (text.trimmed() == QLatin1String("close"))
        emit closeTab();
    if (text.startsWith(filePrefix))
        emit renameTab(text.remove(filePrefix));
}

void AppServer::closeApp()
{
    env::logInfo(QStringLiteral("Closing socket on Address %1, port %2")
                     .arg(instances::channelAddress().toString())
                     .arg(serverPort()));
    send("close");
}

void AppServer::killApp()
{
    send("kill");
}

void AppServer::disconnectSession()
{
    send("disconnect");
}

void AppServer::send(const char* message)
{
    if (m_peer)
        m_peer->write(message);
}
