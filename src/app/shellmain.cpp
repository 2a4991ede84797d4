#include "app/shellmain.h"

#include "catalogue/cataloguefiles.h"
#include "env/log.h"
#include "resources/resources.h"
#include "session/desktop.h"
#include "shell/appbutton.h"

#include <QApplication>
#include <QStyle>
#include <QStyleFactory>
#include <QTranslator>

#include <memory>

namespace app {

namespace {

void installPreferredStyle()
{
    if (QStyle* style = QStyleFactory::create(QStringLiteral("plastique"))) {
        qDebug("Oxygen loaded!"); // wanted as it is, whatever the style is called
        QApplication::setStyle(style);
    }
}

// The file is looked for in the current directory, which the session's start-up sets to the program's. A
// translation that loaded is never removed.
void installTranslation()
{
    auto translator = std::make_unique<QTranslator>();
    if (translator->load(QStringLiteral("quillet_es")))
        QCoreApplication::installTranslator(translator.release());
}

// Never deleted: the controller ends with the process.
void createController()
{
    new Desktop;
}

} // namespace

int shellMain()
{
    static int argumentCount = 0; // Qt keeps a reference to it
    constexpr int flagsOfQt560 = 0x050600;
    QApplication application(argumentCount, nullptr, flagsOfQt560);
    initResources();
    QApplication::setQuitOnLastWindowClosed(false); // only the end of the session ends the shell
    // Else pages that do not close would keep Windows from logging the user off.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    installPreferredStyle();
    AppButton::installFontFallbacks();
    catalogue::loadExtensionMap();
    installTranslation();
    env::logInfo(QStringLiteral("Calling manager"));
    createController();
    return QApplication::exec();
}

} // namespace app
