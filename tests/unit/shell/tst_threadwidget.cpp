#include "shell/threadwidget.h"

#include "shell/closebutton.h"
#include "shell/threadbutton.h"
#include "support/markingtranslator.h"
#include "support/modalanswerer.h"
#include "support/ownmethods.h"
#include "support/painting.h"
#include "support/quillettest.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>
#include <QVBoxLayout>
#include <QtTest>

#include <memory>

namespace {

const char question[] = "You are going to terminate the application.\nAll unsaved data will be lost.\n"
                        "Are you sure you want to do this?";

const QColor panelColor(0xe6, 0xea, 0xed);

} // namespace

class ThreadWidgetTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<ThreadWidget> m_widget;
    std::unique_ptr<ThreadButton> m_button;
    std::unique_ptr<ModalAnswerer> m_answers;

    template <typename Widget>
    Widget* child(const char* name)
    {
        return m_widget->findChild<Widget*>(QLatin1String(name));
    }

    QLabel* label(const char* name) { return child<QLabel>(name); }

    static std::unique_ptr<ThreadButton> makeButton(int kind)
    {
        return std::make_unique<ThreadButton>(nullptr, kind, QPixmap(), QStringLiteral("Notepad"),
                                              QStringLiteral("Letter"), 7, 0, 0);
    }

    void makeExpanded()
    {
        m_widget = std::make_unique<ThreadWidget>(true);
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
    }

    void expectQuestion(QMessageBox::StandardButton press)
    {
        m_answers->expectBox(QStringLiteral("Terminate application"), QLatin1String(question),
                             QMessageBox::Warning, QMessageBox::Yes | QMessageBox::No, press);
    }

    // Answers the question with Yes, after something happened.
    void expectQuestionDuring(std::function<void()> happening)
    {
        m_answers->expectDialog("QMessageBox", [happening = std::move(happening)](QWidget* dialog) {
            happening();
            // What is to be deleted later, is deleted in the box's own loop.
            QTimer::singleShot(0, dialog, [dialog] {
                qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::Yes)->click();
            });
        });
    }

    // The row and column of an item, and how many of each it spans.
    QList<int> cell(QWidget* widget)
    {
        const auto grid = qobject_cast<QGridLayout*>(m_widget->layout());
        QList<int> cell{-1, -1, -1, -1};
        if (const int index = grid->indexOf(widget); index >= 0)
            grid->getItemPosition(index, &cell[0], &cell[1], &cell[2], &cell[3]);
        return cell;
    }

    Qt::Alignment alignment(QWidget* widget)
    {
        QLayout* const grid = m_widget->layout();
        return grid->itemAt(grid->indexOf(widget))->alignment();
    }

    // The panel as it stands in the task bar, or in a height that any font has room in.
    void showPanel(int width, int height = 42)
    {
        m_widget->setFixedSize(width, height);
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_widget.get()));
    }

    // An ordinary label with this line in the place of one of the panel's.
    static QImage pictureOf(const QLabel* label, const QString& line)
    {
        QLabel ordinary;
        ordinary.setTextFormat(Qt::PlainText);
        ordinary.setStyleSheet(QStringLiteral("background-color: #e6eaed"));
        ordinary.setFont(label->font());
        ordinary.setAlignment(label->alignment());
        ordinary.setFixedSize(label->size());
        ordinary.setText(line);
        return ordinary.grab().toImage();
    }

private slots:
    void initTestCase() { qRegisterMetaType<ThreadButton*>(); }

    void init()
    {
        QuilletTest::init();
        m_widget = std::make_unique<ThreadWidget>(false);
        m_answers = std::make_unique<ModalAnswerer>();
    }

    void cleanup()
    {
        const QStringList problems = m_answers->problems();
        m_answers.reset();
        m_widget.reset();
        m_button.reset();
        QuilletTest::cleanup();
        QVERIFY2(problems.isEmpty(), qPrintable(problems.join('\n')));
    }

    void thePanelsItemsStandInTheirCells()
    {
        QCOMPARE(cell(label("nameLabel")), QList<int>({0, 0, 1, 1}));
        QCOMPARE(cell(label("textLabel")), QList<int>({1, 0, 1, 1}));
        QCOMPARE(cell(child<CloseButton>("closeButton")), QList<int>({0, 1, 1, 1}));
        QCOMPARE(m_widget->layout()->count(), 3);
        for (const char* name : {"nameLabel", "textLabel"}) {
            QCOMPARE(alignment(label(name)), Qt::AlignLeft | Qt::AlignTop);
            QCOMPARE(label(name)->alignment(), Qt::AlignLeft | Qt::AlignTop);
        }
        QCOMPARE(alignment(child<CloseButton>("closeButton")), Qt::AlignRight | Qt::AlignTop);
        QVERIFY(!child<QLabel>("statusLabel"));
        QVERIFY(!child<QPushButton>("preview"));
        QVERIFY(!child<CloseButton>("killButton"));
    }

    void theTilesItemsStandInTheirCells()
    {
        m_widget = std::make_unique<ThreadWidget>(true);
        QCOMPARE(cell(label("nameLabel")), QList<int>({0, 0, 1, 1}));
        QCOMPARE(cell(label("textLabel")), QList<int>({1, 0, 1, 1}));
        QCOMPARE(cell(label("statusLabel")), QList<int>({2, 0, 1, 1}));
        QCOMPARE(cell(child<QPushButton>("preview")), QList<int>({3, 0, 1, 1}));
        QCOMPARE(cell(child<CloseButton>("closeButton")), QList<int>({0, 1, 1, 1}));
        QCOMPARE(cell(child<CloseButton>("killButton")), QList<int>({1, 1, 1, 1}));
        QCOMPARE(m_widget->layout()->count(), 6);
        for (const char* name : {"nameLabel", "textLabel"}) {
            QCOMPARE(int(alignment(label(name))), 0xA4);
            QCOMPARE(int(label(name)->alignment()), 0xA4);
        }
        QCOMPARE(alignment(label("statusLabel")), Qt::AlignCenter);
        QCOMPARE(label("statusLabel")->alignment(), Qt::AlignCenter);
        for (const char* name : {"closeButton", "killButton"})
            QCOMPARE(alignment(child<CloseButton>(name)), Qt::AlignRight | Qt::AlignTop);
        const QSizePolicy policy = child<QPushButton>("preview")->sizePolicy();
        QCOMPARE(policy.horizontalPolicy(), QSizePolicy::MinimumExpanding);
        QCOMPARE(policy.verticalPolicy(), QSizePolicy::MinimumExpanding);
        QVERIFY(child<QPushButton>("preview")->isFlat());
    }

    void bothHaveTheFrameAndTheNarrowGaps()
    {
        for (const bool expanded : {false, true}) {
            m_widget = std::make_unique<ThreadWidget>(expanded);
            QCOMPARE(m_widget->frameShape(), QFrame::StyledPanel);
            const auto grid = qobject_cast<QGridLayout*>(m_widget->layout());
            QCOMPARE(grid->contentsMargins(), QMargins(2, 2, 2, 2));
            QCOMPARE(grid->horizontalSpacing(), 2);
            QCOMPARE(grid->verticalSpacing(), 2);
            QVERIFY(!m_widget->threadButton());
        }
    }

    void onlyThePanelHasAStyleSheet()
    {
        QCOMPARE(m_widget->styleSheet(), QStringLiteral("background-color: #e6eaed"));
        showPanel(256);
        const QImage image = m_widget->grab().toImage();
        QCOMPARE(image.pixelColor(128, 30), panelColor);
        m_widget = std::make_unique<ThreadWidget>(true);
        QCOMPARE(m_widget->styleSheet(), QString());
    }

    void theStatusIsRunningInBoldDarkGreen()
    {
        m_widget = std::make_unique<ThreadWidget>(true);
        const QLabel* const status = label("statusLabel");
        QCOMPARE(status->text(), QStringLiteral("Running"));
        QCOMPARE(status->font().weight(), 75);
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(status->palette().color(group, QPalette::WindowText), QColor(Qt::darkGreen));
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        QCOMPARE(ownMethods(ThreadWidget::staticMetaObject),
                 QStringList({"closeButtonClicked(ThreadButton*)", "killButtonClicked(ThreadButton*)",
                              "clicked(ThreadButton*)", "setThreadButton(ThreadButton*)",
                              "closeButtonClickedSlot()", "killButtonClickedSlot()", "setName(QString)",
                              "setText(QString)", "clicked()"}));
    }

    void aFixedButtonHidesTheCloseButtonAndOthersShowIt_data()
    {
        QTest::addColumn<bool>("expanded");
        QTest::newRow("panel") << false;
        QTest::newRow("tile") << true;
    }
    void aFixedButtonHidesTheCloseButtonAndOthersShowIt()
    {
        QFETCH(bool, expanded);
        m_widget = std::make_unique<ThreadWidget>(expanded);
        const auto close = child<CloseButton>("closeButton");
        QVERIFY(!close->isHidden());
        const auto fixed = makeButton(ThreadButton::FixedButton);
        const auto window = makeButton(ThreadButton::WindowButton);
        const auto power = makeButton(ThreadButton::PowerButton);
        m_widget->setThreadButton(fixed.get());
        QVERIFY(close->isHidden());
        QCOMPARE(m_widget->threadButton(), fixed.get());
        m_widget->setThreadButton(window.get());
        QVERIFY(!close->isHidden());
        QCOMPARE(m_widget->threadButton(), window.get());
        m_widget->setThreadButton(fixed.get());
        m_widget->setThreadButton(power.get());
        QVERIFY(!close->isHidden());
        if (expanded)
            QVERIFY(!child<CloseButton>("killButton")->isHidden());
    }

    void aButtonMakesTheNameBoldAndLeavesTheTexts()
    {
        m_widget->setName(QStringLiteral("Before"));
        m_widget->setText(QStringLiteral("Text before"));
        QVERIFY(label("nameLabel")->font().weight() != 75);
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
        QCOMPARE(label("nameLabel")->font().weight(), 75);
        QVERIFY(label("textLabel")->font().weight() != 75);
        QCOMPARE(label("nameLabel")->text(), QStringLiteral("Before"));
        QCOMPARE(label("textLabel")->text(), QStringLiteral("Text before"));
    }

    void noButtonLeavesEverythingElse()
    {
        m_widget->setName(QStringLiteral("Before"));
        const auto fixed = makeButton(ThreadButton::FixedButton);
        m_widget->setThreadButton(fixed.get());
        m_widget->setThreadButton(nullptr);
        QVERIFY(!m_widget->threadButton());
        QVERIFY(child<CloseButton>("closeButton")->isHidden());
        QCOMPARE(label("nameLabel")->text(), QStringLiteral("Before"));
        QCOMPARE(label("nameLabel")->font().weight(), 75);
    }

    void theCloseButtonAsksNothing()
    {
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
        QSignalSpy close(m_widget.get(), SIGNAL(closeButtonClicked(ThreadButton*)));
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("closeButton")->click();
        QCOMPARE(close.size(), 1);
        QCOMPARE(close.at(0).at(0).value<ThreadButton*>(), m_button.get());
        QCOMPARE(kill.size(), 0);
    }

    void terminatingAsksWithNoAsTheDefault()
    {
        makeExpanded();
        m_answers->expectDialog("QMessageBox", [](QWidget* dialog) {
            const auto box = qobject_cast<QMessageBox*>(dialog);
            const QAbstractButton* const no = box->button(QMessageBox::No);
            QVERIFY(no);
            QCOMPARE(static_cast<QAbstractButton*>(box->defaultButton()), no);
            QTest::keyClick(box, Qt::Key_Return); // presses the default one
        });
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("killButton")->click();
        QCOMPARE(kill.size(), 0);
    }

    void answeredWithNoNothingHappens()
    {
        makeExpanded();
        expectQuestion(QMessageBox::No);
        QSignalSpy close(m_widget.get(), SIGNAL(closeButtonClicked(ThreadButton*)));
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("killButton")->click();
        QCOMPARE(kill.size() + close.size(), 0);
        QCOMPARE(label("statusLabel")->text(), QStringLiteral("Running"));
        QCOMPARE(label("statusLabel")->palette().color(QPalette::WindowText), QColor(Qt::darkGreen));
    }

    void answeredWithYesTheStatusChangesAndTheTaskIsTold()
    {
        makeExpanded();
        label("statusLabel")->setFont(QFont());
        expectQuestion(QMessageBox::Yes);
        QString told;
        connect(m_widget.get(), &ThreadWidget::killButtonClicked, this,
                [&] { told = label("statusLabel")->text(); });
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("killButton")->click();
        QCOMPARE(kill.size(), 1);
        QCOMPARE(kill.at(0).at(0).value<ThreadButton*>(), m_button.get());
        const QLabel* const status = label("statusLabel");
        QCOMPARE(status->text(), QStringLiteral("Terminating application"));
        QCOMPARE(told, status->text());
        QCOMPARE(status->font().weight(), 75);
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(status->palette().color(group, QPalette::WindowText), QColor(Qt::black));
    }

    void theButtonMayGoWhileTheQuestionIsOpen()
    {
        makeExpanded();
        expectQuestionDuring([this] { m_button.reset(); });
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("killButton")->click();
        QCOMPARE(kill.size(), 0);
        QVERIFY(!m_widget->threadButton());
        QCOMPARE(label("statusLabel")->text(), QStringLiteral("Running"));
    }

    void theWidgetMayGoWhileTheQuestionIsOpen()
    {
        makeExpanded();
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        QPointer<ThreadWidget> gone(m_widget.get());
        expectQuestionDuring([this] { m_widget.release()->deleteLater(); });
        child<CloseButton>("killButton")->click();
        QVERIFY(!gone);
        QCOMPARE(kill.size(), 0);
    }

    void theTaskThatWasAskedAboutIsTerminatedEvenIfAnotherIsShownNow()
    {
        makeExpanded();
        const auto other = makeButton(ThreadButton::WindowButton);
        expectQuestionDuring([&] { m_widget->setThreadButton(other.get()); });
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        child<CloseButton>("killButton")->click();
        QCOMPARE(kill.size(), 1);
        QCOMPARE(kill.at(0).at(0).value<ThreadButton*>(), m_button.get());
    }

    void aPanelCanBeToldToTerminateAsWell()
    {
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
        expectQuestion(QMessageBox::Yes);
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        QMetaObject::invokeMethod(m_widget.get(), "killButtonClickedSlot");
        QCOMPARE(kill.size(), 1);
    }

    void withoutButtonNothingIsToldOrAsked()
    {
        makeExpanded();
        m_button.reset();
        QSignalSpy close(m_widget.get(), SIGNAL(closeButtonClicked(ThreadButton*)));
        QSignalSpy kill(m_widget.get(), SIGNAL(killButtonClicked(ThreadButton*)));
        QSignalSpy clicked(m_widget.get(), SIGNAL(clicked(ThreadButton*)));
        child<CloseButton>("closeButton")->click();
        child<CloseButton>("killButton")->click();
        child<QPushButton>("preview")->click();
        QCOMPARE(close.size() + kill.size() + clicked.size(), 0);
    }

    void thePreviewShowsTheSnapshotAndAClickOnItTellsTheTask()
    {
        m_widget = std::make_unique<ThreadWidget>(true);
        QVERIFY(!child<QLabel>("previewLabel"));
        m_button = makeButton(ThreadButton::WindowButton);
        m_button->setSnapshot(plainPixmap(QSize(40, 30), Qt::red));
        m_widget->setThreadButton(m_button.get());
        const auto preview = child<QPushButton>("preview");
        const auto picture = child<QLabel>("previewLabel");
        QVERIFY(preview->isFlat());
        QVERIFY(qobject_cast<QVBoxLayout*>(preview->layout()));
        QCOMPARE(preview->layout()->indexOf(picture), 0);
        QVERIFY(picture->hasScaledContents());
        QCOMPARE(picture->pixmap(Qt::ReturnByValue).toImage(), m_button->snapshot().toImage());

        m_widget->resize(300, 200);
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_widget.get()));
        QVERIFY(picture->width() > 200 && picture->height() > 80);
        QVERIFY(isFilled(picture->grab().toImage(), picture->rect(), Qt::red));
        QSignalSpy clicked(m_widget.get(), SIGNAL(clicked(ThreadButton*)));
        QTest::mouseClick(m_widget->window()->windowHandle(), Qt::LeftButton, Qt::KeyboardModifiers(),
                          picture->mapTo(m_widget.get(), picture->rect().center()));
        QCOMPARE(clicked.size(), 1);
        QCOMPARE(clicked.at(0).at(0).value<ThreadButton*>(), m_button.get());
    }

    void anotherButtonsSnapshotReplacesTheFirst()
    {
        makeExpanded();
        const auto other = makeButton(ThreadButton::WindowButton);
        other->setSnapshot(plainPixmap(QSize(4, 3), Qt::blue));
        m_widget->setThreadButton(other.get());
        const QList<QLabel*> pictures = child<QPushButton>("preview")->findChildren<QLabel*>();
        QCOMPARE(pictures.size(), 1);
        QCOMPARE(pictures.at(0)->pixmap(Qt::ReturnByValue).size(), QSize(4, 3));
    }

    void aHugeSnapshotMakesTheTileNoLarger()
    {
        makeExpanded();
        const QSize minimum = m_widget->minimumSizeHint();
        const QSize hint = m_widget->sizeHint();
        m_button->setSnapshot(plainPixmap(QSize(4000, 4000), Qt::red));
        m_widget->setThreadButton(m_button.get());
        QCOMPARE(m_widget->minimumSizeHint(), minimum);
        QCOMPARE(m_widget->sizeHint(), hint);
        QVERIFY(minimum.width() < 60);
    }

    void everyTextPassesThroughTranslation()
    {
        const MarkingTranslator translator;
        makeExpanded();
        QCOMPARE(label("statusLabel")->text(), QStringLiteral("ThreadWidget|Running"));
        m_answers->expectBox(QStringLiteral("ThreadWidget|Terminate application"),
                             QStringLiteral("ThreadWidget|") + QLatin1String(question), QMessageBox::Warning,
                             QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes);
        child<CloseButton>("killButton")->click();
        QCOMPARE(label("statusLabel")->text(), QStringLiteral("ThreadWidget|Terminating application"));
    }

    void hostileTextsArePlainOnOneLineAndElided_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("line");
        const auto row = [](const char* name, const QString& text, const QString& line) {
            QTest::newRow(name) << text << line;
        };
        const auto same = [&row](const char* name, const QString& text) { row(name, text, text); };
        same("empty", QString());
        same("plain", QStringLiteral("Letter to a friend"));
        same("markup", QStringLiteral("<h1><font color=\"red\">Boo</font></h1>"));
        same("an entity", QStringLiteral("a &lt; b"));
        same("an ampersand", QStringLiteral("R&D && more"));
        same("300 characters", QString(300, QLatin1Char('W')));
        same("300 blanks", QString(300, QLatin1Char(' ')) + QLatin1Char('x'));
        same("right to left", QString::fromUtf8("שלום עולם"));
        same("outside the basic plane", QString::fromUtf8("\U0001F600 \U00020000"));
        same("300 outside the basic plane", QString::fromUtf8("\U00020000").repeated(150));
        same("an unpaired surrogate", QString(QChar(0xd83d)) + QLatin1Char('x'));
        row("a line feed", QStringLiteral("one\ntwo\r\nthree"), QStringLiteral("one two  three"));
        row("a tab", QStringLiteral("one\ttwo"), QStringLiteral("one two"));
        row("other separators", QString::fromUtf8("a\u2028b\u2029c\u0085d"), QStringLiteral("a b c d"));
        row("a null and an escape", QString::fromLatin1("a\0b\x1b", 4), QStringLiteral("a b "));
    }
    void hostileTextsArePlainOnOneLineAndElided()
    {
        QFETCH(QString, text);
        QFETCH(QString, line);
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
        m_widget->setName(QStringLiteral("x"));
        m_widget->setText(QStringLiteral("x"));
        const QSize minimum = m_widget->minimumSizeHint();
        const QSize hint = m_widget->sizeHint();
        m_widget->setName(text);
        m_widget->setText(text);
        QCOMPARE(label("nameLabel")->text(), text); // whole, for screen readers
        QCOMPARE(label("textLabel")->text(), text);
        QCOMPARE(m_widget->minimumSizeHint(), minimum);
        QCOMPARE(m_widget->sizeHint(), hint);
        QVERIFY(minimum.width() < 60);

        showPanel(256, 90);
        for (const char* name : {"nameLabel", "textLabel"}) {
            const QLabel* const shown = label(name);
            QCOMPARE(shown->textFormat(), Qt::PlainText);
            QVERIFY(m_widget->contentsRect().contains(shown->geometry()));
            QVERIFY(shown->geometry().right() < child<CloseButton>("closeButton")->x());
            if (shown->width() == 0)
                continue; // an empty line
            const QString elided = shown->fontMetrics().elidedText(line, Qt::ElideRight, shown->width());
            QCOMPARE(m_widget->grab(shown->geometry()).toImage(), pictureOf(shown, elided));
        }
    }

    void aLineThatFitsIsNotElided()
    {
        m_button = makeButton(ThreadButton::WindowButton);
        m_widget->setThreadButton(m_button.get());
        m_widget->setName(QStringLiteral("Notepad"));
        m_widget->setText(QStringLiteral("Letter to a friend"));
        showPanel(256, 90);
        for (const char* name : {"nameLabel", "textLabel"}) {
            const QLabel* const shown = label(name);
            QCOMPARE(m_widget->grab(shown->geometry()).toImage(), pictureOf(shown, shown->text()));
        }
    }

    void lettersAreMadeSmallerRatherThanCut()
    {
        m_widget->setName(QString::fromUtf8("Ápgjqy"));
        m_widget->setText(QString::fromUtf8("Ápgjqy"));
        QFont large = m_widget->font();
        large.setPixelSize(24);
        for (const char* name : {"nameLabel", "textLabel"})
            label(name)->setFont(large);
        showPanel(256);
        for (const char* name : {"nameLabel", "textLabel"}) {
            const QRect shown = label(name)->geometry();
            QVERIFY(shown.height() < label(name)->fontMetrics().height());
            const QImage image = m_widget->grab(shown).toImage();
            QFont fitting = label(name)->font();
            while (QFontMetrics(fitting).height() > shown.height())
                fitting.setPixelSize(fitting.pixelSize() - 1);
            QVERIFY(fitting.pixelSize() > 8);
            QLabel ordinary(label(name)->text());
            ordinary.setStyleSheet(QStringLiteral("background-color: #e6eaed"));
            ordinary.setAlignment(label(name)->alignment());
            ordinary.setFont(fitting);
            ordinary.setFixedSize(shown.size());
            QCOMPARE(image, ordinary.grab().toImage());
        }
    }

    void theLabelsTakeTheWidthBesideTheButtons()
    {
        m_widget->setText(QString(300, QLatin1Char('W')));
        showPanel(256);
        const QRect close = child<CloseButton>("closeButton")->geometry();
        QCOMPARE(close.right(), m_widget->contentsRect().right() - 2);
        QCOMPARE(close.top(), m_widget->contentsRect().top() + 2);
        QCOMPARE(label("textLabel")->geometry().right(), close.left() - 3);
    }

    void theButtonsThatEndATaskHaveTheirPictures()
    {
        makeExpanded();
        for (const auto& [name, picture] : {std::pair("closeButton", ":/icons/32x32/cancel.png"),
                                            std::pair("killButton", ":/icons/32x32/terminate.png")}) {
            CloseButton expected{QIcon(QLatin1String(picture))};
            QCOMPARE(paintedAlone(child<CloseButton>(name)), paintedAlone(&expected));
        }
    }

    void screenReadersHearButtonsAndWhatTheyStandFor()
    {
        makeExpanded();
        const auto heard = [this](const char* name) {
            QAccessibleInterface* const accessible =
                QAccessible::queryAccessibleInterface(child<QPushButton>(name));
            return accessible->role() != QAccessible::Button
                       ? QStringLiteral("no button")
                       : accessible->text(QAccessible::Name) + QStringLiteral(", ") +
                             accessible->text(QAccessible::Description);
        };
        QCOMPARE(heard("closeButton"), QStringLiteral("Close, Notepad"));
        QCOMPARE(heard("killButton"), QStringLiteral("Terminate, Notepad"));
        QCOMPARE(heard("preview"), QStringLiteral("Notepad, Letter"));
        m_widget = std::make_unique<ThreadWidget>(false);
        m_widget->setThreadButton(m_button.get());
        QCOMPARE(heard("closeButton"), QStringLiteral("Close, Notepad"));
    }

    void aFrameAroundAButtonShowsTheFocusOfTheKeyboardAlone()
    {
        makeExpanded();
        m_widget->resize(300, 200);
        m_widget->show();
        QVERIFY(QTest::qWaitForWindowActive(m_widget.get()));
        const auto frame = [&] {
            QImage image(m_widget->size(), QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            m_widget->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
            return boundsOf(image, QColor(focusColor));
        };
        const auto preview = child<QPushButton>("preview");
        const auto close = child<CloseButton>("closeButton");
        const auto kill = child<CloseButton>("killButton");
        preview->setFocus(Qt::MouseFocusReason);
        QVERIFY(frame().isNull());
        for (QWidget* const next :
             {static_cast<QWidget*>(close), static_cast<QWidget*>(kill), static_cast<QWidget*>(preview)}) {
            QTest::keyClick(m_widget.get(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), next);
            if (next == preview) { // its picture leaves a margin
                QCOMPARE(frame(), next->geometry().adjusted(1, 1, -1, -1));
                QVERIFY(!child<QLabel>("previewLabel")->geometry().intersects(QRect(1, 1, 2, 2)));
                continue;
            }
            QCOMPARE(frame(), next->geometry().adjusted(-2, -2, 2, 2));
            // All of it is beside the button, and within the widget's own frame.
            QVERIFY(m_widget->contentsRect().contains(frame()));
        }
        close->setFocus(Qt::MouseFocusReason);
        QVERIFY(frame().isNull());
    }
};

QTEST_MAIN(ThreadWidgetTest)
#include "tst_threadwidget.moc"
