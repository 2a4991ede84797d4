// The file manager's operations, and the boxes that ask and tell. A box or a long copy processes events: what
// is known of the model before is looked up again after it.
#include "files/filemodel.h"
#include "files/fileoperations.h"
#include "files/filesystemwidget.h"
#include "files/longwork.h"
#include "shell/keyboard.h"
#include "shell/messagebox.h"

#include <QDir>
#include <QHeaderView>
#include <QInputDialog>
#include <QPointer>
#include <QPushButton>
#include <QTreeView>

namespace {

// Not told when it fails.
void rename(const QString& folder, const QString& name, const QString& newName)
{
    if (files::isReachable(files::entryPath(folder, name)))
        QDir(folder).rename(name, newName);
}

// The model puts what it makes last, and sorts only for another column.
void sortAnew(const QTreeView* list)
{
    const int column = list->header()->sortIndicatorSection();
    const Qt::SortOrder order = list->header()->sortIndicatorOrder();
    list->model()->sort(column == 0 ? 1 : 0, order);
    list->model()->sort(column, order);
}

} // namespace

void FileSystemWidget::copySlot()
{
    m_clipboard = QFileInfo(currentPath());
    m_cut = false;
    setEnabledButtons();
}

void FileSystemWidget::cutSlot()
{
    m_clipboard = QFileInfo(currentPath());
    m_cut = true;
    setEnabledButtons();
}

void FileSystemWidget::pasteSlot()
{
    releaseButtons();
    if (QFile::exists(files::entryPath(rootPath(), m_clipboard.fileName()))) {
        tell(tr("Cannot paste"), tr("The target you have selected currently exists."));
        return;
    }
    const QPointer<FileSystemWidget> self(this);
    const QString source = m_clipboard.absoluteFilePath();
    copyFile();
    if (!self)
        return;
    if (m_cut) {
        m_current = m_model->index(source);
        removePath(source);
        if (!self)
            return;
        m_cut = false;
    }
    m_clipboard = QFileInfo();
    m_current = QModelIndex();
    setEnabledButtons();
}

void FileSystemWidget::copyFile()
{
    const QPointer<FileSystemWidget> self(this);
    const QString root = rootPath();
    const QString source = m_clipboard.absoluteFilePath();
    const QString target = files::entryPath(root, m_clipboard.fileName());
    const bool isFolder = files::isFolder(source);
    bool copied = false;
    files::Progress progress;
    const bool intoItself = isFolder && files::isWithin(root, source);
    if (!intoItself) {
        files::run(this, {tr("Copying"), isFolder}, &progress,
                   [&] { copied = files::copyTree(source, target, &progress); });
    }
    if (!self)
        return;
    if (progress.isCancelled() && !copied) {
        m_cut = false; // the source stays
        return;
    }
    // Wanted: nothing is told of a folder that could not be copied as a whole.
    if (copied || (isFolder && !intoItself))
        return;
    m_cut = false;
    tell(tr("Cannot paste file"),
         tr("Something went wrong when pasting file. Please, contact system administrator"));
}

void FileSystemWidget::removeSlot()
{
    releaseButtons();
    const QString path = currentPath();
    if (path.isEmpty())
        return;
    const bool isFolder = files::isFolder(path);
    const QString title = isFolder ? tr("Remove folder") : tr("Remove file");
    const QString text =
        isFolder ? tr("This folder is to be removed with all its contents. This operation cannot be undone. "
                      "Are you sure you want to remove this folder?")
                 : tr("This file is to be removed. This operation cannot be undone. Are you sure you want to "
                      "remove this file?");
    const QPointer<FileSystemWidget> self(this);
    if (shell::showBox(this, QMessageBox::Warning, title, text, QMessageBox::Yes | QMessageBox::No) !=
            QMessageBox::Yes ||
        !self)
        return;
    removePath(path);
    if (!self)
        return;
    m_current = QModelIndex();
    clearSelections();
}

void FileSystemWidget::removeFile()
{
    removePath(currentPath());
}

// Never with a path that means another entry to the system, and never the model with an index that is none,
// which would mean the current folder.
void FileSystemWidget::removePath(const QString& path)
{
    if (path.isEmpty() || !files::isReachable(path))
        return;
    const QPointer<FileSystemWidget> self(this);
    if (files::isFolder(path)) {
        files::Progress progress;
        files::run(this, {tr("Removing"), false}, &progress, [&] { files::removeTree(path, &progress); });
        if (!self)
            return;
    }
    // What could not be removed stays as it is; the model would follow links.
    const QFileInfo left(path);
    if (left.isDir())
        return;
    const QModelIndex index = m_model->index(path);
    if (index.isValid())
        m_model->remove(index);
}

void FileSystemWidget::renameSlot()
{
    releaseButtons();
    const QString path = currentPath();
    if (path.isEmpty())
        return;
    const QPointer<FileSystemWidget> self(this);
    const QString root = rootPath();
    const QString name = QFileInfo(path).fileName();
    const bool isFolder = files::isFolder(path);
    const QString answer =
        askForName(tr("Rename"),
                   isFolder ? tr("Please, enter new folder name") : tr("Please, enter new file name"), name);
    if (!self || answer.isEmpty() || answer == name)
        return;
    if (QFile::exists(files::entryPath(root, answer))) {
        if (isFolder)
            tell(tr("Cannot rename folder"), tr("The folder name you have selected currently exists. Please, "
                                                "select a different folder name"));
        else
            tell(
                tr("Cannot rename file"),
                tr("The file name you have selected currently exists. Please, select a different file name"));
        return;
    }
    rename(root, name, answer);
}

void FileSystemWidget::renameFile(const QString& newName)
{
    const QString path = currentPath();
    if (!path.isEmpty())
        rename(rootPath(), QFileInfo(path).fileName(), newName);
}

void FileSystemWidget::newFolderSlot()
{
    releaseButtons();
    const QPointer<FileSystemWidget> self(this);
    const QString root = rootPath();
    const QString answer = askForName(tr("New folder"), tr("Please, enter new folder name"), QString());
    if (!self || answer.isEmpty())
        return;
    if (QFile::exists(files::entryPath(root, answer))) {
        tell(
            tr("Cannot create folder"),
            tr("The folder name you have selected currently exists. Please, select a different folder name"));
        return;
    }
    const QModelIndex folder = m_model->index(root);
    if (!folder.isValid())
        return;
    m_model->mkdir(folder, answer);
    sortAnew(m_form.listView);
}

// --- Boxes

void FileSystemWidget::tell(const QString& title, const QString& text)
{
    shell::showBox(this, QMessageBox::Critical, title, text);
}

QString FileSystemWidget::askForName(const QString& title, const QString& label, const QString& name)
{
    const QPointer<QInputDialog> dialog(new QInputDialog(this)); // this may delete it meanwhile
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setTextValue(name);
    shell::ignoreHeldKeys(dialog);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    QString answer = dialog && isAccepted ? dialog->textValue() : QString();
    delete dialog;
    return answer;
}

void FileSystemWidget::releaseButtons()
{
    for (QPushButton* const button :
         {m_form.renameButton, m_form.newFolderButton, m_form.pasteButton, m_form.removeButton})
        button->setDown(false);
}
