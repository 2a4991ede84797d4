#pragma once

#include <QFrame>
#include <QPointer>

class CloseButton;
class QGridLayout;
class QLabel;
class QPushButton;
class ThreadButton;

// Shows one task: its name, its text, and the buttons that end it. As the task bar's panel it shows the
// selected task and can close it; expanded, as a tile of the overview, it has a state, a picture of the
// window and a button to terminate as well.
//
// The button shown is not owned, and may be deleted at any time: nothing is emitted for it from then on.
// Names and texts are shown as they are, on one line, and never make the widget larger. Belongs to its
// parent.
class ThreadWidget : public QFrame
{
    Q_OBJECT

public:
    explicit ThreadWidget(bool expanded, QWidget* parent = nullptr);

    // Null while there is none.
    ThreadButton* threadButton() const;

signals:
    void closeButtonClicked(ThreadButton* button);
    void killButtonClicked(ThreadButton* button);
    // The picture of an expanded widget was clicked.
    void clicked(ThreadButton* button);

public slots:
    // The labels' texts are set separately. With null they stay, and so does everything else that shows.
    void setThreadButton(ThreadButton* threadButton);
    void closeButtonClickedSlot();
    // Asks first, in a modal box, in which anything may happen: this widget may be gone when it returns.
    void killButtonClickedSlot();
    void setName(const QString& threadName);
    void setText(const QString& threadText);

protected:
    void paintEvent(QPaintEvent* event) override;

private slots:
    void clicked();

private:
    CloseButton* makeCloseButton(const char* name, const char* picture, const QString& accessibleName);
    void addPanelItems();
    void addExpandedItems();
    void showSnapshot();

    QGridLayout* const m_layout;
    QLabel* const m_name;
    QLabel* const m_text;
    // Null but in an expanded widget.
    QLabel* m_status = nullptr;
    QPushButton* m_preview = nullptr;
    QLabel* m_previewLabel = nullptr;
    CloseButton* m_closeButton = nullptr;
    CloseButton* m_killButton = nullptr;
    const bool m_expanded;
    QPointer<ThreadButton> m_button;
};
