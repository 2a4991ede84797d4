#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QSize>
#include <QStringList>

class TWClient;

// One started application: what is known of it, its start, and the news of its end.
//
// The constructor asks the server for everything, or reads the catalogue when there is none. The owner (the
// launcher or the controller) may then name a file, launches it, and deletes it; it never deletes itself. Its
// process lives on without it. GUI thread only; with a server, construction, launch and end block.
class AppInstance : public QObject
{
    Q_OBJECT

public:
    // `name` is the application's id; `server` may be null and is not owned. With a server that is not
    // connected everything stays empty. Replies are taken as they come, refusals too.
    AppInstance(const QString& name, TWClient* server, QObject* parent = nullptr);

    // Starts the process and waits up to 30 s for its start; `size` and `port` are for a remote launch
    // (pixels; the channel's port). A process that could not be started is told to the server like any other,
    // but will never end. The process is returned for its owner to follow; it deletes itself when it ends or
    // could not be started.
    //
    // Wanted: every launch adds its arguments to arguments(), so that a local program gets those of the
    // catalogue twice, and the remote client gets them before its own; and the command line goes to the
    // user's log as it is, which for a remote launch has the user's password.
    QProcess* launch(const QSize& size, quint16 port);

    TWClient* server() const;
    QString name() const { return m_name; }
    QString applicationName() const { return m_applicationName; }
    QString displayName() const { return m_displayName; }
    // With its %…% tokens.
    QString execPath() const { return m_execPath; }
    // "windows" or another system's name.
    QString serverType() const { return m_serverType; }
    // The host that it runs on, and the server's name of that host; both empty without a server.
    QString serverAddress() const { return m_serverAddress; }
    QString preferredServer() const { return m_preferredServer; }
    QStringList arguments() const { return m_arguments; }
    // What QProcess::pid() returned, as a number: on Windows the address of a structure. 0 until a launch
    // with a connected server.
    quint64 processId() const { return m_processId; }
    QIcon icon() const { return m_icon; }
    // The parent window of a remote launch: always 0.
    qint32 windowId() const { return m_windowId; }
    // Whether a second launch has to reuse the running program.
    bool onlyOne() const { return m_onlyOne; }
    // The file to open, empty for a plain start; an absolute path with "/".
    QString file() const { return m_file; }
    void setFile(const QString& file) { m_file = file; }

signals:
    void finished(int exitCode, QProcess::ExitStatus exitStatus);
    // For owners, who chain theirs to it; never emitted here.
    void deleteAppInstance();

public slots:
    // The process has ended: tells the server, then everybody else.
    void finish(int exitCode, QProcess::ExitStatus exitStatus);

private:
    void askServer();
    void readCatalogue();
    bool hasServer() const;
    QString program() const;
    // Sends "COMMAND?NAME&PID" and logs it, after `prefix`, with the reply.
    void report(const QString& command, const QString& prefix);

    const QPointer<TWClient> m_server;
    const QString m_name;
    QString m_applicationName;
    QString m_displayName;
    QString m_execPath;
    QString m_serverType;
    QString m_serverAddress;
    QString m_preferredServer;
    QStringList m_arguments;
    quint64 m_processId = 0;
    QIcon m_icon;
    qint32 m_windowId = 0;
    bool m_onlyOne = false;
    QString m_file;
};
