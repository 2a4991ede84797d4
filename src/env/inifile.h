// Values of INI files, in the dialect of QSettings::IniFormat: unquoted commas make lists (which read as
// empty strings), backslashes escape, and bytes are Latin-1.
//
// Every call opens the file afresh, so an edit takes effect on the next read. No function reports an error: a
// file that is missing, unreadable or no INI file has no keys.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace env {

// The value of `key` ("Group/key", or "key" for the top level) in the file `path`: empty when it is missing,
// null without opening the file when `key` is empty.
QString readValue(const QString& path, const QString& key);

// The value in `primary` when that file exists and its value is not empty, else the one in the file that
// `fallback` names; it is not asked otherwise.
QString readValueWithFallback(const QString& primary, const std::function<QString()>& fallback,
                              const QString& key);

// The file's groups, sorted by name.
QStringList childGroups(const QString& path);

// The value of `key` in each of the file's groups, in the order of childGroups(), empty ones included.
QStringList valuesPerGroup(const QString& path, const QString& key);

// Sets one value and writes the file, creating it when needed. A file that cannot be written stays as it is,
// and so does every file when `key` is empty.
void writeValue(const QString& path, const QString& key, const QString& value);

} // namespace env
