#include "shell/labelbreak.h"

#include <QFontMetrics>

#include <cstdlib>

namespace shell {

namespace {

constexpr QLatin1Char blank(' ');
constexpr QLatin1Char lineFeed('\n');

// Everything that text layout takes for the end of a line.
bool endsLine(QChar character)
{
    return character == lineFeed || character == QLatin1Char('\r') || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

QString breakLabel(const QString& label)
{
    QString broken = label;
    const int blanks = label.count(blank);
    if (blanks < 2)
        return broken.replace(blank, lineFeed);

    // Wanted, both: the search goes on at the next character, not behind the blank that was found, so that a
    // late blank may never be seen; and a distance is compared with the position chosen before, not with that
    // one's distance. Buttons look as they always did.
    const int half = label.size() / 2;
    int best = label.size();
    for (int i = 0; i < blanks; ++i) {
        const int position = label.indexOf(blank, i);
        if (std::abs(half - position) < best)
            best = position;
    }
    broken[best] = lineFeed;
    return broken;
}

QString fitLabel(const QString& label, const QFontMetrics& metrics, int width)
{
    QString first;
    QString second;
    bool broken = false;
    for (const QChar character : label) {
        if (!endsLine(character))
            (broken ? second : first).append(character);
        else if (broken)
            second.append(blank);
        broken = broken || endsLine(character);
    }
    const auto elided = [&](const QString& line) { return metrics.elidedText(line, Qt::ElideRight, width); };
    return broken ? elided(first) + lineFeed + elided(second) : elided(first);
}

} // namespace shell
