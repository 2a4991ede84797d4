#include "session/login.h"

#include "env/identity.h"
#include "env/inifile.h"
#include "env/log.h"
#include "env/paths.h"
#include "env/serverslot.h"
#include "env/settings.h"
#include "server/refusal.h"
#include "server/twclient.h"
#include "session/initscreen.h"
#include "session/screensize.h"
#include "shell/messagebox.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcessEnvironment>

namespace session {

namespace {

constexpr char tokenKey[] = "UserToken";

// Texts belong to the controller's context.
void tell(const QString& text)
{
    shell::showBox(nullptr, QMessageBox::Information,
                   QCoreApplication::translate("Desktop", "Server connection"), text);
}

QString storedToken()
{
    const QString path = env::tokenPath();
    qDebug("Looking for token on file: %s", path.toUtf8().constData());
    return QFile::exists(path) ? env::readValue(path, QLatin1String(tokenKey)) : QString();
}

// Asks for the password until the server accepts it. False when the user gave up.
bool askForPassword(TWClient* client, const QString& user)
{
    InitScreen dialog;
    for (;;) {
        const QSize desktop = desktopSize();
        dialog.setFixedSize(desktop);
        dialog.showFullScreen();
        dialog.centrePanel(desktop);
        if (dialog.exec() != QDialog::Accepted)
            return false;
        const QString password = dialog.password();
        env::setCredentialsPassword(password);
        if (client->login(user, password))
            return true;
        tell(QCoreApplication::translate("Desktop",
                                         "The password you supplied is incorrect. Please, try again."));
    }
}

// Obtains the user's token and keeps it for the next start.
bool activateUser(TWClient* client, const QString& user)
{
    const QString token = client->sendCommand(QLatin1String("activate_user?") + user);
    if (token.isEmpty() || isRefusal(token)) {
        tell(
            QCoreApplication::translate("Desktop", "Cannot enable user. Contact your system administrator."));
        return false;
    }
    env::writeValue(env::tokenPath(), QLatin1String(tokenKey), token);
    return true;
}

} // namespace

bool logIn(const std::function<bool()>& connectToServer)
{
    const QString user = QProcessEnvironment::systemEnvironment().value(QStringLiteral("USERNAME"));
    env::readWindowManagerBehaviour();
    env::logInfo(QStringLiteral("Starting session with user '%1'").arg(user));
    env::setCredentialsUserName(user);
    qDebug("Settings file: %s", env::settingsPath().toUtf8().constData());
    if (env::serverPort() < 1)
        return true; // without a server

    const QString token = storedToken();
    if (!connectToServer()) {
        tell(QCoreApplication::translate(
            "Desktop", "Cannot connect to Tidewell Server. Contact your system administrator."));
        return false;
    }
    TWClient* const client = env::serverClient();
    if (!token.isEmpty()) {
        // Wanted: a stored token that is refused does not lead to the password dialog.
        if (!client->login(user, token)) {
            tell(QCoreApplication::translate("Desktop", "Cannot connect to Tidewell Server with current user "
                                                        "token. Contact your system administrator."));
            return false;
        }
    } else if (!askForPassword(client, user) || !activateUser(client, user)) {
        return false;
    }
    env::logInfo(client->sendCommand(QStringLiteral("start_session")));
    return true;
}

} // namespace session
