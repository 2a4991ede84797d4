#include "support/installstory.h"

#include "support/sandbox.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QtTest>

#include <utility>

namespace packages {

namespace {

QString only(const QString& version, const QString& pattern)
{
    const QStringList names = QDir(folder(version)).entryList({pattern});
    return names.size() == 1 ? folder(version) + '/' + names.first() : QString();
}

} // namespace

QString folder(const QString& version)
{
    return QStringLiteral(PACKAGES "/") + version;
}

QString setup(const QString& version)
{
    return only(version, QStringLiteral("*-setup.exe"));
}

QString archive(const QString& version)
{
    return only(version, QStringLiteral("*-windows.zip"));
}

QStringList filesOf(const QString& path)
{
    QStringList files;
    QDirIterator all(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.append(QDir(path).relativeFilePath(all.next()));
    files.sort();
    return files;
}

QString unpack(const QString& version, const QString& folder)
{
    const int code =
        QProcess::execute(QStringLiteral("python3"), {"-m", "zipfile", "-e", archive(version), folder});
    const QStringList found = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    return code == 0 && found.size() == 1 ? folder + '/' + found.first() : QString();
}

} // namespace packages

const QString InstallStory::winlogon =
    QStringLiteral("HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon");
const QString InstallStory::own = QStringLiteral("HKLM\\SOFTWARE\\Quillet");
const QString InstallStory::programs =
    QStringLiteral("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Quillet");
const QString InstallStory::starter = QStringLiteral("\"C:\\Program Files\\Quillet\\quillet-session.exe\"");

void InstallStory::begin(const QString& story)
{
    session = std::make_unique<WineSession>(story);
    QVERIFY2(session->isRunning(), qPrintable(session->error()));
}

QByteArray InstallStory::sample()
{
    return Sandbox::readFile(QStringLiteral(SAMPLE)).replace("\n", "\r\n");
}

int InstallStory::run(const QString& program, const QStringList& arguments, QString* output)
{
    QProcess process;
    session->start(process, program, arguments, session->driveC());
    if (!process.waitForFinished(patience))
        return -1;
    if (output)
        *output = QString::fromUtf8(process.readAllStandardOutput()).remove('\r');
    return process.exitCode();
}

int InstallStory::runLine(const QString& line)
{
    const QString file = session->driveC() + QStringLiteral("/line.bat");
    Sandbox::writeFile(file, "@echo off\r\n" + line.toUtf8() + "\r\nexit /b %errorlevel%\r\n");
    const int code = run(QStringLiteral("cmd"), {"/c", "C:\\line.bat"});
    QFile::remove(file);
    return code;
}

int InstallStory::install(const QString& version, const QString& switches)
{
    return runLine(
        QStringLiteral("\"%1\" /S %2").arg(WineSession::windowsPath(packages::setup(version)), switches));
}

bool InstallStory::remove()
{
    runLine(registry(programs, QStringLiteral("QuietUninstallString")));
    return QTest::qWaitFor(
               [this] {
                   return !QFile::exists(folder() + "/quillet.exe") &&
                          !QFile::exists(folder() + "/uninstall.exe");
               },
               patience) &&
           QTest::qWaitFor([this] { return registry(own, QStringLiteral("InstallFolder")).isNull(); },
                           patience);
}

int InstallStory::removeInPlace()
{
    return runLine(
        QStringLiteral("\"C:\\Program Files\\Quillet\\uninstall.exe\" /S _?=C:\\Program Files\\Quillet"));
}

QString InstallStory::typedValue(const QString& key, const QString& value)
{
    QString output;
    if (run(QStringLiteral("reg"), {"query", key, "/v", value}, &output) != 0)
        return QString();
    const QRegularExpression line(QStringLiteral("^ +%1 +(REG_\\w+) +(.*)$").arg(value),
                                  QRegularExpression::MultilineOption);
    const auto match = line.match(output);
    return match.hasMatch() ? match.captured(1) + ' ' + match.captured(2) : QString();
}

QString InstallStory::registry(const QString& key, const QString& value)
{
    const QString typed = typedValue(key, value);
    return typed.isNull() ? QString() : QStringLiteral("") + typed.section(' ', 1);
}

bool InstallStory::setValue(const QString& key, const QString& value, const QString& text,
                            const QString& type)
{
    if (text.isNull())
        return typedValue(key, value).isNull() ||
               run(QStringLiteral("reg"), {"delete", key, "/v", value, "/f"}) == 0;
    return run(QStringLiteral("reg"), {"add", key, "/v", value, "/t", type, "/d", text, "/f"}) == 0;
}

bool InstallStory::waitForRest()
{
    QImage last;
    return QTest::qWaitFor(
        [&] {
            QTest::qWait(500);
            const QImage now = session->screen();
            return std::exchange(last, now) == now;
        },
        patience);
}

bool InstallStory::pressAndWait(const QString& key)
{
    const QImage before = session->screen();
    session->press(key);
    return QTest::qWaitFor([&] { return session->screen() != before; }, patience) && waitForRest();
}

QStringList InstallStory::remains()
{
    QStringList all;
    if (QFile::exists(folder()))
        all << folder() << packages::filesOf(folder());
    const QStringList values[] = {
        {own, "Version"},  {own, "InstallFolder"},    {own, "PreviousShell"},       {own, "ShellWanted"},
        {own, "OwnShell"}, {programs, "DisplayName"}, {programs, "UninstallString"}};
    for (const QStringList& value : values) {
        if (!registry(value[0], value[1]).isNull())
            all << value.join('\\');
    }
    return all;
}
