#pragma once

#include <QDialog>
#include <QTimer>

class ElidedLabel;
class QProgressBar;
class QPushButton;

namespace files {

class Progress;
struct LongWork;

// Shows what a long copy or removal is at, and how many of how many; a busy bar where that cannot be counted.
// Modal; the one who opened it closes it. GUI thread; the progress must outlive it.
class ProgressDialog : public QDialog
{
    Q_OBJECT

public:
    ProgressDialog(const LongWork& work, Progress* progress, QWidget* parent);

public slots:
    // Cancels what can be cancelled, and stays until the work has stopped; otherwise nothing happens.
    void reject() override;

private slots:
    void refresh();

private:
    Progress* const m_progress;
    ElidedLabel* const m_label;
    QProgressBar* const m_bar;
    QPushButton* m_cancelButton = nullptr; // what cannot be cancelled has none
    QTimer m_timer;
};

} // namespace files
