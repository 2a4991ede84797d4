#include "config/associationedits.h"

namespace config {

namespace {

constexpr QLatin1Char exclusionMark('!');

} // namespace

AssociationEdits afterAdding(AssociationEdits edits, const QStringList& shown, const QString& id)
{
    if (!shown.contains(id) && !edits.added.contains(id))
        edits.added.append(id);
    edits.deleted.removeAll(id);
    return edits;
}

AssociationEdits afterDeleting(AssociationEdits edits, const QString& id)
{
    if (!edits.deleted.contains(id))
        edits.deleted.append(id);
    return edits;
}

QStringList idsToShow(const QStringList& associated, const AssociationEdits& edits)
{
    QStringList ids;
    for (const QString& id : associated) {
        if (!edits.deleted.contains(id))
            ids.append(id);
    }
    for (const QString& id : edits.added) {
        if (!edits.deleted.contains(id) && !ids.contains(id))
            ids.append(id);
    }
    return ids;
}

int rowAbove(int row, int count)
{
    return row > 0 && row < count ? row - 1 : -1;
}

int rowBelow(int row, int count)
{
    return row >= 0 && row < count - 1 ? row + 1 : -1;
}

QStringList modifiedItems(const QStringList& shown, const QStringList& associated)
{
    return shown == associated ? QStringList() : shown;
}

QStringList associationEntries(const QStringList& modified, const QStringList& deleted)
{
    QStringList entries = modified;
    for (const QString& id : deleted)
        entries.append(exclusionMark + id);
    return entries;
}

} // namespace config
