#include "instances/splitarguments.h"

namespace instances {

QStringList splitArguments(const QString& line)
{
    QStringList arguments;
    QString argument;
    bool within = false; // an argument
    QChar quote;         // the one that has to close, null outside quotes
    for (const QChar character : line) {
        if (!quote.isNull() ? character == quote
                            : character == QLatin1Char('"') || character == QLatin1Char('\'')) {
            quote = quote.isNull() ? character : QChar();
            within = true;
        } else if (quote.isNull() && character == QLatin1Char(' ')) {
            if (within)
                arguments.append(argument);
            argument.clear();
            within = false;
        } else {
            argument.append(character);
            within = true;
        }
    }
    if (within)
        arguments.append(argument);
    return arguments;
}

} // namespace instances
