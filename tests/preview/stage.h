#pragma once

#include "support/sandbox.h"
#include "support/twserver/twserver.h"

#include <QPixmap>
#include <QSize>
#include <QStringList>

#include <memory>

class AppInstance;
class QTranslator;
class TWClient;

// What a page of the shell stands on in a preview: a home of its own, the simulated Windows, and a stand-in
// server that offers every application of the built-in catalogue. One at a time, on the GUI thread.
class Stage
{
public:
    // `isLive`: for a person, who gets windows of a moderate size and logs in; else pages are laid out for
    // the whole screen, and the user's token is known.
    explicit Stage(bool isLive);
    ~Stage();
    Q_DISABLE_COPY(Stage)

    bool isLive() const { return m_isLive; }
    static QSize screenSize();
    // What the task bar leaves to a page.
    QSize pageSize() const;

    // The applications that the server offers.
    QStringList applications() const { return m_server.data.valid; }
    // Offers others instead: ids and display names.
    void offer(const QStringList& displayNames);
    // The built-in groups of those applications, and a few extensions that they open; before connectClient().
    void addAssociations();
    // Connects a client, which becomes the process-wide one.
    TWClient* connectClient();

    // Spanish from now on, as far as there are texts.
    void speakSpanish();

    // Opens a window of some program on the simulated Windows.
    static qlonglong openWindow(const QString& title);
    // A picture as a task's window might look.
    static QPixmap windowPicture(const QString& title);
    // The picture of an application of the catalogue.
    static QPixmap applicationPicture(const QString& id);

private:
    const bool m_isLive;
    Sandbox m_sandbox;
    TwServer m_server;
    std::unique_ptr<TWClient> m_client;
    std::unique_ptr<QTranslator> m_spanish;
};
