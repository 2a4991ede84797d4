#pragma once

#include "shell/windowhistory.h"

#include <QList>
#include <QWidget>

class AppInstance;
class Configure;
class FileSystemWidget;
class Menu;
class QHBoxLayout;
class QPushButton;
class ThreadButton;
class ThreadWidget;

// The strip along the bottom of the screen: buttons of the built-in pages, the panel of the current task, a
// button per window of an application, and the one that ends the session. It creates and owns the built-in
// pages. What happens when a task is chosen is the controller's business. GUI thread only; creating it asks
// the server for the applications.
//
// A window is known by the low 32 bits of its handle; 0 is no window. Positions are those of the list of
// buttons, in the order in which they were added, the log-off button left out; what is no position is
// ignored.
class TabBar : public QWidget
{
    Q_OBJECT

public:
    TabBar();
    ~TabBar() override;

    // Takes the button over. One for a window is selected at once.
    void addButton(ThreadButton* button);

    // The position of the last button of a window or a page; -1 when it has none.
    int indexOfWindow(qlonglong window) const;
    int indexOfWidget(const QWidget* widget) const;
    int fixedCount() const;
    int count() const { return m_buttons.size(); }
    // Null when there is no such position.
    ThreadButton* buttonAt(int position) const;
    // The button that the task panel shows, null when there is none.
    ThreadButton* currentButton() const;
    // Its position, -1 without one.
    int currentIndex() const { return m_buttons.indexOf(currentButton()); }

signals:
    void buttonClicked(ThreadButton* button);
    void closeButtonClicked(qlonglong window);
    void killButtonClicked(qlonglong window);
    void currentChanged(int position);
    void launchApplication(AppInstance* application);
    void openFile(QString path, QString application);
    void mapWidget(QWidget* widget, bool force);
    void exitApp();

public slots:
    void showDesktop();
    // Without a position, the last one that was selected. That is not moved down with the buttons behind.
    void removeButton(int position = -1);
    void setCurrentIndex(int position);
    // Selects the last selected button again.
    void refresh();
    // Puts the bar below an area of this size, in pixels, and fits itself and the pages to it.
    void resize(QSize desktopSize);
    // Fits panel and task buttons to the screen's width; the view goes to the last tasks.
    void updateContents();
    void setCurrentThreadName(const QString& name);
    void setCurrentThreadText(const QString& text);
    void closeButtonClicked(ThreadButton* button);
    void killButtonClicked(ThreadButton* button);

private slots:
    void doMapWidget(QWidget* widget, bool force);
    void leftButtonClicked();
    void rightButtonClicked();

protected:
    // The pages close with the bar; neither does because a user says so.
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The arrow keys move from button to button, Enter presses.
    void keyPressEvent(QKeyEvent* event) override;
    // A button that goes, or cannot be used any more, leaves the focus to one that does no harm, not to the
    // next one, which may be the log-off button.
    bool focusNextPrevChild(bool next) override;

private:
    void addFixedButtons();
    void fillPages();
    void closePages();
    void select(ThreadButton* button);
    int taskCount() const;
    // Shows or hides the task at a position among the tasks; none is ignored.
    void showTask(int task, bool shown);
    void updateArrows();
    void orderButtons();
    // F6 in this window: from a page to the bar, from the bar to what is current.
    void addSwitchKey(QWidget* window);
    void takeKeyboard();
    void handKeyboardOver();
    QWidget* heir() const;

    QHBoxLayout* m_fixedLayout = nullptr;
    QHBoxLayout* m_taskLayout = nullptr; // the left arrow, the tasks, the right arrow
    QHBoxLayout* m_rightLayout = nullptr;
    ThreadWidget* m_panel = nullptr;
    QList<ThreadButton*> m_buttons;
    QPushButton* m_leftArrow = nullptr;
    QPushButton* m_rightArrow = nullptr;
    Menu* m_launcher = nullptr; // the pages have no parent; deleted by the destructor
    FileSystemWidget* m_fileManager = nullptr;
    Configure* m_configuration = nullptr;
    WindowHistory m_windowHistory;
    int m_lastIndex = -1;
    int m_scrollLimit = 0;
    int m_firstVisible = 0;
};
