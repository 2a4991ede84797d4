#pragma once

#include "shell/focusframe.h"

#include <QIcon>
#include <QPushButton>

class AppInstance;
class QPainter;

// A button of the launcher: a large picture and a label of one or two lines. It stands for an application,
// or, in the configuration panel, for a tool's widget; neither is owned, and both outlive the button. Its
// menu owns it and chooses its place. GUI thread only.
//
// All of it is painted here; of the style's own button nothing is seen.
class AppButton : public QPushButton
{
    Q_OBJECT

public:
    // Labelled with the application's display name, or else its id.
    AppButton(AppInstance* application, QWidget* parent);
    // `text` is shown as it is, with its line break.
    AppButton(const QIcon& icon, const QString& text, QWidget* widget, QWidget* parent);

    // Labels are written in Helvetica, which Windows does not bring: from now on Arial stands in for it where
    // it is missing, or Liberation Sans. Their letters have the same widths.
    static void installFontFallbacks();

signals:
    // The button was pressed and released; one of the two, by what it stands for.
    void appButtonClicked(AppInstance* application);
    void appButtonClicked(QWidget* widget);

public slots:
    void buttonClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    // While the button shows the wait cursor, neither hovering nor pressing changes its look.
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    // Enter presses, as the space bar does. The arrow keys are left to the menu, which knows the grid.
    void keyPressEvent(QKeyEvent* event) override;

private:
    AppButton(AppInstance* application, const QIcon& icon, const QString& text, QWidget* widget,
              QWidget* parent);
    void paintIcon(QPainter& painter) const;
    void paintLabel(QPainter& painter) const;
    bool isWaiting() const;
    void refresh();

    AppInstance* const m_application; // null for a tool
    QWidget* const m_widget;          // null for an application
    const QString m_text;
    int m_pressedOffset = 0; // pixels by which each side of the icon moves inwards
    bool m_hovered = false;
    FocusFrame m_focusFrame{this};
};
