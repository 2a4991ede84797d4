#include "support/modalanswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>

ModalAnswerer::ModalAnswerer()
{
    startTimer(10);
}

void ModalAnswerer::expectBox(const QString& title, const QString& text, QMessageBox::Icon icon,
                              QMessageBox::StandardButtons buttons, QMessageBox::StandardButton press,
                              const QWidget* parent)
{
    const auto answer = [=](QWidget* widget) {
        const auto box = qobject_cast<QMessageBox*>(widget);
        const auto complain = [&](const QString& what, const QString& actual, const QString& expected) {
            if (actual != expected)
                m_problems.append(QStringLiteral("%1 is \"%2\", not \"%3\"").arg(what, actual, expected));
        };
        complain(QStringLiteral("title"), box->windowTitle(), title);
        complain(QStringLiteral("text"), box->text(), text);
        complain(QStringLiteral("icon"), QString::number(box->icon()), QString::number(icon));
        complain(QStringLiteral("buttons"), QString::number(box->standardButtons(), 16),
                 QString::number(buttons, 16));
        if (box->parentWidget() != parent)
            m_problems.append(QStringLiteral("\"%1\" has another parent").arg(text));
        if (QAbstractButton* const button = box->button(press))
            button->click();
        else
            box->reject();
    };
    m_expected.append({"QMessageBox", answer});
}

void ModalAnswerer::expectDialog(const QByteArray& className, std::function<void(QWidget*)> answer)
{
    m_expected.append({className, std::move(answer)});
}

QStringList ModalAnswerer::problems() const
{
    QStringList problems = m_problems;
    for (const Expected& expected : m_expected)
        problems.append(QStringLiteral("no %1 came").arg(QString::fromLatin1(expected.className)));
    return problems;
}

void ModalAnswerer::timerEvent(QTimerEvent*)
{
    QWidget* const modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible() || modal == m_answering || modal == m_leftAlone)
        return;
    const QByteArray className = modal->metaObject()->className();
    if (m_expected.isEmpty() || m_expected.constFirst().className != className) {
        const auto box = qobject_cast<QMessageBox*>(modal);
        m_problems.append(QStringLiteral("unexpected: %1 %2")
                              .arg(QString::fromLatin1(className), box ? box->text() : modal->windowTitle()));
        if (const auto dialog = qobject_cast<QDialog*>(modal))
            dialog->reject();
        return;
    }
    const Expected expected = m_expected.takeFirst();
    QWidget* const before = m_answering;
    m_answering = modal;
    expected.answer(modal);
    m_answering = before;
}
