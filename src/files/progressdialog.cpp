#include "files/progressdialog.h"

#include "files/fileoperations.h"
#include "files/longwork.h"
#include "shell/elidedlabel.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

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
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
    , m_progress(progress)
    , m_label(new ElidedLabel(this))
    , m_bar(new QProgressBar(this))
{
    setWindowTitle(work.title);
    setModal(true);
    setFixedWidth(dialogWidth);
    m_bar->setAccessibleName(work.title);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(m_label);
    column->addWidget(m_bar);
    if (work.canBeCancelled) {
        m_cancelButton = new QPushButton(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Cancel")), this);
        m_cancelButton->setAutoDefault(false); // Return was meant for what came before
        column->addWidget(m_cancelButton, 0, Qt::AlignRight);
        connect(m_cancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    }
    connect(&m_timer, SIGNAL(timeout()), this, SLOT(refresh()));
    m_timer.start(refreshPeriod);
    refresh();
}

void ProgressDialog::reject()
{
    if (!m_cancelButton)
        return;
    m_progress->cancel();
    m_cancelButton->setEnabled(false);
    refresh();
}

void ProgressDialog::refresh()
{
    const Progress::State state = m_progress->state();
    const bool isCounted = state.total > 1;
    const int done = std::min(state.done, state.total - 1); // links may lead to more
    const QString name = QFileInfo(state.path).fileName();
    m_bar->setRange(0, isCounted ? state.total : 0);
    m_bar->setValue(isCounted ? done : 0);
    if (m_progress->isCancelled())
        m_label->setText(text(QT_TRANSLATE_NOOP("FileSystemWidget", "Cancelling...")));
    else if (isCounted)
        m_label->setText(text(QT_TRANSLATE_NOOP("FileSystemWidget", "%1 of %2: %3"))
                             .arg(QString::number(done + 1), QString::number(state.total), name));
    else
        m_label->setText(name);
}

} // namespace files
