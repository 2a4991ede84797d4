#pragma once

#include <QColor>
#include <QImage>
#include <QProcess>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// A visible window of a WineSession, as it was at a look. Coordinates are the screen's.
struct WineWindow
{
    QString program; // "notepad.exe"
    QString windowClass;
    QString title;
    qlonglong handle = 0; // 0: there is no such window
    QRect frame;
    QString state; // "normal", "minimised" or "maximised"
};

// A Windows of a story's own, run by Wine on a screen that nobody sees, with the product as it is shipped. It
// ends, with everything that was started in it, when this object is destroyed. GUI thread.
class WineSession
{
public:
    // `story` names the pictures; the screen is width x height pixels. In place of some of Wine's own
    // libraries there are those of standins/.
    explicit WineSession(const QString& story, int width = 1280, int height = 800);
    ~WineSession();
    Q_DISABLE_COPY(WineSession)

    // False when Wine or its screen did not start; error() says why.
    bool isRunning() const;
    QString error() const;

    // The folder of the product, of the helper programs, and of the evidence, as paths of this machine.
    static QString dist();
    static QString tools();
    static QString evidence();

    // The Windows user's home folder and its C: drive, as paths of this machine.
    QString home() const;
    QString driveC() const;

    // Starts a Windows program in `folder`; `variables` ("NAME=value") join its environment.
    void start(QProcess& process, const QString& program, const QStringList& arguments = QStringList(),
               const QString& folder = dist(), const QStringList& variables = QStringList());
    // A path of this machine as Windows sees it.
    static QString windowsPath(const QString& path) { return QStringLiteral("Z:") + path; }

    // The same as an ordinary user, with a stand-in for the system's task bar.
    void startAsUser(QProcess& process, const QString& program, const QStringList& arguments,
                     const QStringList& variables, const QString& folder = dist());
    // The shells to come speak Spanish, as the product comes: they start in its folder, where the translation
    // is. Else they start in the user's home folder, and speak English.
    void speakSpanish() { m_isSpanish = true; }
    // Starts the shell as an ordinary user or, in its own folder, as the Windows administrator, directly.
    void startShell(QProcess& process, const QStringList& arguments = QStringList(),
                    const QStringList& variables = QStringList());
    void startShellAsAdministrator(QProcess& process);
    // Ends a shell that startShell() started, without its having a say.
    void killShell(QProcess& process);
    // Ends every program of this name ("notepad.exe") likewise; false when there was none.
    bool killProgram(const QString& name);

    // What the shell told the system's task bar, "command 419" for each WM_COMMAND, and its disconnections of
    // the Windows session, "server 0, session -1, wait 0" for each; of all shells since this object was made.
    QStringList taskBarCommands() const;
    QStringList disconnections() const;

    // The password changes that the shell asked Windows for, whatever came of them; of all shells since this
    // object was made. Each is domain, user, old and new password, as standins/netapi32.cpp writes them.
    QStringList passwordChanges() const;
    // What comes of them from now on: Windows' result code, 0 at first. False when it could not be said.
    bool setPasswordResult(quint32 result);

    // Tells who waits for session events, or will soon, of one: "connect", "disconnect", "logon" or "logoff",
    // so many times at once. False when nobody waited for a minute.
    bool playSessionEvent(const QString& event, int times = 1);

    QSize screenSize() const { return m_screen; }
    // Gives the screen another size while everything runs, one of the usual (800x600, 1024x768, 1280x720,
    // 1280x1024, 1600x1200, ...) up to 1920x1200; false when it did not take it.
    bool resizeScreen(int width, int height);

    // The processor time that the programs of this Windows have used so far, Wine's own included, in
    // milliseconds. A program's time is gone when it ends.
    qint64 processorTime() const;

    // The visible windows, the foremost first; empty when they could not be listed.
    QList<WineWindow> windowList();
    // The same as "program\tclass\ttitle"; one line "failed" when they could not be listed.
    QStringList windows();

    // Waits until a window of `program` with this title is in front; `last`, when given, gets the windows of
    // the last look.
    bool waitForWindow(const QString& program, const QString& title, QStringList* last = nullptr);
    // Waits for such a window, in front or not, and returns the foremost; one with handle 0 after a minute.
    WineWindow waitForAnyWindow(const QString& program, const QString& title);
    // Does to a window what another program may do to it: "title" (with a text), "minimise", "restore",
    // "maximise", "hide", "show", "close", "quit". False when there is no such window.
    bool poke(const WineWindow& window, const QString& action, const QString& text = QString());

    // The mouse, in the screen's pixels; button 1 is the left one, 3 the right one.
    void moveTo(int x, int y);
    void click(int x, int y, int button = 1);
    void doubleClick(int x, int y);

    // Starts to watch windows come, go and move, until stopWatching() says what did: "shown", "hidden" or
    // "moved", program, handle and title, separated by tabs.
    bool startWatching(QProcess& watcher);
    QStringList stopWatching(QProcess& watcher);

    // Types on the keyboard: text, or one key by its X11 name ("Return", "Escape", "alt+F4").
    void type(const QString& text);
    void press(const QString& key);

    // What the screen shows, without the mouse cursor; screenshot() also keeps it as
    // build/e2e/STORY-NAME.png.
    QImage screen() const;
    QImage screenshot(const QString& name);
    // The picture of the mouse cursor.
    QImage cursor() const;
    // Takes pictures until one shows this colour at (x, y), for a minute at most: a window that is in front
    // need not have been painted yet. Returns the last.
    QImage screenshotWith(const QString& name, int x, int y, const QColor& colour);

private:
    void xdotool(const QStringList& arguments);
    // Runs a helper program to its end; its exit code, -1 when it did not end by itself.
    int run(const QString& helper, const QStringList& arguments, QString* output = nullptr);
    QString record(const QString& name) const { return m_records.filePath(name); }
    static QStringList readRecord(const QString& path);

    QString m_story;
    QSize m_screen;
    bool m_isSpanish = false;
    QTemporaryDir m_records;
    QProcess m_session;
    QProcessEnvironment m_environment;
};
