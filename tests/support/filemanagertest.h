#pragma once

#include "files/filesystemwidget.h"
#include "support/modalanswerer.h"
#include "support/quillettest.h"

#include <QIcon>
#include <QImage>
#include <QListView>
#include <QPushButton>
#include <QTreeView>
#include <QtTest>

#include <functional>
#include <memory>

class QFileSystemModel;

// What tests of the file manager derive from: each test function gets one, without client drives, that shows
// a folder of its own.
class FileManagerTest : public QuilletTest
{
    Q_OBJECT

protected:
    FileSystemWidget& manager() { return *m_manager; }
    ModalAnswerer& answers() { return *m_answers; }
    // Closes the present one.
    void startManager(bool noDriveManager, const QString& startPath);
    void endManager() { m_manager.reset(); }

    // The folder that is shown at first, and entries in it, as paths with "/".
    QString folder();
    QString path(const QString& name) { return folder() + QLatin1Char('/') + name; }
    // Creates what a test needs in it; names may have folders before them.
    void addFile(const QString& name, const QByteArray& content = "content");
    void addFolder(const QString& name);
    bool exists(const QString& name);
    QByteArray contentOf(const QString& name) { return Sandbox::readFile(path(name)); }

    // Widgets of the form, by name.
    template <typename Widget>
    Widget* find(const char* name)
    {
        return m_manager->findChild<Widget*>(QLatin1String(name));
    }
    QPushButton* button(const char* name) { return find<QPushButton>(name); }
    void press(const char* name) { QTest::mousePress(button(name), Qt::LeftButton); }
    QListView* icons() { return find<QListView>("iconView"); }
    QTreeView* list() { return find<QTreeView>("listView"); }
    QFileSystemModel* model();
    QString rootPath();
    QString address();
    QString status();

    // Waits until the folder has been read.
    bool isLoaded();
    // Waits until the entry is there, then selects it in the view in sight.
    void select(const QString& name);
    QStringList selected();
    // Takes the keyboard back from a box that was closed.
    void activate();
    // Enters a folder by its path.
    void enter(const QString& path);

    // The names of the buttons that are enabled, in the order of the tool row.
    QStringList enabled();

    // A menu that opens is looked at, and closed.
    struct Opened
    {
        int menus = 0;
        QStringList texts;
        QStringList enabled;
        QPoint place;
    };
    static Opened opened(const std::function<void()>& open);

    static QImage image(const QIcon& icon, int size) { return icon.pixmap(size, size).toImage(); }

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<FileSystemWidget> m_manager;
    QString m_start; // the current folder before
};
