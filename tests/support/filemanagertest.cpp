#include "support/filemanagertest.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QtTest>

FileManagerTest::Opened FileManagerTest::opened(const std::function<void()>& open)
{
    Opened seen;
    QTimer timer;
    connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        ++seen.menus;
        seen.place = menu->pos();
        for (const QAction* const action : menu->actions()) {
            seen.texts.append(action->text());
            if (action->isEnabled())
                seen.enabled.append(action->text());
        }
        menu->close();
    });
    timer.start(1);
    open();
    return seen;
}

void FileManagerTest::init()
{
    QuilletTest::init();
    m_answers = std::make_unique<ModalAnswerer>();
    QDir().mkpath(folder());
    // What a removal without a name would mean.
    m_start = QDir::currentPath();
    QDir().mkpath(sandbox().scratch() + QStringLiteral("/current"));
    Sandbox::writeFile(sandbox().scratch() + QStringLiteral("/current/file"), "x");
    QDir::setCurrent(sandbox().scratch() + QStringLiteral("/current"));
    startManager(true, folder());
}

void FileManagerTest::cleanup()
{
    const QStringList problems = m_answers->problems();
    m_answers.reset();
    m_manager.reset();
    const bool isCurrentThere = QFile::exists(sandbox().scratch() + QStringLiteral("/current/file"));
    QDir::setCurrent(m_start);
    QuilletTest::cleanup();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    QVERIFY2(isCurrentThere, "the current folder was removed");
}

void FileManagerTest::startManager(bool noDriveManager, const QString& startPath)
{
    m_manager.reset();
    m_manager = std::make_unique<FileSystemWidget>(nullptr, noDriveManager, startPath);
    m_manager->resize(1024, 726);
    m_manager->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_manager.get()));
}

QString FileManagerTest::folder()
{
    return sandbox().scratch() + QStringLiteral("/folder");
}

void FileManagerTest::addFile(const QString& name, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path(name)).path());
    Sandbox::writeFile(path(name), content);
}

void FileManagerTest::addFolder(const QString& name)
{
    QVERIFY(QDir().mkpath(path(name)));
}

bool FileManagerTest::exists(const QString& name)
{
    const QFileInfo info(path(name));
    return info.exists() || info.isSymLink();
}

QFileSystemModel* FileManagerTest::model()
{
    return qobject_cast<QFileSystemModel*>(icons()->model());
}

QString FileManagerTest::rootPath()
{
    return model()->rootPath();
}

QString FileManagerTest::address()
{
    return find<QLineEdit>("addressLineEdit")->text();
}

QString FileManagerTest::status()
{
    return find<QLabel>("fileInfo")->text();
}

bool FileManagerTest::isLoaded()
{
    return QTest::qWaitFor(
        [this] { return status() == QLatin1String("Finished loading folder ") + address(); });
}

void FileManagerTest::select(const QString& name)
{
    // A row of the folder: the model gives an index for any path that is there, listed or not.
    const auto row = [this, &name] {
        const QModelIndex root = icons()->rootIndex();
        for (int i = 0; i < model()->rowCount(root); ++i) {
            const QModelIndex index = model()->index(i, 0, root);
            if (model()->filePath(index) == path(name))
                return index;
        }
        return QModelIndex();
    };
    QTRY_VERIFY(row().isValid());
    activate();
    QAbstractItemView* view = icons();
    if (list()->isVisible())
        view = list();
    QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::ClearAndSelect;
    if (list()->isVisible())
        flags |= QItemSelectionModel::Rows;
    view->selectionModel()->setCurrentIndex(row(), flags);
    view->setFocus();
}

void FileManagerTest::activate()
{
    m_manager->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_manager.get()));
}

QStringList FileManagerTest::selected()
{
    QStringList names;
    const QItemSelectionModel* const selection =
        list()->isVisible() ? list()->selectionModel() : icons()->selectionModel();
    for (const QModelIndex& index : selection->selectedIndexes()) {
        if (index.column() == 0)
            names.append(index.data().toString());
    }
    return names;
}

void FileManagerTest::enter(const QString& path)
{
    manager().setIndex(model()->index(path));
    QVERIFY(isLoaded());
}

QStringList FileManagerTest::enabled()
{
    QStringList names;
    for (const char* const name : {"upButton", "renameButton", "newFolderButton", "cutButton", "copyButton",
                                   "pasteButton", "removeButton", "listViewButton", "iconViewButton"}) {
        if (button(name)->isEnabled())
            names.append(QString::fromLatin1(name).remove(QStringLiteral("Button")));
    }
    return names;
}
