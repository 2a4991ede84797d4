#pragma once

#include <QString>

// Whether a reply of the central server's says no. An empty reply does not.
inline bool isRefusal(const QString& reply)
{
    return reply.startsWith(QLatin1String("Error:"));
}
