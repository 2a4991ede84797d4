// logwait FILE TEXT [SECONDS [OFFSET]]
//
// Waits until the log FILE has an entry whose message contains TEXT, for SECONDS (default 30) at the most.
// FILE need not exist yet; its first OFFSET bytes are passed over. Prints the entries' messages on the way.
// Exit code 0 when it came, 1 when it did not, 2 for a wrong call.
#include "support/logreader.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = true;
    bool isOffset = true;
    const int seconds = arguments.size() >= 4 ? arguments[3].toInt(&isNumber) : 30;
    const qint64 offset = arguments.size() >= 5 ? arguments[4].toLongLong(&isOffset) : 0;
    if (arguments.size() < 3 || arguments.size() > 5 || arguments[2].isEmpty() || !isNumber || seconds < 0 ||
        !isOffset || offset < 0) {
        std::fprintf(stderr, "usage: logwait FILE TEXT [SECONDS [OFFSET]]\n");
        return 2;
    }
    QStringList seen;
    const bool came = LogReader(arguments[1], offset).waitFor(arguments[2], seconds * 1000, &seen);
    for (const QString& message : seen)
        std::printf("%s\n", qPrintable(message));
    if (came)
        std::printf("%s\n", qPrintable(arguments[2]));
    else
        std::fprintf(stderr, "logwait: no entry with \"%s\" within %d s in %s\n", qPrintable(arguments[2]),
                     seconds, qPrintable(arguments[1]));
    return came ? 0 : 1;
}
