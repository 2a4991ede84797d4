#pragma once

#include "config/configurationdialog.h"

#include <QDialog>

class QGridLayout;
class QLineEdit;
class QPushButton;

// The configuration panel's tool that changes the password of the user's Windows account; the central server
// is not told. The password that remote launches pass on follows. It is shown in place, over the panel, which
// owns it; it keeps its fields when it is hidden. GUI thread only; a change blocks for as long as Windows
// does.
class UserConfig : public QDialog, public ConfigurationDialog
{
    Q_OBJECT
    Q_INTERFACES(ConfigurationDialog)

public:
    // The panel may be null.
    explicit UserConfig(QWidget* panel);

    QIcon icon() override;
    QString name() override;
    QWidget* widget() override;

public slots:
    // Checks the fields and changes the password. Closes the dialog when that is done; tells what is in the
    // way otherwise, and changes nothing.
    void accept() override;
    // Hides the dialog.
    void reject() override;

protected:
    // Whoever sees the dialog, or comes back to it, can type at once.
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    // A key that is held does not accept again: an account allows few wrong passwords.
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPushButton* createButton(const QString& text, const QString& picture);
    QLineEdit* addField(const QString& label, int row);
    QLineEdit* addPasswordField(const QString& label, int row);
    void giveFocusToField();
    void refuse(const QString& title, const QString& text);
    void tellResult(quint32 result, const QString& newPassword);
    void finish(const QString& newPassword);

    QGridLayout* const m_layout;
    bool m_isEmbedded = true; // shown in place
    QPushButton* const m_back;
    QLineEdit* const m_userName;
    QLineEdit* const m_oldPassword;
    QLineEdit* const m_newPassword;
    QLineEdit* const m_repeated;
    QPushButton* const m_accept;
    QPushButton* const m_cancel;
};
