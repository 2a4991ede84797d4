#include "preview/toolpages.h"

#include "config/configure.h"
#include "config/mimeconfig.h"
#include "preview/person.h"
#include "preview/stage.h"
#include "session/userconfig.h"
#include "shell/plainbutton.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

using namespace preview;

namespace {

Scene openConfiguration(Stage& stage)
{
    stage.connectClient();
    const auto page = std::make_shared<Configure>(nullptr, QLatin1String(pageColor));
    page->resize(stage.pageSize());
    page->setUp();
    show(page.get());
    return {page.get(), page};
}

// One of its tools, in place, as the controller shows it.
template <typename Tool>
Scene openTool(Stage& stage)
{
    Scene scene = openConfiguration(stage);
    Tool* const tool = nth<Tool>(scene, 0);
    tool->setFixedSize(stage.pageSize());
    tool->move(0, 0);
    tool->setFocus(Qt::OtherFocusReason);
    tool->show();
    tool->raise();
    return scene;
}

void typePasswords(const Scene& s, const char* newPassword, const char* repeated)
{
    UserConfig* const dialog = nth<UserConfig>(s, 0);
    const auto fields = dialog->findChildren<QLineEdit*>();
    QTest::keyClicks(fields.at(1), QStringLiteral("tide"));
    QTest::keyClicks(fields.at(2), QLatin1String(newPassword));
    QTest::keyClicks(fields.at(3), QLatin1String(repeated));
}

Scene openAssociations(Stage& stage)
{
    stage.addAssociations();
    return openTool<MimeConfig>(stage);
}

// The n-th entry of one of its boxes, as a user chooses it.
void choose(const Scene& scene, const char* name, int index)
{
    auto* const box = scene.page->findChild<QComboBox*>(QLatin1String(name));
    box->setCurrentIndex(index);
    QMetaObject::invokeMethod(box, "activated", Q_ARG(int, index));
}

QListWidget* listOf(const Scene& scene, const char* name)
{
    return scene.page->findChild<QListWidget*>(QLatin1String(name));
}

void changeAssociations(const Scene& scene)
{
    choose(scene, "groupBox", 5); // Office
    choose(scene, "extensionsBox", 2);
    listOf(scene, "applicationsList")->setCurrentRow(1);
    scene.page->findChild<QPushButton*>(QStringLiteral("addButton"))->click();
    listOf(scene, "selectedList")->setCurrentRow(2);
    scene.page->findChild<QPushButton*>(QStringLiteral("upButton"))->click();
}

const QByteArray longPassword(500, 'w');

} // namespace

QList<Page> toolPages()
{
    return {
        {"configuration", "the configuration panel", openConfiguration, {rest()}},
        {"password",
         "the password dialog",
         openTool<UserConfig>,
         {rest(),
          {"filled", [](const Scene& s) { typePasswords(s, "spring tide", "spring tide"); }, {}},
          {"long", [](const Scene& s) { typePasswords(s, longPassword.constData(), ""); }, {}},
          {"focused", [](const Scene& s) { focus(nth<PlainButton>(s, 1)); }, {}}}},
        {"password-refusal",
         "what the password dialog says of two passwords that differ",
         [](Stage& stage) {
             Scene scene = openTool<UserConfig>(stage);
             typePasswords(scene, "spring tide", "neap tide");
             ask([dialog = QPointer<UserConfig>(nth<UserConfig>(scene, 0))] {
                 if (dialog)
                     dialog->accept();
             });
             scene.page = nullptr;
             return scene;
         },
         {rest()}},
        {"associations",
         "the association editor",
         openAssociations,
         {rest(),
          {"chosen",
           [](const Scene& s) {
               choose(s, "groupBox", 5);
               listOf(s, "applicationsList")->setCurrentRow(1);
           },
           {}},
          {"changed", changeAssociations, {}},
          {"focused",
           [](const Scene& s) {
               changeAssociations(s);
               focus(s.page->findChild<QWidget*>(QStringLiteral("upButton")));
           },
           {}},
          {"empty-group", [](const Scene& s) { choose(s, "groupBox", 1); }, {}},
          {"strange-names", [](const Scene& s) { listOf(s, "selectedList")->setCurrentRow(8); },
           [](Stage& stage) { stage.offer(strangeNames()); }},
          {"five-hundred", {}, offerMany}}},
        {"associations-question",
         "the question before associations are saved",
         [](Stage& stage) {
             Scene scene = openAssociations(stage);
             changeAssociations(scene);
             ask([page = QPointer<QWidget>(scene.page)] {
                 if (page)
                     page->findChild<QPushButton*>(QStringLiteral("acceptButton"))->click();
             });
             scene.page = nullptr;
             return scene;
         },
         {rest()}},
    };
}
