#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QStringList>

#include <functional>

// Answers the modal dialogs that come up while a test runs code that opens them, in the order in which they
// are expected. Each message box is checked (title, text, icon, buttons) before its button is pressed.
// Whatever comes up unexpected, or is not what was expected, is closed and told by problems().
class ModalAnswerer : public QObject
{
public:
    ModalAnswerer();

    // A message box with this parent; `press` must be one of its buttons.
    void expectBox(const QString& title, const QString& text, QMessageBox::Icon icon,
                   QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                   QMessageBox::StandardButton press = QMessageBox::Ok, const QWidget* parent = nullptr);

    // Any other dialog of this class; `answer` must end it, or open another one that is expected next. It is
    // called from the event loop of the dialog.
    void expectDialog(const QByteArray& className, std::function<void(QWidget*)> answer);

    // Leaves this dialog to the test, which drives it itself.
    void leaveAlone(const QWidget* dialog) { m_leftAlone = dialog; }

    // Empty when everything expected came, as expected, and nothing else did.
    QStringList problems() const;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    struct Expected
    {
        QByteArray className;
        std::function<void(QWidget*)> answer;
    };

    QList<Expected> m_expected;
    QStringList m_problems;
    const QWidget* m_leftAlone = nullptr;
    QWidget* m_answering = nullptr; // the one being answered: not to be answered twice
};
