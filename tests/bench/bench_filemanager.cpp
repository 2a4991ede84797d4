// The file manager in large folders, beside a bare QFileSystemModel in a bare list view: from entering the
// folder to the first painted rows, to the end of loading, and the most memory that the process took. Then in
// a folder of documents with a server that takes a millisecond for every answer, beside a bare socket that
// asks the same questions: until everything in view has its icon, and how long the event loop stood still at
// most.
//
// The measured processes are this program itself, started with "--ours", "--bare" or "--server".
#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "env/serverslot.h"
#include "files/filesystemwidget.h"
#include "resources/resources.h"
#include "server/twclient.h"

#include "bench/figures.h"
#include "bench/foldertimer.h"
#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileSystemModel>
#include <QLabel>
#include <QListView>
#include <QProcess>
#include <QTcpSocket>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr int folderSizes[] = {100, 10000, 100000};
constexpr int documents = 1000;
constexpr int patience = 300000;  // ms, for one process
constexpr int socketWait = 30000; // ms
#ifdef Q_OS_WIN
constexpr int runs = 3;
#else
constexpr int runs = 5;
#endif

// Of what an office keeps, the commonest more than once.
constexpr const char* suffixes[] = {".docx", ".pdf", ".xlsx", ".jpg", ".docx", ".pdf", ".txt",
                                    ".pptx", ".pdf", ".png",  ".odt", ".docx", ".csv", "",
                                    ".html", ".zip", ".xls",  ".doc", ".jpg",  ".none"};

void silent(QtMsgType, const QMessageLogContext&, const QString&) {}

// --- Within the measured process

int showBare(FolderTimer& application, const QString& empty, const QString& folder)
{
    QFileSystemModel model;
    QListView view;
    view.setViewMode(QListView::IconMode);
    view.setModel(&model);
    QObject::connect(&model, &QFileSystemModel::directoryLoaded, [&] { application.isLoaded(); });
    const auto enter = [&](const QString& path) { view.setRootIndex(model.setRootPath(path)); };
    enter(empty);
    return application.measure(&view, &view, false, [&] { enter(folder); });
}

int showOurs(FolderTimer& application, bool hasServer, const QString& empty, const QString& folder)
{
    initResources();
    catalogue::loadExtensionMap();
    std::unique_ptr<TWClient> client;
    if (hasServer) {
        client = std::make_unique<TWClient>();
        if (!client->connectToServer())
            return 1;
        env::setServerClient(client.get());
        Application::updateValidApplications();
    } else {
        Application::setValidApplications(catalogue::applicationIds());
    }
    FileSystemWidget manager(nullptr, true, empty);
    manager.adjustLayout();
    auto* const view = manager.findChild<QListView*>(QStringLiteral("iconView"));
    const auto* const status = manager.findChild<QLabel*>(QStringLiteral("fileInfo"));
    auto* const model = qobject_cast<QFileSystemModel*>(view->model());
    QObject::connect(model, &QFileSystemModel::directoryLoaded, [&] { // after the file manager's own
        if (status->text().startsWith(QLatin1String("Finished loading folder")))
            application.isLoaded();
    });
    const int result =
        application.measure(&manager, view, hasServer, [&] { manager.setIndex(model->index(folder)); });
    env::setServerClient(nullptr);
    return result;
}

// --- Around it

using Report = QMap<QByteArray, double>;

// What a process tells of the folder; empty when something went wrong.
Report reportOf(const char* mode, const QString& empty, const QString& folder, int rows)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(mode), empty, folder});
    Report values;
    if (!process.waitForFinished(patience) || process.exitCode() != 0)
        return values;
    for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> words = line.simplified().split(' ');
        if (words.size() == 2)
            values.insert(words[0], words[1].toDouble());
    }
    return static_cast<int>(values.value("rows")) == rows ? values : Report();
}

bool makeFolder(const QString& path, int files)
{
    bool made = QDir().mkpath(path);
    for (int i = 0; i < files && made; ++i) {
        const char* const suffix = suffixes[static_cast<size_t>(i) % std::size(suffixes)];
        QFile file(path + QStringLiteral("/document %1").arg(i) + QLatin1String(suffix));
        made = file.open(QIODevice::WriteOnly) && file.write("x", i % 2) == i % 2;
    }
    return made;
}

void add(Figures& figures, const Report& ours, const Report& bare, const char* value)
{
    figures.ours.push_back(ours.value(value));
    figures.bare.push_back(bare.value(value));
}

bool measureFolder(const QString& empty, const QString& folder, int files)
{
    if (!makeFolder(folder, files))
        return false;
    Figures first;
    Figures loaded;
    Figures peak;
    for (int run = 0; run <= runs; ++run) {
        const Report ours = reportOf("--ours", empty, folder, files);
        const Report bare = reportOf("--bare", empty, folder, files);
        if (ours.isEmpty() || bare.isEmpty())
            return false;
        if (run == 0) // the first finds nothing in memory
            continue;
        add(first, ours, bare, "first");
        add(loaded, ours, bare, "loaded");
        add(peak, ours, bare, "peak");
    }
    const QByteArray size = QByteArray::number(files) + " files, ";
    printLeast(size + "first rows, us", first);
    printLeast(size + "loaded, us", loaded);
    printLeast(size + "most memory, KiB", peak);
    QDir(folder).removeRecursively();
    return true;
}

// --- With a server

// What the built-in catalogue opens the documents with, as far as the server offers it.
void fillServer(TwServer& server)
{
    initResources();
    catalogue::loadExtensionMap();
    for (const char* const id :
         {"libreofficewriter", "libreofficecalc", "libreofficeimpress", "libreofficedraw", "okular",
          "acrobatreader", "gwenview", "krita", "kwrite", "notepad", "ark", "chrome"}) {
        const QString name = QLatin1String(id);
        TwData::Application application;
        application.name = application.displayName = name;
        application.icon = Sandbox::readFile(QStringLiteral(":/icons/applications/") +
                                             catalogue::applicationValue(name, QStringLiteral("icon")));
        server.data.applications.insert(name, application);
        server.data.valid.append(name);
    }
    for (const char* const suffix : suffixes) {
        const QString extension = QLatin1String(suffix);
        const QString type = catalogue::mimeTypeForExtension(extension);
        if (!type.isEmpty())
            server.data.extensions.append({extension, catalogue::preferredApplications(type)});
    }
    server.setFault("*", TwFault(TwFault::Late, 1));
}

// The time, in microseconds, in which a bare socket has these answers; negative when one does not come.
double askPlainly(quint16 port, const QList<QByteArray>& questions)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!socket.waitForConnected(socketWait))
        return -1;
    QElapsedTimer clock;
    clock.start();
    for (const QByteArray& question : questions) {
        socket.write(question);
        socket.waitForBytesWritten(socketWait);
        if (!socket.waitForReadyRead(socketWait))
            return -1;
        QByteArray answer = socket.readAll();
        if (!question.startsWith("_byteArray_"))
            continue;
        int size = 0;
        for (int i = 0; i < 4 && i < answer.size(); ++i)
            size = size << 8 | static_cast<unsigned char>(answer.at(i));
        while (answer.size() < size + 4 && socket.waitForReadyRead(socketWait))
            answer += socket.readAll();
    }
    return static_cast<double>(clock.nsecsElapsed()) / 1000;
}

// The questions for icons since the transcript had `before` requests.
QList<QByteArray> questionsSince(const TwServer& server, int before)
{
    QList<QByteArray> questions;
    for (const QByteArray& request : server.requests().mid(before)) {
        if (request.startsWith("get_applications?") || request.startsWith("_byteArray_get_application_icon?"))
            questions.append(request);
    }
    return questions;
}

bool measureServer(const Sandbox& sandbox, const QString& empty, const QString& folder)
{
    TwServer server;
    fillServer(server);
    if (!server.start() || !makeFolder(folder, documents))
        return false;
    sandbox.writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                          QByteArray::number(server.port()) + '\n');
    Figures icons;
    double shortestGap = 0; // ms; each the longest of its run
    double longestGap = 0;
    int inView = 0;
    int asked = 0;
    for (int run = 0; run < runs; ++run) {
        const int before = server.requests().size();
        const Report ours = reportOf("--server", empty, folder, documents);
        const QList<QByteArray> questions = questionsSince(server, before);
        const double bare = askPlainly(server.port(), questions);
        inView = static_cast<int>(ours.value("view"));
        asked = questions.size();
        if (ours.isEmpty() || bare < 0 || asked < inView)
            return false;
        icons.ours.push_back(ours.value("last"));
        icons.bare.push_back(bare);
        const double gap = ours.value("gap") / 1000;
        shortestGap = run == 0 ? gap : std::min(gap, shortestGap);
        longestGap = std::max(gap, longestGap);
    }
    printLeast(qPrintable(QStringLiteral("%1 icons, %2 answers, us").arg(inView).arg(asked)), icons);
    std::printf("meanwhile the event loop stood still for at most %.0f ms (worst of %d runs: %.0f ms)\n",
                shortestGap, runs, longestGap);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QByteArray mode = argc == 4 ? argv[1] : "";
    if (!mode.isEmpty()) {
        qInstallMessageHandler(silent);
        FolderTimer application(argc, argv);
        const QString empty = QCoreApplication::arguments().at(2);
        const QString folder = QCoreApplication::arguments().at(3);
        return mode == "--bare" ? showBare(application, empty, folder)
                                : showOurs(application, mode == "--server", empty, folder);
    }

    const QGuiApplication application(argc, argv); // has plugins for pictures
    const Sandbox sandbox;
    const QString empty = sandbox.scratch() + QStringLiteral("/empty");
    const QString folder = sandbox.scratch() + QStringLiteral("/folder");
    printLeastHeader();
    bool right = QDir().mkpath(empty);
    for (const int files : folderSizes)
        right = right && measureFolder(empty, folder, files);
    right = right && measureServer(sandbox, empty, folder);
    if (!right)
        std::fprintf(stderr, "a folder was not shown as it is\n");
    return right ? 0 : 1;
}
