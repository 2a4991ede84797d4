#include "env/identity.h"

#include "env/paths.h"

#include <QFile>
#include <QProcessEnvironment>

namespace env {

namespace {

QString s_userName;
QString s_password;

// Lines are counted from 1. A file or line that is missing is an empty line.
QString credentialsLine(int number)
{
    QFile file(credentialsPath());
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    for (int skipped = 1; skipped < number; ++skipped)
        file.readLine();
    return QString::fromUtf8(file.readLine()).remove(QLatin1Char('\n'));
}

} // namespace

QString userName()
{
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QString name = environment.value(QStringLiteral("USER"));
    if (name.isEmpty())
        name = environment.value(QStringLiteral("USERNAME"));
    if (name.isEmpty()) {
        qDebug("Falling back to getUserName()");
        return credentialsUserName();
    }
    qDebug("Full username: %s", name.toUtf8().constData());
    return name;
}

QString credentialsUserName()
{
    if (s_userName.isEmpty())
        s_userName = credentialsLine(1);
    return s_userName;
}

QString credentialsPassword()
{
    if (s_password.isEmpty())
        s_password = credentialsLine(2);
    return s_password;
}

void setCredentialsUserName(const QString& name)
{
    s_userName = name;
}

void setCredentialsPassword(const QString& password)
{
    s_password = password;
}

QString platformName()
{
    return QStringLiteral("windows");
}

} // namespace env
