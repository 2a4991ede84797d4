#include "session/userconfig.h"

#include "env/identity.h"
#include "session/passwordfield.h"
#include "shell/keyboard.h"
#include "shell/messagebox.h"
#include "shell/ownwindow.h"
#include "shell/plainbutton.h"
#include "winapi/accounts.h"

#include <QDir>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>

namespace {

constexpr int spacing = 10;       // pixels
constexpr int margin = 20;        // pixels
constexpr int fieldWidth = 420;   // pixels, at least
constexpr int fieldColumns = 5;   // that a field spans
constexpr int buttonRow = 5;      // behind "Go back" and four fields
constexpr int pictureExtent = 32; // pixels

} // namespace

UserConfig::UserConfig(QWidget* panel)
    : QDialog(panel)
    , ConfigurationDialog(panel)
    , m_layout(new QGridLayout(this))
    , m_back(createButton(tr("Go back"), QStringLiteral("back.png")))
    , m_userName(addField(tr("User name:"), 1))
    , m_oldPassword(addPasswordField(tr("Actual password:"), 2))
    , m_newPassword(addPasswordField(tr("New password:"), 3))
    , m_repeated(addPasswordField(tr("Repeat password:"), 4))
    , m_accept(createButton(tr("Accept"), QStringLiteral("accept.png")))
    , m_cancel(createButton(tr("Cancel"), QStringLiteral("cancel.png")))
{
    shell::setPageFlags(this); // no longer a window, when there is a panel
    move(0, 0);                // a dialog that was never moved finds a place of its own
    setWindowTitle(QLatin1String(shell::ownWindowTitle));
    setStyleSheet(styleSheetFor("UserConfig"));

    m_userName->setText(env::userName());
    m_userName->setReadOnly(true);
    QPalette palette = m_userName->palette();
    palette.setColor(QPalette::Base, QColor(QLatin1String(background))); // does not look like one to type in
    m_userName->setPalette(palette);
    m_accept->setDefault(true);

    m_layout->setSpacing(spacing);
    m_layout->setContentsMargins(margin, margin, margin, margin);
    m_layout->addWidget(m_back, 0, 0, Qt::AlignLeft);
    m_layout->addWidget(m_accept, buttonRow, 1);
    m_layout->addWidget(m_cancel, buttonRow, 2);
    m_layout->setRowStretch(buttonRow + 1, 1);
    m_layout->setColumnStretch(fieldColumns + 1, 1);

    connect(m_back, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_accept, SIGNAL(clicked()), this, SLOT(accept()));
    connect(m_cancel, SIGNAL(clicked()), this, SLOT(reject()));
}

QIcon UserConfig::icon()
{
    return QIcon(QStringLiteral(":/icons/applications") + QDir::separator() +
                 QStringLiteral("userconfig.png"));
}

QString UserConfig::name()
{
    return tr("User\nConfiguration");
}

QWidget* UserConfig::widget()
{
    return this;
}

// --- The change

void UserConfig::accept()
{
    const QString oldPassword = m_oldPassword->text();
    const QString newPassword = m_newPassword->text();
    if (newPassword.isEmpty()) {
        refuse(tr("Incorrect password"), tr("The new password must not be empty"));
    } else if (newPassword != m_repeated->text()) {
        refuse(tr("Password mismatch"), tr("The repeat password must be equal to the new password"));
    } else if (oldPassword.isEmpty()) {
        refuse(tr("Incorrect password"), tr("The old password must not be empty"));
    } else {
        tellResult(winapi::changePassword(oldPassword, newPassword), newPassword);
    }
}

void UserConfig::reject()
{
    if (m_isEmbedded)
        hide();
    else
        QDialog::reject();
}

void UserConfig::refuse(const QString& title, const QString& text)
{
    shell::showBox(this, QMessageBox::Critical, title, text);
}

void UserConfig::tellResult(quint32 result, const QString& newPassword)
{
    const QString title = tr("Cannot change password");
    switch (winapi::passwordChange(result)) {
    case winapi::PasswordChange::Made:
        finish(newPassword);
        break;
    case winapi::PasswordChange::NotPermitted:
        refuse(title, tr("Not enough permissions to change password"));
        break;
    case winapi::PasswordChange::WrongOldPassword:
        refuse(title, tr("The old password you provided is invalid"));
        break;
    case winapi::PasswordChange::NewPasswordRefused:
        refuse(title, tr("The password you provided is too short or has been used previously"));
        break;
    default:
        refuse(title, tr("There was a problem trying to change password. Contact the administrator"));
        qDebug("Error: %d", static_cast<int>(result));
        break;
    }
}

void UserConfig::finish(const QString& newPassword)
{
    const QPointer<UserConfig> self(this);
    shell::showBox(this, QMessageBox::Information, tr("Password change succesful"),
                   tr("The password has been changed."));
    env::setCredentialsPassword(newPassword);
    if (!self)
        return;
    m_oldPassword->setText(newPassword);
    m_newPassword->clear();
    m_repeated->clear();
    QDialog::accept();
    setCursor(Qt::ArrowCursor);
}

// --- The keyboard

void UserConfig::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    giveFocusToField();
}

void UserConfig::focusInEvent(QFocusEvent* event)
{
    QDialog::focusInEvent(event);
    giveFocusToField();
}

// The dialog's own default button is forgotten, where it is no window, when another button had the focus.
void UserConfig::keyPressEvent(QKeyEvent* event)
{
    if (!shell::pressWithEnter(m_accept, *event))
        QDialog::keyPressEvent(event);
}

void UserConfig::giveFocusToField()
{
    QLineEdit* wanted = m_oldPassword;
    for (QLineEdit* const field : {m_repeated, m_newPassword, m_oldPassword}) {
        if (field->text().isEmpty())
            wanted = field;
    }
    wanted->setFocus();
    wanted->selectAll();
}

// --- The form

QPushButton* UserConfig::createButton(const QString& text, const QString& picture)
{
    const auto button = new PlainButton(text, this);
    button->setIcon(QIcon(QStringLiteral(":/icons/64x64") + QDir::separator() + picture));
    button->setIconSize(QSize(pictureExtent, pictureExtent));
    return button;
}

QLineEdit* UserConfig::addField(const QString& label, int row)
{
    const auto name = new QLabel(label, this);
    QFont bold = name->font();
    bold.setWeight(QFont::Bold); // 75
    name->setFont(bold);
    const auto field = new QLineEdit(this);
    field->setMinimumWidth(fieldWidth);
    name->setBuddy(field); // which names it to assistive technology
    m_layout->addWidget(name, row, 0);
    m_layout->addWidget(field, row, 1, 1, fieldColumns);
    return field;
}

QLineEdit* UserConfig::addPasswordField(const QString& label, int row)
{
    QLineEdit* const field = addField(label, row);
    session::makePasswordField(field);
    return field;
}
