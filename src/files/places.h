// What the file manager calls places: the home folder, the remote client's drives, and paths as users see
// them. Functions on values.
#pragma once

#include <QString>
#include <QStringList>

namespace files {

// The places of a session. Drives and shares belong together, index for index.
struct Places
{
    QString home; // a path with "/"
    QString userName;
    QStringList drives; // local names ("E:")
    QStringList shares; // their names

    // What is put before a share's name, translated and with its blank.
    QString drivePrefix;

    QString driveLabel(int drive) const { return drivePrefix + shares.value(drive); }
    // The first drive with this label, -1 when there is none.
    int driveOfLabel(const QString& label) const;
};

// The path as users see it: the home folder by the user's name, a drive by its label, without a "/" at the
// end. Wanted: home and drives are patterns, so that their characters mean what they mean in one.
QString userFacingPath(const QString& path, const Places& places);

// Whether the up button may leave this folder: not the home folder, nor the root of a drive.
bool mayGoUp(const QString& folder, const Places& places);

} // namespace files
