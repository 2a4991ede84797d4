#pragma once

#include <QString>

// A folder that cannot be written to while this object lives, also when the tests run as root: the effective
// user is another one meanwhile. Not on Windows.
class ForbiddenFolder
{
public:
    explicit ForbiddenFolder(const QString& path);
    ~ForbiddenFolder();
    Q_DISABLE_COPY(ForbiddenFolder)

private:
    QByteArray m_path;
    bool m_wasRoot;
};
