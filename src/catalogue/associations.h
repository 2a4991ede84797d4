// Lists of application ids for an extension. An entry may carry a mark in front, "!", for an application that
// the user excluded. Functions on values.
#pragma once

#include <QStringList>

namespace catalogue {

// The server's entries followed by the local ones, each once, at its first place. An application that the
// server marks as excluded is taken out of the local entries, and the mark out of the server's.
//
// Wanted: an id that the server itself names beside its mark stays.
QStringList mergedAssociations(QStringList server, QStringList local);

// The ids that are marked, without their marks.
QStringList excludedIds(const QStringList& entries);

} // namespace catalogue
