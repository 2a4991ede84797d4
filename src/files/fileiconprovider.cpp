#include "files/fileiconprovider.h"

#include "catalogue/application.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>

namespace {

QIcon picture(const char* name)
{
    return QIcon(QStringLiteral(":/icons/64x64") + QDir::separator() + QLatin1String(name));
}

bool isGuiThread()
{
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

QIcon FileIconProvider::icon(IconType type) const
{
    if (!isGuiThread())
        return QIcon();
    return picture(type == Folder ? "folder.png" : "openwith.png");
}

QIcon FileIconProvider::icon(const QFileInfo& info) const
{
    if (!isGuiThread())
        return QIcon();
    if (info.isDir())
        return icon(Folder);
    if (Application::iconForFile(info).isNull())
        return icon(File);
    return Application::iconForFile(info);
}
