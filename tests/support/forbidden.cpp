#include "support/forbidden.h"

#include <QFile>
#include <QtGlobal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr uid_t nobody = 65534;
} // namespace

ForbiddenFolder::ForbiddenFolder(const QString& path)
    : m_path(QFile::encodeName(path))
    , m_wasRoot(geteuid() == 0)
{
    if (chmod(m_path, 0555) != 0 || (m_wasRoot && seteuid(nobody) != 0) ||
        faccessat(AT_FDCWD, m_path, X_OK, AT_EACCESS) != 0)
        qFatal("cannot forbid writing to %s", m_path.constData());
    QFile file(path + QStringLiteral("/probe"));
    if (file.open(QIODevice::WriteOnly))
        qFatal("%s can still be written to", m_path.constData());
}

ForbiddenFolder::~ForbiddenFolder()
{
    if ((m_wasRoot && seteuid(0) != 0) || chmod(m_path, 0755) != 0)
        qFatal("cannot undo it");
}
