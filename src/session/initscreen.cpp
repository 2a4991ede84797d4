#include "session/initscreen.h"

#include "session/passwordfield.h"
#include "shell/keyboard.h"
#include "shell/messagebox.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int fieldWidth = 260; // pixels; wide enough for the longest label's line and a long password
constexpr int panelMargin = 32; // pixels
constexpr int spacing = 12;     // pixels between rows and between columns
constexpr int spacerHeight = 8; // pixels

void fillBackground(QWidget* widget, const QColor& color)
{
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, color); // for all colour groups
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

} // namespace

InitScreen::InitScreen(QWidget* parent)
    : QDialog(parent)
    , m_panel(new QFrame(this))
    , m_languages(new QComboBox(m_panel))
    , m_password(new QLineEdit(m_panel))
    , m_buttons(
          new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, Qt::Horizontal, m_panel))
{
    setObjectName(QStringLiteral("InitScreen"));
    setWindowTitle(tr("Dialog"));
    setModal(true); // from its first show on, which comes before exec()
    m_panel->setObjectName(QStringLiteral("formFrame"));
    m_panel->setFrameShape(QFrame::StyledPanel);
    m_languages->setObjectName(QStringLiteral("languageComboBox"));
    m_password->setObjectName(QStringLiteral("passwordLineEdit"));
    session::makePasswordField(m_password);
    m_password->setMinimumWidth(fieldWidth);
    m_buttons->setObjectName(QStringLiteral("buttonBox"));

    const auto form = new QFormLayout(m_panel);
    form->setObjectName(QStringLiteral("formLayout_2"));
    fillForm(form);
    fillLanguages();
    fillBackground(this, QColor(QStringLiteral("#e6eaed")));
    fillBackground(m_panel, Qt::white);
    shell::ignoreHeldKeys(this); // which closed a box before: a wrong password is not tried again and again
    QMetaObject::connectSlotsByName(this);
}

void InitScreen::centrePanel(const QSize& desktop)
{
    m_panel->adjustSize();
    m_panel->move((desktop.width() - m_panel->width()) / 2, (desktop.height() - m_panel->height()) / 2);
}

QString InitScreen::password() const
{
    return m_password->text();
}

void InitScreen::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    m_password->setFocus();
    m_password->selectAll();
}

void InitScreen::on_buttonBox_accepted()
{
    if (m_password->text().isEmpty()) {
        shell::showBox(this, QMessageBox::Information, tr("Empty password"),
                       tr("The password must not be empty"));
        return;
    }
    accept();
}

void InitScreen::on_buttonBox_rejected()
{
    reject();
}

QLabel* InitScreen::addLabel(const char* name, const QString& text)
{
    const auto label = new QLabel(text, m_panel);
    label->setObjectName(QLatin1String(name));
    return label;
}

void InitScreen::fillForm(QFormLayout* form)
{
    form->setContentsMargins(panelMargin, panelMargin, panelMargin, panelMargin);
    form->setVerticalSpacing(spacing);
    form->setHorizontalSpacing(spacing);
    form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);

    QLabel* const logo = addLabel("welcomeLogoLabel", QString());
    logo->setPixmap(QPixmap(QStringLiteral(":/icons/64x64/logo.png")));
    logo->setScaledContents(false);
    logo->setAlignment(Qt::AlignCenter);
    logo->setTextInteractionFlags(Qt::NoTextInteraction);

    QLabel* const welcome = addLabel("welcomeLabel", tr("Welcome to Tidewell Desktop"));
    QFont bold = welcome->font();
    bold.setWeight(QFont::Bold); // 75
    welcome->setFont(bold);
    welcome->setAlignment(Qt::AlignCenter);

    QLabel* const language = addLabel("languageLabel", tr("Select language"));
    language->setBuddy(m_languages);
    QLabel* const password = addLabel("passwordLabel", tr("Confirm your password"));
    password->setBuddy(m_password);

    const auto spacer = [] {
        return new QSpacerItem(0, spacerHeight, QSizePolicy::Minimum, QSizePolicy::Fixed);
    };
    form->setWidget(0, QFormLayout::SpanningRole, logo);
    form->setWidget(1, QFormLayout::SpanningRole, welcome);
    form->setItem(2, QFormLayout::FieldRole, spacer());
    form->setWidget(3, QFormLayout::LabelRole, language);
    form->setWidget(3, QFormLayout::FieldRole, m_languages);
    form->setWidget(4, QFormLayout::LabelRole, password);
    form->setWidget(4, QFormLayout::FieldRole, m_password);
    form->setItem(5, QFormLayout::FieldRole, spacer());
    form->setWidget(6, QFormLayout::FieldRole, m_buttons);
}

void InitScreen::fillLanguages()
{
    // Each in front of the other: "Español" comes first and is the current one.
    m_languages->insertItem(0, QIcon(QStringLiteral(":/icons/other/us_uk_flag.png")), tr("English"));
    m_languages->insertItem(0, QIcon(QStringLiteral(":/icons/other/es_flag.png")), tr("Español"));
    m_languages->setCurrentIndex(0);
}
