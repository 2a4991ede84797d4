#include "support/quillettest.h"

#include "resources/resources.h"

#ifndef Q_OS_WIN
#include "simwin.h"
#endif

#include <QMutex>
#include <QtTest>

namespace {

struct Messages
{
    QMutex lock;
    QStringList debug;
    QStringList warnings;
    QtMessageHandler previous = nullptr;
};

Messages& messages()
{
    static Messages* const instance = new Messages; // never deleted: threads may write when main() has ended
    return *instance;
}

// What the offscreen platform, Wine and Qt for Windows cannot do, and say so.
bool isHarmless(const QString& warning)
{
    return warning.startsWith(QLatin1String("This plugin does not support")) ||
           // pictures of Wine's for message boxes
           warning.startsWith(QLatin1String("QPixmap::fromWinHICON(), failed to GetIconInfo()")) ||
           // a picture of a window that is gone
           warning.startsWith(QLatin1String("imageFromWinHBITMAP_GetDiBits: GetDIBits() failed"));
}

void collect(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Messages& m = messages();
    QtMessageHandler previous = nullptr;
    {
        const QMutexLocker locker(&m.lock);
        if (type == QtDebugMsg)
            m.debug.append(text);
        else if (type != QtInfoMsg && !isHarmless(text))
            m.warnings.append(text);
        previous = m.previous;
    }
    if (previous && type != QtDebugMsg)
        previous(type, context, text);
}

} // namespace

QStringList QuilletTest::debugOutput()
{
    const QMutexLocker locker(&messages().lock);
    return messages().debug;
}

void QuilletTest::clearDebugOutput()
{
    const QMutexLocker locker(&messages().lock);
    messages().debug.clear();
}

void QuilletTest::init()
{
    initResources();
    m_sandbox = std::make_unique<Sandbox>();
#ifndef Q_OS_WIN
    simwin::reset();
#endif
    Messages& m = messages();
    {
        const QMutexLocker locker(&m.lock);
        m.debug.clear();
        m.warnings.clear();
    }
    const QtMessageHandler previous = qInstallMessageHandler(collect);
    const QMutexLocker locker(&m.lock);
    m.previous = previous;
}

void QuilletTest::cleanup()
{
    qInstallMessageHandler(messages().previous);
    m_sandbox.reset();
    QStringList warnings;
    {
        const QMutexLocker locker(&messages().lock);
        warnings = messages().warnings;
    }
    QVERIFY2(warnings.isEmpty(),
             qPrintable(QLatin1String("unexpected warnings:\n") + warnings.join(QLatin1Char('\n'))));
}
