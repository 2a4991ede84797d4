// twserver FILE [--port PORT] [--fault COMMAND=KIND[:MILLISECONDS]]...
//
// A stand-in for the central server, for people: it answers from FILE (JSON), and says on standard output who
// connected, what was asked and what it answered. KIND is late, silent, cut, split, toolong, refused,
// close or hangup; COMMAND is a command word ("login?", "_byteArray_get_application_icon?") or "*". Ends on a
// signal.
#include "support/twserver/twserver.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cstdio>

namespace {

bool parseFault(const QString& text, QByteArray* command, TwFault* fault)
{
    const QHash<QString, TwFault::Kind> kinds = {{"late", TwFault::Late},       {"silent", TwFault::Silent},
                                                 {"cut", TwFault::Cut},         {"split", TwFault::Split},
                                                 {"toolong", TwFault::TooLong}, {"refused", TwFault::Refused},
                                                 {"close", TwFault::Close},     {"hangup", TwFault::HangUp}};
    const int equals = text.lastIndexOf(QLatin1Char('='));
    const QStringList parts = text.mid(equals + 1).split(QLatin1Char(':'));
    if (equals < 1 || parts.size() > 2 || !kinds.contains(parts[0]))
        return false;
    *command = text.left(equals).toUtf8();
    fault->kind = kinds.value(parts[0]);
    bool isNumber = true;
    fault->milliseconds = parts.size() == 2 ? parts[1].toInt(&isNumber) : 1000;
    if (!isNumber || fault->milliseconds < 0)
        return false;
    fault->text = "on request";
    return true;
}

// One line, whatever the bytes are.
QByteArray printable(const QByteArray& bytes)
{
    if (bytes.size() > 200)
        return QByteArray::number(bytes.size()) + " bytes";
    QByteArray text;
    for (const char c : bytes) {
        if (c == '\n')
            text += "\\n";
        else if (static_cast<unsigned char>(c) < 32 || c == 127)
            text += "\\x" + QByteArray(1, c).toHex();
        else
            text += c;
    }
    return '"' + text + '"';
}

void print(const TwEvent& event)
{
    const char* const verbs[] = {"connected", "asks ", "gets ", "disconnected"};
    const bool withBytes = event.kind == TwEvent::Request || event.kind == TwEvent::Reply;
    std::printf("twserver: %lld.%03lld s, client %d %s%s\n", event.time / 1000, event.time % 1000,
                event.connection, verbs[event.kind], withBytes ? printable(event.bytes).constData() : "");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A stand-in for the central server."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("what the server knows"));
    parser.addOption({"port", "listen there instead of on a free port", "PORT", "0"});
    parser.addOption({"fault", "let replies go wrong", "COMMAND=KIND[:MILLISECONDS]"});
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    TwServer server;
    QString error;
    if (!server.data.load(parser.positionalArguments().constFirst(), &error)) {
        std::fprintf(stderr, "twserver: %s\n", qPrintable(error));
        return 1;
    }
    for (const QString& text : parser.values(QStringLiteral("fault"))) {
        QByteArray command;
        TwFault fault;
        if (!parseFault(text, &command, &fault)) {
            std::fprintf(stderr, "twserver: no such fault: %s\n", qPrintable(text));
            return 2;
        }
        server.setFault(command, fault);
    }
    server.onEvent = print;
    bool isNumber = false;
    const quint16 port = parser.value(QStringLiteral("port")).toUShort(&isNumber);
    if (!isNumber || !server.start(port)) {
        std::fprintf(stderr, "twserver: cannot listen on port %s\n",
                     qPrintable(parser.value(QStringLiteral("port"))));
        return 1;
    }
    for (auto user = server.data.users.constBegin(); user != server.data.users.constEnd(); ++user) {
        const bool anybody = user.key() == QLatin1String("*");
        std::printf("twserver: %s may log in with the password: %s\n",
                    anybody ? "everybody" : qPrintable(user.key()), qPrintable(user->password));
    }
    std::printf("twserver: listening on 127.0.0.1, port %d\n", server.port());
    std::fflush(stdout);
    return QCoreApplication::exec();
}
