#include "shell/messagebox.h"

#include "shell/keyboard.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPointer>

namespace shell {

namespace {

class Box : public QMessageBox
{
public:
    using QMessageBox::QMessageBox;

    void watchButtons()
    {
        for (QAbstractButton* const button : buttons())
            button->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && isHeldEnter(*static_cast<QKeyEvent*>(event)))
            return true;
        return QMessageBox::eventFilter(watched, event);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (!isHeldEnter(*event))
            QMessageBox::keyPressEvent(event);
    }
};

} // namespace

QMessageBox::StandardButton showBox(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                    const QString& text, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton preset)
{
    const QPointer<Box> box(new Box(icon, title, text, buttons, parent)); // the parent may delete it
    box->setDefaultButton(preset);
    box->watchButtons();
    box->exec();
    if (!box)
        return QMessageBox::NoButton;
    const QMessageBox::StandardButton answer = box->standardButton(box->clickedButton());
    delete box;
    return answer;
}

} // namespace shell
