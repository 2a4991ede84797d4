#pragma once

#include <QList>
#include <QMap>
#include <QString>

#include <memory>

class TestWindow;

// A played-out life of windows. A script is a text file of timed events, one a line; "#" after a blank or at
// the beginning makes the rest of the line a comment:
//
//   TIME open NAME "TITLE" [hidden] [popup] [tool] [appwindow] [child=NAME] [owner=NAME]
//   TIME title NAME "TITLE"
//   TIME hide|show|minimise|restore|maximise|raise|close NAME
//   TIME style NAME +appwindow|-appwindow
//
// TIME is in milliseconds from the start and never goes back. A name may be used again after its window was
// closed. The events are carried out with Windows' own calls, on windows of this process.
class WindowScript
{
public:
    WindowScript();
    ~WindowScript();
    Q_DISABLE_COPY(WindowScript)

    // False, with line and reason in `error`, when the file is no such script.
    bool load(const QString& path, QString* error);

    // The time of the last event.
    int duration() const;
    // Carries out what happens up to `time`, that included, and has not happened yet.
    void playUntil(int time);

    // The name of a window that is open or was; empty for any other.
    QString nameOf(qlonglong window) const { return m_names.value(window); }

private:
    struct Event
    {
        int line = 0;
        int time = 0;
        QString action;
        QString name;
        QString title;
        QStringList options;
    };

    static bool parse(const QString& line, Event* event);
    void play(const Event& event);

    QList<Event> m_events;                                // that are to come
    QMap<QString, std::shared_ptr<TestWindow>> m_windows; // that are open
    QMap<qlonglong, QString> m_names;
};
