// A move is a copy and, after it, a removal. Here its process is killed at each of its calls to the system,
// one after the other.
#include "files/fileoperations.h"

#include "support/quillettest.h"

#include <QDir>
#include <QtTest>

#include <csignal>

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

using files::Progress;

namespace {

// As the file manager does it.
void moveFile(const QString& source, const QString& target)
{
    Progress progress;
    if (files::copyFile(source, target))
        files::removeTree(source, &progress);
}

void moveFolder(const QString& source, const QString& target)
{
    Progress progress;
    files::copyTree(source, target, &progress);
    files::removeTree(source, &progress);
}

enum class End
{
    Killed,
    Itself,
    NotPossible
};

// Runs an action in a process of its own, which is killed before its `step`th call.
template <typename Action>
End runUntil(int step, const Action& action)
{
    const pid_t process = fork();
    if (process == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            _exit(1);
        raise(SIGSTOP);
        action();
        _exit(0);
    }
    int status = 0;
    if (process < 0 || waitpid(process, &status, 0) != process || !WIFSTOPPED(status))
        return End::NotPossible;
    for (int i = 0; i < 2 * step - 1; ++i) { // every call stops it twice, before and after
        ptrace(PTRACE_SYSCALL, process, nullptr, nullptr);
        waitpid(process, &status, 0);
        if (WIFEXITED(status))
            return WEXITSTATUS(status) == 0 ? End::Itself : End::NotPossible;
    }
    kill(process, SIGKILL);
    waitpid(process, &status, 0);
    return End::Killed;
}

} // namespace

class InterruptedMoveTest : public QuilletTest
{
    Q_OBJECT

    QString at(const QString& path) { return sandbox().scratch() + QLatin1Char('/') + path; }

    bool isWhole(const QString& path)
    {
        return QFile::exists(path) && Sandbox::readFile(path) == QByteArray(70000, path.toLatin1().back());
    }

private slots:
    void whateverTheStepEachFileIsThereOnceAtLeast_data()
    {
        QTest::addColumn<QStringList>("tree");
        QTest::newRow("file") << QStringList({"file"});
        QTest::newRow("folder") << QStringList({"s/a", "s/b/c", "s/d"});
    }
    void whateverTheStepEachFileIsThereOnceAtLeast()
    {
        QFETCH(QStringList, tree);
        const QString moved = tree.first().section('/', 0, 0);
        const bool isFolder = tree.first().contains('/');
        int killed = 0;
        for (End end = End::Killed; end == End::Killed; ++killed) {
            QDir(at("from")).removeRecursively();
            QDir(at("to")).removeRecursively();
            QDir().mkpath(at("to"));
            for (const QString& path : tree) {
                QDir().mkpath(QFileInfo(at("from/" + path)).path());
                Sandbox::writeFile(at("from/" + path), QByteArray(70000, path.toLatin1().back()));
            }
            end = runUntil(killed + 1, [&] {
                (isFolder ? moveFolder : moveFile)(at("from/" + moved), at("to/" + moved));
            });
            if (end == End::NotPossible)
                QSKIP("processes cannot be traced here");
            for (const QString& path : tree) {
                const QByteArray where = path.toLatin1() + ", step " + QByteArray::number(killed + 1);
                QVERIFY2(isWhole(at("to/" + path)) || isWhole(at("from/" + path)), where);
                if (end == End::Itself)
                    QVERIFY2(isWhole(at("to/" + path)) && !QFile::exists(at("from/" + moved)), where);
            }
        }
        QVERIFY2(killed > 10 * tree.size(), qPrintable(QString::number(killed)));
    }
};

QTEST_GUILESS_MAIN(InterruptedMoveTest)
#include "tst_interruptedmove.moc"
