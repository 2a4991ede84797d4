#pragma once

#include <QFileIconProvider>

// The file manager's icons: a folder's picture for folders, and for a file the icon of the application that
// opens it, so that users see what a double-click starts. Asks the catalogue for every file, twice (wanted),
// which may ask the server and blocks; it remembers nothing.
//
// Icons are made on the GUI thread alone. On any other thread an icon is null: file models ask on a thread of
// their own when they list a folder, and FileModel asks again when an icon is to be seen.
class FileIconProvider : public QFileIconProvider
{
public:
    QIcon icon(IconType type) const override;
    QIcon icon(const QFileInfo& info) const override;
};
