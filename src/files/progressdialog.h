#pragma once

#include <QProgressDialog>
#include <QTimer>

namespace files {

class Progress;
struct LongWork;

// Shows what a long copy or removal is at, and how many of how many; a busy bar where that cannot be counted.
// Modal to its parent; the one who opened it closes it. GUI thread; the progress must outlive it.
class ProgressDialog : public QProgressDialog
{
    Q_OBJECT

public:
    ProgressDialog(const LongWork& work, Progress* progress, QWidget* parent);

public slots:
    // Cancels what can be cancelled; otherwise nothing happens.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private slots:
    void refresh();
    void cancelWork();

private:
    Progress* const m_progress;
    const bool m_canBeCancelled;
    QTimer m_timer;
};

} // namespace files
