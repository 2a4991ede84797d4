#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>

#include <functional>

class QGridLayout;
class ThreadButton;

// The overview: a full-screen grid with one tile per task, of which one can be selected. It also shows the
// notice that the session is being suspended.
//
// It needs three things of the task bar: the list of its buttons, how many fixed ones stand at its front, and
// what selects one. So it does not know the task bar itself. Buttons may be deleted while it is open. Its
// tiles' own signals to close and to terminate a task go nowhere from here.
//
// Made anew each time it is shown, by its opener, who owns it. GUI thread only.
class ThreadManager : public QWidget
{
    Q_OBJECT

public:
    // Skips the first `fixedButtons` of `buttons`, and any null. `select` makes the task bar select a button;
    // it is called when the overview is closed already. Without tasks the overview closes itself as soon as
    // the event loop runs.
    ThreadManager(const QList<ThreadButton*>& buttons, int fixedButtons,
                  std::function<void(ThreadButton*)> select, QWidget* parent = nullptr);

    using QWidget::update;

signals:
    void finished();

public slots:
    // Builds the grid again, without the tasks whose buttons are gone. The argument is not used.
    void update(int index);
    // Wanted: both do nothing. Ending everything at once is left to the end of the session.
    void closeAllThreads();
    void killAllThreads();
    // Shows the suspend notice, which blocks for a second; it closes itself and the overview 6 s later. Hides
    // QObject's functions of this name: write QObject::disconnect() for those.
    void disconnect();
    void exit();
    void setSelected(ThreadButton* button);

protected:
    // Escape is exit(), the arrow keys move from tile to tile.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildGrid();
    void clearGrid();
    QWidget* makeTile(ThreadButton* button);
    QWidget* tileToFocus(int key) const;

    QGridLayout* const m_layout;
    QList<QPointer<ThreadButton>> m_tasks; // the fixed buttons are not among them
    const std::function<void(ThreadButton*)> m_select;
    int m_columns = 0; // and rows
};
