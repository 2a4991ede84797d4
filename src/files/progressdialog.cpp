#include "files/progressdialog.h"

#include "files/fileoperations.h"
#include "files/longwork.h"
#include "shell/elidedlabel.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QFileInfo>
#include <QPushButton>

#include <algorithm>

namespace files {

namespace {

constexpr int refreshPeriod = 100; // ms
constexpr int dialogWidth = 420;   // pixels

// The file manager's texts stand in one context.
QString text(const char* source)
{
    return QCoreApplication::translate("FileSystemWidget", source);
}

} // namespace

ProgressDialog::ProgressDialog(const LongWork& work, Progress* progress, QWidget* parent)
    : QProgressDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
    , m_progress(progress)
    , m_canBeCancelled(work.canBeCancelled)
{
    setWindowTitle(work.title);
    setWindowModality(Qt::ApplicationModal);
    setLabel(new ElidedLabel); // the dialog's
    setCancelButton(m_canBeCancelled ? new QPushButton(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Cancel")))
                                     : nullptr); // the dialog's
    setAutoClose(false);
    setAutoReset(false);
    setMinimumDuration(0);
    setFixedWidth(dialogWidth);
    connect(this, SIGNAL(canceled()), this, SLOT(cancelWork()));
    connect(&m_timer, SIGNAL(timeout()), this, SLOT(refresh()));
    m_timer.start(refreshPeriod);
    refresh();
}

void ProgressDialog::reject()
{
    if (m_canBeCancelled)
        cancelWork();
}

void ProgressDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    reject();
}

void ProgressDialog::refresh()
{
    const Progress::State state = m_progress->state();
    const bool isCounted = state.total > 1;
    const QString name = QFileInfo(state.path).fileName();
    setRange(0, isCounted ? state.total : 0);
    setValue(isCounted ? std::min(state.done, state.total - 1) : 0); // links may lead to more
    if (m_progress->isCancelled())
        setLabelText(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Cancelling...")));
    else if (isCounted)
        setLabelText(text(QT_TRANSLATE_NOOP("FileSystemWidget", "%1 of %2: %3"))
                         .arg(QString::number(value() + 1), QString::number(state.total), name));
    else
        setLabelText(name);
}

void ProgressDialog::cancelWork()
{
    m_progress->cancel();
    refresh();
    show(); // until the work has stopped
}

} // namespace files
