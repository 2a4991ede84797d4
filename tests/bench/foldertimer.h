#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <functional>

class QListView;
class WatchedStyle;

// The application of a process that shows one folder, times that, and prints a value a line: "rows" of the
// folder, how many are in "view", when the "first" rows were painted, when the folder was "loaded", when
// something was painted "last", the longest "gap" between two rounds of the event loop (all in microseconds)
// and the "peak" of its memory (KiB).
class FolderTimer : public QApplication
{
public:
    FolderTimer(int& argc, char** argv);

    // `enterFolder` lets the view, which shows an empty one, show the folder. Gaps are told only when the
    // event loop is watched, which keeps it busy. Returns when nothing is painted any more.
    int measure(QWidget* window, QListView* view, bool watchEventLoop,
                const std::function<void()>& enterFolder);
    // Call it when everything is done that follows the end of loading.
    void isLoaded();

    bool notify(QObject* receiver, QEvent* event) override;

private:
    void isPainted();
    void goOn();
    void tell() const;

    WatchedStyle* const m_style; // the application's
    QListView* m_view = nullptr;
    std::function<void()> m_enterFolder;
    bool m_watchEventLoop = false;
    QElapsedTimer m_clock; // valid once the folder was entered
    QElapsedTimer m_sinceRound;
    QTimer m_round;
    QTimer m_quiet;
    double m_first = 0; // microseconds
    double m_loaded = 0;
    double m_last = 0;
    double m_gap = 0;
};
