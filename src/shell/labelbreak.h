#pragma once

#include <QString>

class QFontMetrics;

namespace shell {

// The label of a launcher button with its line break: with fewer than two blanks every blank becomes one,
// with more the blank that is chosen as nearest to the middle, more or less, see the source. The label has no
// blanks at its ends.
QString breakLabel(const QString& label);

// What is shown of a label in `width` pixels: two lines at most, separated by "\n", each elided at its end
// when it is too wide. A label with more lines has them in its second one.
QString fitLabel(const QString& label, const QFontMetrics& metrics, int width);

} // namespace shell
