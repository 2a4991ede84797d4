// The password dialog's work: its checks, what each result of Windows' leads to, and what the rest of the
// shell has of it.
#include "session/userconfig.h"

#include "config/configure.h"
#include "env/identity.h"
#include "env/serverslot.h"
#include "instances/appinstance.h"
#include "support/probereport.h"
#include "support/shelltest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>

class PasswordChangeTest : public ShellTest
{
    Q_OBJECT

    std::unique_ptr<UserConfig> m_dialog;

    QLineEdit* field(int n) { return m_dialog->findChildren<QLineEdit*>().at(n); }
    QStringList fields() { return {field(1)->text(), field(2)->text(), field(3)->text()}; }
    void fill(const QString& oldPassword, const QString& newPassword, const QString& repeated)
    {
        field(1)->setText(oldPassword);
        field(2)->setText(newPassword);
        field(3)->setText(repeated);
    }

    void expectRefusal(const QString& title, const QString& text)
    {
        answers().expectBox(title, text, QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok,
                            m_dialog.get());
    }
    void expectSuccess()
    {
        answers().expectBox(QStringLiteral("Password change succesful"),
                            QStringLiteral("The password has been changed."), QMessageBox::Information,
                            QMessageBox::Ok, QMessageBox::Ok, m_dialog.get());
    }
    void change(const QString& oldPassword, const QString& newPassword)
    {
        fill(oldPassword, newPassword, newPassword);
        expectSuccess();
        m_dialog->accept();
    }

    static QStringList changes() { return calls({"NetUserChangePassword"}); }

    // The password that the client was started with last.
    QString passedPassword()
    {
        const QStringList arguments = ProbeReport::take(reportPath()).arguments;
        return arguments.value(arguments.lastIndexOf(QStringLiteral("-p")) + 1);
    }

private slots:
    void init()
    {
        ShellTest::init();
        env::setCredentialsPassword(QStringLiteral("tide"));
        m_dialog = std::make_unique<UserConfig>(nullptr);
        m_dialog->show();
        clearDebugOutput();
    }

    void cleanup()
    {
        m_dialog.reset();
        ShellTest::cleanup();
    }

    // --- Checks

    void theFirstThingInTheWayIsTold_data()
    {
        QTest::addColumn<QStringList>("typed");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        const QString incorrect = QStringLiteral("Incorrect password");
        const QString noNew = QStringLiteral("The new password must not be empty");
        const QString mismatch = QStringLiteral("Password mismatch");
        const QString differs = QStringLiteral("The repeat password must be equal to the new password");
        const QString noOld = QStringLiteral("The old password must not be empty");
        const auto row = [](const char* name, const QStringList& typed, const QString& title,
                            const QString& text) { QTest::newRow(name) << typed << title << text; };
        row("nothing", {"", "", ""}, incorrect, noNew);
        row("only the old one", {"tide", "", ""}, incorrect, noNew);
        row("only the repetition", {"", "", "ebb"}, incorrect, noNew);
        row("no new one", {"tide", "", "ebb"}, incorrect, noNew);
        row("no repetition", {"tide", "ebb", ""}, mismatch, differs);
        row("another repetition", {"tide", "ebb", "flow"}, mismatch, differs);
        row("another case", {"tide", "ebb", "Ebb"}, mismatch, differs);
        row("a blank more", {"tide", "ebb", "ebb "}, mismatch, differs);
        row("a difference, no old one", {"", "ebb", "flow"}, mismatch, differs);
        row("composed otherwise", {"tide", QString::fromUtf8("\u00e9"), QString::fromUtf8("e\u0301")},
            mismatch, differs);
        row("no old one", {"", "ebb", "ebb"}, incorrect, noOld);
    }
    void theFirstThingInTheWayIsTold()
    {
        QFETCH(QStringList, typed);
        QFETCH(QString, title);
        QFETCH(QString, text);
        fill(typed[0], typed[1], typed[2]);
        expectRefusal(title, text);
        m_dialog->accept();
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(fields(), typed);
        QCOMPARE(changes(), QStringList());
        QCOMPARE(env::credentialsPassword(), QStringLiteral("tide"));
    }

    // --- Results

    void everyResultIsToldAndChangesNothingElse_data()
    {
        QTest::addColumn<quint32>("result");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("debug");
        const QString permissions = QStringLiteral("Not enough permissions to change password");
        for (const quint32 result : {5U, 2221U, 2226U, 2351U})
            QTest::addRow("%u", result) << result << permissions << QStringList();
        QTest::addRow("86") << 86U << QStringLiteral("The old password you provided is invalid")
                            << QStringList();
        QTest::addRow("2245") << 2245U
                              << QStringLiteral(
                                     "The password you provided is too short or has been used previously")
                              << QStringList();
        for (const quint32 result : {1U, 59U, 85U, 88U, 2222U, 2244U, 0x7FFFFFFFU, 0xFFFFFFFFU})
            QTest::addRow("%u", result)
                << result
                << QStringLiteral("There was a problem trying to change password. Contact the administrator")
                << QStringList{QStringLiteral("Error: %1").arg(static_cast<int>(result))};
    }
    void everyResultIsToldAndChangesNothingElse()
    {
        QFETCH(quint32, result);
        QFETCH(QString, text);
        simwin::fail("NetUserChangePassword", result);
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        expectRefusal(QStringLiteral("Cannot change password"), text);
        m_dialog->accept();
        QVERIFY(m_dialog->isVisible());
        QCOMPARE(fields(), QStringList({"tide", "ebb", "ebb"}));
        QCOMPARE(changes(), QStringList{"NetUserChangePassword((null), (null), tide, ebb)"});
        QCOMPARE(env::credentialsPassword(), QStringLiteral("tide"));
        QTEST(debugOutput(), "debug");
        QCOMPARE(sandbox().log(), QByteArray());
    }

    void theErrorIsWrittenAfterTheBox()
    {
        simwin::fail("NetUserChangePassword", 59);
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        answers().expectDialog("QMessageBox", [](QWidget* box) {
            QCOMPARE(debugOutput(), QStringList());
            static_cast<QDialog*>(box)->reject();
        });
        m_dialog->accept();
        QCOMPARE(debugOutput(), QStringList{"Error: 59"});
    }

    void aWrongOldPasswordIsToldByTheAccount()
    {
        simwin::setAccountPassword(QStringLiteral("flow"));
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        expectRefusal(QStringLiteral("Cannot change password"),
                      QStringLiteral("The old password you provided is invalid"));
        m_dialog->accept();
        QCOMPARE(simwin::accountPassword(), QStringLiteral("flow"));
        field(1)->setText(QStringLiteral("flow")); // and the next try may succeed
        expectSuccess();
        m_dialog->accept();
        QCOMPARE(simwin::accountPassword(), QStringLiteral("ebb"));
    }

    void successAndAnInvalidParameterEndTheSame_data()
    {
        QTest::addColumn<quint32>("result");
        QTest::newRow("success") << 0U;
        QTest::newRow("invalid parameter") << 87U;
    }
    void successAndAnInvalidParameterEndTheSame()
    {
        QFETCH(quint32, result);
        if (result != 0)
            simwin::fail("NetUserChangePassword", result);
        const QSignalSpy accepted(m_dialog.get(), SIGNAL(accepted()));
        m_dialog->setCursor(Qt::WaitCursor);
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        answers().expectDialog("QMessageBox", [this](QWidget* widget) {
            const auto* const box = static_cast<QMessageBox*>(widget);
            QCOMPARE(box->icon(), QMessageBox::Information);
            // All that follows waits for the user.
            QVERIFY(m_dialog->isVisible());
            QCOMPARE(fields(), QStringList({"tide", "ebb", "ebb"}));
            QCOMPARE(env::credentialsPassword(), QStringLiteral("tide"));
            box->button(QMessageBox::Ok)->click();
        });
        m_dialog->accept();
        QCOMPARE(env::credentialsPassword(), QStringLiteral("ebb"));
        QCOMPARE(fields(), QStringList({"ebb", "", ""}));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QCOMPARE(accepted.count(), 1);
        QCOMPARE(m_dialog->cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(debugOutput(), QStringList());
        QCOMPARE(sandbox().log(), QByteArray());
    }

    void afterAChangeTheDialogShowsTheNewPasswordMaskedAndIsReadyForTheNext()
    {
        change(QStringLiteral("tide"), QStringLiteral("ebb"));
        m_dialog->show();
        QCOMPARE(fields(), QStringList({"ebb", "", ""}));
        QCOMPARE(field(1)->echoMode(), QLineEdit::Password);
        QVERIFY(field(1)->displayText() != QStringLiteral("ebb"));
        for (const int n : {2, 3}) {
            QVERIFY(!field(n)->isUndoAvailable()); // what was typed does not come back
            field(n)->setText(QStringLiteral("flow"));
        }
        expectSuccess();
        m_dialog->accept();
        QCOMPARE(simwin::accountPassword(), QStringLiteral("flow"));
        QCOMPARE(env::credentialsPassword(), QStringLiteral("flow"));
    }

    void passwordsOfEveryKindArriveAsTyped_data()
    {
        QTest::addColumn<QString>("password");
        QTest::newRow("one letter") << QStringLiteral("x");
        QTest::newRow("one blank") << QStringLiteral(" ");
        QTest::newRow("blanks around") << QStringLiteral("  a b  ");
        QTest::newRow("quotes and markup") << QStringLiteral("\"a' `b\\\\%n%1&amp;<b>;|$");
        QTest::newRow("accents") << QString::fromUtf8("contraseña");
        QTest::newRow("combining") << QString::fromUtf8("e\u0301");
        QTest::newRow("right to left") << QString::fromUtf8("סיסמה חדשה");
        QTest::newRow("beyond the first plane") << QString::fromUtf8("\xF0\x9F\x8C\x8A\xF0\x9F\x90\x9A");
        QTest::newRow("500 long") << QString(500, QLatin1Char('w'));
        QTest::newRow("500 pairs") << QString::fromUtf8("\xF0\x9F\x8C\x8A").repeated(250);
    }
    void passwordsOfEveryKindArriveAsTyped()
    {
        QFETCH(QString, password);
        for (const int n : {2, 3})
            field(n)->insert(password); // as typing and pasting do
        field(1)->insert(QStringLiteral("tide"));
        expectSuccess();
        m_dialog->accept();
        QCOMPARE(simwin::accountPassword(), password);
        QCOMPARE(env::credentialsPassword(), password);
        change(password, QStringLiteral("tide")); // and as the old one
        QCOMPARE(simwin::accountPassword(), QStringLiteral("tide"));
        QVERIFY(!debugOutput().join('\n').contains(password));
    }

    // --- The rest of the shell

    void theControllerShowsItInPlaceAndItsFirstFieldHasTheFocus()
    {
        startShell();
        QWidget* const panel = shell().configuration();
        desktop().mapWidget(panel, true);
        auto* const dialog = new UserConfig(panel); // the panel's
        for (int times = 0; times < 2; ++times) {
            desktop().mapWidget(dialog, true);
            QVERIFY(!dialog->isWindow());
            QVERIFY(dialog->isVisible());
            QCOMPARE(dialog->geometry(), panel->rect());
            QTRY_COMPARE(QApplication::focusWidget(), dialog->findChildren<QLineEdit*>().at(1));
        }
        dialog->reject();
        QVERIFY(panel->isVisible());
    }

    void aRemoteLaunchPassesTheNewPasswordAndTheServerIsNotTold()
    {
        startShellWithRemoteApplication();
        env::setCredentialsPassword(QStringLiteral("tide"));
        AppInstance before(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&before);
        QCOMPARE(passedPassword(), QStringLiteral("tide"));
        desktop().timeout();
        QTRY_VERIFY(!desktop().currentProcess()); // its end is told

        const int requests = server().requests().size();
        change(QStringLiteral("tide"), QString::fromUtf8("ebb & flöw"));
        QCOMPARE(server().requests().size(), requests);
        QVERIFY(!sandbox().log().contains("ebb"));

        AppInstance after(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&after);
        QCOMPARE(passedPassword(), QString::fromUtf8("ebb & flöw"));
    }

    void aChangeWhileALaunchWaitsForItsWindowIsForTheNextOne()
    {
        startShellWithRemoteApplication();
        env::setCredentialsPassword(QStringLiteral("tide"));
        AppInstance app(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&app);
        QVERIFY(isWaiting());
        change(QStringLiteral("tide"), QStringLiteral("ebb"));
        QVERIFY(isWaiting()); // the launch's, still
        QCOMPARE(passedPassword(), QStringLiteral("tide"));
        desktop().timeout();
        AppInstance next(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&next);
        QCOMPARE(passedPassword(), QStringLiteral("ebb"));
    }

    void aChangeBetweenTheClickAndTheStartIsForThisLaunch()
    {
        startShellWithRemoteApplication();
        env::setCredentialsPassword(QStringLiteral("tide"));
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        expectSuccess();
        QTimer::singleShot(0, m_dialog.get(), SLOT(accept())); // an Enter that waits to be processed
        AppInstance app(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&app);
        QCOMPARE(passedPassword(), QStringLiteral("ebb"));
        QCOMPARE(simwin::accountPassword(), QStringLiteral("ebb"));
    }

    void aRefusedChangeLeavesLaunchesAsTheyWere()
    {
        startShellWithRemoteApplication();
        env::setCredentialsPassword(QStringLiteral("tide"));
        simwin::fail("NetUserChangePassword", 2245);
        fill(QStringLiteral("tide"), QStringLiteral("ebb"), QStringLiteral("ebb"));
        expectRefusal(QStringLiteral("Cannot change password"),
                      QStringLiteral("The password you provided is too short or has been used previously"));
        m_dialog->accept();
        AppInstance app(QStringLiteral("word"), env::serverClient());
        desktop().launchApplication(&app);
        QCOMPARE(passedPassword(), QStringLiteral("tide"));
    }
};

QTEST_MAIN(PasswordChangeTest)
#include "tst_passwordchange.moc"
