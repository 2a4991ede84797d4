#pragma once

#include "config/mimeconfig.h"
#include "server/twclient.h"
#include "support/modalanswerer.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QComboBox>
#include <QListWidget>

#include <memory>

// What tests of the association editor derive from. With a server, which offers the groups "office" (a, b, c)
// and "tools" (c, d), and whatever extensions the test says; or without one, with a few valid applications of
// the catalogue's. The editor is made by the test, as it is in the panel.
class MimeConfigTest : public QuilletTest
{
    Q_OBJECT

protected:
    void startServer();
    void connectServer(); // what startServer() made

    // The server's data, before connectServer().
    TwData& data() { return m_server->data; }
    TwServer& server() { return *m_server; }
    void addApplication(const QString& id, const QString& displayName);
    // Joined with ":".
    void addExtension(const QString& extension, const char* applications);
    // The requests since the last call.
    QList<QByteArray> takeRequests();

    // Opens the editor in a panel; `path`: for one file.
    void open(const QString& path = QString());
    void close() { m_editor.reset(); }
    MimeConfig& editor() { return *m_editor; }
    QWidget* panel() { return m_panel.get(); }
    // As the controller shows it.
    void show();

    QComboBox* groups() { return child<QComboBox>("groupBox"); }
    QComboBox* extensions() { return child<QComboBox>("extensionsBox"); }
    QListWidget* applications() { return child<QListWidget>("applicationsList"); }
    QListWidget* selected() { return child<QListWidget>("selectedList"); }
    QWidget* button(const char* name) { return child<QWidget>(name); }
    void click(const char* button);
    // Chooses the entry as a user does, who finds the box at `index` when it acts.
    void choose(QComboBox* box, int index);

    static QStringList idsIn(const QListWidget* list);
    // Joined with ":".
    QString shown();
    // Up, down, remove and add, as far as they are enabled: "up down remove add".
    QString enabledButtons();
    // Chooses the application and presses Add.
    void add(const QString& id);
    void remove(const QString& id);
    void select(QListWidget* list, const QString& id);

    // The debug output without what went to the log too.
    static QStringList messages();
    void expectQuestion(QMessageBox::StandardButton answer);
    QString filePath();
    QByteArray file();

    ModalAnswerer& answers() { return *m_answers; }

protected slots:
    void init();
    void cleanup();

private:
    template <typename Widget>
    Widget* child(const char* name)
    {
        auto* const widget = m_editor->findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("no %s", name);
        return widget;
    }

    std::unique_ptr<ModalAnswerer> m_answers;
    std::unique_ptr<TwServer> m_server;
    std::unique_ptr<TWClient> m_client;
    std::unique_ptr<QWidget> m_panel;
    std::unique_ptr<MimeConfig> m_editor;
    int m_requests = 0;
};
