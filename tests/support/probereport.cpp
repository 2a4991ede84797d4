#include "support/probereport.h"

#include <QFile>
#include <QtTest>

ProbeReport ProbeReport::take(const QString& path)
{
    QFile file(path);
    // On Windows a file that was just given its name may not be open to others yet.
    if (!QTest::qWaitFor([&] { return file.exists() && file.open(QIODevice::ReadOnly); }, 30000))
        qFatal("the probe did not report");
    ProbeReport report;
    const QList<QByteArray> fields = file.readAll().split('\0');
    for (const QByteArray& bytes : fields) {
        const QString field = QString::fromUtf8(bytes);
        const QString value = field.section(QLatin1Char('='), 1);
        if (field.startsWith(QLatin1String("folder=")))
            report.folder = value;
        else if (field.startsWith(QLatin1String("argument=")))
            report.arguments.append(value);
        else if (field.startsWith(QLatin1String("variable=")))
            report.environment.insert(value.section(QLatin1Char('='), 0, 0),
                                      value.section(QLatin1Char('='), 1));
    }
    file.close();
    file.remove();
    return report;
}
