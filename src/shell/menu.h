#pragma once

#include "shell/launchergrid.h"
#include "shell/pixmapframe.h"

#include <QList>
#include <QPointer>
#include <QStringList>
#include <QVector>

class AppInstance;
class QGridLayout;
class QSpacerItem;
class TWClient;

// The launcher: a grid of large buttons, one per application that the user may start, with the product's mark
// behind them. The configuration panel is the same grid with other buttons. The task bar creates and owns it;
// starting an application is the controller's business. GUI thread only.
//
// The buttons are its children and keep their order: down the first column, then down the next. Those that
// find no cell are hidden until there is room. The instances behind the buttons have no parent: they delete
// themselves when the menu is gone and the event loop runs.
class Menu : public PixmapFrame
{
    Q_OBJECT

public:
    // `color` is the background's, as six hexadecimal digits without "#".
    Menu(QWidget* parent, const QString& color);

    // Adds a button for each application, in order. Without a client every application gets one; with a
    // client that is not connected, wanted, none does. The catalogue is told that these applications are the
    // valid ones. With a client this blocks.
    void fill(const QStringList& ids, TWClient* client);

    // Fixes the menu to `size` pixels and lays the buttons out again.
    void resize(const QSize& size);

    // Puts a widget, of which the menu becomes the parent, into the first free cell.
    void place(QWidget* widget);

signals:
    void launchApplication(AppInstance* application);
    // The widget is to be brought to the front; `force`: also when it is there already.
    void selectWidget(QWidget* widget, bool force = false);

public slots:
    void launchApplicationSlot(AppInstance* application);
    void setLogo();

protected:
    // Empty cells for the menu's present size. Widgets that are there already keep their order.
    void buildGrid();

    // The arrow keys move the focus to the button beside, or to the first one when none has it.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void createGrid();
    void addSpacers();
    bool putIntoGrid(QWidget* widget);
    QWidget* widgetToFocus(int key) const;

    QGridLayout* m_grid = nullptr; // a child, replaced on every resize
    shell::GridSize m_size;
    // The empty cells in the launcher's order, null where a widget is; the grid's.
    QVector<QSpacerItem*> m_spacers;
    QList<QPointer<QWidget>> m_widgets; // in order, those without a cell included
};
