// Lookups in the built-in catalogue, beside the opens, reads and looks at folders that they cannot do
// without; the start of a program beside a bare QProcess.
#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "catalogue/launchcommand.h"
#include "env/serverslot.h"
#include "instances/appinstance.h"
#include "resources/resources.h"

#include "bench/figures.h"
#include "support/sandbox.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>

#include <cstdio>

namespace {

void silent(QtMsgType, const QMessageLogContext&, const QString&) {}

QString value(const QString& path, const QString& key)
{
    return QSettings(path, QSettings::IniFormat).value(key).toString();
}

// What every attribute costs: a look whether the file is there, and its reading; both files' when the first
// has nothing.
QString attribute(const QString& id, const char* key)
{
    const QString name = id + QLatin1Char('/') + QLatin1String(key);
    QFile::exists(catalogue::applicationsPath());
    const QString found = value(catalogue::applicationsPath(), name);
    return found.isEmpty() ? value(catalogue::userApplicationsPath(), name) : found;
}

QByteArray bareLine(const QString& path)
{
    if (QFileInfo(path).isSymLink())
        return QByteArray();
    QFile file(catalogue::extensionsPath());
    file.open(QIODevice::ReadOnly);
    while (!file.atEnd()) {
        QByteArray line = file.readLine();
        if (line.startsWith(".pdf"))
            return line;
    }
    return QByteArray();
}

int bareValidApplications()
{
    int found = 0;
    const QStringList ids = QSettings(catalogue::applicationsPath(), QSettings::IniFormat).childGroups();
    for (const QString& id : ids) {
        const QString command = attribute(id, "command");
        attribute(id, "server");
        attribute(id, "os");
        attribute(id, "protocol");
        if (command.contains(QDir::separator())) {
            found += QFileInfo::exists(catalogue::expandEnvironment(command)) ? 1 : 0;
            continue;
        }
        for (const QString& folder : QString::fromLocal8Bit(qgetenv("PATH")).split(QLatin1Char(';')))
            found += QFileInfo::exists(folder + QDir::separator() + command) ? 1 : 0;
    }
    return found;
}

int bareApplicationsFor()
{
    int pictures = 0;
    for (const QString& id :
         value(catalogue::typesPath(), QStringLiteral("text/plain")).split(QLatin1Char(':'))) {
        const QString icon = value(catalogue::applicationsPath(), id + QStringLiteral("/icon"));
        pictures += QIcon(QStringLiteral(":/icons/applications/") + icon).availableSizes().size();
    }
    return pictures;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    initResources();
    Sandbox sandbox;
    qInstallMessageHandler(silent);
    catalogue::loadExtensionMap();
    sandbox.writeUserApplications("[mine]\ncommand=mine.exe\n");
    const QString program = sandbox.scratch() + QStringLiteral("/probe.exe");
    if (!QFile::copy(QStringLiteral(PROBE), program))
        return 1;

    bool right = true; // an answer that is wrong is no figure

    printHeader();
    const QFileInfo file(sandbox.scratch() + QStringLiteral("/a.pdf"));
    Sandbox::writeFile(file.filePath(), "x");
    printLine("mimeTypeForFile, .pdf", measure(
                                           2000,
                                           [&] {
                                               right &=
                                                   catalogue::mimeTypeForFile(QFileInfo(file.filePath())) ==
                                                   QLatin1String("application/pdf");
                                           },
                                           [&] { right &= !bareLine(file.filePath()).isEmpty(); }));
    printLine("applicationValue, built-in",
              measure(
                  5000,
                  [&] {
                      right &= !catalogue::applicationValue(QStringLiteral("calculator"),
                                                            QStringLiteral("command"))
                                    .isEmpty();
                  },
                  [&] { right &= !attribute(QStringLiteral("calculator"), "command").isEmpty(); }));
    printLine(
        "applicationValue, the user's",
        measure(
            2000,
            [&] {
                right &=
                    !catalogue::applicationValue(QStringLiteral("mine"), QStringLiteral("command")).isEmpty();
            },
            [&] { right &= !attribute(QStringLiteral("mine"), "command").isEmpty(); }));

    QStringList folders;
    for (int i = 0; i < 40; ++i) {
        folders.append(QDir::toNativeSeparators(sandbox.scratch() + QStringLiteral("/folder %1").arg(i)));
        QDir().mkpath(folders.last());
    }
    sandbox.setVariable("PATH", folders.join(QLatin1Char(';')).toLocal8Bit());
    printLine("updateValidApplications, 40 folders",
              measure(
                  100, [] { Application::updateValidApplications(); }, [] { bareValidApplications(); }));

    Application::setValidApplications({QStringLiteral("kwrite"), QStringLiteral("notepad")});
    printLine("applicationsFor, .txt, 2 applications",
              measure(
                  2000,
                  [&] {
                      const auto list = Application::applicationsFor(QStringLiteral(".txt"));
                      right &= list.size() == 2;
                      qDeleteAll(list);
                  },
                  [&] { right &= bareApplicationsFor() == 2; }));

    sandbox.writeUserApplications("[mine]\nos=windows\ncommand=" + program.toUtf8() + '\n');
    AppInstance instance(QStringLiteral("mine"), nullptr);
    printLine("start of a program",
              measure(
                  100,
                  [&] {
                      right &= instance.launch(QSize(), 0)->state() == QProcess::Running;
                      QCoreApplication::processEvents();
                  },
                  [&] {
                      QProcess* const process = new QProcess;
                      QObject::connect(process, SIGNAL(finished(int, QProcess::ExitStatus)), process,
                                       SLOT(deleteLater()));
                      process->start(program, QStringList());
                      right &= process->waitForStarted();
                      QCoreApplication::processEvents();
                  }));
    if (!right) {
        std::fprintf(stderr, "an answer was wrong\n");
        return 1;
    }
    return 0;
}
