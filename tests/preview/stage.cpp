#include "preview/stage.h"

#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "env/serverslot.h"
#include "server/twclient.h"
#include "session/busycursor.h"
#include "shell/taskfitting.h"
#include "simwin.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTranslator>

#include <cstdio>

namespace {

constexpr char password[] = "tide";
const QSize livePage(1024, 726); // pixels

QString picturePath(const QString& id)
{
    return QStringLiteral(":/icons/applications/") +
           catalogue::applicationValue(id, QStringLiteral("icon")).section(QDir::separator(), -1);
}

} // namespace

Stage::Stage(bool isLive)
    : m_isLive(isLive)
{
    simwin::reset();
    simwin::setRecording(!isLive); // a person may look for hours
    m_server.data.users.insert(QStringLiteral("*"), {QLatin1String(password), QStringLiteral("the token")});
    m_server.data.servers.insert(QStringLiteral("here"),
                                 {QStringLiteral("127.0.0.1"), QStringLiteral("windows")});
    for (const QString& id : catalogue::applicationIds()) {
        TwData::Application application;
        application.name = id;
        application.displayName = catalogue::applicationValue(id, QStringLiteral("name"));
        application.execPath = QStringLiteral("/bin/true");
        application.arguments = QStringLiteral("-");
        application.server = QStringLiteral("here");
        application.icon = Sandbox::readFile(picturePath(id));
        m_server.data.applications.insert(id, application);
        m_server.data.valid.append(id);
    }
    if (!m_server.start())
        qFatal("the stand-in server did not start");
    m_sandbox.writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                            QByteArray::number(m_server.port()) + '\n');
    if (isLive)
        std::printf("Where a password is asked for, it is \"%s\".\n", password);
    else
        m_sandbox.writeToken("[General]\nUserToken=the token\n");
}

Stage::~Stage()
{
    if (m_client)
        env::setServerClient(nullptr);
    session::showReady();
}

QSize Stage::screenSize()
{
    return QGuiApplication::primaryScreen()->size();
}

QSize Stage::pageSize() const
{
    const QSize whole = screenSize() - QSize(0, shell::taskBarHeight);
    return m_isLive ? whole.boundedTo(livePage) : whole;
}

void Stage::offer(const QStringList& displayNames)
{
    const QStringList pictures = catalogue::applicationIds();
    m_server.data.valid.clear();
    for (int i = 0; i < displayNames.size(); ++i) {
        const QString id = QStringLiteral("application%1").arg(i);
        TwData::Application application = m_server.data.applications.value(pictures.at(i % pictures.size()));
        application.displayName = displayNames.at(i);
        m_server.data.applications.insert(id, application);
        m_server.data.valid.append(id);
    }
}

void Stage::addAssociations()
{
    TwData& data = m_server.data;
    data.groups.clear();
    const QStringList names = Application::groupNames(); // the built-in ones: there is no client yet
    for (const QString& id : Application::groupIds()) {
        QStringList members;
        for (const QString& application : qAsConst(data.valid)) {
            const QString groups = catalogue::applicationValue(application, QStringLiteral("groups"));
            const QString fallback = QStringLiteral("development"); // of what the catalogue does not know
            if ((groups.isEmpty() ? fallback : groups).split(QLatin1Char(':')).contains(id))
                members.append(application);
        }
        data.groups.append({id, names.at(data.groups.size()), members});
    }
    for (const char* const name : {".odt", ".csv", ".doc", ".pdf", ".png", ".txt", ".zip"}) {
        const QString extension = QLatin1String(name);
        const QString type = Application::mimeType(QStringLiteral("x") + extension);
        data.extensions.append({extension, catalogue::preferredApplications(type)});
    }
    if (!data.valid.contains(QStringLiteral("notepad"))) // others are offered
        data.extensions[0].applications = data.valid;
    Application::setValidApplications(data.valid);
}

TWClient* Stage::connectClient()
{
    constexpr int tries = 20; // a busy machine may be late once
    for (int i = 0; i < tries; ++i) {
        m_client = std::make_unique<TWClient>();
        if (m_client->connectToServer()) {
            env::setServerClient(m_client.get());
            return m_client.get();
        }
    }
    qFatal("no connection to the stand-in server");
}

void Stage::speakSpanish()
{
    if (m_spanish)
        return;
    m_spanish = std::make_unique<QTranslator>();
    if (!m_spanish->load(QStringLiteral(TRANSLATION)))
        qFatal("no translation: %s", TRANSLATION);
    QCoreApplication::installTranslator(m_spanish.get());
}

qlonglong Stage::openWindow(const QString& title)
{
    const HWND window =
        CreateWindowExW(0, L"PREVIEW", reinterpret_cast<LPCWSTR>(title.utf16()),
                        WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 200, 100, nullptr, nullptr, nullptr, nullptr);
    return static_cast<qlonglong>(reinterpret_cast<LONG_PTR>(window));
}

QPixmap Stage::windowPicture(const QString& title)
{
    QPixmap picture(640, 400);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(0, 0, picture.width(), 32, QColor(0x12566B));
    painter.setPen(Qt::white);
    painter.drawText(QRect(12, 0, picture.width() - 24, 32), Qt::AlignVCenter, title);
    for (int line = 0; line < 12; ++line)
        painter.fillRect(24, 56 + line * 26, 592 - line * 37 % 200, 8, QColor(0xC4CCD2));
    return picture;
}

QPixmap Stage::applicationPicture(const QString& id)
{
    return QPixmap(picturePath(id));
}
