#include "support/probereport.h"

#include <QFile>
#include <QtTest>

ProbeReport ProbeReport::take(const QString& path)
{
    if (!QTest::qWaitFor([&] { return QFile::exists(path); }, 30000))
        qFatal("the probe did not report");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read the probe's report");
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
