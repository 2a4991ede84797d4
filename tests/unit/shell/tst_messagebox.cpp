// Message boxes of the shell: what they show, how the keyboard answers them, what happens when their parent
// goes.
#include "shell/messagebox.h"
#include "support/modalanswerer.h"
#include "support/quillettest.h"

#include <QAbstractButton>
#include <QPointer>
#include <QtTest>

#include <functional>
#include <memory>

class MessageBoxTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<ModalAnswerer> m_answers;

    static void press(QWidget* widget, int key, bool held)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QStringLiteral("\r"), held);
        QCoreApplication::sendEvent(widget, &event);
    }

    // Shows a question with Yes and No; `answer` is called with it.
    QMessageBox::StandardButton ask(const std::function<void(QMessageBox*)>& answer,
                                    QWidget* parent = nullptr,
                                    QMessageBox::StandardButton preset = QMessageBox::NoButton)
    {
        m_answers->expectDialog("QMessageBox",
                                [answer](QWidget* box) { answer(qobject_cast<QMessageBox*>(box)); });
        return shell::showBox(parent, QMessageBox::Question, QStringLiteral("title"), QStringLiteral("text"),
                              QMessageBox::Yes | QMessageBox::No, preset);
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_answers = std::make_unique<ModalAnswerer>();
    }
    void cleanup()
    {
        const QStringList problems = m_answers->problems();
        m_answers.reset();
        QuilletTest::cleanup();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    void itIsWhatItWasToldToBe()
    {
        QWidget parent;
        m_answers->expectBox(QStringLiteral("title"), QStringLiteral("text"), QMessageBox::Warning,
                             QMessageBox::Save | QMessageBox::Discard, QMessageBox::Discard, &parent);
        QCOMPARE(shell::showBox(&parent, QMessageBox::Warning, QStringLiteral("title"),
                                QStringLiteral("text"), QMessageBox::Save | QMessageBox::Discard),
                 QMessageBox::Discard);
        QVERIFY(parent.findChildren<QMessageBox*>().isEmpty());
        m_answers->expectBox(QStringLiteral("title"), QStringLiteral("text"), QMessageBox::Critical,
                             QMessageBox::Ok, QMessageBox::Ok, nullptr);
        QCOMPARE(
            shell::showBox(nullptr, QMessageBox::Critical, QStringLiteral("title"), QStringLiteral("text")),
            QMessageBox::Ok);
    }

    void enterPressesThePresetButtonOrTheFirst_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
    }
    void enterPressesThePresetButtonOrTheFirst()
    {
        QFETCH(int, key);
        const auto pressKey = [key](QMessageBox* box) { press(box, key, false); };
        QCOMPARE(ask(pressKey), QMessageBox::Yes);
        QCOMPARE(ask(pressKey, nullptr, QMessageBox::Yes), QMessageBox::Yes);
        QCOMPARE(ask(pressKey, nullptr, QMessageBox::No), QMessageBox::No);
    }

    void enterPressesTheButtonThatHasTheFocus()
    {
        QCOMPARE(ask([](QMessageBox* box) { press(box->button(QMessageBox::No), Qt::Key_Return, false); }),
                 QMessageBox::No);
    }

    void keysThatAreHeldAnswerNothing()
    {
        const auto answer = ask([](QMessageBox* box) {
            for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
                for (QWidget* const widget :
                     {static_cast<QWidget*>(box), static_cast<QWidget*>(box->button(QMessageBox::Yes)),
                      static_cast<QWidget*>(box->button(QMessageBox::No))}) {
                    press(widget, key, true);
                    QVERIFY(box->isVisible());
                    QVERIFY(!box->clickedButton());
                }
            }
            box->button(QMessageBox::No)->click();
        });
        QCOMPARE(answer, QMessageBox::No);
    }

    void escapeAnswersNo()
    {
        QCOMPARE(ask([](QMessageBox* box) { press(box, Qt::Key_Escape, false); }), QMessageBox::No);
    }

    void theParentMayGo()
    {
        auto* const parent = new QWidget; // goes below
        const QPointer<QWidget> watched(parent);
        QCOMPARE(ask([parent](QMessageBox*) { delete parent; }, parent), QMessageBox::NoButton);
        QVERIFY(!watched);
    }
};

QTEST_MAIN(MessageBoxTest)
#include "tst_messagebox.moc"
