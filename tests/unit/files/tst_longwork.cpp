#include "files/longwork.h"

#include "files/fileoperations.h"
#include "files/progressdialog.h"

#include "support/quillettest.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QThread>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <functional>
#include <memory>

using files::LongWork;
using files::Progress;
using files::ProgressDialog;

namespace {

ProgressDialog* shownDialog()
{
    return qobject_cast<ProgressDialog*>(QApplication::activeModalWidget());
}

// Calls an action once, in the event loop, when the dialog is there; it must come within 20 s.
class OnceShown : public QObject
{
public:
    explicit OnceShown(std::function<void(ProgressDialog*)> action)
        : m_action(std::move(action))
    {
        startTimer(10);
    }

    bool happened = false;

protected:
    void timerEvent(QTimerEvent* event) override
    {
        ProgressDialog* const dialog = shownDialog();
        if (!dialog || !dialog->isVisible())
            return;
        killTimer(event->timerId());
        happened = true;
        m_action(dialog);
    }

private:
    std::function<void(ProgressDialog*)> m_action;
};

// Seen by every event that comes.
class Watcher : public QObject
{
public:
    Watcher() { qApp->installEventFilter(this); }
    int paints = 0;
    int dialogs = 0;
    QWidget* painted = nullptr;

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Show && qobject_cast<ProgressDialog*>(object))
            ++dialogs;
        if (event->type() == QEvent::Paint && object == painted)
            ++paints;
        return false;
    }
};

// Takes a kilobyte of room for each.
int descend(int depth)
{
    volatile char room[1024];
    room[0] = 1;
    return depth == 0 ? 0 : descend(depth - 1) + room[0];
}

} // namespace

class LongWorkTest : public QuilletTest
{
    Q_OBJECT

private slots:
    void shortWorkShowsNothing()
    {
        const Watcher watcher;
        Progress progress;
        int events = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&] { ++events; });
        timer.start(1);
        const QThread* thread = nullptr;
        files::run(nullptr, {QStringLiteral("Copying"), true}, &progress, [&] {
            thread = QThread::currentThread();
            QThread::msleep(100); // well within its time, and several times the timer's
        });
        QVERIFY(thread && thread != QThread::currentThread());
        QCOMPARE(watcher.dialogs, 0);
        QCOMPARE(events, 0); // nothing happened meanwhile
    }

    void halfASecondPassesBeforeTheDialog()
    {
        Progress progress;
        QSemaphore enough;
        QElapsedTimer clock;
        qint64 shown = 0;
        const OnceShown once([&](ProgressDialog*) {
            shown = clock.elapsed();
            enough.release();
        });
        clock.start();
        files::run(nullptr, {QStringLiteral("Copying"), false}, &progress,
                   [&] { enough.tryAcquire(1, 20000); });
        QVERIFY(once.happened);
        QVERIFY2(shown >= 500, qPrintable(QString::number(shown)));
        QVERIFY(!shownDialog());
    }

    void theDialogIsTheParentsAndBothArePainted()
    {
        QWidget parent;
        parent.resize(300, 200);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        Watcher watcher;
        watcher.painted = &parent;
        Progress progress;
        QSemaphore enough;
        const OnceShown once([&](ProgressDialog* dialog) {
            QCOMPARE(dialog->parentWidget(), &parent);
            QCOMPARE(dialog->windowTitle(), QStringLiteral("Removing"));
            QVERIFY(dialog->isModal());
            const int before = watcher.paints;
            parent.update();
            QTRY_VERIFY(watcher.paints > before);
            watcher.painted = dialog->findChild<QProgressBar*>();
            const int barBefore = watcher.paints;
            progress.begin(4);
            progress.endEntry();
            QTRY_COMPARE(dialog->findChild<QProgressBar*>()->value(), 1);
            QTRY_VERIFY(watcher.paints > barBefore);
            enough.release();
        });
        files::run(&parent, {QStringLiteral("Removing"), false}, &progress,
                   [&] { enough.tryAcquire(1, 20000); });
        QVERIFY(once.happened);
        QCOMPARE(watcher.dialogs, 1);
        QVERIFY(!parent.findChild<ProgressDialog*>());
    }

    void theWorkIsCancelledWhereThatIsOffered()
    {
        Progress progress;
        const OnceShown once([](ProgressDialog* dialog) { dialog->findChild<QPushButton*>()->click(); });
        bool stopped = false;
        files::run(nullptr, {QStringLiteral("Copying"), true}, &progress, [&] {
            for (int i = 0; i < 2000 && !stopped; ++i) {
                QThread::msleep(10);
                stopped = progress.isCancelled();
            }
        });
        QVERIFY(once.happened);
        QVERIFY(stopped);
    }

    void nothingButTheEndOfTheWorkEndsIt()
    {
        Progress progress;
        QSemaphore enough;
        std::atomic<bool> ended{false};
        const OnceShown once([&](ProgressDialog* dialog) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            dialog->close();
            QCoreApplication::processEvents();
            QVERIFY(dialog->isVisible());
            QVERIFY(!ended);
            enough.release();
        });
        files::run(nullptr, {QStringLiteral("Removing"), false}, &progress, [&] {
            enough.tryAcquire(1, 20000);
            ended = true;
        });
        QVERIFY(once.happened);
        QVERIFY(ended);
        QVERIFY(!progress.isCancelled());
    }

    void theParentMayGoMeanwhile()
    {
        auto* const parent = new QWidget;
        parent->show();
        Progress progress;
        QSemaphore enough;
        std::atomic<bool> ended{false};
        const OnceShown once([&](ProgressDialog*) {
            delete parent;
            enough.release();
        });
        files::run(parent, {QStringLiteral("Copying"), true}, &progress, [&] {
            enough.tryAcquire(1, 20000);
            QThread::msleep(50); // some of it after the dialog
            ended = true;
        });
        QVERIFY(once.happened);
        QVERIFY(ended);
        QVERIFY(!shownDialog());
    }

    void theWorkIsWaitedForWhenTheSessionEnds()
    {
        Progress progress;
        QSemaphore enough;
        std::atomic<bool> ended{false};
        const OnceShown once([&](ProgressDialog*) {
            QCoreApplication::quit();
            enough.release();
        });
        QEventLoop outer; // that of the program
        bool waited = false;
        QTimer::singleShot(0, &outer, [&] {
            files::run(nullptr, {QStringLiteral("Copying"), true}, &progress, [&] {
                enough.tryAcquire(1, 20000);
                QThread::msleep(300); // longer than it takes to leave the loop
                ended = true;
            });
            waited = ended;
        });
        outer.exec();
        QVERIFY(once.happened);
        QVERIFY(waited);
        QVERIFY(!shownDialog());
    }

    // A tree may be as deep as the longest path of Windows.
    void theWorkHasRoomForTheDeepestFolders()
    {
        Progress progress;
        int depth = 0;
        files::run(nullptr, {QString(), false}, &progress, [&] { depth = descend(8000); });
        QCOMPARE(depth, 8000);
    }
};

QTEST_MAIN(LongWorkTest)
#include "tst_longwork.moc"
