#include "support/mimeconfigtest.h"

#include "catalogue/application.h"
#include "env/serverslot.h"
#include "support/painting.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QComboBox>
#include <QListWidget>
#include <QtTest>

#include <algorithm>

// --- The server

void MimeConfigTest::startServer()
{
    m_server = std::make_unique<TwServer>();
    for (const char* const id : {"a", "b", "c", "d"})
        addApplication(QLatin1String(id), QLatin1String("Program ") + QLatin1String(id));
    data().groups = {{QStringLiteral("office"), QStringLiteral("Office"), {"a", "b", "c"}},
                     {QStringLiteral("tools"), QStringLiteral("Tools"), {"c", "d"}}};
}

void MimeConfigTest::addApplication(const QString& id, const QString& displayName)
{
    TwData::Application application;
    application.name = id;
    application.displayName = displayName;
    QBuffer png(&application.icon);
    plainPixmap(QSize(32, 32), Qt::red).save(&png, "PNG");
    data().applications.insert(id, application);
    data().valid.append(id);
}

void MimeConfigTest::addExtension(const QString& extension, const char* applications)
{
    data().extensions.append({extension, QString::fromUtf8(applications).split(QLatin1Char(':'))});
}

void MimeConfigTest::connectServer()
{
    QVERIFY(m_server->start());
    sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                            QByteArray::number(m_server->port()) + '\n');
    m_client = std::make_unique<TWClient>();
    constexpr int tries = 20; // a busy machine may be late once
    for (int i = 0; i < tries && !m_client->isConnected(); ++i)
        m_client->connectToServer();
    QVERIFY(m_client->isConnected());
    env::setServerClient(m_client.get());
    Application::setValidApplications(data().valid);
}

QList<QByteArray> MimeConfigTest::takeRequests()
{
    const QList<QByteArray> requests = m_server->requests().mid(m_requests);
    m_requests += requests.size();
    return requests;
}

// --- The editor

void MimeConfigTest::open(const QString& path)
{
    m_editor = std::make_unique<MimeConfig>(m_panel.get(), path);
}

void MimeConfigTest::show()
{
    m_panel->show();
    m_editor->setFixedSize(m_panel->size());
    m_editor->move(0, 0);
    m_editor->setFocus(Qt::OtherFocusReason);
    m_editor->show();
    m_editor->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_panel.get()));
}

void MimeConfigTest::click(const char* name)
{
    qobject_cast<QAbstractButton*>(button(name))->click();
}

void MimeConfigTest::choose(QComboBox* box, int index)
{
    box->setCurrentIndex(index);
    QMetaObject::invokeMethod(box, "activated", Q_ARG(int, index));
}

QStringList MimeConfigTest::idsIn(const QListWidget* list)
{
    QStringList ids;
    for (int row = 0; row < list->count(); ++row)
        ids.append(list->item(row)->data(Qt::UserRole).toString());
    return ids;
}

QString MimeConfigTest::shown()
{
    return idsIn(selected()).join(QLatin1Char(':'));
}

QString MimeConfigTest::enabledButtons()
{
    QStringList enabled;
    for (const char* const name : {"up", "down", "remove", "add"}) {
        if (button(QByteArray(name) + "Button")->isEnabled())
            enabled.append(QLatin1String(name));
    }
    return enabled.join(QLatin1Char(' '));
}

void MimeConfigTest::select(QListWidget* list, const QString& id)
{
    const int row = idsIn(list).indexOf(id);
    QVERIFY2(row >= 0, qPrintable(id));
    list->setCurrentRow(row);
}

void MimeConfigTest::add(const QString& id)
{
    select(applications(), id);
    click("addButton");
}

void MimeConfigTest::remove(const QString& id)
{
    select(selected(), id);
    click("removeButton");
}

// --- What is saved

QStringList MimeConfigTest::messages()
{
    QStringList messages = debugOutput();
    const auto isLogged = [](const QString& text) { return text.contains(QLatin1String(" - Info: ")); };
    messages.erase(std::remove_if(messages.begin(), messages.end(), isLogged), messages.end());
    return messages;
}

void MimeConfigTest::expectQuestion(QMessageBox::StandardButton answer)
{
    answers().expectBox(QStringLiteral("Modified configuration"),
                        QStringLiteral("Are you sure you want to change applications configuration?"),
                        QMessageBox::Question, QMessageBox::Save | QMessageBox::Discard, answer,
                        m_editor.get());
}

QString MimeConfigTest::filePath()
{
    return sandbox().home() + QStringLiteral("/.quillet/mime/extensions");
}

QByteArray MimeConfigTest::file()
{
    return QFile::exists(filePath()) ? Sandbox::readFile(filePath()) : QByteArray();
}

// --- Around each test

void MimeConfigTest::init()
{
    QuilletTest::init();
    m_requests = 0;
    m_answers = std::make_unique<ModalAnswerer>();
    m_panel = std::make_unique<QWidget>();
    m_panel->resize(1024, 726);
}

void MimeConfigTest::cleanup()
{
    const QStringList problems = m_answers->problems();
    m_answers.reset();
    m_editor.reset();
    m_panel.reset();
    env::setServerClient(nullptr);
    m_client.reset();
    m_server.reset();
    Application::setValidApplications({});
    QuilletTest::cleanup();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
}
