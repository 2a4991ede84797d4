#include "files/fileiconprovider.h"

#include "catalogue/application.h"

#include <QDir>

namespace {

QIcon picture(const char* name)
{
    return QIcon(QStringLiteral(":/icons/64x64") + QDir::separator() + QLatin1String(name));
}

} // namespace

QIcon FileIconProvider::icon(IconType type) const
{
    return picture(type == Folder ? "folder.png" : "openwith.png");
}

QIcon FileIconProvider::icon(const QFileInfo& info) const
{
    if (info.isDir())
        return icon(Folder);
    if (Application::iconForFile(info).isNull())
        return icon(File);
    return Application::iconForFile(info);
}
