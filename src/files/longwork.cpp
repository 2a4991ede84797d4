#include "files/longwork.h"

#include "files/fileoperations.h"
#include "files/progressdialog.h"

#include <QEventLoop>
#include <QPointer>
#include <QThread>

namespace files {

namespace {

constexpr unsigned long patience = 500;              // ms
constexpr unsigned int stackSize = 16 * 1024 * 1024; // for folders as deep as Windows' longest paths

class Worker : public QThread
{
public:
    explicit Worker(const std::function<void()>& work)
        : m_work(work)
    {}

protected:
    void run() override { m_work(); }

private:
    const std::function<void()>& m_work;
};

} // namespace

void run(QWidget* parent, const LongWork& description, Progress* progress, const std::function<void()>& work)
{
    Worker worker(work);
    worker.setStackSize(stackSize);
    worker.start(QThread::InheritPriority);
    if (worker.wait(patience))
        return;
    // Its parent may take it along.
    const QPointer<ProgressDialog> dialog(new ProgressDialog(description, progress, parent));
    QEventLoop loop;
    QObject::connect(&worker, SIGNAL(finished()), &loop, SLOT(quit()));
    dialog->show();
    if (!worker.isFinished())
        loop.exec(); // returns early at the end of the session
    worker.wait();
    delete dialog;
}

} // namespace files
