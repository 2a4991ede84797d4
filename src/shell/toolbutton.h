#pragma once

#include "shell/focusframe.h"

#include <QIcon>
#include <QPointer>
#include <QPushButton>

// A large button that shows a picture and nothing else, as the configuration panel's tools have them: lit
// under the mouse, filled when pressed, faint when disabled. Belongs to its parent.
class ToolButton : public QPushButton
{
    Q_OBJECT

public:
    // The tool tip is the accessible name too; without one, set an accessible name.
    ToolButton(const QIcon& icon, const QString& toolTip, QWidget* parent = nullptr);

    // Travels with clicked(QWidget*) and is not owned; null at first, and once it is gone.
    QWidget* widget() const { return m_widget; }
    void setWidget(QWidget* widget) { m_widget = widget; }

signals:
    void clicked(QWidget* widget);

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Enter presses once, however long it is held.
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void emitClicked();

private:
    const QIcon m_icon;
    QPointer<QWidget> m_widget;
    FocusFrame m_focusFrame{this};
};
