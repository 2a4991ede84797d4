#pragma once

#include <QDialog>
#include <QSize>

class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QFrame;
class QLabel;
class QLineEdit;

// The full-screen dialog in which a user without a token types the password. The session start sizes it,
// shows it, runs it and reads the password; the dialog only sees to it that there is one. The language choice
// has no effect: the language is fixed at start-up. Created and owned by the session start, on the GUI
// thread.
class InitScreen : public QDialog
{
    Q_OBJECT

public:
    explicit InitScreen(QWidget* parent = nullptr);

    // Puts the panel, in its own size, into the middle of a desktop of this size; the dialog must cover that
    // desktop.
    void centrePanel(const QSize& desktop);

    // What the password field holds; it keeps it when the dialog is shown again.
    QString password() const;

protected:
    // Whoever sees the dialog can type at once, and replaces what was typed before.
    void showEvent(QShowEvent* event) override;

private slots:
    // Named for QMetaObject::connectSlotsByName().
    void on_buttonBox_accepted();
    void on_buttonBox_rejected();

private:
    QLabel* addLabel(const char* name, const QString& text);
    void fillForm(QFormLayout* form);
    void fillLanguages();

    QFrame* const m_panel;
    QComboBox* const m_languages;
    QLineEdit* const m_password;
    QDialogButtonBox* const m_buttons;
};
