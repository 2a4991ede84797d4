#pragma once

#include <QImage>
#include <QProcess>
#include <QString>
#include <QStringList>

// A Windows of a story's own, run by Wine on a screen that nobody sees, with the product as it is shipped. It
// ends, with everything that was started in it, when this object is destroyed. GUI thread.
class WineSession
{
public:
    // `story` names the pictures; the screen is width x height pixels.
    explicit WineSession(const QString& story, int width = 1280, int height = 800);
    ~WineSession();
    Q_DISABLE_COPY(WineSession)

    // False when Wine or its screen did not start; error() says why.
    bool isRunning() const;
    QString error() const;

    // The folder of the product, and of the helper programs, as paths of this machine.
    static QString dist();
    static QString tools();

    // The Windows user's home folder and its C: drive, as paths of this machine.
    QString home() const;
    QString driveC() const;

    // Starts a Windows program in `folder`; `variables` ("NAME=value") join its environment.
    void start(QProcess& process, const QString& program, const QStringList& arguments = QStringList(),
               const QString& folder = dist(), const QStringList& variables = QStringList());
    // Starts the shell in its own folder, as an ordinary user or, as the Windows administrator, directly.
    void startShell(QProcess& process, const QStringList& arguments = QStringList(),
                    const QStringList& variables = QStringList());
    void startShellAsAdministrator(QProcess& process);
    // Ends a shell that startShell() started, without its having a say.
    void killShell(QProcess& process);

    // The visible windows, the foremost first: "program\tclass\ttitle". One line "failed" when they could
    // not be listed.
    QStringList windows();

    // Waits until a window of `program` with this title is in front; `last`, when given, gets the windows of
    // the last look.
    bool waitForWindow(const QString& program, const QString& title, QStringList* last = nullptr);

    // Types on the keyboard: text, or one key by its X11 name ("Return", "Escape", "alt+F4").
    void type(const QString& text);
    void press(const QString& key);

    // What the screen shows; also kept as build/e2e/STORY-NAME.png.
    QImage screenshot(const QString& name);

private:
    void keyboard(const QStringList& arguments);

    QString m_story;
    QProcess m_session;
    QProcessEnvironment m_environment;
};
