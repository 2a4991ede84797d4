// Copies beside QFile::copy: of one big file and of a tree of small files. Natively `cp -r` is told as well.
#include "files/fileoperations.h"

#include "bench/figures.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <cstdio>

namespace {

#ifdef Q_OS_WIN
constexpr qint64 bigSize = 256LL << 20; // bytes
constexpr int fileCount = 2000;
#else
constexpr qint64 bigSize = 1LL << 30;
constexpr int fileCount = 10000;
#endif
constexpr int filesPerFolder = 100;
constexpr int runs = 5;

// In memory where there is room: a disk that writes behind makes one copy wait for the one before.
QString place()
{
    const QStorageInfo memory(QStringLiteral("/dev/shm"));
    const bool hasRoom = memory.isValid() && memory.bytesAvailable() > 3 * bigSize;
    return (hasRoom ? memory.rootPath() : QDir::tempPath()) + QStringLiteral("/bench_files-XXXXXX");
}

bool makeBigFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray block(1 << 20, 'x');
    for (qint64 written = 0; written < bigSize; written += block.size())
        if (file.write(block) != block.size())
            return false;
    return file.flush();
}

bool makeTree(const QString& path)
{
    for (int i = 0; i < fileCount; ++i) {
        const QString folder = path + QStringLiteral("/%1").arg(i / filesPerFolder);
        QFile file(folder + QStringLiteral("/%1.txt").arg(i));
        if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) ||
            file.write(QByteArray(1000, 'x')) < 0)
            return false;
    }
    return true;
}

// The least that a copy of a tree takes.
bool bareCopy(const QString& source, const QString& target)
{
    if (!QFileInfo(source).isDir())
        return QFile::copy(source, target);
    if (!QDir().mkdir(target))
        return false;
    const QStringList names = QDir(source).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString& name : names)
        if (!bareCopy(source + QLatin1Char('/') + name, target + QLatin1Char('/') + name))
            return false;
    return true;
}

// Each copy goes to a place of its own, and is taken away between the runs: only the copying is timed.
template <typename Ours, typename Bare>
Figures measureCopies(const QString& target, const Ours& ours, const Bare& bare)
{
    const auto timeOf = [&](const auto& action) {
        QElapsedTimer clock;
        clock.start();
        action();
        const double time = static_cast<double>(clock.nsecsElapsed()) / 1000;
        QFile::remove(target);
        QDir(target).removeRecursively();
        return time;
    };
    timeOf(ours);
    timeOf(bare);
    Figures figures;
    for (int i = 0; i < runs; ++i) {
        figures.ours.push_back(timeOf(ours));
        figures.bare.push_back(timeOf(bare));
    }
    return figures;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder(place());
    const QString file = folder.filePath(QStringLiteral("file"));
    const QString tree = folder.filePath(QStringLiteral("tree"));
    const QString target = folder.filePath(QStringLiteral("target"));
    if (!makeBigFile(file) || !makeTree(tree))
        return 1;

    bool right = true; // a copy that failed is no figure
    files::Progress progress;
    const auto ourTree = [&] { right &= files::copyTree(tree, target, &progress); };
    const QByteArray big = "file of " + QByteArray::number(bigSize >> 20) + " MiB";
    const QByteArray small = "tree of " + QByteArray::number(fileCount) + " files";
    printHeader();
    printLine(big + ", QFile::copy", measureCopies(
                                         target, [&] { right &= files::copyFile(file, target); },
                                         [&] { right &= QFile::copy(file, target); }));
    printLine(small + ", QFile::copy",
              measureCopies(target, ourTree, [&] { right &= bareCopy(tree, target); }));
#ifndef Q_OS_WIN
    printLine(small + ", cp -r", measureCopies(target, ourTree, [&] {
                  right &= QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), tree, target}) == 0;
              }));
#endif
    if (!right)
        std::printf("a copy failed\n");
    return right ? 0 : 1;
}
