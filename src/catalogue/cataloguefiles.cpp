#include "catalogue/cataloguefiles.h"

#include "env/inifile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QTextStream>

namespace catalogue {

namespace {

constexpr int mostLinks = 10;
constexpr char unknownType[] = "application/octet-stream";

QMap<QString, QString>& extensionMap()
{
    static QMap<QString, QString> map;
    return map;
}

QString builtIn(const char* name)
{
    return QStringLiteral(":/mime") + QDir::separator() + QLatin1String(name);
}

} // namespace

QString applicationsPath()
{
    return builtIn("applications");
}

QString groupsPath()
{
    return builtIn("groups");
}

QString typesPath()
{
    return builtIn("types");
}

QString extensionsPath()
{
    return builtIn("extensions");
}

QString userApplicationsPath()
{
    return QDir::homePath() + QLatin1String("/.quillet/mime/applications");
}

QString applicationValue(const QString& appId, const QString& key)
{
    return env::readValueWithFallback(applicationsPath(), userApplicationsPath,
                                      appId + QLatin1Char('/') + key);
}

QStringList applicationIds()
{
    return env::childGroups(applicationsPath());
}

QStringList preferredApplications(const QString& mimeType)
{
    return env::readValue(typesPath(), mimeType).split(QLatin1Char(':'));
}

QStringList extensionLines()
{
    QStringList lines;
    QFile file(extensionsPath());
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    QTextStream stream(&file);
    QString line;
    while (stream.readLineInto(&line))
        lines.append(line);
    return lines;
}

void loadExtensionMap()
{
    const QStringList lines = extensionLines();
    for (const QString& line : lines)
        extensionMap().insert(line.section(QLatin1Char(':'), 0, 0), line.section(QLatin1Char(':'), 1, 1));
}

QString mimeTypeForExtension(const QString& extension)
{
    return extension.isEmpty() ? QString() : extensionMap().value(extension).simplified();
}

QString mimeTypeForFile(const QFileInfo& info)
{
    QFileInfo target = info;
    for (int links = 0; target.isSymLink() && links < mostLinks; ++links)
        target = QFileInfo(target.symLinkTarget());
    if (target.isSymLink())
        return QLatin1String(recursiveLinkType);

    const QByteArray suffix = target.suffix().toUtf8();
    QFile file(extensionsPath());
    if (suffix.isEmpty() || !file.open(QIODevice::ReadOnly))
        return QLatin1String(unknownType);
    const QByteArray prefix = '.' + suffix;
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        if (line.startsWith(prefix))
            return QString::fromUtf8(line.replace(prefix + ": ", QByteArray())).trimmed();
    }
    return QLatin1String(unknownType);
}

} // namespace catalogue
