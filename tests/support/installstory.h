#pragma once

#include "support/winesession.h"

#include <QString>
#include <QStringList>

#include <memory>

// The packages that make-packages made: "present", or "older", an earlier version. Paths of this machine;
// empty when there is none.
namespace packages {

QString folder(const QString& version);
QString setup(const QString& version);
QString archive(const QString& version);

// The files below `path`, relative to it, sorted.
QStringList filesOf(const QString& path);

// Unpacks a package's zip into `folder`; the path of the one folder in it, empty when that is not what it
// has.
QString unpack(const QString& version, const QString& folder);

} // namespace packages

// A Windows on which a story installs, upgrades and removes packages, and looks at what they leave.
class InstallStory
{
public:
    static constexpr int patience = 120000; // ms
    // Exit codes of installer and uninstaller.
    enum Code
    {
        done = 0,
        failed = 2,
        running = 5,
        notAlone = 6,
        noRights = 7,
        noRoom = 8
    };

    static const QString winlogon; // the registry's keys
    static const QString own;
    static const QString programs;
    static const QString starter; // the shell value

    std::unique_ptr<WineSession> session;

    // Starts that Windows anew; `story` names the pictures. The test has failed where that did not work; go
    // on only after a look at that.
    void begin(const QString& story);

    QString folder() const { return session->driveC() + QStringLiteral("/Program Files/Quillet"); }
    QString settings() const
    {
        return session->driveC() + QStringLiteral("/Program Files/Tidewell Desktop/quillet.ini");
    }
    static QByteArray sample(); // the settings file to start from, as it is installed

    // Runs a command line just as it is, as `cmd` does; its exit code.
    int runLine(const QString& line);
    int install(const QString& version, const QString& switches = QString());
    // As "Programs and Features" would; the uninstaller goes on in a copy of its own, and this waits for it.
    bool remove();
    // In place, until all is done; its exit code.
    int removeInPlace();

    // A value as text; null when it is not there.
    QString registry(const QString& key, const QString& value);
    // The same with its type in front: "REG_SZ explorer.exe".
    QString typedValue(const QString& key, const QString& value);
    // False when that was refused. A null text removes the value.
    bool setValue(const QString& key, const QString& value, const QString& text,
                  const QString& type = QStringLiteral("REG_SZ"));

    bool setShell(const QString& value) { return setValue(winlogon, QStringLiteral("Shell"), value); }
    QString shellValue() { return registry(winlogon, QStringLiteral("Shell")); }

    QString shellType() { return typedValue(winlogon, QStringLiteral("Shell")); }

    // Installers' pages have no titles of their own to wait for: what is seen changes, and then rests.
    bool waitForRest();
    bool pressAndWait(const QString& key);

    // What of the product is left: files in its folder, values in the registry. Empty when it is gone.
    QStringList remains();

private:
    int run(const QString& program, const QStringList& arguments, QString* output = nullptr);
};
