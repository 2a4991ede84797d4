#pragma once

#include "support/logreader.h"
#include "support/twserver/twserver.h"
#include "support/winesession.h"

#include <QColor>
#include <QHash>
#include <QPoint>
#include <QTemporaryDir>

// A session of the shipped shell from its start to its end, with a stand-in for the central server that
// publishes applications of the story's own, with a mouse and a keyboard. What happened is kept in build/e2e/
// when this object goes, beside the pictures: STORY-server.txt (the server's transcript), STORY-log.txt,
// STORY-debug.txt (the shell's debug output) and STORY-windows.txt (the windows at each look). GUI thread.
//
// What waits does so for a minute at most, and is false when that was not enough.
class ShellStory
{
public:
    explicit ShellStory(const QString& story, int width = 1280, int height = 800);
    ~ShellStory();
    Q_DISABLE_COPY(ShellStory)

    WineSession& windows() { return m_session; }
    TwServer& server() { return m_server; }
    QProcess& shell() { return m_shell; }

    // Publishes testapp, with these options, as the application `id`, the next in the launcher. Its windows
    // are of this colour. Before the start.
    void publish(const QString& id, const QColor& colour, const QStringList& options = QStringList());
    // Publishes what a file of tests/e2e says, see TwData. Before the start; false when there is no such
    // file.
    bool publishFrom(const QString& file);
    // It has these options from now on.
    void setOptions(const QString& id, const QStringList& options) const;
    // What happened to it, see testapp.
    QStringList evidence(const QString& id) const;
    bool waitForEvidence(const QString& id, const QString& line) const;
    // Its program's name ("ledger.exe").
    static QString program(const QString& id) { return id + QStringLiteral(".exe"); }

    // Starts the shell with the server, which knows the user's token, and waits for the launcher.
    bool start();
    // The server wants the password "tide"; waits for the login dialog with this title.
    bool startWithPassword(const QString& title = QStringLiteral("Dialog"));
    bool startAlone(); // without a server; waits for the launcher
    bool waitForLauncher();

    // The log without its dates ("Info: message"), the shell's debug output, and the warnings in it.
    QStringList log() const;
    QStringList debug() const;
    QStringList warnings() const;
    // The requests about starts and ends of applications, without process ids: "start ledger".
    QStringList startsAndEnds() const;

    // Where things stand on the screen, with so many tasks in the bar. A slot is a task button's place, from
    // the left.
    QSize screen() const { return m_session.screenSize(); }
    QRect page() const;
    QRect bar() const;
    QPoint launcherButton(const QString& id) const;
    QPoint fixedButton(int index) const; // 0 launcher, 1 file manager, 2 configuration
    QPoint panelCloseButton() const;
    QPoint taskButton(int slot, int tasks) const { return taskButtonFrame(slot, tasks).center(); }
    QPoint leftArrow() const;
    QPoint rightArrow(int tasks) const;
    QPoint logOffButton() const;

    // Whether the bar comes to show the buttons of so many tasks, as many as fit, and no more.
    bool waitForTaskButtons(int count) const;
    // Whether the pixel in the middle of the page comes to have this colour.
    bool waitForColour(const QColor& colour) const;
    // The foremost window but the bar; handle 0 when there is none.
    WineWindow front();
    bool waitForFront(const QString& program, const QString& title);
    bool waitForPage(); // one of the shell's own
    // Whether the page comes to show something else than in `before`, and has painted it.
    bool waitForPageChange(const QImage& before) const;
    // Whether the cursor is, or comes to be, what it was when the launcher came; or something else.
    bool isArrow() const { return m_session.cursor() == m_arrow; }
    bool waitForArrow() const;
    bool waitForBusyCursor() const;

    void click(const QPoint& at) { m_session.click(at.x(), at.y()); }
    // Presses an application's button, with the launcher in view.
    void launch(const QString& id);
    // The same; then its window, with this title, fills the page, the bar has so many task buttons, and the
    // cursor is the arrow.
    bool launchAndWait(const QString& id, const QString& title, int tasks);
    bool showLauncher(); // by its fixed button
    // Whether what is typed comes, or begins to come, to this application.
    bool hasKeyboard(const QString& id);
    // Waits for the end of a shell that a log-off ends.
    bool waitForLogOff();

    // Takes a picture and notes the windows.
    QImage look(const QString& name);

private:
    bool startShell(int port);
    int panelEnd() const;
    QRect taskButtonFrame(int slot, int tasks) const;
    QString file(const QString& name) const { return m_folder.filePath(name); }
    QString logFile() const;
    QString record(const QString& name) const;

    const QString m_story;
    QTemporaryDir m_folder;
    QStringList m_published;
    QHash<QString, QColor> m_colours;
    QString m_looks;
    QImage m_arrow;
    TwServer m_server;
    WineSession m_session;
    QProcess m_shell;
};
