#include "instances/appinstance.h"

#include "catalogue/applicationicon.h"
#include "catalogue/cataloguefiles.h"
#include "catalogue/launchcommand.h"
#include "env/log.h"
#include "env/settings.h"
#include "instances/splitarguments.h"
#include "server/twclient.h"

#include <QDir>
#include <QProcessEnvironment>

namespace {

constexpr int startWait = 30000; // ms

// QProcess::pid(), which is deprecated: the server is told this value, not the numeric process id.
quint64 pidOf(const QProcess& process)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
#ifdef Q_OS_WIN
    return reinterpret_cast<quintptr>(process.pid());
#else
    return static_cast<quint64>(process.pid());
#endif
    QT_WARNING_POP
}

// The same for every launch, wherever the user's language is chosen.
QProcessEnvironment launchEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("OOO_FORCE_DESKTOP"), QStringLiteral("kde4"));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("es_ES.UTF-8"));
    return environment;
}

// A process without a parent: whoever deletes one that runs would kill its program.
QProcess* createProcess()
{
    QProcess* const process = new QProcess; // deletes itself, see below
    process->setProcessEnvironment(launchEnvironment());
    process->setWorkingDirectory(QDir::homePath());
    // Nobody reads what a program writes.
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    QObject::connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), process, SLOT(deleteLater()));
    QObject::connect(process, &QProcess::errorOccurred, process, [process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            process->deleteLater();
    });
    return process;
}

} // namespace

AppInstance::AppInstance(const QString& name, TWClient* server, QObject* parent)
    : QObject(parent)
    , m_server(server)
    , m_name(name)
{
    env::logInfo(QLatin1String("AppInstance. appName: ") + name);
    if (!server)
        readCatalogue();
    else if (server->isConnected())
        askServer();
}

void AppInstance::askServer()
{
    const auto ask = [this](const char* command, const QString& argument) {
        return m_server->sendCommand(QLatin1String(command) + argument);
    };
    m_icon = catalogue::serverIcon(*m_server, m_name);
    m_execPath = ask("get_application_exec_path?", m_name);
    m_arguments = instances::splitArguments(ask("get_application_arguments?", m_name));
    m_preferredServer = ask("get_preferred_server?", m_name + QLatin1String("&0.5"));
    m_serverAddress = ask("get_server_address?", m_preferredServer);
    m_serverType = ask("get_server_type?", m_preferredServer);
    m_onlyOne = ask("get_application_onlyone?", m_name) == QLatin1String("1");
    m_applicationName = ask("get_application_name?", m_name);
    m_displayName = ask("get_application_display_name?", m_name);
}

void AppInstance::readCatalogue()
{
    const auto value = [this](const char* key) {
        return catalogue::applicationValue(m_name, QLatin1String(key));
    };
    m_applicationName = value("name");
    m_displayName = m_applicationName;
    m_execPath = value("command");
    m_serverType = value("os");
    m_arguments = value("arguments").split(QLatin1Char(' '));
    m_arguments.removeAll(QString()); // an empty argument would make programs fail
    m_icon = catalogue::builtInIcon(value("icon"));
    m_onlyOne = value("only-one-instance") == QLatin1String("true");
}

TWClient* AppInstance::server() const
{
    return m_server;
}

bool AppInstance::hasServer() const
{
    return m_server && m_server->isConnected();
}

QString AppInstance::program() const
{
    if (catalogue::isRemoteLaunch(m_serverAddress, m_serverType))
        return QLatin1String(catalogue::remoteClient);
    // No runner is known for chroot environments: the start fails there.
    if (env::readBooleanSetting(QLatin1String(env::key::chrootEnvironment)))
        return QString();
    return catalogue::expandEnvironment(m_execPath);
}

QProcess* AppInstance::launch(const QSize& size, quint16 port)
{
    m_windowId = 0;
    QProcess* const process = createProcess();
    const QString toStart = program();
    qDebug("Command: '%s'", qUtf8Printable(m_execPath));
    m_arguments += catalogue::launchArguments(m_execPath, m_arguments, m_file, m_windowId, size, port,
                                              m_serverType, m_serverAddress);
    env::logInfo(QStringLiteral("Launching: %1 %2").arg(toStart, m_arguments.join(QLatin1Char(' '))));
    process->start(toStart, m_arguments, QIODevice::ReadWrite);
    process->waitForStarted(startWait); // wanted: what comes of it is not asked
    if (hasServer()) {
        m_processId = pidOf(*process);
        report(QStringLiteral("start_application?"), QString());
    }
    connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), this,
            SLOT(finish(int, QProcess::ExitStatus)));
    return process;
}

void AppInstance::finish(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (hasServer())
        report(QStringLiteral("end_application?"), QStringLiteral("Sending "));
    emit finished(exitCode, exitStatus);
}

void AppInstance::report(const QString& command, const QString& prefix)
{
    const QString pid = QLatin1Char('&') + QString::number(m_processId);
    const QString reply = m_server->sendCommand(command + m_name.trimmed() + pid);
    env::logInfo(prefix + command + m_name + pid + QLatin1String(" with result: ") + reply);
}
