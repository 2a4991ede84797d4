#pragma once

#include <QIcon>
#include <QList>
#include <QObject>
#include <QStringList>

class QFileInfo;

// An application of the catalogue, and the questions about all of them.
//
// Every question has two roads that answer in the same shape: while there is a client of the central server
// (env/serverslot.h) the server is asked, which blocks; otherwise the built-in catalogue is read. A refusal
// of the server's ("Error:…") and a connection that is gone give empty answers, except where said. Nothing
// but the list of valid applications is remembered. GUI thread only.
class Application : public QObject
{
    Q_OBJECT

public:
    // The icon comes from the server when it is connected, from the built-in catalogue when there is no
    // client; it is null when there is none to be had.
    explicit Application(const QString& id, QObject* parent = nullptr);

    QString id() const { return m_id; }
    QIcon icon() const { return m_icon; }

    // The launcher's groups: ids, and names in the same order. Names are English without a server.
    static QStringList groupIds();
    static QStringList groupNames();

    // The name that users see. A refusal is returned as it came.
    static QString displayName(const QString& id);

    // What users may run here, as the last updateValidApplications() found it; empty before the first. Every
    // list of applications below holds valid ones only.
    static QStringList validApplications();
    // Replaces the list, by what the launcher made of it.
    static void setValidApplications(const QStringList& ids);
    // Asks anew. Without a server, looks for the program of every application of the catalogue.
    static void updateValidApplications();

    // The applications of a group. The caller owns them.
    static QList<Application*> applicationsByGroup(const QString& group);
    // The applications that open files with the extension `key` (with its dot), the preferred one first. The
    // caller owns them.
    static QList<Application*> applicationsFor(const QString& key);
    // The id of the first of applicationsFor(key), empty when there is none.
    static QString defaultApplication(const QString& key);
    // The icon of the application that opens a file by default; null when there is none.
    static QIcon iconForFile(const QFileInfo& info);
    // The MIME type of the file at `path`, see catalogue::mimeTypeForFile().
    static QString mimeType(const QString& path);

    // Every extension that can be associated. From the server, extensions; without one, whole lines of the
    // built-in file (".ext: type/subtype").
    static QStringList extensionsList();
    // Both address the built-in extensions as if they were a writable INI file. They are neither, so that the
    // first has no applications and the second has no effect; the association editor calls them all the same.
    // The caller owns the applications.
    static QList<Application*> excludedApplications(const QString& key);
    static void clearAssociation(const QString& key);

private:
    QString m_id;
    QIcon m_icon;
};
