#include "catalogue/application.h"

#include "catalogue/applicationicon.h"
#include "catalogue/associations.h"
#include "catalogue/cataloguefiles.h"
#include "catalogue/validity.h"
#include "env/inifile.h"
#include "env/log.h"
#include "env/serverslot.h"
#include "server/refusal.h"
#include "server/twclient.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <utility>

namespace {

constexpr QLatin1Char listSeparator(':');

QStringList& validList()
{
    static QStringList list;
    return list;
}

// The list that the server answers `command` with; none when it refuses.
QStringList askForList(TWClient& server, const QString& command, QChar separator = listSeparator)
{
    const QString reply = server.sendCommand(command);
    return isRefusal(reply) ? QStringList() : reply.split(separator);
}

QString builtInValue(const QString& id, const QString& key)
{
    return env::readValue(catalogue::applicationsPath(), id + QLatin1Char('/') + key);
}

// What the built-in extensions have for `key` when they are read as an INI file.
QStringList localAssociations(const QString& key)
{
    return env::readValue(catalogue::extensionsPath(), key).split(listSeparator);
}

// The valid ones among `ids`, in their order. An empty id is none, even if the server calls it valid.
QList<Application*> validOnes(const QStringList& ids)
{
    QList<Application*> applications;
    for (const QString& id : ids) {
        if (!id.isEmpty() && validList().contains(id))
            applications.append(new Application(id)); // the caller's
    }
    return applications;
}

} // namespace

Application::Application(const QString& id, QObject* parent)
    : QObject(parent)
    , m_id(id)
{
    TWClient* const server = env::serverClient();
    if (!server)
        m_icon = catalogue::builtInIcon(builtInValue(id, QStringLiteral("icon")));
    else if (server->isConnected())
        m_icon = catalogue::serverIcon(*server, id);
}

QStringList Application::groupIds()
{
    if (TWClient* const server = env::serverClient())
        return askForList(*server, QStringLiteral("get_application_group_ids"));
    return env::childGroups(catalogue::groupsPath());
}

QStringList Application::groupNames()
{
    TWClient* const server = env::serverClient();
    if (!server)
        return env::valuesPerGroup(catalogue::groupsPath(), QStringLiteral("name"));
    QStringList names = askForList(*server, QStringLiteral("get_application_groups"));
    return names.replaceInStrings(QRegularExpression(QStringLiteral("^\\s*")), QString());
}

QString Application::displayName(const QString& id)
{
    if (TWClient* const server = env::serverClient())
        return server->sendCommand(QLatin1String("get_application_display_name?") + id);
    return builtInValue(id, QStringLiteral("name"));
}

QStringList Application::validApplications()
{
    return validList();
}

void Application::setValidApplications(const QStringList& ids)
{
    validList() = ids;
}

void Application::updateValidApplications()
{
    validList().clear();
    TWClient* const server = env::serverClient();
    if (!server) {
        validList() = catalogue::validAmong(catalogue::applicationIds());
        return;
    }
    const QString reply = server->sendCommand(QStringLiteral("get_valid_applications"));
    if (!isRefusal(reply) && !reply.simplified().isEmpty())
        validList() = reply.split(QLatin1Char(','));
    env::logInfo(QLatin1String("Valid applications: ") + validList().join(QLatin1Char(',')));
}

QList<Application*> Application::applicationsByGroup(const QString& group)
{
    if (TWClient* const server = env::serverClient())
        return validOnes(askForList(*server, QLatin1String("get_applications_by_group?") + group));
    QStringList ids;
    for (const QString& id : std::as_const(validList())) {
        if (builtInValue(id, QStringLiteral("groups")).split(listSeparator).contains(group))
            ids.append(id);
    }
    return validOnes(ids);
}

QList<Application*> Application::applicationsFor(const QString& key)
{
    TWClient* const server = env::serverClient();
    if (!server)
        return validOnes(catalogue::preferredApplications(catalogue::mimeTypeForExtension(key)));
    const QStringList ids = askForList(*server, QLatin1String("get_applications?") + key);
    return validOnes(catalogue::mergedAssociations(ids, localAssociations(key)));
}

QString Application::defaultApplication(const QString& key)
{
    const QList<Application*> applications = applicationsFor(key);
    QString id;
    if (!applications.isEmpty())
        id = applications.first()->id();
    qDeleteAll(applications);
    return id;
}

QIcon Application::iconForFile(const QFileInfo& info)
{
    const QString id = defaultApplication(QLatin1Char('.') + info.suffix());
    return id.isEmpty() ? QIcon() : Application(id).icon();
}

QString Application::mimeType(const QString& path)
{
    return catalogue::mimeTypeForFile(QFileInfo(path));
}

QStringList Application::extensionsList()
{
    if (TWClient* const server = env::serverClient())
        return askForList(*server, QStringLiteral("get_application_extensions_list"), QLatin1Char(','));
    return catalogue::extensionLines();
}

QList<Application*> Application::excludedApplications(const QString& key)
{
    QList<Application*> excluded;
    const QStringList ids = catalogue::excludedIds(localAssociations(key));
    for (const QString& id : ids)
        excluded.append(new Application(id)); // the caller's
    return excluded;
}

void Application::clearAssociation(const QString& key)
{
    env::writeValue(catalogue::extensionsPath(), key, QString());
}
