#include "support/twserver/twdata.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace {

const QByteArray byteArrayPrefix("_byteArray_");

QString refusal(const char* reason)
{
    return QLatin1String("Error: ") + QLatin1String(reason);
}

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const auto& entry : array)
        list.append(entry.toString());
    return list;
}

} // namespace

bool TwData::load(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    const QByteArray json = file.readAll();
    QJsonParseError problem = {};
    const QJsonObject root = QJsonDocument::fromJson(json, &problem).object();
    if (problem.error != QJsonParseError::NoError) {
        *error = QStringLiteral("%1 at byte %2").arg(problem.errorString()).arg(problem.offset);
        return false;
    }
    *this = TwData();

    const QJsonObject userObjects = root.value(QLatin1String("users")).toObject();
    for (auto it = userObjects.begin(); it != userObjects.end(); ++it) {
        const QJsonObject object = it.value().toObject();
        users.insert(it.key(), {object.value(QLatin1String("password")).toString(),
                                object.value(QLatin1String("token")).toString()});
    }
    const QJsonObject serverObjects = root.value(QLatin1String("servers")).toObject();
    for (auto it = serverObjects.begin(); it != serverObjects.end(); ++it) {
        const QJsonObject object = it.value().toObject();
        servers.insert(it.key(), {object.value(QLatin1String("address")).toString(),
                                  object.value(QLatin1String("type")).toString()});
    }
    const QJsonArray groupsArray = root.value(QLatin1String("groups")).toArray();
    for (const auto& value : groupsArray) {
        const QJsonObject object = value.toObject();
        groups.append({object.value(QLatin1String("id")).toString(),
                       object.value(QLatin1String("name")).toString(),
                       strings(object.value(QLatin1String("applications")))});
    }
    const QJsonArray applicationsArray = root.value(QLatin1String("applications")).toArray();
    for (const auto& value : applicationsArray) {
        const QJsonObject object = value.toObject();
        const QString id = object.value(QLatin1String("id")).toString();
        Application application;
        application.name = object.value(QLatin1String("name")).toString(id);
        application.displayName = object.value(QLatin1String("displayName")).toString(application.name);
        application.execPath = object.value(QLatin1String("execPath")).toString();
        application.arguments = object.value(QLatin1String("arguments")).toString();
        application.server = object.value(QLatin1String("server")).toString();
        application.onlyOne = object.value(QLatin1String("onlyOne")).toBool();
        const QString icon = object.value(QLatin1String("icon")).toString();
        if (!icon.isEmpty()) {
            QFile picture(QFileInfo(path).dir().filePath(icon));
            if (!picture.open(QIODevice::ReadOnly)) {
                *error = QStringLiteral("icon of %1: %2").arg(id, picture.errorString());
                return false;
            }
            application.icon = picture.readAll();
        }
        applicationIds.append(id);
        applications.insert(id, application);
    }
    valid =
        root.contains(QLatin1String("valid")) ? strings(root.value(QLatin1String("valid"))) : applicationIds;
    const QJsonArray extensionsArray = root.value(QLatin1String("extensions")).toArray();
    for (const auto& value : extensionsArray) {
        const QJsonObject object = value.toObject();
        extensions.append({object.value(QLatin1String("extension")).toString(),
                           strings(object.value(QLatin1String("applications")))});
    }
    return true;
}

QByteArray TwData::commandOf(const QByteArray& request)
{
    const int question = request.indexOf('?');
    return question < 0 ? request.trimmed() : request.left(question + 1);
}

QByteArray TwData::framed(const QByteArray& payload)
{
    const quint32 length = static_cast<quint32>(payload.size());
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(static_cast<char>(length >> shift & 0xff));
    return bytes + payload;
}

QByteArray TwData::reply(const QByteArray& request, QByteArray* command) const
{
    const QByteArray word = commandOf(request);
    if (command)
        *command = word;
    const QString argument = QString::fromUtf8(request.mid(word.size()));
    if (word == byteArrayPrefix + "get_application_icon?")
        return framed(applications.value(argument).icon);
    const QByteArray text = answer(QString::fromLatin1(word), argument).toUtf8();
    return text.isEmpty() ? QByteArray("\n") : text; // who asked waits until something comes
}

const TwData::User* TwData::user(const QString& name) const
{
    auto found = users.find(name);
    if (found == users.end())
        found = users.find(QStringLiteral("*"));
    return found == users.end() ? nullptr : &*found;
}

QString TwData::login(const QString& argument) const
{
    const QString text = argument.endsWith(QLatin1Char('\n')) ? argument.chopped(1) : argument;
    const int separator = text.indexOf(QLatin1String("&&"));
    if (separator < 0)
        return refusal("login needs a user and a password");
    const User* const known = user(text.left(separator));
    const QString secret = text.mid(separator + 2);
    const bool accepted =
        known && (secret == known->password || (!known->token.isEmpty() && secret == known->token));
    return accepted ? QStringLiteral("OK") : refusal("wrong user or password");
}

QString TwData::applicationAnswer(const QString& command, const Application& application) const
{
    if (command == QLatin1String("get_application_name?"))
        return application.name;
    if (command == QLatin1String("get_application_display_name?"))
        return application.displayName;
    if (command == QLatin1String("get_application_exec_path?"))
        return application.execPath;
    if (command == QLatin1String("get_application_arguments?"))
        return application.arguments;
    if (command == QLatin1String("get_application_onlyone?"))
        return application.onlyOne ? QStringLiteral("1") : QStringLiteral("0");
    return application.server; // get_preferred_server?
}

QString TwData::answer(const QString& command, const QString& argument) const
{
    if (command == QLatin1String("login?"))
        return login(argument);
    if (command == QLatin1String("activate_user?")) {
        const User* const known = user(argument);
        return known ? known->token : refusal("unknown user");
    }
    if (command == QLatin1String("start_session"))
        return QStringLiteral("Session started");
    if (command == QLatin1String("end_session"))
        return QStringLiteral("Session ended");
    if (command == QLatin1String("quit"))
        return QStringLiteral("Bye");

    if (command == QLatin1String("get_application_group_ids")) {
        QStringList ids;
        for (const Group& group : groups)
            ids.append(group.id);
        return ids.join(QLatin1Char(':'));
    }
    if (command == QLatin1String("get_application_groups")) {
        QStringList names;
        for (const Group& group : groups)
            names.append(group.name);
        return names.join(QLatin1Char(':'));
    }
    if (command == QLatin1String("get_applications_by_group?")) {
        for (const Group& group : groups) {
            if (group.id == argument)
                return group.applications.join(QLatin1Char(':'));
        }
        return refusal("unknown group");
    }
    if (command == QLatin1String("get_applications?")) {
        for (const Extension& extension : extensions) {
            if (extension.extension == argument)
                return extension.applications.join(QLatin1Char(':'));
        }
        return refusal("unknown extension");
    }
    if (command == QLatin1String("get_application_extensions_list")) {
        QStringList names;
        for (const Extension& extension : extensions)
            names.append(extension.extension);
        return names.join(QLatin1Char(','));
    }
    if (command == QLatin1String("get_valid_applications"))
        return valid.join(QLatin1Char(','));

    if (command == QLatin1String("get_server_address?") || command == QLatin1String("get_server_type?")) {
        const auto server = servers.find(argument);
        if (server == servers.end())
            return refusal("unknown server");
        return command == QLatin1String("get_server_type?") ? server->type : server->address;
    }
    if (command == QLatin1String("start_application?") || command == QLatin1String("end_application?"))
        return QStringLiteral("OK");

    static const QRegularExpression aboutOneApplication(QStringLiteral(
        "\\A(get_application_(name|display_name|exec_path|arguments|onlyone)|get_preferred_server)\\?\\z"));
    if (aboutOneApplication.match(command).hasMatch()) {
        const auto application = applications.find(argument.section(QLatin1Char('&'), 0, 0));
        return application == applications.end() ? refusal("unknown application")
                                                 : applicationAnswer(command, *application);
    }
    return refusal("unknown command");
}
