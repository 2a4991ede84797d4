#pragma once

#include "shell/focusframe.h"

#include <QPixmap>
#include <QPointer>
#include <QPushButton>

// A button of the task bar, with its own look: one per built-in page, one per window of an application, and
// the one that ends the session. It knows what it stands for and tells who listens; the task bar gives it its
// place and its index, and owns it. It paints a picture only: its name and text show in the task panel, and
// QAbstractButton's own text and icon stay empty. GUI thread only.
class ThreadButton : public QPushButton
{
    Q_OBJECT

public:
    enum Kind : int
    {
        FixedButton = 0, // shows a built-in page
        WindowButton = 2,
        PowerButton = 3 // ends the session; swaps its picture when pressed
    };

    // `widget` is the built-in page, null otherwise; `windowId` the native window, 0 for none; `processId`
    // that of the window's process, 0 when unknown. `further` only travels with the button: every caller
    // passes 0. The button has no parent until a layout gives it one.
    ThreadButton(QWidget* widget, int kind, const QPixmap& picture, const QString& name, const QString& text,
                 qlonglong windowId, quint32 processId, quint32 further);

    // Fills the button behind its picture; the power button never shows it. Buttons start unselected, and the
    // task bar leaves them so: it shows the selected one in the task panel.
    bool isSelected() const { return m_selected; }
    void setSelected(bool selected);

    // Null too once the page is gone.
    QWidget* widget() const { return m_widget; }
    QString name() const { return m_name; }
    // The text beside the name: a page's own, or the one that the window had when it came.
    QString taskText() const { return m_text; }
    QPixmap picture() const { return m_picture; }
    // What the overview shows of this task.
    QPixmap snapshot() const { return m_snapshot; }
    void setSnapshot(const QPixmap& snapshot) { m_snapshot = snapshot; }
    // The task bar's to give; -1 at first.
    int index() const { return m_index; }
    void setIndex(int index) { m_index = index; }
    int kind() const { return m_kind; }
    qlonglong windowId() const { return m_windowId; }
    quint32 processId() const { return m_processId; }
    quint32 further() const { return m_further; }

signals:
    void threadButtonClicked(int index); // never emitted: clicks go by window or by page
    void threadButtonClicked(qlonglong winId);
    void threadButtonClicked(QWidget* widget, bool force = false);
    void closeThreadButton(int index);

public slots:
    void closeButton();

protected:
    void paintEvent(QPaintEvent* event) override;

private slots:
    void buttonClicked();

private:
    bool m_selected = false;
    const QPointer<QWidget> m_widget;
    const QString m_name;
    const QString m_text;
    const QPixmap m_picture;
    QPixmap m_snapshot;
    int m_index = -1;
    const int m_kind;
    const qlonglong m_windowId;
    const quint32 m_processId;
    const quint32 m_further;
    FocusFrame m_focusFrame{this};
};
