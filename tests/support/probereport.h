#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

// What the probe (probe.cpp) tells of its start.
struct ProbeReport
{
    QString folder; // as the system writes it
    QStringList arguments;
    QMap<QString, QString> environment;

    // Waits for the report and takes it away, so that the next one is a new one. Fails the program when none
    // comes within 30 s.
    static ProbeReport take(const QString& path);
};
