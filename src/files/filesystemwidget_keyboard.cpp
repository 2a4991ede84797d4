// The file manager's keys, and where the keyboard goes on.
#include "files/filemodel.h"
#include "files/filesystemwidget.h"

#include <QFocusEvent>
#include <QListView>
#include <QPushButton>
#include <QShortcut>
#include <QTreeView>

// A key does what its button does, and nothing while that is disabled.
void FileSystemWidget::setUpShortcuts()
{
    const auto add = [this](QWidget* owner, const QKeySequence& key, QPushButton* button, const char* slot) {
        auto* const shortcut =
            new QShortcut(key, owner, nullptr, nullptr, Qt::WidgetWithChildrenShortcut); // the owner's
        connect(shortcut, &QShortcut::activated, this, [this, button, slot] {
            if (button->isEnabled())
                QMetaObject::invokeMethod(this, slot);
        });
    };
    const FileSystemForm& f = m_form;
    add(this, QKeySequence(Qt::Key_Backspace), f.upButton, "upButtonPressed");
    add(this, QKeySequence(Qt::ALT + Qt::Key_Up), f.upButton, "upButtonPressed");
    add(this, QKeySequence(Qt::Key_F2), f.renameButton, "renameSlot");
    add(this, QKeySequence(Qt::CTRL + Qt::SHIFT + Qt::Key_N), f.newFolderButton, "newFolderSlot");
    add(this, QKeySequence(QKeySequence::Cut), f.cutButton, "cutSlot");
    add(this, QKeySequence(QKeySequence::Copy), f.copyButton, "copySlot");
    add(this, QKeySequence(QKeySequence::Paste), f.pasteButton, "pasteSlot");
    add(this, QKeySequence(QKeySequence::Delete), f.removeButton, "removeSlot");
    const auto onReturn = [this](QWidget* view, const auto& open) {
        for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
            auto* const shortcut =
                new QShortcut(QKeySequence(key), view, nullptr, nullptr, Qt::WidgetShortcut); // the view's
            connect(shortcut, &QShortcut::activated, this, open);
        }
    };
    for (QWidget* const view : {static_cast<QWidget*>(f.listView), static_cast<QWidget*>(f.iconView)})
        onReturn(view, [this] { doubleClicked(m_current); });
    onReturn(f.placesView, [this] { placesDoubleClicked(m_form.placesView->currentIndex()); });
}

// Not earlier: window flags, which a page gets once it is made, forget who has the keyboard.
void FileSystemWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!focusWidget())
        viewInSight()->setFocus();
}

void FileSystemWidget::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    viewInSight()->setFocus(event->reason());
}

// The keyboard goes on beside what was removed or renamed, and nothing is selected in its place.
void FileSystemWidget::leaveRows(const QModelIndex& parent, int first, int last)
{
    for (const QAbstractItemView* const view : {static_cast<const QAbstractItemView*>(m_form.listView),
                                                static_cast<const QAbstractItemView*>(m_form.iconView)}) {
        const QModelIndex current = view->currentIndex();
        if (!current.isValid() || current.parent() != parent || current.row() < first || current.row() > last)
            continue;
        const int neighbour = last + 1 < m_model->rowCount(parent) ? last + 1 : first - 1;
        view->selectionModel()->setCurrentIndex(m_model->index(neighbour, 0, parent),
                                                QItemSelectionModel::NoUpdate);
    }
}

// A button that goes leaves the keyboard to the folder.
void FileSystemWidget::enable(QPushButton* button, bool on)
{
    if (!on && window()->focusWidget() == button) // a box may have it right now
        viewInSight()->setFocus();
    button->setEnabled(on);
}
