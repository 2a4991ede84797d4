#pragma once

#include "shell/menu.h"

class AppButton;
class ConfigurationDialog;

// The configuration panel, a page of the shell: the launcher's grid with a button for each configuration
// tool. A tool is a child of the panel and covers it while it is in view; bringing it there is the
// controller's business, and it hides itself. Tools live as long as the panel and keep their state between
// showings. The task bar creates and owns the panel. GUI thread only.
class Configure : public Menu
{
    Q_OBJECT

public:
    using Menu::Menu;

    // Creates the tools, hidden, and their buttons. To be called once, when the panel has a size.
    void setUp();

public slots:
    // Brings a tool's widget to the front, also when it is there already.
    void launchConfigurationApplication(QWidget* widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The keyboard goes to the tool in view; what it covers gets no focus, and no key that the tool leaves.
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    // The tool in view keeps covering the panel.
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Tool
    {
        QWidget* widget;   // a child
        AppButton* button; // a child
    };

    void addTool(ConfigurationDialog* tool);
    // The one that covers the others; null when none is shown.
    QWidget* toolInView() const;
    void letButtonsHaveFocus();
    void giveKey(QObject* tool, QEvent* key);
    void giveFocusBack(const Tool& tool);

    QVector<Tool> m_tools;
    bool m_toolHasKey = false; // a key press is with a tool, or with a box that it opened
};
