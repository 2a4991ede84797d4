// Exchanges with the server on loopback, beside a bare socket that does the same with the fewest calls and
// writes the same log lines.
#include "server/twclient.h"

#include "bench/figures.h"
#include "env/log.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QCoreApplication>
#include <QTcpSocket>

#include <cstdio>

namespace {

constexpr int wait = 30000; // ms

QString bareText(QTcpSocket& socket)
{
    socket.write("start_session");
    socket.waitForBytesWritten(wait);
    socket.waitForReadyRead(wait);
    return QString::fromUtf8(socket.readAll()).trimmed();
}

QByteArray bareBytes(QTcpSocket& socket)
{
    socket.write("_byteArray_get_application_icon?x");
    socket.waitForBytesWritten(wait);
    socket.waitForReadyRead(wait);
    const QByteArray head = socket.read(4);
    env::logInfo(QStringLiteral("resSize size: %1").arg(head.size()));
    int size = 0;
    for (const char byte : head)
        size = size << 8 | static_cast<unsigned char>(byte);
    env::logInfo(QStringLiteral("Response size: %1").arg(size));
    QByteArray bytes;
    while (bytes.size() < size) {
        if (socket.bytesAvailable() < 1)
            socket.waitForReadyRead(wait);
        else
            bytes += socket.readAll();
        env::logInfo(QStringLiteral("Message size: %1").arg(bytes.size()));
    }
    return bytes;
}

void silent(QtMsgType, const QMessageLogContext&, const QString&) {}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const Sandbox sandbox;
    TwServer server;
    server.data.applications[QStringLiteral("x")].icon = QByteArray(64 * 1024, 'x');
    if (!server.start())
        return 1;
    sandbox.writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                          QByteArray::number(server.port()) + "\n");
    qInstallMessageHandler(silent);
    TWClient client;
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), server.port());
    if (!client.connectToServer() || !socket.waitForConnected(wait))
        return 1;

    bool right = true; // an exchange that goes wrong is no figure
    const Figures text = measure(
        3000,
        [&] {
            right &= client.sendCommand(QStringLiteral("start_session")) == QLatin1String("Session started");
        },
        [&] { right &= bareText(socket) == QLatin1String("Session started"); });
    const Figures bytes = measure(
        1000,
        [&] {
            right &= client.sendCommandForBytes(QStringLiteral("get_application_icon?x")).size() == 64 * 1024;
        },
        [&] { right &= bareBytes(socket).size() == 64 * 1024; });
    if (!right) {
        std::fprintf(stderr, "an exchange went wrong\n");
        return 1;
    }
    printHeader();
    printLine("text exchange", text);
    printLine("byte-array exchange, 64 KiB", bytes);
    return 0;
}
