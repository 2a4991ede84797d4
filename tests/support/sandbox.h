#pragma once

#include <QString>
#include <QTemporaryDir>

// A home folder, a settings file and an environment of a test's own. While it lives, the program finds an
// empty home and no settings; the destructor puts everything back.
//
// Natively the home is a temporary folder. On Windows the home cannot be moved: there the user's own files
// of the program are set aside and brought back at the end.
class Sandbox
{
public:
    Sandbox();
    ~Sandbox();
    Q_DISABLE_COPY(Sandbox)

    QString home() const;
    // A folder for whatever else a test needs.
    QString scratch() const;

    // Puts `content` into the settings file, credentials file, token file or the user's applications file.
    void writeSettings(const QByteArray& content) const;
    void writeCredentials(const QByteArray& content) const;
    void writeToken(const QByteArray& content) const;
    void writeUserApplications(const QByteArray& content) const;

    // The log file's bytes; empty when there is none.
    QByteArray log() const;

    static void writeFile(const QString& path, const QByteArray& content);
    static QByteArray readFile(const QString& path);

    // Sets an environment variable until the sandbox ends; a null value unsets it.
    void setVariable(const char* name, const QByteArray& value);

private:
    void setAside(bool away) const;

    QTemporaryDir m_folder;
    QList<QPair<QByteArray, QByteArray>> m_variables; // as they were, the latest change last
};
