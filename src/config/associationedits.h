// What a user does to the applications of one extension before it is saved. Functions on lists of ids.
#pragma once

#include <QStringList>

namespace config {

// The changes that the user made to the extension in view.
struct AssociationEdits
{
    QStringList deleted; // to be taken away
    QStringList added;   // in the order in which they came
};

// `id` is chosen, while `shown` are the applications in view: it is new unless it is there already, and no
// longer deleted.
AssociationEdits afterAdding(AssociationEdits edits, const QStringList& shown, const QString& id);
// Wanted: an application that was added a moment ago is deleted like any other.
AssociationEdits afterDeleting(AssociationEdits edits, const QString& id);

// What is in view for an extension that the catalogue has `associated` for: those first, then the added ones,
// each without the deleted ones.
QStringList idsToShow(const QStringList& associated, const AssociationEdits& edits);

// The row of the entry at `row` of `count` once it is moved up or down; -1 when it cannot be.
int rowAbove(int row, int count);
int rowBelow(int row, int count);

// What has to be saved of the list in view: all of it, or nothing when the catalogue has the same.
QStringList modifiedItems(const QStringList& shown, const QStringList& associated);

// The entries of an extension's association: the ids in order, then "!" and the id for each deleted one.
QStringList associationEntries(const QStringList& modified, const QStringList& deleted);

} // namespace config
