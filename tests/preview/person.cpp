#include "preview/person.h"

#include "preview/stage.h"
#include "shell/focusframe.h"

#include <QApplication>
#include <QTimer>
#include <QtTest>

namespace preview {

void hover(QWidget* widget)
{
    widget->setAttribute(Qt::WA_UnderMouse);
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &enter);
}

void press(QWidget* widget)
{
    hover(widget);
    QTest::mousePress(widget, Qt::LeftButton);
}

void focus(QWidget* widget)
{
    widget->window()->activateWindow();
    if (!QTest::qWaitForWindowActive(widget->window()))
        qFatal("the window does not become active");
    FocusFrame::giveFocus(widget);
}

void show(QWidget* page)
{
    page->show();
    if (!QTest::qWaitForWindowExposed(page))
        qFatal("the page does not show");
}

void ask(std::function<void()> question)
{
    QTimer::singleShot(0, qApp, std::move(question));
}

State rest()
{
    return {"rest", {}, {}};
}

QStringList strangeNames()
{
    return {QString(),
            QStringLiteral("Text Editor"),
            QStringLiteral("<b>Bold</b> & <i>brave</i>"),
            QStringLiteral("A name of a great many words that goes on"),
            QStringLiteral("Donaudampfschifffahrtsgesellschaft"),
            QString::fromUtf8("עורך טקסט"),
            QString::fromUtf8("Diseño gráfico"),
            QStringLiteral("One\nline feed"),
            QString(300, QLatin1Char('W'))};
}

void offerMany(Stage& stage)
{
    QStringList names;
    for (int i = 1; i <= 500; ++i)
        names.append(QStringLiteral("Application %1").arg(i));
    stage.offer(names);
}

} // namespace preview
