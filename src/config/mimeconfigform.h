#pragma once

class QComboBox;
class QListWidget;
class QWidget;
class ToolButton;

// The association editor's widgets, laid out and named: the catalogue's applications by group on the left,
// those of an extension on the right. They belong to the widget that they are set up in, which connects them.
struct MimeConfigForm
{
    ToolButton* backButton = nullptr;
    QComboBox* groupBox = nullptr;
    QListWidget* applicationsList = nullptr;
    ToolButton* addButton = nullptr;
    QComboBox* extensionsBox = nullptr;
    QListWidget* selectedList = nullptr;
    ToolButton* upButton = nullptr;
    ToolButton* downButton = nullptr;
    ToolButton* removeButton = nullptr;
    ToolButton* acceptButton = nullptr;
    ToolButton* cancelButton = nullptr;

    void setUp(QWidget* widget);

private:
    void layOut(QWidget* widget) const;
};
