#include "files/fileoperations.h"

#include "support/quillettest.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QThread>
#include <QtTest>

#include <functional>
#include <thread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include "support/forbidden.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using files::Progress;

namespace {

const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

// What is in a folder: folders as "name/", links as "name@", files as "name=content".
QStringList contents(const QString& folder)
{
    QStringList found;
    QDirIterator all(folder, everything, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next();
        const QFileInfo info(path);
        QString entry = QDir(folder).relativeFilePath(path);
        if (files::isLink(info))
            entry += QLatin1Char('@');
        else if (info.isDir())
            entry += QLatin1Char('/');
        else if (QFile file(path); info.isFile() && file.open(QIODevice::ReadOnly))
            entry += QLatin1Char('=') + QString::fromLatin1(file.readAll());
        found.append(entry);
    }
    found.sort();
    return found;
}

// Of a copy, in the order in which it goes.
QStringList listing(const QString& folder)
{
    return QDir(folder).entryList(QDir::Dirs | QDir::Files | QDir::Hidden | QDir::System | QDir::NoDot |
                                      QDir::NoDotDot,
                                  QDir::Unsorted);
}

bool isThere(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

void makeFolder(const QString& path)
{
    if (!QDir().mkpath(path))
        qFatal("cannot make %s", qPrintable(path));
}

#ifdef Q_OS_WIN

const wchar_t* wide(const QString& path)
{
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

// By its very name.
QString exact(const QString& path)
{
    return QStringLiteral("\\\\?\\") + QDir::toNativeSeparators(path);
}

void writeExact(const QString& path)
{
    HANDLE file = CreateFileW(wide(exact(path)), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        qFatal("cannot write %s", qPrintable(path));
    CloseHandle(file);
}

void removeExact(const QString& path)
{
    if (!DeleteFileW(wide(exact(path))) && !RemoveDirectoryW(wide(exact(path))))
        qFatal("cannot remove %s", qPrintable(path));
}

void setAttributes(const QString& path, DWORD attributes)
{
    if (!SetFileAttributesW(wide(exact(path)), attributes))
        qFatal("no attributes for %s", qPrintable(path));
}

DWORD attributes(const QString& path)
{
    return GetFileAttributesW(wide(exact(path)));
}

#else

void makeLink(const QString& goal, const QString& path)
{
    if (symlink(QFile::encodeName(goal), QFile::encodeName(path)) != 0)
        qFatal("cannot link %s", qPrintable(path));
}

// A small disk of its own, mounted at a folder while this lives. Only root can have one.
class SmallDisk
{
public:
    explicit SmallDisk(const QString& folder)
        : m_folder(QFile::encodeName(folder))
    {
        makeFolder(folder);
        isMounted = mount("none", m_folder, "tmpfs", 0, "size=64k") == 0;
    }
    ~SmallDisk()
    {
        if (isMounted)
            umount(m_folder);
    }
    Q_DISABLE_COPY(SmallDisk)

    bool isMounted;

private:
    QByteArray m_folder;
};

#endif

// A file that can be neither copied nor removed while this lives. Elsewhere than on Windows: one that cannot
// be copied.
class Stubborn
{
public:
    explicit Stubborn(const QString& path)
        : m_path(path)
    {
        QFile::remove(path);
#ifdef Q_OS_WIN
        m_file = CreateFileW(wide(exact(path)), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
        if (m_file == INVALID_HANDLE_VALUE)
            qFatal("cannot hold %s", qPrintable(path));
#else
        makeLink(QStringLiteral("nowhere"), path);
#endif
    }
    ~Stubborn()
    {
#ifdef Q_OS_WIN
        CloseHandle(m_file);
#endif
        QFile::remove(m_path);
    }
    Q_DISABLE_COPY(Stubborn)

private:
    QString m_path;
#ifdef Q_OS_WIN
    HANDLE m_file;
#endif
};

} // namespace

class FileOperationsTest : public QuilletTest
{
    Q_OBJECT

    QString at(const QString& path) { return sandbox().scratch() + QLatin1Char('/') + path; }

    // Files and, with a "/" at the end, folders; a file's content is its path.
    void make(const QStringList& paths)
    {
        for (const QString& path : paths) {
            makeFolder(QFileInfo(at(path)).path());
            if (!path.endsWith(QLatin1Char('/')))
                Sandbox::writeFile(at(path), path.toLatin1());
        }
    }

    bool copy(const QString& source, const QString& target)
    {
        Progress progress;
        return files::copyTree(at(source), at(target), &progress);
    }

    bool remove(const QString& path)
    {
        Progress progress;
        return files::removeTree(at(path), &progress);
    }

private slots:
    // --- Copies

    void aFileIsCopiedByteForByteAndStays()
    {
        QByteArray content;
        for (int i = 0; i < 300000; ++i)
            content.append(static_cast<char>(i * 7 >> 5));
        Sandbox::writeFile(at("a"), content);
        QVERIFY(files::copyFile(at("a"), at("b")));
        QVERIFY(Sandbox::readFile(at("b")) == content);
        QVERIFY(Sandbox::readFile(at("a")) == content);
        QVERIFY(copy("a", "c"));
        QVERIFY(Sandbox::readFile(at("c")) == content);
    }

    void aFileIsNeverCopiedOverWhatIsThere()
    {
        make({"a", "file", "folder/inside", "same"});
        QVERIFY(!files::copyFile(at("a"), at("file")));
        QVERIFY(!files::copyFile(at("a"), at("folder")));
        QVERIFY(!files::copyFile(at("same"), at("same")));
        QVERIFY(!copy("a", "file"));
        QCOMPARE(contents(sandbox().scratch()),
                 QStringList({"a=a", "file=file", "folder/", "folder/inside=folder/inside", "same=same"}));
    }

    void aTreeIsCopiedWholeAndStays()
    {
        const QStringList tree = {"s/a",        "s/.hidden",        "s/empty/", "s/one/two/three/deep",
                                  "s/one/.b/c", "s/one/two/.empty/"};
        make(tree);
#ifdef Q_OS_WIN
        setAttributes(at("s/a"), FILE_ATTRIBUTE_READONLY);
        setAttributes(at("s/one/.b"), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        setAttributes(at("s/one/.b/c"), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
#else
        QFile::setPermissions(at("s/a"), QFile::ReadOwner);
#endif
        const QStringList before = contents(at("s"));
        QCOMPARE(before.size(), 10);
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), before);
        QCOMPARE(contents(at("s")), before);
        QVERIFY(remove("t"));
        QCOMPARE(contents(at("s")), before);
        QVERIFY(remove("s"));
        QVERIFY(listing(sandbox().scratch()).isEmpty());
    }

    void aFolderIsNeverCopiedIntoOneThatIsThere()
    {
        make({"s/a", "t/b", "file"});
        QVERIFY(!copy("s", "t"));
        QVERIFY(!copy("s", "file"));
        QVERIFY(!copy("s", "s"));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"file=file", "s/", "s/a=s/a", "t/", "t/b=t/b"}));
    }

    void nothingIsMadeAboveTheTarget()
    {
        make({"s/a"});
        QVERIFY(!copy("s", "missing/t"));
        QVERIFY(!copy("s/a", "missing/a"));
        QVERIFY(!isThere(at("missing")));
    }

    void aCopyStopsAtTheFirstFailureAndKeepsWhatItCopied_data()
    {
        QTest::addColumn<int>("position");
        for (int i = 0; i < 5; ++i)
            QTest::newRow(qPrintable(QString::number(i))) << i;
    }
    void aCopyStopsAtTheFirstFailureAndKeepsWhatItCopied()
    {
        QFETCH(int, position);
        make({"s/a", "s/b/one", "s/c", "s/d/two", "s/e"});
        QString name = listing(at("s")).at(position);
        if (QFileInfo(at("s/" + name)).isDir())
            name += QStringLiteral("/") + listing(at("s/" + name)).first();
        const Stubborn stubborn(at("s/" + name));
        const QStringList before = contents(at("s"));

        QStringList expected;
        for (const QString& entry : listing(at("s"))) {
            const bool isFolder = QFileInfo(at("s/" + entry)).isDir();
            const bool failsHere = name.startsWith(entry);
            if (isFolder)
                expected.append(entry + '/');
            if (isFolder && !failsHere)
                expected += QDir(at("s")).relativeFilePath(at("s/" + entry)) + '/' +
                            contents(at("s/" + entry)).first();
            if (!isFolder && !failsHere)
                expected.append(entry + "=s/" + entry);
            if (failsHere)
                break;
        }
        expected.sort();
        QVERIFY(!copy("s", "t"));
        QCOMPARE(contents(at("t")), expected);
        QCOMPARE(contents(at("s")), before);
    }

    void whatIsNotThereIsNotCopied()
    {
        QVERIFY(!copy("missing", "t"));
        QVERIFY(!files::copyFile(at("missing"), at("t")));
        QVERIFY(listing(sandbox().scratch()).isEmpty());
    }

    void anEmptyPathIsNeverActedOn()
    {
        make({"here/a"});
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(at("here")));
        Progress progress;
        const bool acted = files::removeTree(QString(), &progress) ||
                           files::copyTree(QString(), at("t"), &progress) ||
                           files::copyTree(at("here"), QString(), &progress) ||
                           files::copyFile(QString(), at("t")) || files::copyFile(at("here/a"), QString());
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(!acted);
        QVERIFY(!files::isFolder(QString()));
        QVERIFY(!files::isReachable(QString()));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"here/", "here/a=here/a"}));
    }

    // --- Into itself

    void aPathIsWithinAFolder_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<bool>("isWithin");
        QTest::newRow("itself") << "a"
                                << "a" << true;
        QTest::newRow("itself, written otherwise") << "a/b/.."
                                                   << "a/" << true;
        QTest::newRow("below") << "a/b"
                               << "a" << true;
        QTest::newRow("far below") << "a/b/c"
                                   << "a" << true;
        QTest::newRow("above") << "a"
                               << "a/b" << false;
        QTest::newRow("beside, same beginning") << "ab"
                                                << "a" << false;
        QTest::newRow("missing") << "a/missing"
                                 << "a" << false;
        QTest::newRow("of a missing one") << "a"
                                          << "missing" << false;
        QTest::newRow("of the root") << "a"
                                     << "/" << true;
#ifdef Q_OS_WIN
        QTest::newRow("other case") << "A/B"
                                    << "a" << true;
        QTest::newRow("other separators") << "a\\b"
                                          << "a" << true;
#else
        QTest::newRow("other case") << "A/B"
                                    << "a" << false;
        QTest::newRow("by a link into it") << "into"
                                           << "a" << true;
        QTest::newRow("by a link from outside") << "a/out"
                                                << "a" << false;
        QTest::newRow("of a link") << "a/b/c"
                                   << "into" << true;
#endif
    }
    void aPathIsWithinAFolder()
    {
        QFETCH(QString, path);
        QFETCH(QString, folder);
        make({"a/b/c/", "ab/"});
#ifndef Q_OS_WIN
        makeLink(at("a/b"), at("into"));
        makeLink(at("ab"), at("a/out"));
#endif
        const QString outer = folder == QLatin1String("/") ? QDir::rootPath() : at(folder);
        if (folder == QLatin1String("/"))
            QVERIFY(at(path).startsWith(outer, Qt::CaseInsensitive));
        QTEST(files::isWithin(at(path), outer), "isWithin");
    }

    void aCopyIntoItselfEndsAndLeavesTheTargetOut()
    {
        make({"s/a", "s/b/c"});
        QVERIFY(copy("s", "s/b/s"));
        QCOMPARE(contents(at("s/b/s")), QStringList({"a=s/a", "b/", "b/c=s/b/c"}));
        QCOMPARE(contents(at("s")),
                 QStringList({"a=s/a", "b/", "b/c=s/b/c", "b/s/", "b/s/a=s/a", "b/s/b/", "b/s/b/c=s/b/c"}));
        QVERIFY(copy("s", "s/s"));
        QCOMPARE(contents(at("s")).size(), 7 + 8);
    }

    // --- Names

    void oddNamesAreCopiedAndRemoved_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("option") << "-rf";
        QTest::newRow("blank before") << " a";
        QTest::newRow("blank after") << "a ";
        QTest::newRow("dots before") << "..a";
        QTest::newRow("place marker") << "%1%2%n";
        QTest::newRow("shell") << "$HOME;&`'~#![]{}()";
        QTest::newRow("several scripts") << QString::fromUtf8("\xc3\xbc\xd8\xb4\xe6\xbc\xa2\xf0\x9f\x98\x80");
        QTest::newRow("not composed") << QString::fromUtf8("u\xcc\x88");
        QTest::newRow("as long as can be") << QString(255, 'x');
        QTest::newRow("as long as can be, in bytes") << QString::fromUtf8("\xe6\xbc\xa2").repeated(85);
#ifndef Q_OS_WIN
        QTest::newRow("line feed") << "a\nb";
        QTest::newRow("line feed alone") << "\n";
        QTest::newRow("dots after") << "a..";
        QTest::newRow("blanks after") << "a  ";
        QTest::newRow("blank") << " ";
        QTest::newRow("three dots") << "...";
        QTest::newRow("pattern") << "*?\"<>|";
        QTest::newRow("backslash") << "a\\b";
        QTest::newRow("resource") << ":a";
        QTest::newRow("drive") << "c:";
        QTest::newRow("address") << "file:a";
#endif
    }
    void oddNamesAreCopiedAndRemoved()
    {
        QFETCH(QString, name);
        makeFolder(at("s/folder/" + name));
        Sandbox::writeFile(at("s/folder/" + name + "/file"), "1");
        Sandbox::writeFile(at("s/" + name), "2");
        makeFolder(at("t"));
        QVERIFY(files::isReachable(at("s/" + name)));
        QVERIFY(files::isFolder(at("s/folder/" + name)));

        QVERIFY(copy("s/folder", "t/folder"));
        QVERIFY(copy("s/folder/" + name, "t/folder2"));
        QVERIFY(copy("s/folder/" + name, "t/" + name));
        QCOMPARE(Sandbox::readFile(at("t/folder/" + name + "/file")), QByteArray("1"));
        QCOMPARE(Sandbox::readFile(at("t/folder2/file")), QByteArray("1"));
        QCOMPARE(Sandbox::readFile(at("t/" + name + "/file")), QByteArray("1"));
        QVERIFY(remove("t/" + name));
        QVERIFY(files::copyFile(at("s/" + name), at("t/" + name)));
        QCOMPARE(Sandbox::readFile(at("t/" + name)), QByteArray("2"));
        QCOMPARE(listing(at("t")).size(), 3);

        QVERIFY(remove("s/" + name));
        QCOMPARE(listing(at("s")), QStringList("folder"));
        QVERIFY(remove("s/folder/" + name));
        QVERIFY(remove("t"));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"s/", "s/folder/"}));
    }

    void longPathsAreCopiedAndRemoved()
    {
        QString path = QStringLiteral("s");
        for (int i = 0; i < 6; ++i)
            path += '/' + QString(60, 'x');
        make({path + "/file"});
        QVERIFY(at(path).size() > 260);
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), contents(at("s")));
        QVERIFY(files::copyFile(at(path + "/file"), at(path + "/other")));
        QVERIFY(files::isWithin(at(path), at("s")));
        QVERIFY(remove(path + "/other"));
        QVERIFY(remove("t"));
        QVERIFY(remove("s"));
        QVERIFY(listing(sandbox().scratch()).isEmpty());
    }

    void deepTreesAreCopiedAndRemoved()
    {
#ifdef Q_OS_WIN
        const int length = 500; // Wine looks every folder on the way through
#else
        const int length = 1500;
#endif
        QString path = QStringLiteral("s");
        while (at(path).size() < length)
            path += QStringLiteral("/d");
        make({path + "/file"});
        QVERIFY(copy("s", "t"));
        QCOMPARE(Sandbox::readFile(at("t" + path.mid(1) + "/file")).size(), path.size() + 5);
        QVERIFY(remove("s"));
        QVERIFY(remove("t"));
        QVERIFY(listing(sandbox().scratch()).isEmpty());
    }

#ifdef Q_OS_WIN
    void namesThatWindowsTakesForOthersAreNotReachable_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("isReachable");
        QTest::newRow("plain") << "C:/a/b.c" << true;
        QTest::newRow("drive") << "C:/" << true;
        QTest::newRow("native") << "C:\\a\\b" << true;
        QTest::newRow("share") << "//server/share/a" << true;
        QTest::newRow("one blank") << "C:/a " << true;
        QTest::newRow("dot") << "C:/a." << false;
        QTest::newRow("dots") << "C:/a.." << false;
        QTest::newRow("blanks") << "C:/a  " << false;
        QTest::newRow("dot, blank") << "C:/a. " << false;
        QTest::newRow("blank, dot") << "C:/a ." << false;
        QTest::newRow("folder, dot") << "C:/a./b" << false;
        QTest::newRow("native folder, dot") << "C:\\a.\\b" << false;
    }
    void namesThatWindowsTakesForOthersAreNotReachable()
    {
        QFETCH(QString, path);
        QTEST(files::isReachable(path), "isReachable");
    }

    void whatWindowsTakesForAnotherIsNotActedOn()
    {
        make({"foo", "dir/inside"});
        writeExact(at("foo."));
        writeExact(at("foo.."));
        QVERIFY(CreateDirectoryW(wide(exact(at("dir."))), nullptr));
        const int all = listing(sandbox().scratch()).size();
        QCOMPARE(all, 5);
        QVERIFY(!files::copyFile(at("foo."), at("copy")));
        QVERIFY(!files::copyFile(at("foo"), at("copy.")));
        QVERIFY(!copy("dir.", "copy"));
        QVERIFY(!remove("foo."));
        QVERIFY(!remove("foo.."));
        QVERIFY(!remove("dir."));
        QVERIFY(!files::isFolder(at("dir.")));
        QCOMPARE(listing(sandbox().scratch()).size(), all);
        QVERIFY(isThere(at("dir/inside")));
        for (const QString& path : {at("foo."), at("foo.."), at("dir.")})
            removeExact(path);
    }

    void whatWindowsTakesForAnotherStopsACopyAndSurvivesARemoval()
    {
        make({"s/foo", "s/other", "s/more/foo"});
        writeExact(at("s/foo."));
        QVERIFY(!copy("s", "t"));
        QVERIFY(!remove("s"));
        QCOMPARE(listing(at("s")), QStringList("foo."));
        removeExact(at("s/foo."));
    }

    void readOnlyAndHiddenThingsAreRemoved()
    {
        make({"s/folder/file", "s/file"});
        for (const QString& path : {at("s/folder/file"), at("s/file"), at("s/folder"), at("s")})
            setAttributes(path, FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
        QVERIFY(remove("s/file"));
        QVERIFY(remove("s"));
        QVERIFY(!isThere(at("s")));
    }

    void whatCannotBeRemovedStaysReadOnly()
    {
        make({"s/used", "s/other"});
        HANDLE file = CreateFileW(wide(exact(at("s/used"))), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        QVERIFY(file != INVALID_HANDLE_VALUE);
        setAttributes(at("s/used"), FILE_ATTRIBUTE_READONLY);
        QVERIFY(!remove("s"));
        QCOMPARE(listing(at("s")), QStringList("used"));
        QVERIFY(attributes(at("s/used")) & FILE_ATTRIBUTE_READONLY);
        CloseHandle(file);
        QVERIFY(remove("s"));
    }

    void aShortcutIsCopiedAndRemovedAsAFile()
    {
        make({"outside/file", "s/a"});
        QVERIFY(QFile::link(at("outside"), at("s/to folder.lnk")));
        QVERIFY(QFile::link(at("outside/file"), at("s/to file.lnk")));
        QVERIFY(QFile::link(at("outside/missing"), at("s/to nothing.lnk")));
        QVERIFY(!files::isFolder(at("s/to folder.lnk")));
        QVERIFY(files::isLink(QFileInfo(at("s/to folder.lnk"))));
        QVERIFY(copy("s", "t"));
        QCOMPARE(listing(at("t")).size(), 4);
        QCOMPARE(QFileInfo(at("t/to folder.lnk")).symLinkTarget(), at("outside"));
        setAttributes(at("s/to folder.lnk"), FILE_ATTRIBUTE_READONLY);
        setAttributes(at("s/to nothing.lnk"), FILE_ATTRIBUTE_READONLY);
        QVERIFY(remove("t/to folder.lnk"));
        QVERIFY(remove("t"));
        QVERIFY(remove("s"));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"outside/", "outside/file=outside/file"}));
    }

    void aCancelledCopyAlsoRemovesWhatIsReadOnly()
    {
        makeFolder(at("s"));
        for (int i = 0; i < 500; ++i) {
            const QString path = at("s/" + QString::number(i));
            Sandbox::writeFile(path, "x");
            setAttributes(path, FILE_ATTRIBUTE_READONLY);
        }
        Progress progress;
        std::thread other([&] {
            while (progress.state().done < 3)
                QThread::yieldCurrentThread();
            progress.cancel();
        });
        const bool copied = files::copyTree(at("s"), at("t"), &progress);
        other.join();
        QVERIFY(!copied);
        QVERIFY(!isThere(at("t")));
        QCOMPARE(listing(at("s")).size(), 500);
    }
#endif

    // --- Removals

    void aFileAFolderAndNothingElseIsRemoved()
    {
        make({"file", "folder/.a/b", "folder/empty/", "folder2/a", "folde", "file2"});
        QVERIFY(remove("file"));
        QVERIFY(remove("folder"));
        QCOMPARE(contents(sandbox().scratch()),
                 QStringList({"file2=file2", "folde=folde", "folder2/", "folder2/a=folder2/a"}));
    }

    void whatIsNotThereIsNotRemoved()
    {
        make({"a"});
        QVERIFY(!remove("missing"));
        QVERIFY(!remove("missing/below"));
        QCOMPARE(listing(sandbox().scratch()), QStringList("a"));
    }

    // --- Progress

    void progressCountsEveryEntry()
    {
        make({"s/a", "s/b/c", "s/b/d/"});
        Progress progress;
        QCOMPARE(progress.state().total, 0);
        QVERIFY(files::copyTree(at("s"), at("t"), &progress));
        QCOMPARE(progress.state().total, 5);
        QCOMPARE(progress.state().done, 5);
        QVERIFY(progress.state().path.startsWith(at("s")));
        QVERIFY(files::removeTree(at("t"), &progress)); // once more from the beginning
        QCOMPARE(progress.state().total, 5);
        QCOMPARE(progress.state().done, 5);
        QVERIFY(progress.state().path.startsWith(at("t")));
        QVERIFY(files::copyTree(at("s/a"), at("t"), &progress));
        QCOMPARE(progress.state().total, 1);
        QCOMPARE(progress.state().done, 1);
        QCOMPARE(progress.state().path, at("s/a"));
    }

    void aCopyCancelledBeforeItBeginsDoesNothing()
    {
        make({"s/a"});
        Progress progress;
        progress.cancel();
        QVERIFY(progress.isCancelled());
        QVERIFY(!files::copyTree(at("s"), at("t"), &progress));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"s/", "s/a=s/a"}));
    }

    void aCancelledCopyRemovesNothingThatItDidNotWrite()
    {
        make({"s/a", "t/b"});
        Progress progress;
        progress.cancel();
        QVERIFY(!files::copyTree(at("s"), at("t"), &progress));
        QVERIFY(!files::copyTree(at("s/a"), at("t/b"), &progress));
        QCOMPARE(contents(at("t")), QStringList("b=t/b"));
    }

    void cancellingAfterTheEndChangesNothing()
    {
        make({"s/a"});
        Progress progress;
        QVERIFY(files::copyTree(at("s"), at("t"), &progress));
        progress.cancel();
        QCOMPARE(contents(at("t")), QStringList("a=s/a"));
    }

    void aRemovalIsNotCancelled()
    {
        make({"s/a"});
        Progress progress;
        progress.cancel();
        QVERIFY(files::removeTree(at("s"), &progress));
        QVERIFY(!isThere(at("s")));
    }

#ifndef Q_OS_WIN
    void dotsAndBlanksAreNamesLikeOthers()
    {
        QVERIFY(files::isReachable(QStringLiteral("/a./b  ")));
    }

    // --- Links

    void aLinkIsCopiedAsWhatItLeadsTo()
    {
        make({"file", "folder/a", "s/"});
        makeLink(at("file"), at("s/to file"));
        makeLink(QStringLiteral("../folder"), at("s/to folder"));
        QVERIFY(files::isFolder(at("s/to folder")));
        QVERIFY(!files::isFolder(at("s/to file")));
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), QStringList({"to file=file", "to folder/", "to folder/a=folder/a"}));
        QCOMPARE(contents(at("s")), QStringList({"to file@", "to folder@"}));
        QVERIFY(copy("s/to folder", "t/alone"));
        QCOMPARE(contents(at("t/alone")), QStringList("a=folder/a"));
    }

    void aLinkToNothingCannotBeCopied_data()
    {
        QTest::addColumn<QString>("goal");
        QTest::newRow("nothing") << "nowhere";
        QTest::newRow("itself") << "link";
        QTest::newRow("a loop") << "link2";
    }
    void aLinkToNothingCannotBeCopied()
    {
        QFETCH(QString, goal);
        makeFolder(at("s"));
        makeLink(goal, at("s/link"));
        makeLink(QStringLiteral("link"), at("s/link2"));
        QVERIFY(!files::copyFile(at("s/link"), at("copy")));
        QVERIFY(!copy("s/link", "copy"));
        QVERIFY(!copy("s", "t"));
        QVERIFY(!isThere(at("copy")));
        QCOMPARE(contents(at("s")), QStringList({"link2@", "link@"}));
    }

    void aCopyIsNotWrittenThroughALink()
    {
        make({"a", "s/b"});
        makeLink(at("elsewhere"), at("t"));
        QVERIFY(!files::copyFile(at("a"), at("t")));
        QVERIFY(!copy("s", "t"));
        QVERIFY(!isThere(at("elsewhere")));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"a=a", "s/", "s/b=s/b", "t@"}));
    }

    void linksThatLeadBackAreLeftOut()
    {
        make({"s/a", "s/b/c"});
        makeLink(QStringLiteral("."), at("s/itself"));
        makeLink(QStringLiteral(".."), at("s/b/up"));
        makeLink(at("s"), at("s/b/source"));
        makeLink(at("t"), at("s/b/target"));
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), QStringList({"a=s/a", "b/", "b/c=s/b/c"}));
    }

    void linksAcrossEachOtherEnd()
    {
        make({"s/a/1", "s/b/2"});
        makeLink(QStringLiteral("../b"), at("s/a/to b"));
        makeLink(QStringLiteral("../a"), at("s/b/to a"));
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), QStringList({"a/", "a/1=s/a/1", "a/to b/", "a/to b/2=s/b/2", "b/",
                                                 "b/2=s/b/2", "b/to a/", "b/to a/1=s/a/1"}));
    }

    void aLinkAboveTheSourceEnds()
    {
        make({"s/a", "other"});
        makeLink(QStringLiteral("../.."), at("s/above"));
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t/above/scratch")), QStringList("other=other"));
    }

    // It leads nowhere until the copy makes that place.
    void aLinkIntoWhatIsBeingWrittenIsLeftOut()
    {
        make({"s/a/b"});
        makeLink(at("t/a"), at("s/a/link"));
        QVERIFY(copy("s", "t"));
        QCOMPARE(contents(at("t")), QStringList({"a/", "a/b=s/a/b"}));
    }

    void whatALinkLeadsToIsNeverRemoved()
    {
        make({"folder/a", "file", "s/inner/x"});
        const QStringList links = {"s/to folder",  "s/inner/to folder", "s/to file",
                                   "s/to nothing", "s/to itself",       "to folder"};
        const QStringList goals = {"folder", "folder", "file", "missing", "s/to itself", "folder"};
        for (int i = 0; i < links.size(); ++i)
            makeLink(at(goals.at(i)), at(links.at(i)));
        makeLink(at("s"), at("s/inner/back"));
        QVERIFY(remove("to folder"));
        QVERIFY(remove("s"));
        QCOMPARE(contents(sandbox().scratch()), QStringList({"file=file", "folder/", "folder/a=folder/a"}));
    }

    void linksCountAsOne()
    {
        make({"folder/a", "folder/b", "s/"});
        makeLink(at("folder"), at("s/link"));
        Progress progress;
        QVERIFY(files::removeTree(at("s"), &progress));
        QCOMPARE(progress.state().total, 2);
        QCOMPARE(progress.state().done, 2);
    }

    // --- What is forbidden

    void anUnreadableFolderIsCopiedEmptyAndStays()
    {
        make({"s/a", "s/closed/secret", "there/"});
        QVERIFY(chmod(QFile::encodeName(at("s/closed")), 0) == 0);
        QVERIFY(chmod(QFile::encodeName(at("there")), 0777) == 0);
        QVERIFY(chmod(QFile::encodeName(at("s/a")), 0644) == 0);
        {
            const ForbiddenFolder anyOther(at("s"));
            QVERIFY(copy("s", "there/t"));
            QCOMPARE(contents(at("there/t")), QStringList({"a=s/a", "closed/"}));
            QVERIFY(!remove("s"));
        }
        QVERIFY(chmod(QFile::encodeName(at("s/closed")), 0755) == 0);
        QCOMPARE(contents(at("s")), QStringList({"a=s/a", "closed/", "closed/secret=s/closed/secret"}));
    }

    void anUnreadableFileStopsACopy()
    {
        make({"s/a", "there/"});
        QVERIFY(chmod(QFile::encodeName(at("s/a")), 0) == 0);
        QVERIFY(chmod(QFile::encodeName(at("there")), 0777) == 0);
        const ForbiddenFolder anyOther(at("s"));
        QVERIFY(!files::copyFile(at("s/a"), at("there/a")));
        QVERIFY(!copy("s", "there/t"));
        QCOMPARE(contents(at("there")), QStringList("t/"));
    }

    void nothingIsWrittenWhereThatIsForbidden()
    {
        make({"s/a", "closed/"});
        const ForbiddenFolder closed(at("closed"));
        QVERIFY(!files::copyFile(at("s/a"), at("closed/a")));
        QVERIFY(!copy("s", "closed/s"));
        QVERIFY(listing(at("closed")).isEmpty());
    }

    void aRemovalGoesOnPastWhatCannotBeRemoved()
    {
        make({"s/a", "s/b/c", "s/closed/stays", "s/z/y"});
        QVERIFY(chmod(QFile::encodeName(at("s")), 0777) == 0);
        QVERIFY(chmod(QFile::encodeName(at("s/b")), 0777) == 0);
        QVERIFY(chmod(QFile::encodeName(at("s/z")), 0777) == 0);
        QVERIFY(chmod(QFile::encodeName(at("s/closed/stays")), 0444) == 0);
        {
            const ForbiddenFolder closed(at("s/closed"));
            QVERIFY(!remove("s"));
            QVERIFY(!remove("s/closed/stays"));
        }
        QCOMPARE(contents(at("s")), QStringList({"closed/", "closed/stays=s/closed/stays"}));
        struct stat status = {};
        QVERIFY(stat(QFile::encodeName(at("s/closed/stays")), &status) == 0);
        QCOMPARE(status.st_mode & 0777, 0444U);
    }

    // Qt does not tell of them: a move must not take them for copied.
    void filesWhoseNamesAreNoTextStay()
    {
        make({"s/a"});
        const QByteArray odd = QFile::encodeName(at("s")) + "/\xff\xfe";
        const int file = open(odd, O_WRONLY | O_CREAT, 0644);
        QVERIFY(file >= 0);
        ::close(file);
        copy("s", "t");
        QVERIFY(!remove("s"));
        QVERIFY(access(odd, F_OK) == 0);
        QVERIFY(unlink(odd) == 0);
    }

    // --- A disk that fills

    void aFileThatDoesNotFitIsNotThere_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("fits");
        QTest::newRow("fits") << 60 * 1024 << true;
        QTest::newRow("just does not fit") << 64 * 1024 + 1 << false;
        QTest::newRow("the last block does not fit") << 64 * 1024 + 4096 << false;
        QTest::newRow("does not fit") << 1024 * 1024 + 17 << false;
    }
    void aFileThatDoesNotFitIsNotThere()
    {
        QFETCH(int, size);
        QFETCH(bool, fits);
        const SmallDisk disk(at("disk"));
        if (!disk.isMounted)
            QSKIP("no disk can be mounted here");
        const QByteArray content(size, 'x');
        Sandbox::writeFile(at("a"), content);
        QCOMPARE(files::copyFile(at("a"), at("disk/a")), fits);
        QCOMPARE(isThere(at("disk/a")), fits);
        if (fits)
            QVERIFY(Sandbox::readFile(at("disk/a")) == content);
        QVERIFY(Sandbox::readFile(at("a")) == content);
    }

    void aCopyThatDoesNotFitKeepsWhatFitsUnlessCancelled()
    {
        const SmallDisk disk(at("disk"));
        if (!disk.isMounted)
            QSKIP("no disk can be mounted here");
        makeFolder(at("s/folder"));
        const QByteArray content(20 * 1024, 'x');
        for (int i = 0; i < 6; ++i)
            Sandbox::writeFile(at("s/folder/" + QString::number(i)), content);
        QVERIFY(!copy("s", "disk/t"));
        const QStringList copied = listing(at("disk/t/folder"));
        QVERIFY2(copied.size() == 2 || copied.size() == 3, qPrintable(copied.join(' ')));
        for (const QString& name : copied)
            QVERIFY(Sandbox::readFile(at("disk/t/folder/" + name)) == content);
        QCOMPARE(listing(at("s/folder")).size(), 6);
    }

    // --- Meanwhile

    // A pipe stops a copy until somebody writes to it.
    void duringACopy(const std::function<void(Progress*)>& action, bool* copied)
    {
        make({"s/a", "s/b", "s/c"});
        const QString first = at("s/" + listing(at("s")).first());
        QVERIFY(QFile::remove(first));
        QVERIFY(mkfifo(QFile::encodeName(first), 0644) == 0);
        QVERIFY(listing(at("s")).last() != QFileInfo(first).fileName());
        Progress progress;
        std::thread other([&] {
            while (progress.state().path != files::entryPath(at("s"), QFileInfo(first).fileName()))
                QThread::yieldCurrentThread();
            action(&progress);
            ::close(open(QFile::encodeName(first), O_WRONLY));
        });
        *copied = files::copyTree(at("s"), at("t"), &progress);
        other.join();
    }

    void aSourceThatDisappearsInBetweenStopsTheCopy()
    {
        bool copied = true;
        duringACopy([&](Progress*) { QFile::remove(at("s/" + listing(at("s")).last())); }, &copied);
        QVERIFY(!copied);
        QCOMPARE(listing(at("t")).size(), 2);
    }

    void aCancelledCopyRemovesWhatItWroteAndNothingElse()
    {
        bool copied = true;
        duringACopy(
            [&](Progress* progress) {
                make({"t/others"});
                progress->cancel();
            },
            &copied);
        QVERIFY(!copied);
        QCOMPARE(contents(at("t")), QStringList("others=t/others"));
        QCOMPARE(listing(at("s")).size(), 3);
        QVERIFY(QFile::remove(at("t/others")));
        QVERIFY(QDir().rmdir(at("t")));
    }

    void aCancelledCopyLeavesNothing()
    {
        bool copied = true;
        duringACopy([](Progress* progress) { progress->cancel(); }, &copied);
        QVERIFY(!copied);
        QVERIFY(!isThere(at("t")));
        QCOMPARE(listing(at("s")).size(), 3);
    }
#endif
};

QTEST_GUILESS_MAIN(FileOperationsTest)
#include "tst_fileoperations.moc"
