// The built-in pages, from their making to their end, and their buttons in the task bar.
#include "catalogue/application.h"
#include "config/configure.h"
#include "env/serverslot.h"
#include "files/filesystemwidget.h"
#include "shell/menu.h"
#include "shell/ownwindow.h"
#include "shell/tabbar.h"
#include "shell/threadbutton.h"

#include <QCloseEvent>

namespace {

constexpr char pageColor[] = "e6eaed";

} // namespace

TabBar::~TabBar()
{
    closePages();
    delete m_launcher;
    delete m_fileManager;
    delete m_configuration;
}

void TabBar::closePages()
{
    m_launcher->close();
    m_fileManager->close(); // its own: releases the client's drives
    m_configuration->close();
}

void TabBar::addFixedButtons()
{
    const auto add = [this](QWidget* page, int kind, const char* picture, const QString& text,
                            qlonglong window) {
        auto* const button =
            new ThreadButton(page, kind, QPixmap(QLatin1String(":/icons/32x32/") + QLatin1String(picture)),
                             tr("Tidewell"), text, window, 0, 0);
        addButton(button);
        if (page)
            page->setAccessibleName(text);
        return button;
    };
    const auto prepare = [this](QWidget* page) {
        shell::setPageFlags(page);
        page->setWindowTitle(QLatin1String(shell::ownWindowTitle));
        page->installEventFilter(this);
        addSwitchKey(page);
    };

    m_launcher = new Menu(nullptr, QLatin1String(pageColor));
    prepare(m_launcher);
    connect(m_launcher, SIGNAL(launchApplication(AppInstance*)), this,
            SIGNAL(launchApplication(AppInstance*)));
    add(m_launcher, ThreadButton::FixedButton, "logo.png", tr("Desktop"), 0);

    m_fileManager = new FileSystemWidget(nullptr, false, QString());
    prepare(m_fileManager);
    connect(m_fileManager, SIGNAL(openFile(QString, QString)), this, SIGNAL(openFile(QString, QString)));
    add(m_fileManager, ThreadButton::FixedButton, "folder-docs.png", tr("Places"),
        static_cast<qlonglong>(m_fileManager->winId()));

    m_configuration = new Configure(nullptr, QLatin1String(pageColor));
    prepare(m_configuration);
    connect(m_configuration, SIGNAL(selectWidget(QWidget*, bool)), this, SIGNAL(mapWidget(QWidget*, bool)));
    add(m_configuration, ThreadButton::FixedButton, "config.png", tr("Configuration"), 0);

    ThreadButton* const logOff = add(nullptr, ThreadButton::PowerButton, "logoff.png", QString(), 0);
    logOff->setAccessibleDescription(tr("Log off"));
    connect(logOff, SIGNAL(clicked()), this, SIGNAL(exitApp()));
}

void TabBar::fillPages()
{
    Application::updateValidApplications();
    m_launcher->fill(Application::validApplications(), env::serverClient());
    m_launcher->setLogo();
    m_fileManager->adjustLayout();
    m_configuration->setFixedSize(m_launcher->size());
    m_configuration->setUp();
}

void TabBar::closeEvent(QCloseEvent* event)
{
    if (event->spontaneous()) {
        event->ignore();
        return;
    }
    closePages();
    QWidget::closeEvent(event);
}

bool TabBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Close && event->spontaneous()) {
        event->ignore();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
