#include "session/initscreen.h"

#include "support/modalanswerer.h"
#include "support/quillettest.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTranslator>
#include <QtTest>

class InitScreenTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<InitScreen> m_dialog;
    std::unique_ptr<ModalAnswerer> m_answers;

    template <typename Widget>
    Widget* child(const char* name)
    {
        return m_dialog->findChild<Widget*>(QLatin1String(name));
    }

    QPushButton* button(QDialogButtonBox::StandardButton which)
    {
        return child<QDialogButtonBox>("buttonBox")->button(which);
    }

    QWidget* at(int row, QFormLayout::ItemRole role)
    {
        QLayoutItem* const item = child<QFormLayout>("formLayout_2")->itemAt(row, role);
        return item ? item->widget() : nullptr;
    }

private slots:
    void init()
    {
        QuilletTest::init();
        m_dialog = std::make_unique<InitScreen>();
        m_answers = std::make_unique<ModalAnswerer>();
        m_answers->leaveAlone(m_dialog.get());
    }

    void cleanup()
    {
        const QStringList problems = m_answers->problems();
        m_answers.reset();
        m_dialog.reset();
        QuilletTest::cleanup();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    void everyWidgetHasItsNameAndContent()
    {
        QCOMPARE(m_dialog->objectName(), QStringLiteral("InitScreen"));
        QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Dialog"));
        QCOMPARE(child<QFrame>("formFrame")->frameShape(), QFrame::StyledPanel);
        QCOMPARE(child<QFormLayout>("formLayout_2")->parentWidget(), child<QFrame>("formFrame"));

        const auto logo = child<QLabel>("welcomeLogoLabel");
        const QPixmap picture = logo->pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.size(), QSize(64, 64));
        QCOMPARE(picture.toImage(), QPixmap(QStringLiteral(":/icons/64x64/logo.png")).toImage());
        QVERIFY(!logo->hasScaledContents());
        QCOMPARE(logo->alignment(), Qt::AlignCenter);
        QCOMPARE(logo->textInteractionFlags(), Qt::NoTextInteraction);

        const auto welcome = child<QLabel>("welcomeLabel");
        QCOMPARE(welcome->text(), QStringLiteral("Welcome to Tidewell Desktop"));
        QCOMPARE(welcome->font().weight(), 75);
        QVERIFY(welcome->alignment() & Qt::AlignHCenter);

        QCOMPARE(child<QLabel>("languageLabel")->text(), QStringLiteral("Select language"));
        QCOMPARE(child<QLabel>("passwordLabel")->text(), QStringLiteral("Confirm your password"));
        QCOMPARE(child<QLineEdit>("passwordLineEdit")->echoMode(), QLineEdit::Password);
        const auto buttons = child<QDialogButtonBox>("buttonBox");
        QCOMPARE(buttons->orientation(), Qt::Horizontal);
        QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    }

    void theFormsRowsAreInOrder()
    {
        QCOMPARE(at(0, QFormLayout::SpanningRole), child<QLabel>("welcomeLogoLabel"));
        QCOMPARE(at(1, QFormLayout::SpanningRole), child<QLabel>("welcomeLabel"));
        QCOMPARE(at(3, QFormLayout::LabelRole), child<QLabel>("languageLabel"));
        QCOMPARE(at(3, QFormLayout::FieldRole), child<QComboBox>("languageComboBox"));
        QCOMPARE(at(4, QFormLayout::LabelRole), child<QLabel>("passwordLabel"));
        QCOMPARE(at(4, QFormLayout::FieldRole), child<QLineEdit>("passwordLineEdit"));
        QCOMPARE(at(6, QFormLayout::FieldRole), child<QDialogButtonBox>("buttonBox"));
        QVERIFY(!at(6, QFormLayout::LabelRole));
        const auto form = child<QFormLayout>("formLayout_2");
        for (const int row : {2, 5}) {
            QVERIFY(form->itemAt(row, QFormLayout::FieldRole));
            QVERIFY(form->itemAt(row, QFormLayout::FieldRole)->spacerItem());
        }
        QCOMPARE(form->rowCount(), 7);
    }

    void spanishComesFirstAndIsCurrent()
    {
        const auto languages = child<QComboBox>("languageComboBox");
        QCOMPARE(languages->count(), 2);
        QCOMPARE(languages->itemText(0), QString::fromUtf8("Español"));
        QCOMPARE(languages->itemText(1), QStringLiteral("English"));
        QCOMPARE(languages->currentIndex(), 0);
        const auto picture = [](const QIcon& icon) { return icon.pixmap(64).toImage(); };
        QVERIFY(!picture(languages->itemIcon(0)).isNull());
        QCOMPARE(picture(languages->itemIcon(0)),
                 picture(QIcon(QStringLiteral(":/icons/other/es_flag.png"))));
        QCOMPARE(picture(languages->itemIcon(1)),
                 picture(QIcon(QStringLiteral(":/icons/other/us_uk_flag.png"))));
    }

    void aPastedPasswordComesWithoutLineEnds()
    {
        QApplication::clipboard()->setText(QStringLiteral("tide\r\n"));
        child<QLineEdit>("passwordLineEdit")->paste();
        QCOMPARE(m_dialog->password(), QStringLiteral("tide"));
        m_dialog->show();
        QTest::keyClick(child<QLineEdit>("passwordLineEdit"), Qt::Key_Return);
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
    }

    void keysThatAreHeldNeitherAcceptNorReject_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }
    void keysThatAreHeldNeitherAcceptNorReject()
    {
        QFETCH(int, key);
        child<QLineEdit>("passwordLineEdit")->setText(QStringLiteral("tide"));
        m_dialog->show();
        QList<QWidget*> all({m_dialog.get(), child<QLineEdit>("passwordLineEdit")});
        for (QAbstractButton* const button : child<QDialogButtonBox>("buttonBox")->buttons())
            all.append(button);
        for (QWidget* const widget : all) {
            QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QApplication::sendEvent(widget, &held);
            QVERIFY(m_dialog->isVisible());
        }
        QTest::keyClick(child<QLineEdit>("passwordLineEdit"), Qt::Key(key));
        QVERIFY(!m_dialog->isVisible());
    }

    void theLanguageHasNoEffect()
    {
        m_dialog->show();
        child<QComboBox>("languageComboBox")->setCurrentIndex(1);
        QCOMPARE(child<QLabel>("passwordLabel")->text(), QStringLiteral("Confirm your password"));
        QVERIFY(m_dialog->isVisible());
    }

    void theBackgroundsAreGreyAndWhite()
    {
        m_dialog->setFixedSize(800, 600);
        m_dialog->show();
        m_dialog->centrePanel(QSize(800, 600));
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(m_dialog->palette().color(group, QPalette::Window), QColor("#e6eaed"));
        const QImage image = m_dialog->grab().toImage();
        QCOMPARE(image.pixelColor(5, 5), QColor("#e6eaed"));
        QCOMPARE(image.pixelColor(794, 594), QColor("#e6eaed"));
        const QRect panel = child<QFrame>("formFrame")->geometry();
        QCOMPARE(image.pixelColor(panel.topLeft() + QPoint(8, 8)), QColor(Qt::white));
        QCOMPARE(image.pixelColor(panel.bottomRight() - QPoint(8, 8)), QColor(Qt::white));
    }

    void thePanelIsCentredAtEveryScreenSize_data()
    {
        QTest::addColumn<QSize>("desktop");
        QTest::newRow("320x240") << QSize(320, 240);
        QTest::newRow("1024x768") << QSize(1024, 768);
        QTest::newRow("odd") << QSize(1367, 769);
        QTest::newRow("1920x1080") << QSize(1920, 1080);
        QTest::newRow("7680x4320") << QSize(7680, 4320);
        QTest::newRow("1x1") << QSize(1, 1);
    }
    void thePanelIsCentredAtEveryScreenSize()
    {
        QFETCH(QSize, desktop);
        m_dialog->setFixedSize(desktop);
        m_dialog->show();
        m_dialog->centrePanel(desktop);
        const QRect panel = child<QFrame>("formFrame")->geometry();
        QCOMPARE(panel.left(), (desktop.width() - panel.width()) / 2);
        QCOMPARE(panel.top(), (desktop.height() - panel.height()) / 2);
        QCOMPARE(panel.size(), child<QFrame>("formFrame")->sizeHint());
    }

    void nothingInThePanelIsClipped()
    {
        m_dialog->setFixedSize(1024, 768);
        m_dialog->show();
        m_dialog->centrePanel(QSize(1024, 768));
        for (const char* name : {"welcomeLabel", "languageLabel", "passwordLabel"}) {
            const auto label = child<QLabel>(name);
            QVERIFY(label->width() >= label->fontMetrics().horizontalAdvance(label->text()));
        }
    }

    void okWithAnEmptyFieldComplainsAndKeepsTheDialogOpen()
    {
        m_dialog->show();
        for (int i = 0; i < 2; ++i) {
            m_answers->expectBox(QStringLiteral("Empty password"),
                                 QStringLiteral("The password must not be empty"), QMessageBox::Information,
                                 QMessageBox::Ok, QMessageBox::Ok, m_dialog.get());
            button(QDialogButtonBox::Ok)->click();
            QVERIFY(m_dialog->isVisible());
        }
        QCOMPARE(m_dialog->result(), 0);
    }

    void everyTextIsTranslated()
    {
        QTranslator spanish;
        QVERIFY(spanish.load(QStringLiteral(TRANSLATION)));
        QCoreApplication::installTranslator(&spanish);
        m_dialog = std::make_unique<InitScreen>();
        m_answers->leaveAlone(m_dialog.get());
        QCOMPARE(m_dialog->windowTitle(), QString::fromUtf8("Diálogo"));
        QCOMPARE(child<QLabel>("welcomeLabel")->text(), QStringLiteral("Bienvenido a Tidewell Desktop"));
        QCOMPARE(child<QLabel>("languageLabel")->text(), QStringLiteral("Seleccione el idioma"));
        QCOMPARE(child<QLabel>("passwordLabel")->text(), QString::fromUtf8("Confirme su contraseña"));
        QCOMPARE(child<QComboBox>("languageComboBox")->itemText(1), QString::fromUtf8("Inglés"));
        QCOMPARE(child<QComboBox>("languageComboBox")->itemText(0), QString::fromUtf8("Español (ES)"));
        m_dialog->show();
        m_answers->expectBox(QString::fromUtf8("Contraseña vacía"),
                             QString::fromUtf8("La contraseña no puede estar vacía"),
                             QMessageBox::Information, QMessageBox::Ok, QMessageBox::Ok, m_dialog.get());
        button(QDialogButtonBox::Ok)->click();
        QCoreApplication::removeTranslator(&spanish);
    }

    void aPasswordOfOneBlankIsAccepted()
    {
        m_dialog->show();
        QTest::keyClicks(child<QLineEdit>("passwordLineEdit"), QStringLiteral(" "));
        button(QDialogButtonBox::Ok)->click();
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QVERIFY(!m_dialog->isVisible());
        QCOMPARE(m_dialog->password(), QStringLiteral(" "));
    }

    void cancelRejects()
    {
        m_dialog->show();
        m_dialog->setResult(QDialog::Accepted);
        button(QDialogButtonBox::Cancel)->click();
        QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
        QVERIFY(!m_dialog->isVisible());
    }

    void thePasswordFieldHasTheFocusAndEnterAccepts_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter on the keypad") << int(Qt::Key_Enter);
    }
    void thePasswordFieldHasTheFocusAndEnterAccepts()
    {
        QFETCH(int, key);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
        QCOMPARE(QApplication::focusWidget(), child<QLineEdit>("passwordLineEdit"));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("tide"));
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        QCOMPARE(m_dialog->result(), int(QDialog::Accepted));
        QCOMPARE(m_dialog->password(), QStringLiteral("tide"));
    }

    void escapeRejects()
    {
        m_dialog->show();
        m_dialog->setResult(QDialog::Accepted);
        QTest::keyClick(child<QLineEdit>("passwordLineEdit"), Qt::Key_Escape);
        QCOMPARE(m_dialog->result(), int(QDialog::Rejected));
    }

    void theTextStaysWhenTheDialogIsShownAgainAndTypingReplacesIt()
    {
        m_dialog->show();
        QTest::keyClicks(child<QLineEdit>("passwordLineEdit"), QStringLiteral("wrong"));
        button(QDialogButtonBox::Ok)->setFocus(); // as by a click of the mouse
        button(QDialogButtonBox::Ok)->click();
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
        QCOMPARE(m_dialog->password(), QStringLiteral("wrong"));
        QCOMPARE(QApplication::focusWidget(), child<QLineEdit>("passwordLineEdit"));
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("right"));
        QCOMPARE(m_dialog->password(), QStringLiteral("right"));
    }

    void everyFieldHasItsLabelForScreenReaders()
    {
        QCOMPARE(child<QLabel>("passwordLabel")->buddy(), child<QLineEdit>("passwordLineEdit"));
        QCOMPARE(child<QLabel>("languageLabel")->buddy(), child<QComboBox>("languageComboBox"));
    }
};

QTEST_MAIN(InitScreenTest)
#include "tst_initscreen.moc"
