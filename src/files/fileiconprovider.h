#pragma once

#include <QFileIconProvider>

// The file manager's icons: a folder's picture for folders, and for a file the icon of the application that
// opens it, so that users see what a double-click starts. Asks the catalogue for every file, twice (wanted),
// which may ask the server and blocks; it remembers nothing.
// GUI thread only: not to be given to a file model, which asks on a thread of its own.
class FileIconProvider : public QFileIconProvider
{
public:
    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& info) const override;
};
