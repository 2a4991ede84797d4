// The password dialog's widgets: what they say, how they look within the panel, how the keyboard goes
// through them. What is changed stands in tst_passwordchange.cpp.
#include "session/userconfig.h"

#include "env/identity.h"
#include "shell/menu.h"
#include "shell/plainbutton.h"
#include "support/markingtranslator.h"
#include "support/modalanswerer.h"
#include "support/painting.h"
#include "support/quillettest.h"

#include <QAccessible>
#include <QClipboard>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

const QString user = QStringLiteral("User name:");
const QString actual = QStringLiteral("Actual password:");
const QString wanted = QStringLiteral("New password:");
const QString repeated = QStringLiteral("Repeat password:");

} // namespace

class UserConfigTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<Menu> m_panel;
    UserConfig* m_dialog = nullptr; // the panel's
    std::unique_ptr<ModalAnswerer> m_answers;

    void create()
    {
        m_panel = std::make_unique<Menu>(nullptr, QStringLiteral("e6eaed"));
        m_panel->resize(QSize(800, 558));
        m_dialog = new UserConfig(m_panel.get());
        m_dialog->setFixedSize(m_panel->size());
    }

    // Shows the dialog in its panel, whose window is the active one.
    void show()
    {
        m_panel->show();
        m_dialog->show();
        m_panel->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_panel.get()));
    }

    QLabel* label(const QString& text)
    {
        for (QLabel* const each : m_dialog->findChildren<QLabel*>()) {
            if (each->text() == text)
                return each;
        }
        qFatal("no label %s", qPrintable(text));
    }
    QLineEdit* field(const QString& text) { return qobject_cast<QLineEdit*>(label(text)->buddy()); }
    QPushButton* button(const QString& text)
    {
        for (QPushButton* const each : m_dialog->findChildren<QPushButton*>()) {
            if (each->text() == text)
                return each;
        }
        qFatal("no button %s", qPrintable(text));
    }

    // Row, column, row span, column span.
    QList<int> place(QWidget* widget)
    {
        auto* const grid = qobject_cast<QGridLayout*>(m_dialog->layout());
        QList<int> place = {-1, -1, -1, -1};
        grid->getItemPosition(grid->indexOf(widget), &place[0], &place[1], &place[2], &place[3]);
        return place;
    }

    void expectEmptyPasswordBox()
    {
        m_answers->expectBox(QStringLiteral("Incorrect password"),
                             QStringLiteral("The new password must not be empty"), QMessageBox::Critical,
                             QMessageBox::Ok, QMessageBox::Ok, m_dialog);
    }

    static void holdEnter(QWidget* widget)
    {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(widget, &event);
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_answers = std::make_unique<ModalAnswerer>();
        sandbox().setVariable("USER", "ana");
        create();
    }

    void cleanup()
    {
        const QStringList problems = m_answers->problems();
        m_answers.reset();
        m_panel.reset();
        QuilletTest::cleanup();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    // --- A tool of the panel

    void itIsAToolOfThePanel()
    {
        auto* const tool = qobject_cast<ConfigurationDialog*>(static_cast<QObject*>(m_dialog));
        QVERIFY(tool);
        QCOMPARE(tool->name(), QStringLiteral("User\nConfiguration"));
        QCOMPARE(tool->widget(), m_dialog);
        const QIcon icon(QStringLiteral(":/icons/applications/userconfig.png"));
        QVERIFY(!icon.pixmap(64).isNull());
        QCOMPARE(tool->icon().pixmap(64).toImage(), icon.pixmap(64).toImage());
    }

    void itIsShownInPlace()
    {
        QCOMPARE(m_dialog->parentWidget(), m_panel.get());
        QVERIFY(!m_dialog->isWindow());
        m_panel->resize(QSize(400, 300));
        m_panel->move(60, 50); // wherever the panel is
        m_dialog->setFixedSize(m_panel->size());
        show();
        QCOMPARE(m_dialog->geometry(), m_panel->rect());
        m_dialog->hide();
        m_dialog->show();
        QCOMPARE(m_dialog->geometry(), m_panel->rect());
    }

    void withoutAPanelItIsAWindowOfTheShell()
    {
        UserConfig dialog(nullptr);
        QVERIFY(dialog.isWindow());
        QCOMPARE(dialog.windowTitle(), QStringLiteral("quillet"));
    }

    // --- What it says

    void theUsersNameIsTheEnvironmentsOrTheCredentials_data()
    {
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<QByteArray>("userName");
        QTest::addColumn<QString>("shown");
        QTest::newRow("USER") << QByteArray("ana") << QByteArray("berta") << QStringLiteral("ana");
        QTest::newRow("USERNAME") << QByteArray() << QByteArray("berta") << QStringLiteral("berta");
        QTest::newRow("neither") << QByteArray() << QByteArray() << QStringLiteral("carla");
    }
    void theUsersNameIsTheEnvironmentsOrTheCredentials()
    {
        QFETCH(QByteArray, user);
        QFETCH(QByteArray, userName);
        sandbox().setVariable("USER", user);
        sandbox().setVariable("USERNAME", userName);
        sandbox().writeCredentials("carla\nsecret\n");
        create();
        QTEST(field(::user)->text(), "shown");
        QVERIFY(field(::user)->isReadOnly());
        QCOMPARE(field(::user)->echoMode(), QLineEdit::Normal);
    }

    void theGridHasABackButtonFourRowsAndTwoButtons()
    {
        auto* const grid = qobject_cast<QGridLayout*>(m_dialog->layout());
        QVERIFY(grid);
        QCOMPARE(grid->horizontalSpacing(), 10);
        QCOMPARE(grid->verticalSpacing(), 10);
        QCOMPARE(grid->contentsMargins(), QMargins(20, 20, 20, 20));
        QCOMPARE(place(button("Go back")), QList<int>({0, 0, 1, 1}));
        int row = 0;
        for (const QString& text : {user, actual, wanted, repeated}) {
            ++row;
            QCOMPARE(place(label(text)), QList<int>({row, 0, 1, 1}));
            QCOMPARE(label(text)->font().weight(), 75);
            QCOMPARE(place(field(text)), QList<int>({row, 1, 1, 5}));
        }
        QCOMPARE(place(button("Accept")), QList<int>({5, 1, 1, 1}));
        QCOMPARE(place(button("Cancel")), QList<int>({5, 2, 1, 1}));
        QCOMPARE(grid->rowCount(), 7);
        QCOMPARE(grid->columnCount(), 7);
        for (int i = 0; i < 7; ++i) {
            QCOMPARE(grid->rowStretch(i), i == 6 ? 1 : 0);
            QCOMPARE(grid->columnStretch(i), i == 6 ? 1 : 0);
        }
    }

    void buttonsHaveTextAndPicture()
    {
        const QPair<const char*, const char*> buttons[] = {
            {"Go back", "back.png"}, {"Accept", "accept.png"}, {"Cancel", "cancel.png"}};
        for (const auto& [text, picture] : buttons) {
            const QImage image = button(QLatin1String(text))->icon().pixmap(64).toImage();
            QCOMPARE(image.size(), QSize(64, 64));
            const QImage expected(QStringLiteral(":/icons/64x64/") + QLatin1String(picture));
            QCOMPARE(image, expected.convertToFormat(image.format()));
        }
    }

    void passwordsAreHidden()
    {
        for (const QString& text : {actual, wanted, repeated}) {
            QCOMPARE(field(text)->echoMode(), QLineEdit::Password);
            QVERIFY(!field(text)->isReadOnly());
            QVERIFY(field(text)->text().isEmpty());
            field(text)->insert(QStringLiteral("tide"));
            QVERIFY(field(text)->displayText() != QStringLiteral("tide"));
        }
    }

    void aPastedPasswordComesWithoutLineEnds_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("password");
        QTest::newRow("none") << " tide\t& "
                              << " tide\t& ";
        QTest::newRow("line feed") << "tide\n"
                                   << "tide";
        QTest::newRow("both") << "tide\r\n"
                              << "tide";
        QTest::newRow("many") << "tide\r\n\n\r"
                              << "tide";
        QTest::newRow("in front") << "\ntide"
                                  << "tide";
        QTest::newRow("between") << "ti\nde"
                                 << "tide";
        QTest::newRow("separators") << QString::fromUtf8("tide\xE2\x80\xA8\xE2\x80\xA9") << "tide";
        QTest::newRow("alone") << "\r\n"
                               << "";
    }
    void aPastedPasswordComesWithoutLineEnds()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, password);
        QApplication::clipboard()->setText(pasted);
        for (const QString& text : {actual, wanted, repeated}) {
            field(text)->paste();
            QCOMPARE(field(text)->text(), password);
            QTest::keyClicks(field(text), "xy"); // goes on behind
            QCOMPARE(field(text)->text(), QString(password + QStringLiteral("xy")));
            field(text)->setCursorPosition(password.size() + 1);
            field(text)->paste(); // between
            QTest::keyClicks(field(text), "!");
            QCOMPARE(field(text)->text(), QString(password + 'x' + password + "!y"));
        }
    }

    void everyTextIsTranslated()
    {
        const MarkingTranslator marks;
        create();
        for (const QString& text : {user, actual, wanted, repeated})
            QVERIFY(field(QStringLiteral("UserConfig|") + text));
        for (const char* const text : {"Go back", "Accept", "Cancel"})
            QVERIFY(button(QStringLiteral("UserConfig|") + QLatin1String(text)));
        QCOMPARE(m_dialog->name(), QStringLiteral("UserConfig|User\nConfiguration"));
        m_answers->expectBox(QStringLiteral("UserConfig|Incorrect password"),
                             QStringLiteral("UserConfig|The new password must not be empty"),
                             QMessageBox::Critical, QMessageBox::Ok, QMessageBox::Ok, m_dialog);
        m_dialog->accept();
    }

    // --- How it looks

    void itCoversThePanel()
    {
        QPushButton below(QStringLiteral("below"), m_panel.get());
        below.setGeometry(600, 400, 100, 100);
        show();
        below.show();
        m_dialog->raise();
        const QImage image = m_panel->grab().toImage();
        QVERIFY(isFilled(image, below.geometry(), QColor("#e6eaed")));
        QVERIFY(isFilled(image, QRect(0, 0, 800, 20), QColor("#e6eaed")));
    }

    void thePanelsStyleSheetReachesNeitherFieldsNorButtonsNorBoxes()
    {
        const QColor strange(0x12, 0xFE, 0x34);
        QFrame plain;
        QFrame styled;
        styled.setStyleSheet(QStringLiteral("background-color: #12fe34"));
        QImage pictures[2];
        for (QFrame* const panel : {&plain, &styled}) {
            QImage& picture = pictures[panel == &styled];
            UserConfig dialog(panel);
            dialog.setFixedSize(800, 558);
            panel->resize(dialog.size());
            panel->show();
            picture = dialog.grab().toImage();
            QVERIFY(!boundsOf(picture, Qt::white).isNull()); // the fields
            m_answers->expectDialog("QMessageBox", [strange](QWidget* box) {
                QVERIFY(boundsOf(box->grab().toImage(), strange).isNull());
                static_cast<QDialog*>(box)->reject();
            });
            dialog.accept();
        }
        QCOMPARE(pictures[0], pictures[1]);
    }

    void nothingIsClippedOnASmallScreen()
    {
        show();
        QCOMPARE(m_dialog->minimumSizeHint().boundedTo(m_panel->size()), m_dialog->minimumSizeHint());
        for (const QString& text : {user, actual, wanted, repeated})
            QVERIFY(label(text)->width() >= label(text)->fontMetrics().horizontalAdvance(text));
    }

    // --- The keyboard

    void theFirstFieldThatWantsInputHasTheFocus_data()
    {
        QTest::addColumn<QStringList>("filled");
        QTest::addColumn<QString>("focused");
        QTest::newRow("none") << QStringList() << actual;
        QTest::newRow("after a change") << QStringList{actual} << wanted;
        QTest::newRow("without the repetition") << QStringList{actual, wanted} << repeated;
        QTest::newRow("all but the old one") << QStringList{wanted, repeated} << actual;
        QTest::newRow("all") << QStringList{actual, wanted, repeated} << actual;
    }
    void theFirstFieldThatWantsInputHasTheFocus()
    {
        QFETCH(QStringList, filled);
        QFETCH(QString, focused);
        for (const QString& text : filled)
            field(text)->setText(QStringLiteral("tide"));
        m_dialog->setFocus(Qt::OtherFocusReason); // the controller's way, before it shows a page
        show();
        QVERIFY(field(focused)->hasFocus());
        QCOMPARE(field(focused)->selectedText().isEmpty(), !filled.contains(focused));
        field(user)->setFocus();
        m_dialog->setFocus(Qt::OtherFocusReason);
        QVERIFY(field(focused)->hasFocus());
    }

    void tabGoesThroughTheFieldsThenTheButtons()
    {
        show();
        const QList<QWidget*> order = {field(actual),    field(wanted),     field(repeated), button("Accept"),
                                       button("Cancel"), button("Go back"), field(user)};
        for (QWidget* const each : order) {
            QCOMPARE(QApplication::focusWidget(), each);
            QCOMPARE(FocusFrame::isShownOn(each), qobject_cast<QPushButton*>(each) != nullptr);
            QTest::keyClick(each, Qt::Key_Tab);
        }
    }

    void enterAcceptsFromEveryField_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("key");
        for (const QString& text : {user, actual, wanted, repeated}) {
            QTest::newRow(qPrintable(text)) << text << int(Qt::Key_Return);
            QTest::newRow(qPrintable(text + " keypad")) << text << int(Qt::Key_Enter);
        }
    }
    void enterAcceptsFromEveryField()
    {
        QFETCH(QString, from);
        QFETCH(int, key);
        show();
        field(from)->setFocus();
        expectEmptyPasswordBox();
        QTest::keyClick(field(from), static_cast<Qt::Key>(key),
                        key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
        QVERIFY(m_answers->problems().isEmpty());
    }

    void enterAcceptsAlsoAfterAButtonHadTheKeyboard()
    {
        show();
        for (const char* const name : {"Accept", "Cancel", "Go back"}) {
            button(QLatin1String(name))->setFocus(Qt::TabFocusReason);
            field(actual)->setFocus(Qt::TabFocusReason);
            expectEmptyPasswordBox();
            QTest::keyClick(field(actual), Qt::Key_Return);
            QVERIFY(m_answers->problems().isEmpty());
        }
    }

    void enterThatIsHeldDoesNotAcceptAgain()
    {
        show();
        holdEnter(field(actual));
        holdEnter(button("Accept"));
        holdEnter(button("Cancel"));
        QVERIFY(m_dialog->isVisible());
        expectEmptyPasswordBox();
        QTest::keyClick(button("Accept"), Qt::Key_Return);
    }

    void enterThatLedToABoxDoesNotAnswerIt()
    {
        show();
        m_answers->expectDialog("QMessageBox", [](QWidget* widget) {
            auto* const box = qobject_cast<QMessageBox*>(widget);
            holdEnter(box->focusWidget() ? box->focusWidget() : box);
            QVERIFY(box->isVisible());
            box->reject();
        });
        QTest::keyClick(field(actual), Qt::Key_Return);
    }

    void theDialogMayGoWhileItTells_data()
    {
        QTest::addColumn<QString>("newPassword");
        QTest::newRow("a refusal") << QString();
        QTest::newRow("the change") << QStringLiteral("spring");
    }
    void theDialogMayGoWhileItTells()
    {
        QFETCH(QString, newPassword);
        field(actual)->setText(QStringLiteral("tide"));
        field(wanted)->setText(newPassword);
        field(repeated)->setText(newPassword);
        m_answers->expectDialog("QMessageBox", [this](QWidget*) { m_panel.reset(); });
        m_dialog->accept();
        QVERIFY(!m_panel);
        if (!newPassword.isEmpty())
            QCOMPARE(env::credentialsPassword(), newPassword); // Windows has changed it
    }

    void escapeAndTwoButtonsGoBackAndKeepTheFields_data()
    {
        QTest::addColumn<QString>("way");
        QTest::addColumn<int>("key");
        for (const char* const each : {"Go back", "Cancel"}) {
            QTest::addRow("%s", each) << QString::fromLatin1(each) << 0;
            QTest::addRow("%s, Enter", each) << QString::fromLatin1(each) << int(Qt::Key_Return);
            QTest::addRow("%s, space", each) << QString::fromLatin1(each) << int(Qt::Key_Space);
        }
        for (const QString& text : {user, actual, wanted, repeated})
            QTest::newRow(qPrintable(text)) << text << int(Qt::Key_Escape);
    }
    void escapeAndTwoButtonsGoBackAndKeepTheFields()
    {
        QFETCH(QString, way);
        QFETCH(int, key);
        show();
        for (const QString& text : {actual, wanted, repeated})
            field(text)->setText(text);
        const QSignalSpy rejected(m_dialog, SIGNAL(rejected()));
        QWidget* const from = key == Qt::Key_Escape ? static_cast<QWidget*>(field(way)) : button(way);
        from->setFocus();
        if (key == 0)
            QTest::mouseClick(from, Qt::LeftButton);
        else
            QTest::keyClick(from, static_cast<Qt::Key>(key));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(rejected.count(), 0); // it is hidden, nothing more
        for (const QString& text : {actual, wanted, repeated})
            QCOMPARE(field(text)->text(), text);
    }

    void assistiveTechnologyKnowsEveryFieldAndButton()
    {
        const auto name = [](QWidget* widget) {
            return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        };
        for (const QString& text : {user, actual, wanted, repeated})
            QCOMPARE(name(field(text)), text);
        for (const char* const text : {"Go back", "Accept", "Cancel"})
            QCOMPARE(name(button(text)), QString::fromLatin1(text));
        QVERIFY(QAccessible::queryAccessibleInterface(field(actual))->state().passwordEdit);
        QVERIFY(QAccessible::queryAccessibleInterface(field(user))->state().readOnly);
        QVERIFY(QAccessible::queryAccessibleInterface(button("Accept"))->state().defaultButton);
    }
};

QTEST_MAIN(UserConfigTest)
#include "tst_userconfig.moc"
