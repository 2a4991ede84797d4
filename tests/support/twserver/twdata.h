#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// What a central server knows, and what it answers. Filled from a JSON file, see twserver.json for one:
//
// - users: by name, "*" standing for everybody else; password, token
// - servers: by name; address, type
// - groups: a list of id, name, applications (ids)
// - applications: a list of id, name, displayName, execPath, arguments, onlyOne, server, icon (a path from
// the file)
// - valid: ids that users may run; all applications when it is missing
// - extensions: a list of extension (with its dot), applications (ids, "!" before those the user excluded)
struct TwData
{
    struct User
    {
        QString password;
        QString token;
    };
    struct Server
    {
        QString address;
        QString type;
    };
    struct Group
    {
        QString id;
        QString name;
        QStringList applications;
    };
    struct Application
    {
        QString name;
        QString displayName;
        QString execPath;
        QString arguments;
        QString server;
        QByteArray icon;
        bool onlyOne = false;
    };
    struct Extension
    {
        QString extension;
        QStringList applications;
    };

    QHash<QString, User> users;
    QHash<QString, Server> servers;
    QList<Group> groups;
    QStringList applicationIds; // in the file's order
    QHash<QString, Application> applications;
    QStringList valid;
    QList<Extension> extensions;

    // Reads `file`; false, with the reason in `error`, when it is no such file.
    bool load(const QString& file, QString* error);

    // The reply to one request, for a byte-array request with its length in front. `command` (when given)
    // gets the command word, without its arguments and with the "?" that belongs to it.
    QByteArray reply(const QByteArray& request, QByteArray* command = nullptr) const;

    // The command word of a request.
    static QByteArray commandOf(const QByteArray& request);

    // A byte array as it goes over the wire.
    static QByteArray framed(const QByteArray& payload);

private:
    const User* user(const QString& name) const;
    QString answer(const QString& command, const QString& argument) const;
    QString login(const QString& argument) const;
    QString applicationAnswer(const QString& command, const Application& application) const;
};
