#include "catalogue/launchcommand.h"

#include "env/identity.h"
#include "env/network.h"
#include "env/settings.h"
#include "instances/channeladdress.h"

#include <QDir>

namespace catalogue {

namespace {

// A variable's name is its token's, without the "%" signs. Longer names come before those that they begin
// with.
constexpr const char* variables[] = {
    "programw6432", "programfiles(x86)", "programfiles", "windir", "systemroot", "system32",
    "system",       "homepath",          "temp",         "tmp"};

constexpr char remoteLauncher[] = "%programfiles%\\Quillet\\fullscreenshell.exe";

QString singleBackslashes(QString text)
{
    return text.replace(QLatin1String("\\\\"), QLatin1String("\\"));
}

QString withBackslashes(QString path)
{
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

QString quoted(const QString& field)
{
    return QLatin1Char('"') + field + QLatin1Char('"');
}

// A file's path as the serving host sees it.
QString pathOnServingHost(QString file)
{
    file.replace(QLatin1String("/shared"), env::sharedFolderPath());
    file.replace(QDir::homePath(), env::homeSharePath());
    return withBackslashes(file);
}

QString remoteShellLine(const QString& program, const QString& file, quint16 port)
{
    QStringList fields = {QLatin1String(remoteLauncher), quoted(program),
                          quoted(instances::channelAddress().toString()), quoted(QString::number(port))};
    if (!file.isEmpty())
        fields.append(quoted(pathOnServingHost(file)));
    return fields.join(QLatin1Char(' '));
}

QStringList remoteArguments(const QString& shellLine, qint32 windowId, const QSize& size,
                            const QString& serverAddress)
{
    return {
        QStringLiteral("-u"),
        env::credentialsUserName(),
        QStringLiteral("-d"),
        env::readSetting(QLatin1String(env::key::sambaDomain)),
        QStringLiteral("-p"),
        env::credentialsPassword(),
        QStringLiteral("-g"),
        QStringLiteral("%1x%2").arg(size.width()).arg(size.height()),
        QStringLiteral("-X"),
        QString::number(windowId),
        QStringLiteral("-s"),
        shellLine,
        QStringLiteral("--no-nla"),
        QStringLiteral("--plugin"),
        QStringLiteral("cliprdr"),
        QStringLiteral("--plugin"),
        QStringLiteral("rdpdr"),
        QStringLiteral("--data"),
        QStringLiteral("printer"),
        QStringLiteral("--"),
        serverAddress,
    };
}

} // namespace

QString expandEnvironment(const QString& command)
{
    QString expanded = singleBackslashes(command);
    for (const char* variable : variables) {
        expanded.replace(QLatin1Char('%') + QLatin1String(variable) + QLatin1Char('%'),
                         QString::fromLocal8Bit(qgetenv(variable)), Qt::CaseInsensitive);
    }
    expanded.remove(QLatin1Char('%'));
    return singleBackslashes(expanded);
}

bool needsRemote(const QString& serverAddress, const QString& serverType)
{
    return !env::isLocalHost(serverAddress) ||
           serverType.compare(env::platformName(), Qt::CaseInsensitive) != 0;
}

bool isRemoteLaunch(const QString& serverAddress, const QString& serverType)
{
    return !serverAddress.isEmpty() && !serverType.isEmpty() && needsRemote(serverAddress, serverType);
}

QStringList launchArguments(const QString& execPath, const QStringList& arguments, const QString& file,
                            qint32 windowId, const QSize& size, quint16 port, const QString& serverType,
                            const QString& serverAddress)
{
    if (isRemoteLaunch(serverAddress, serverType)) {
        const QString program = execPath + arguments.join(QLatin1Char(' '));
        return remoteArguments(remoteShellLine(program, file, port), windowId, size, serverAddress);
    }
    QStringList list;
    if (env::readBooleanSetting(QLatin1String(env::key::chrootEnvironment))) {
        list << QStringLiteral("-p") << QStringLiteral("-c")
             << QLatin1String("chroot:") + env::credentialsUserName() << QStringLiteral("--")
             << execPath.trimmed().split(QLatin1Char(' '));
    }
    list += arguments;
    if (!file.isEmpty())
        list.append(withBackslashes(file));
    return list;
}

} // namespace catalogue
