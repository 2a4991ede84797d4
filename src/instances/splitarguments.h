#pragma once

#include <QString>
#include <QStringList>

namespace instances {

// The arguments in one line of text: cut at blanks, except within double or single quotes, which are not
// copied. Runs of blanks count as one; an argument is empty only where quotes say so. A quote that is not
// closed reaches to the end; backslashes mean nothing.
QStringList splitArguments(const QString& line);

} // namespace instances
