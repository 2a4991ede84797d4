#include "shell/menu.h"

#include "catalogue/application.h"
#include "instances/appinstance.h"
#include "server/twclient.h"
#include "shell/appbutton.h"
#include "shell/keyboard.h"
#include "shell/ownwindow.h"

#include <QDir>
#include <QGridLayout>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace {

constexpr double logoOpacity = 0.9;

} // namespace

Menu::Menu(QWidget* parent, const QString& color)
    : PixmapFrame(parent, QPixmap())
{
    setStyleSheet(QStringLiteral("background-color: #%1").arg(color));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
    createGrid();
    if (!parent)
        shell::setPageFlags(this); // before the native window, which the next line makes
    qDebug("PrincipalWidget winId: %d", static_cast<int>(winId()));
}

void Menu::fill(const QStringList& ids, TWClient* client)
{
    buildGrid();
    if (!client || client->isConnected()) {
        for (const QString& id : ids) {
            const auto application = new AppInstance(id, client); // deletes itself, see next
            connect(this, SIGNAL(destroyed()), application, SIGNAL(deleteAppInstance()));
            connect(application, SIGNAL(deleteAppInstance()), application, SLOT(deleteLater()));
            const auto button = new AppButton(application, this);
            button->setFlat(true);
            connect(button, SIGNAL(appButtonClicked(AppInstance*)), this,
                    SIGNAL(launchApplication(AppInstance*)));
            place(button);
        }
    }
    Application::setValidApplications(ids);
}

void Menu::resize(const QSize& size)
{
    setFixedSize(size);
    PixmapFrame::resize();
    buildGrid();
}

void Menu::place(QWidget* widget)
{
    m_widgets.append(widget);
    if (!putIntoGrid(widget)) {
        widget->setParent(this);
        widget->hide();
    }
}

void Menu::launchApplicationSlot(AppInstance* application)
{
    emit launchApplication(application);
}

void Menu::setLogo()
{
    const QPixmap logo(QStringLiteral(":/icons/other") + QDir::separator() + QStringLiteral("tidewell.png"));
    setOpacity(logoOpacity);
    setPixmap(logo, true, false);
}

void Menu::buildGrid()
{
    createGrid();
    m_grid->setEnabled(false); // every button that is shown would lay all cells out
    addSpacers();
    m_widgets.removeAll(nullptr);
    for (QWidget* const widget : std::as_const(m_widgets)) {
        if (!putIntoGrid(widget))
            widget->hide();
    }
    m_grid->setEnabled(true);
}

void Menu::createGrid()
{
    delete m_grid; // with its spacers; its widgets stay
    m_spacers.clear();
    m_grid = new QGridLayout(this); // at once: a layout that was changed before would ask for no layout
    m_grid->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // The cells alone share the menu's size.
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(0);
}

void Menu::addSpacers()
{
    m_size = shell::gridSize(size());
    m_spacers.reserve(m_size.cells());
    for (int index = 0; index < m_size.cells(); ++index) {
        const auto spacer = new QSpacerItem(shell::launcherCell.width(), shell::launcherCell.height(),
                                            QSizePolicy::Fixed, QSizePolicy::Fixed); // the grid's
        const shell::GridCell cell = m_size.cell(index);
        m_grid->addItem(spacer, cell.row, cell.column);
        m_spacers.append(spacer);
    }
}

bool Menu::putIntoGrid(QWidget* widget)
{
    const auto cell = shell::firstFreeCell(
        m_size, [this](const shell::GridCell& c) { return m_spacers.at(m_size.index(c)) != nullptr; });
    if (!cell)
        return false;
    QSpacerItem*& spacer = m_spacers[m_size.index(*cell)];
    m_grid->removeItem(spacer);
    delete spacer;
    spacer = nullptr;
    m_grid->addWidget(widget, cell->row, cell->column);
    widget->show();
    return true;
}

QWidget* Menu::widgetToFocus(int key) const
{
    if (m_size.cells() == 0)
        return nullptr;
    const QWidget* const current = focusWidget();
    const auto isCurrent = [current](const QPointer<QWidget>& widget) { return widget == current; };
    const auto found = std::find_if(m_widgets.begin(), m_widgets.end(), isCurrent);
    if (!current || found == m_widgets.end())
        return m_widgets.value(0);
    // As long as nothing but resizing empties cells, a widget's place in the list is its cell's.
    const int focused = static_cast<int>(found - m_widgets.begin());
    const auto next = shell::neighbour(m_size, m_size.cell(focused), key);
    return next ? m_widgets.value(m_size.index(*next)) : nullptr;
}

void Menu::keyPressEvent(QKeyEvent* event)
{
    if (shell::isArrowKey(*event)) {
        if (QWidget* const widget = widgetToFocus(event->key()))
            widget->setFocus(Qt::TabFocusReason);
    } else if (!shell::pressWithEnter(focusWidget(), *event)) {
        PixmapFrame::keyPressEvent(event);
    }
}
