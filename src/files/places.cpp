#include "files/places.h"

#include <QRegExp>

namespace files {

namespace {

QString replaceStart(QString text, const QString& start, const QString& by)
{
    const QRegExp pattern(QLatin1Char('^') + start, Qt::CaseSensitive, QRegExp::RegExp);
    return text.replace(pattern, by); // a pattern that is none matches nothing
}

} // namespace

int Places::driveOfLabel(const QString& label) const
{
    for (int i = 0; i < drives.size(); ++i) {
        if (driveLabel(i) == label)
            return i;
    }
    return -1;
}

QString userFacingPath(const QString& path, const Places& places)
{
    QString shown = replaceStart(path, places.home, places.userName);
    for (int i = 0; i < places.drives.size(); ++i)
        shown = replaceStart(shown, places.drives.at(i), places.driveLabel(i));
    if (shown.endsWith(QLatin1Char('/')))
        shown.chop(1);
    return shown;
}

bool mayGoUp(const QString& folder, const Places& places)
{
    const QString withoutSlash = folder.endsWith(QLatin1Char('/')) ? folder.left(folder.size() - 1) : folder;
    return folder != places.home && !places.drives.contains(folder) && !places.drives.contains(withoutSlash);
}

} // namespace files
