#include "shell/messagebox.h"

#include "shell/keyboard.h"

#include <QPointer>

namespace shell {

QMessageBox::StandardButton showBox(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                                    const QString& text, QMessageBox::StandardButtons buttons,
                                    QMessageBox::StandardButton preset)
{
    const QPointer<QMessageBox> box(
        new QMessageBox(icon, title, text, buttons, parent)); // the parent may delete it
    box->setDefaultButton(preset);
    ignoreHeldKeys(box);
    box->exec();
    if (!box)
        return QMessageBox::NoButton;
    const QMessageBox::StandardButton answer = box->standardButton(box->clickedButton());
    delete box;
    return answer;
}

} // namespace shell
