// The task bar: what is there, its list of buttons and which of them is selected.
#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "config/configure.h"
#include "files/filesystemwidget.h"
#include "instances/appinstance.h"
#include "shell/appbutton.h"
#include "shell/menu.h"
#include "shell/taskfitting.h"
#include "shell/windowhistory.h"
#include "support/markingtranslator.h"
#include "support/ownmethods.h"
#include "support/tabbartest.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QSignalSpy>
#include <QtTest>

class TabBarListTest : public TabBarTest
{
    Q_OBJECT

    static QList<qlonglong> ids(const QSignalSpy& spy)
    {
        QList<qlonglong> list;
        for (const auto& arguments : spy)
            list.append(arguments.first().toLongLong());
        return list;
    }

private slots:
    // --- What is there at first

    void theBarIsAStripOfItsOwn()
    {
        QCOMPARE(m_bar->parentWidget(), nullptr);
        QCOMPARE(static_cast<int>(m_bar->windowFlags() & ~Qt::WindowType_Mask), 0x2040C00);
        QCOMPARE(m_bar->windowTitle(), QStringLiteral("quillet"));
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            QCOMPARE(m_bar->palette().brush(group, QPalette::Window), QBrush(Qt::white));
        QVERIFY(m_bar->autoFillBackground());
    }

    void fixedButtonsPanelTasksAndLogOffStandInThisOrder()
    {
        QCOMPARE(m_bar->count(), 3);
        QCOMPARE(m_bar->fixedCount(), 3);
        QStringList texts;
        for (int i = 0; i < 3; ++i) {
            const ThreadButton* const button = m_bar->buttonAt(i);
            QCOMPARE(button->kind(), 0);
            QCOMPARE(button->name(), QStringLiteral("Tidewell"));
            QVERIFY(!button->picture().isNull());
            texts.append(button->taskText());
        }
        QCOMPARE(texts, QStringList({"Desktop", "Places", "Configuration"}));
        QVERIFY(qobject_cast<Menu*>(m_bar->buttonAt(0)->widget()));
        QVERIFY(qobject_cast<FileSystemWidget*>(m_bar->buttonAt(1)->widget()));
        QVERIFY(qobject_cast<Configure*>(m_bar->buttonAt(2)->widget()));
        QCOMPARE(m_bar->buttonAt(0)->windowId(), qlonglong(0));
        QCOMPARE(m_bar->buttonAt(1)->windowId(),
                 static_cast<qlonglong>(m_bar->buttonAt(1)->widget()->winId()));
        QCOMPARE(m_bar->buttonAt(2)->windowId(), qlonglong(0));

        const QLayout* const layout = m_bar->layout();
        QCOMPARE(layout->count(), 4);
        QCOMPARE(layout->itemAt(0)->layout()->count(), 3);
        QCOMPARE(layout->itemAt(1)->widget(), panel());
        const QLayout* const tasks = layout->itemAt(2)->widget()->layout();
        QCOMPARE(tasks->itemAt(0)->widget(), arrow("leftButton"));
        QCOMPARE(tasks->itemAt(1)->widget(), arrow("rightButton"));
        QCOMPARE(layout->itemAt(3)->layout()->itemAt(0)->widget(), powerButton());
        QCOMPARE(panel()->minimumHeight(), 42);
        QCOMPARE(panel()->maximumHeight(), 42);
        QVERIFY(panel()->findChildren<QLabel*>().size() == 2); // no tile
        QCOMPARE(m_bar->currentButton(), nullptr);             // nothing is selected yet
    }

    void theLayoutsLeaveNoGapsAndStandAtTheLeft()
    {
        auto* const main = qobject_cast<QHBoxLayout*>(m_bar->layout());
        QVERIFY(main);
        auto* const fixed = qobject_cast<QHBoxLayout*>(main->itemAt(0)->layout());
        auto* const tasks = qobject_cast<QHBoxLayout*>(main->itemAt(2)->widget()->layout());
        auto* const right = qobject_cast<QHBoxLayout*>(main->itemAt(3)->layout());
        for (const QHBoxLayout* const layout : {main, fixed, tasks, right}) {
            QVERIFY(layout);
            QCOMPARE(layout->spacing(), 0);
            QCOMPARE(layout->contentsMargins(), QMargins());
        }
        QCOMPARE(main->sizeConstraint(), QLayout::SetMinimumSize);
        QCOMPARE(fixed->sizeConstraint(), QLayout::SetMinimumSize);
        QCOMPARE(fixed->alignment(), Qt::AlignLeft);
        QCOMPARE(tasks->alignment(), Qt::AlignLeft);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(main->stretch(i), i == 2 ? 1 : 0);
    }

    void theFixedButtonsAndTheLogOffButtonHaveTheirPictures()
    {
        const auto picture = [](const char* file) {
            return QImage(QLatin1String(":/icons/32x32/") + QLatin1String(file))
                .convertToFormat(QImage::Format_ARGB32_Premultiplied);
        };
        const char* const files[] = {"logo.png", "folder-docs.png", "config.png"};
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_bar->buttonAt(i)->picture().toImage(), picture(files[i]));
        QCOMPARE(powerButton()->picture().toImage(), picture("logoff.png"));
    }

    void theLogOffButtonStandsForNothingElse()
    {
        QCOMPARE(powerButton()->name(), QStringLiteral("Tidewell"));
        QCOMPARE(powerButton()->taskText(), QString());
        QCOMPARE(powerButton()->widget(), nullptr);
        QCOMPARE(powerButton()->windowId(), qlonglong(0));
        QCOMPARE(indexOf(powerButton()), -1);
    }

    void theLaunchersAndTheConfigurationsColourIsThePanels()
    {
        for (const int position : {0, 2})
            QCOMPARE(m_bar->buttonAt(position)->widget()->styleSheet(),
                     QStringLiteral("background-color: #e6eaed"));
    }

    void theArrowsAreHiddenAndNamed()
    {
        for (const char* name : {"leftButton", "rightButton"}) {
            const QPushButton* const button = arrow(name);
            QVERIFY(button);
            QVERIFY(button->isHidden());
            QCOMPARE(button->minimumSize(), QSize(24, 42));
            QCOMPARE(button->maximumSize(), QSize(24, 42));
            QCOMPARE(button->text(), QString());
        }
        QCOMPARE(arrow("leftButton")->icon().pixmap(64).toImage(),
                 QIcon(QStringLiteral(":/icons/64x64/back.png")).pixmap(64).toImage());
        QCOMPARE(arrow("rightButton")->icon().pixmap(64).toImage(),
                 QIcon(QStringLiteral(":/icons/64x64/forward.png")).pixmap(64).toImage());
    }

    void thePagesAreWindowsOfTheirOwnThatTheControllerKnows()
    {
        for (int i = 0; i < 3; ++i) {
            const QWidget* const page = m_bar->buttonAt(i)->widget();
            QCOMPARE(page->parentWidget(), nullptr);
            QCOMPARE(page->windowTitle(), QStringLiteral("quillet"));
            QCOMPARE(page->windowFlags() & ~Qt::WindowType_Mask,
                     Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
            QVERIFY(page->isHidden());
        }
    }

    void theLauncherHasTheValidApplicationsAndTheMark()
    {
        Application::setValidApplications({QStringLiteral("bogus")});
#ifndef Q_OS_WIN // which has a notepad
        const QString command =
            catalogue::applicationValue(QStringLiteral("notepad"), QStringLiteral("command"));
        Sandbox::writeFile(sandbox().scratch() + QLatin1Char('/') + command, "x");
        sandbox().setVariable("PATH", sandbox().scratch().toLocal8Bit());
#endif
        const TabBar bar;
        const QStringList valid = Application::validApplications();
        QVERIFY(valid.contains(QStringLiteral("notepad")));
        QVERIFY(!valid.contains(QStringLiteral("bogus")));
        QWidget* const launcher = bar.buttonAt(0)->widget();
        QCOMPARE(launcher->findChildren<AppButton*>().size(), valid.size());
        QCOMPARE(bar.buttonAt(2)->widget()->minimumSize(), launcher->size());
        QCOMPARE(bar.buttonAt(2)->widget()->maximumSize(), launcher->size());
        // The mark stands in the middle.
        launcher->resize(600, 500);
        const QImage picture = launcher->grab().toImage();
        QVERIFY(picture.pixelColor(300, 250) != picture.pixelColor(300, 5) ||
                picture.pixelColor(300, 300) != picture.pixelColor(300, 5));
    }

    void thePagesAreClosedInOrderAndGoWithTheBar()
    {
        const QPointer<QWidget> pages[] = {m_bar->buttonAt(0)->widget(), m_bar->buttonAt(1)->widget(),
                                           m_bar->buttonAt(2)->widget()};
        struct Closings : QObject
        {
            QList<QObject*> seen;
            bool eventFilter(QObject* page, QEvent* event) override
            {
                if (event->type() == QEvent::Close)
                    seen.append(page);
                return false;
            }
        } closings;
        QList<QObject*> expected;
        for (const QPointer<QWidget>& page : pages) {
            page->installEventFilter(&closings);
            expected.append(page);
        }
        m_bar.reset();
        QCOMPARE(closings.seen, expected);
        for (const QPointer<QWidget>& page : pages)
            QVERIFY(page.isNull());
    }

    void theWindowHistoryKeepsNothing()
    {
        auto* const history = m_bar->findChild<WindowHistory*>();
        QVERIFY(history);
        QCOMPARE(ownMethods(WindowHistory::staticMetaObject), QStringList("removeWindow(ApplicationWindow)"));
        addTask(0x10);
        const int count = m_bar->count();
        history->removeWindow(ApplicationWindow());
        QCOMPARE(m_bar->count(), count);
        QCOMPARE(current(), 3);
    }

    void everyTextPassesThroughTranslation()
    {
        const MarkingTranslator translator;
        const TabBar bar;
        const QStringList texts = {"TabBar|Desktop", "TabBar|Places", "TabBar|Configuration"};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(bar.buttonAt(i)->name(), QStringLiteral("TabBar|Tidewell"));
            QCOMPARE(bar.buttonAt(i)->taskText(), texts.at(i));
        }
    }

    // --- Signals that it passes on

    void thePagesSignalsAreRelayed()
    {
        const QSignalSpy launch(m_bar.get(), SIGNAL(launchApplication(AppInstance*)));
        const QSignalSpy open(m_bar.get(), SIGNAL(openFile(QString, QString)));
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        const QSignalSpy exit(m_bar.get(), SIGNAL(exitApp()));
        AppInstance instance(QStringLiteral("calculator"), nullptr);
        QMetaObject::invokeMethod(m_bar->buttonAt(0)->widget(), "launchApplication",
                                  Q_ARG(AppInstance*, &instance));
        QCOMPARE(launch.count(), 1);
        QCOMPARE(launch.first().first().value<AppInstance*>(), &instance);
        QMetaObject::invokeMethod(m_bar->buttonAt(1)->widget(), "openFile",
                                  Q_ARG(QString, QStringLiteral("/a.odt")),
                                  Q_ARG(QString, QStringLiteral("kwrite")));
        QCOMPARE(open.count(), 1);
        QCOMPARE(open.first(), QVariantList({QStringLiteral("/a.odt"), QStringLiteral("kwrite")}));
        QWidget tool;
        QMetaObject::invokeMethod(m_bar->buttonAt(2)->widget(), "launchConfigurationApplication",
                                  Q_ARG(QWidget*, &tool));
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.first().first().value<QWidget*>(), &tool);
        QCOMPARE(map.first().at(1).toBool(), true);
        powerButton()->setDown(true);
        QMetaObject::invokeMethod(powerButton(), "pressed");
        QCOMPARE(exit.count(), 0); // not before the click
        powerButton()->click();
        QCOMPARE(exit.count(), 1);
    }

    void aFixedButtonAsksForItsPage()
    {
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        m_bar->buttonAt(1)->click();
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.first().first().value<QWidget*>(), m_bar->buttonAt(1)->widget());
        QCOMPARE(map.first().at(1).toBool(), false);
    }

    void thePanelsButtonsGiveTheWindowsLowBitsSignExtended_data()
    {
        QTest::addColumn<qlonglong>("window");
        QTest::addColumn<qlonglong>("told");
        QTest::newRow("small") << qlonglong(0x1234) << qlonglong(0x1234);
        QTest::newRow("bit 31") << qlonglong(0x80001234LL) << qlonglong(-0x7FFFEDCC);
        QTest::newRow("above 32 bits") << qlonglong(0x100001234LL) << qlonglong(0x1234);
    }
    void thePanelsButtonsGiveTheWindowsLowBitsSignExtended()
    {
        QFETCH(qlonglong, window);
        QFETCH(qlonglong, told);
        ThreadButton* const button = addTask(window);
        const QSignalSpy close(m_bar.get(), SIGNAL(closeButtonClicked(qlonglong)));
        const QSignalSpy kill(m_bar.get(), SIGNAL(killButtonClicked(qlonglong)));
        panel()->closeButtonClickedSlot();
        QCOMPARE(ids(close), QList<qlonglong>({told}));
        QMetaObject::invokeMethod(panel(), "killButtonClicked", Q_ARG(ThreadButton*, button));
        QCOMPARE(ids(kill), QList<qlonglong>({told}));
        m_bar->closeButtonClicked(nullptr);
        m_bar->killButtonClicked(nullptr);
        QCOMPARE(close.count() + kill.count(), 2);
    }

    // --- Finding and adding

    void windowsAreFoundByTheirLowBits()
    {
        addTask(0x1234);
        addTask(0x5678);
        QCOMPARE(m_bar->indexOfWindow(0x1234), 3);
        QCOMPARE(m_bar->indexOfWindow(0x700005678), 4);
        QCOMPARE(m_bar->indexOfWindow(0x9999), -1);
        QCOMPARE(m_bar->indexOfWindow(0), -1); // no window, though pages have it
        addTask(0x1234);
        QCOMPARE(m_bar->indexOfWindow(0x1234), 5); // the last one
        QCOMPARE(m_bar->buttonAt(5)->index(), 3);  // it knows the one before
        QCOMPARE(m_bar->buttonAt(4)->index(), -1);
    }

    void pagesAreFoundByTheirWidgets()
    {
        for (int i = 0; i < 3; ++i)
            QCOMPARE(m_bar->indexOfWidget(m_bar->buttonAt(i)->widget()), i);
        QWidget other;
        QCOMPARE(m_bar->indexOfWidget(&other), -1);
        addTask(0x1234); // which has none
        QCOMPARE(m_bar->indexOfWidget(nullptr), -1);
        m_bar->addButton(
            new ThreadButton(&other, ThreadButton::FixedButton, QPixmap(), QString(), QString(), 0, 0, 0));
        m_bar->addButton(
            new ThreadButton(&other, ThreadButton::FixedButton, QPixmap(), QString(), QString(), 0, 0, 0));
        QCOMPARE(m_bar->indexOfWidget(&other), 5); // the last one
        QCOMPARE(m_bar->fixedCount(), 5);
    }

    void whatIsNoPositionHasNoButton()
    {
        QCOMPARE(m_bar->buttonAt(-1), nullptr);
        QCOMPARE(m_bar->buttonAt(3), nullptr);
        m_bar->addButton(nullptr);
        m_bar->setCurrentIndex(-1);
        m_bar->setCurrentIndex(3);
        QCOMPARE(m_bar->count(), 3);
        QCOMPARE(current(), -1);
    }

    void aNewTaskStandsBeforeTheRightArrowAndIsSelected()
    {
        const QSignalSpy changed(m_bar.get(), SIGNAL(currentChanged(int)));
        ThreadButton* const first = addTask(0x10);
        ThreadButton* const second = addTask(0x20);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.last().first().toInt(), 4);
        QCOMPARE(m_bar->currentButton(), second);
        const QLayout* const tasks = m_bar->layout()->itemAt(2)->widget()->layout();
        QCOMPARE(tasks->count(), 4);
        QCOMPARE(tasks->itemAt(1)->widget(), first);
        QCOMPARE(tasks->itemAt(2)->widget(), second);
        QCOMPARE(tasks->itemAt(3)->widget(), arrow("rightButton"));
        QCOMPARE(m_bar->fixedCount(), 3);
    }

    // --- Selecting

    void selectingSaysWhichWasBefore()
    {
        addTask(0x10);
        QCOMPARE(debugOutput().filter(QStringLiteral("Setting")),
                 QStringList(QStringLiteral("Setting selected button. NewIndex: 3, LastIndex: -1")));
        clearDebugOutput();
        addTask(0x20);
        QCOMPARE(debugOutput().filter(QStringLiteral("Setting")),
                 QStringList(QStringLiteral("Setting selected button. NewIndex: 4, LastIndex: 3")));
        clearDebugOutput();
        m_bar->setCurrentIndex(3);
        QCOMPARE(debugOutput().filter(QStringLiteral("Setting")),
                 QStringList(QStringLiteral("Setting selected button. NewIndex: 3, LastIndex: 4")));
        clearDebugOutput();
        m_bar->setCurrentIndex(0); // a page, without a window: the position itself is the last one already
        QCOMPARE(debugOutput().filter(QStringLiteral("Setting")),
                 QStringList(QStringLiteral("Setting selected button. NewIndex: 0, LastIndex: 0")));
    }

    void selectingAPageShowsIt()
    {
        const QSignalSpy changed(m_bar.get(), SIGNAL(currentChanged(int)));
        m_bar->setCurrentIndex(2);
        QVERIFY(!m_bar->buttonAt(2)->widget()->isHidden());
        QCOMPARE(m_bar->buttonAt(2)->widget()->focusWidget(), m_bar->buttonAt(2)->widget());
        QCOMPARE(current(), 2);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toInt(), 2);
    }

    void aSelectedPageGetsTheFocusAsAWindowThatBecomesActive()
    {
        QWidget* const page = m_bar->buttonAt(2)->widget();
        page->show();
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page));
        page->clearFocus();
        struct Focus : QObject
        {
            QList<Qt::FocusReason> reasons;
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::FocusIn)
                    reasons.append(static_cast<QFocusEvent*>(event)->reason());
                return false;
            }
        } focus;
        page->installEventFilter(&focus);
        m_bar->setCurrentIndex(2);
        QCOMPARE(focus.reasons, QList<Qt::FocusReason>({Qt::ActiveWindowFocusReason}));
    }

    void thePictureOfTheComingWindowGoesToTheButtonThatIsLeft()
    {
        QWidget window;
        window.setStyleSheet(QStringLiteral("background-color: #123456"));
        window.resize(30, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        ThreadButton* const left = addTask(0x10);
        ThreadButton* const coming = addTask(static_cast<qlonglong>(window.winId()));
        QVERIFY(coming->snapshot().isNull());
        QCOMPARE(left->snapshot().toImage().pixelColor(5, 5), QColor(0x12, 0x34, 0x56));
    }

    void aButtonMayBeSelectedByItsPosition()
    {
        ThreadButton* const button = addTask(0x10);
        QMetaObject::invokeMethod(button, "threadButtonClicked", Q_ARG(int, 1));
        QCOMPARE(current(), 1);
    }

    void addingAButtonRemembersWhereTheCurrentOneStands()
    {
        addTask(0x10);
        addTask(0x20);
        ThreadButton* const selected = addTask(0x30);
        setForegroundWindow(0);
        m_bar->removeButton(3); // the remembered position is beyond the end now
        QCOMPARE(m_bar->currentButton(), selected);
        QWidget page;
        m_bar->addButton(
            new ThreadButton(&page, ThreadButton::FixedButton, QPixmap(), QString(), QString(), 0, 0, 0));
        m_bar->setCurrentThreadName(QString());
        const QSignalSpy changed(m_bar.get(), SIGNAL(currentChanged(int)));
        m_bar->refresh();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_bar->currentButton(), selected);
    }

    void refreshingSelectsTheLastOneAgain()
    {
        m_bar->refresh(); // nothing was selected ever
        QCOMPARE(current(), -1);
        addTask(0x10);
        const QSignalSpy changed(m_bar.get(), SIGNAL(currentChanged(int)));
        m_bar->refresh();
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().first().toInt(), 3);
    }

    void showingTheDesktopSelectsTheLauncherAndMapsItByForce()
    {
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        QStringList order;
        connect(m_bar.get(), &TabBar::currentChanged, this, [&] { order.append(QStringLiteral("changed")); });
        connect(m_bar.get(), &TabBar::mapWidget, this, [&] { order.append(QStringLiteral("map")); });
        m_bar->showDesktop();
        QCOMPARE(order, QStringList({"changed", "map"}));
        QCOMPARE(current(), 0);
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.first().first().value<QWidget*>(), m_bar->buttonAt(0)->widget());
        QCOMPARE(map.first().at(1).toBool(), true);
    }

    void thePanelGetsNameAndText()
    {
        m_bar->setCurrentThreadName(QStringLiteral("the name"));
        m_bar->setCurrentThreadText(QStringLiteral("the text"));
        QStringList texts;
        for (const QLabel* const label : panel()->findChildren<QLabel*>())
            texts.append(label->text());
        QVERIFY(texts.contains(QStringLiteral("the name")));
        QVERIFY(texts.contains(QStringLiteral("the text")));
    }

    // --- Removing

    void theForegroundWindowsButtonIsSelectedAfterARemoval()
    {
        QWidget window;
        const auto id = static_cast<qlonglong>(window.winId());
        addTask(id);
        addTask(0x20);
        addTask(0x30);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        setForegroundWindow(id);
        clearDebugOutput();
        m_bar->removeButton(5);
        QCOMPARE(debugOutput().filter(QStringLiteral("Setting")),
                 QStringList(QStringLiteral("Setting selected button. NewIndex: 3, LastIndex: 3")));
        QCOMPARE(m_bar->count(), 5);
        QCOMPARE(current(), 3);
        m_bar->removeButton(); // the last one selected
        QCOMPARE(m_bar->count(), 4);
        QCOMPARE(m_bar->indexOfWindow(id), -1);
        QCOMPARE(m_bar->indexOfWindow(0x20), 3);
    }

    void withoutAForegroundWindowTheRememberedPositionIsSelected_data()
    {
        QTest::addColumn<qlonglong>("foreground");
        QTest::newRow("none") << qlonglong(0);
        QTest::newRow("one without a button") << qlonglong(0x9999);
    }
    void withoutAForegroundWindowTheRememberedPositionIsSelected()
    {
        QFETCH(qlonglong, foreground);
        addTask(0x10);
        addTask(0x20);
        addTask(0x30);
        setForegroundWindow(foreground);
        m_bar->setCurrentIndex(4);
        m_bar->removeButton(3); // the position is not moved: it is the following button's now
        QCOMPARE(current(), 4);
        QCOMPARE(m_bar->currentButton()->windowId(), qlonglong(0x30));
    }

    void whenTheLastTaskGoesTheLauncherIsShown()
    {
        addTask(0x10);
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        setForegroundWindow(0);
        clearDebugOutput();
        m_bar->removeButton(3);
        QCOMPARE(debugOutput().first(), QStringLiteral("Removing button. lastIndex is 3"));
        QCOMPARE(m_bar->count(), 3);
        QCOMPARE(m_bar->currentButton(), nullptr); // the panel is cleared
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.first().first().value<QWidget*>(), m_bar->buttonAt(0)->widget());
        QCOMPARE(map.first().at(1).toBool(), true);
    }

    void whatIsNoPositionRemovesNothing()
    {
        addTask(0x10);
        for (const int position : {4, 1000, -2})
            m_bar->removeButton(position);
        QCOMPARE(m_bar->count(), 4);
    }

    void withoutAnySelectionTheLauncherIsShown()
    {
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        const QSignalSpy changed(m_bar.get(), SIGNAL(currentChanged(int)));
        setForegroundWindow(0);
        m_bar->removeButton(); // there was none: nothing goes
        QCOMPARE(m_bar->count(), 3);
        QCOMPARE(map.count(), 1);
        QCOMPARE(changed.count(), 0);
    }

    void whenTheRememberedPositionIsBeyondTheEndTheLauncherIsShownAndThePanelStays()
    {
        addTask(0x10);
        ThreadButton* const shown = addTask(0x20);
        setForegroundWindow(0x9999);
        const QSignalSpy map(m_bar.get(), SIGNAL(mapWidget(QWidget*, bool)));
        m_bar->removeButton(3); // the remembered position is beyond the end now
        QCOMPARE(m_bar->currentButton(), shown);
        QCOMPARE(map.count(), 1);
        QCOMPARE(map.first().first().value<QWidget*>(), m_bar->buttonAt(0)->widget());
    }

    void theRoomOfAFixedButtonThatGoesIsTheTasks()
    {
        const int width = QApplication::primaryScreen()->geometry().width();
        int tasks = 0;
        while (!shell::fitTasks(width, 3, tasks).scrolls())
            ++tasks;
        QVERIFY(!shell::fitTasks(width, 2, tasks).scrolls());
        addTasks(tasks);
        QVERIFY(!arrow("leftButton")->isHidden());
        setForegroundWindow(0);
        m_bar->removeButton(0);
        QCOMPARE(m_bar->fixedCount(), 2);
        QVERIFY(arrow("leftButton")->isHidden());
        for (int i = 2; i < m_bar->count(); ++i)
            QVERIFY(!m_bar->buttonAt(i)->isHidden());
    }

    void aButtonMayRemoveItselfByItsOwnClick()
    {
        const QPointer<ThreadButton> button = addTask(0x10);
        connect(button, &QPushButton::clicked, this, [this] { m_bar->removeButton(3); });
        button->click();
        QCOMPARE(m_bar->count(), 3);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(button.isNull());
    }

    // --- Closing

    void neitherTheBarNorAPageClosesBecauseAUserSaysSo()
    {
        m_bar->show();
        m_bar->setCurrentIndex(0);
        for (QWidget* const widget : {static_cast<QWidget*>(m_bar.get()), m_bar->buttonAt(0)->widget()}) {
            QCloseEvent event;
            QSpontaneKeyEvent::setSpontaneous(&event);
            qApp->notify(widget, &event); // which does not say that the event is the program's own
            QVERIFY(!event.isAccepted());
            QVERIFY(!widget->isHidden());
        }
        QVERIFY(m_bar->close()); // the controller may
    }

    void theSignalsAndSlotsStandInTheirOrder()
    {
        const QStringList expected = {"buttonClicked(ThreadButton*)",
                                      "closeButtonClicked(qlonglong)",
                                      "killButtonClicked(qlonglong)",
                                      "currentChanged(int)",
                                      "launchApplication(AppInstance*)",
                                      "openFile(QString,QString)",
                                      "mapWidget(QWidget*,bool)",
                                      "exitApp()",
                                      "showDesktop()",
                                      "removeButton(int)",
                                      "removeButton()",
                                      "setCurrentIndex(int)",
                                      "refresh()",
                                      "resize(QSize)",
                                      "updateContents()",
                                      "setCurrentThreadName(QString)",
                                      "setCurrentThreadText(QString)",
                                      "closeButtonClicked(ThreadButton*)",
                                      "killButtonClicked(ThreadButton*)",
                                      "doMapWidget(QWidget*,bool)",
                                      "leftButtonClicked()",
                                      "rightButtonClicked()"};
        QCOMPARE(ownMethods(TabBar::staticMetaObject), expected);
    }
};

QTEST_MAIN(TabBarListTest)
#include "tst_tabbar.moc"
