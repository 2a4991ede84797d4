#include "support/sandbox.h"

#include "catalogue/cataloguefiles.h"
#include "env/paths.h"

#include <QDir>
#include <QFile>
#include <QtTest>

Sandbox::Sandbox()
{
    if (!m_folder.isValid())
        qFatal("no temporary folder: %s", qPrintable(m_folder.errorString()));
    // Forbidden folders are tried out as another user.
    QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                               QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                               QFile::ExeOther);
    const QDir folder(m_folder.path());
    folder.mkpath(QStringLiteral("home"));
    folder.mkpath(QStringLiteral("scratch"));
    folder.mkpath(QStringLiteral("program files/Tidewell Desktop"));
    setVariable("PROGRAMW6432",
                QDir::toNativeSeparators(folder.filePath(QStringLiteral("program files"))).toLocal8Bit());
    setVariable("USER", "");
    setVariable("USERNAME", "clerk");
#ifdef Q_OS_WIN
    setAside(true);
#else
    folder.mkpath(QStringLiteral("runtime"));
    QFile::setPermissions(folder.filePath(QStringLiteral("runtime")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    setVariable("XDG_RUNTIME_DIR", folder.filePath(QStringLiteral("runtime")).toLocal8Bit());
    setVariable("HOME", folder.filePath(QStringLiteral("home")).toLocal8Bit());
    if (QDir::homePath() != home())
        qFatal("the home folder is not the sandbox's");
#endif
}

Sandbox::~Sandbox()
{
#ifdef Q_OS_WIN
    setAside(false);
#endif
    while (!m_variables.isEmpty()) {
        const auto variable = m_variables.takeLast();
        if (variable.second.isNull())
            qunsetenv(variable.first);
        else
            qputenv(variable.first, variable.second);
    }
}

QString Sandbox::home() const
{
#ifdef Q_OS_WIN
    return QDir::homePath();
#else
    return m_folder.filePath(QStringLiteral("home"));
#endif
}

QString Sandbox::scratch() const
{
    return m_folder.filePath(QStringLiteral("scratch"));
}

void Sandbox::writeSettings(const QByteArray& content) const
{
    writeFile(env::settingsPath(), content);
}

void Sandbox::writeCredentials(const QByteArray& content) const
{
    writeFile(env::credentialsPath(), content);
}

void Sandbox::writeToken(const QByteArray& content) const
{
    writeFile(env::tokenPath(), content);
}

void Sandbox::writeUserApplications(const QByteArray& content) const
{
    const QString path = catalogue::userApplicationsPath();
    QDir().mkpath(QFileInfo(path).path());
    writeFile(path, content);
}

QByteArray Sandbox::log() const
{
    return QFile::exists(env::logPath()) ? readFile(env::logPath()) : QByteArray();
}

void Sandbox::writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
}

QByteArray Sandbox::readFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

void Sandbox::setVariable(const char* name, const QByteArray& value)
{
    m_variables.append({name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray()});
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}

void Sandbox::setAside(bool away) const
{
    const QString store = m_folder.filePath(QStringLiteral("home"));
    const QStringList files = {env::tokenPath(), env::credentialsPath(), env::logPath(),
                               QDir::homePath() + QLatin1String("/.quillet")};
    for (const QString& file : files) {
        const QString kept = store + QLatin1Char('/') + QFileInfo(file).fileName();
        const QString from = away ? file : kept;
        const QString to = away ? kept : file;
        if (!away && QFileInfo(to).isDir())
            QDir(to).removeRecursively();
        else if (!away)
            QFile::remove(to);
        if (QFile::exists(from) && !QFile::rename(from, to))
            qFatal("cannot set %s aside", qPrintable(from));
    }
}
