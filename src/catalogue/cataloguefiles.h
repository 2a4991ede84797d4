// Lookups in the catalogue's files: the built-in ones (resources under ":/mime") and the user's.
//
//   applications   INI, a group per application id: os, server, command, arguments, icon, name, description,
//                  description-es, only-one-instance, groups (ids joined with ":")
//   groups         INI, a group per group id: name, name-es, icon
//   types          INI, a group per top-level media type, a key per subtype: application ids joined with ":",
//                  the preferred one first
//   extensions     lines ".ext: type/subtype", sorted by the extension in byte order
//
// A user's own "applications" file lies in the home folder; the program never writes it. Nothing is cached
// but the extension map, so that an edit takes effect on the next lookup. No lookup reports an error: what is
// missing is empty.
#pragma once

#include <QString>
#include <QStringList>

class QFileInfo;

namespace catalogue {

// The built-in files.
QString applicationsPath();
QString groupsPath();
QString typesPath();
QString extensionsPath();

// The user's applications file.
QString userApplicationsPath();

// The value of `key` of an application, as the built-in file has it. The user's file only fills what the
// built-in one leaves empty: nobody can put another command behind a built-in application.
QString applicationValue(const QString& appId, const QString& key);

// The ids of the built-in applications, sorted. Those of the user's file alone are not among them.
QStringList applicationIds();

// The applications that open a MIME type, the preferred one first, valid or not. Holds one empty id when the
// type is unknown or has none: callers skip empty ids.
QStringList preferredApplications(const QString& mimeType);

// Every line of the built-in extensions file: none when it cannot be read.
QStringList extensionLines();

// Fills the map behind mimeTypeForExtension(). Called once, at start-up.
void loadExtensionMap();

// The MIME type of an extension (with its dot, case-sensitive): empty when it is unknown, null when
// `extension` is empty.
QString mimeTypeForExtension(const QString& extension);

// What mimeTypeForFile() says of a link that leads nowhere within 10 steps.
constexpr char recursiveLinkType[] = "recursivelink";

// The MIME type of a file, by the suffix of what its links lead to; "application/octet-stream" when it has
// none or an unknown one. Reads the built-in file, whatever the map holds.
//
// Wanted: the comparison is case-sensitive, and a suffix without a line of its own that begins another one's
// answers with that whole line, ".ext: type/subtype".
QString mimeTypeForFile(const QFileInfo& info);

} // namespace catalogue
