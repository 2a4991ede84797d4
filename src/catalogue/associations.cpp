#include "catalogue/associations.h"

namespace catalogue {

namespace {

constexpr QLatin1Char exclusionMark('!');

} // namespace

QStringList mergedAssociations(QStringList server, QStringList local)
{
    for (int i = 0; i < server.size();) {
        const QString entry = server.at(i);
        if (!entry.startsWith(exclusionMark)) {
            ++i;
            continue;
        }
        local.removeAll(entry.mid(1));
        server.removeAll(entry); // the next entry is at the same index now
    }
    server += local;
    server.removeDuplicates();
    return server;
}

QStringList excludedIds(const QStringList& entries)
{
    QStringList ids;
    for (const QString& entry : entries) {
        if (entry.startsWith(exclusionMark))
            ids.append(entry.mid(1));
    }
    return ids;
}

} // namespace catalogue
