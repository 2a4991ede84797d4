// How the controller starts applications, for themselves or to open a file.
#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "env/log.h"
#include "instances/appinstance.h"
#include "session/busycursor.h"
#include "session/desktop.h"
#include "shell/messagebox.h"
#include "shell/tabbar.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopedValueRollback>

namespace {

constexpr int launchWait = 15000; // ms
constexpr quint16 noChannel = 0;  // a port

} // namespace

void Desktop::launchApplication(AppInstance* app)
{
    launch(app);
}

bool Desktop::launch(AppInstance* app)
{
    if (!app || !m_tabBar || m_launching || (session::isBusy() && m_launchTimer.isActive()))
        return false;
    const QPointer<AppInstance> instance(app);
    const QScopedValueRollback<bool> launching(m_launching, true);
    session::showBusy();
    QCoreApplication::processEvents(); // the cursor is seen before the start blocks
    m_launchTimer.start(launchWait);
    connect(&m_launchTimer, SIGNAL(timeout()), this, SLOT(timeout()));
    if (!instance || !m_tabBar) { // gone meanwhile
        timeout();
        return false;
    }

    m_launchIcon = instance->icon();
    m_launchName = instance->name();
    if (instance->onlyOne()) {
        // Wanted: a running instance is looked for in the log alone, and the launch goes on.
        for (int i = 0; i < m_tabBar->count(); ++i)
            env::logInfo(QStringLiteral("Looking for onlyOne existing application. AppName(%1): %2")
                             .arg(i)
                             .arg(m_launchName));
    }
    qDebug("Type: %s", qUtf8Printable(instance->serverType()));
    m_currentProcess = instance->launch(QSize(), noChannel);
    const qint64 processId = m_currentProcess->processId();
    m_processes.insert(processId, m_currentProcess);
    env::logInfo(
        QStringLiteral("Launching application %1 with PID=%2").arg(m_launchName, QString::number(processId)));
    return m_currentProcess->error() != QProcess::FailedToStart;
}

void Desktop::timeout()
{
    session::showReady();
    m_launchTimer.stop();
    disconnect(&m_launchTimer, SIGNAL(timeout()), this, SLOT(timeout())); // every launch made one more
}

void Desktop::openFile(const QString& file, const QString& application)
{
    qDebug("Trying to open file %s with application %s", qUtf8Printable(file), qUtf8Printable(application));
    QString id = application;
    if (id.isEmpty()) {
        const QFileInfo info(file);
        if (catalogue::mimeTypeForFile(info) == QLatin1String(catalogue::recursiveLinkType)) {
            shell::showBox(nullptr, QMessageBox::Critical, tr("Link error"),
                           tr("This file is a recursive set of links"));
            return;
        }
        id = Application::defaultApplication(QLatin1Char('.') + info.suffix());
        if (id.isEmpty())
            return;
    }
    auto* const instance = new AppInstance(id, m_server.client()); // deletes itself, see next
    connect(instance, SIGNAL(deleteAppInstance()), instance, SLOT(deleteLater()));
    connect(instance, SIGNAL(finished(int, QProcess::ExitStatus)), instance, SIGNAL(deleteAppInstance()));
    instance->setFile(file);
    if (!launch(instance))
        instance->deleteLater(); // what never started never finishes
}

void Desktop::openFile(const QString& file)
{
    openFile(file, QString());
}

void Desktop::openMime(const QString&, const QString&) {}
