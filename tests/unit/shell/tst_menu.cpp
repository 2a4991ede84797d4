#include "shell/menu.h"

#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "instances/appinstance.h"
#include "server/twclient.h"
#include "shell/appbutton.h"
#include "support/quillettest.h"
#include "support/twserver/twserver.h"

#include <QGridLayout>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class MenuTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<Menu> m_menu;

    // Applications that nobody knows: each is labelled with its id.
    static QStringList ids(int count)
    {
        QStringList list;
        for (int i = 0; i < count; ++i)
            list.append(QStringLiteral("a%1").arg(i));
        return list;
    }

    QList<AppButton*> buttons() const { return m_menu->findChildren<AppButton*>(); }

    QGridLayout* grid() const { return qobject_cast<QGridLayout*>(m_menu->layout()); }

    // The labels in the cells of the rows from the top, "." for an empty cell: "a0 a2/a1 .".
    QString cells() const
    {
        QStringList rows;
        for (int row = 0; row < m_menu->height() / 112; ++row) {
            QStringList labels;
            for (int column = 0; column < m_menu->width() / 74; ++column) {
                const QLayoutItem* const item = grid()->itemAtPosition(row, column);
                QWidget* const widget = item ? const_cast<QLayoutItem*>(item)->widget() : nullptr;
                labels.append(!item ? QStringLiteral("?") : widget ? widget->accessibleName() : QString('.'));
            }
            rows.append(labels.join(' '));
        }
        return rows.join('/');
    }

    // The labels of the buttons that are to be seen.
    QStringList shown() const
    {
        QStringList labels;
        for (const AppButton* button : buttons()) {
            if (button->isVisible())
                labels.append(button->accessibleName());
        }
        return labels;
    }

    AppButton* button(const QString& label) const
    {
        for (AppButton* candidate : buttons()) {
            if (candidate->accessibleName() == label)
                return candidate;
        }
        qFatal("no such button");
    }

    QString focused() const
    {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? widget->accessibleName() : QString();
    }

private slots:
    void init()
    {
        QuilletTest::init();
        qRegisterMetaType<AppInstance*>();
        Application::setValidApplications(QStringList());
        m_menu = std::make_unique<Menu>(nullptr, QStringLiteral("e6eaed"));
    }

    void cleanup()
    {
        m_menu.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the instances
        QuilletTest::cleanup();
    }

    void signalsAndSlotsComeInOrder()
    {
        const QStringList expected{"launchApplication(AppInstance*)", "selectWidget(QWidget*,bool)",
                                   "selectWidget(QWidget*)", "launchApplicationSlot(AppInstance*)",
                                   "setLogo()"};
        QStringList found;
        const QMetaObject& meta = Menu::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
            QCOMPARE(meta.method(i).methodType(),
                     found.size() <= 3 ? QMetaMethod::Signal : QMetaMethod::Slot);
        }
        QCOMPARE(found, expected);
        QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("PixmapFrame"));
    }

    // --- Construction

    void aNewMenuIsPaintedInItsColour_data()
    {
        QTest::addColumn<QString>("color");
        QTest::newRow("the launcher's") << "e6eaed";
        QTest::newRow("another") << "123456";
    }
    void aNewMenuIsPaintedInItsColour()
    {
        QFETCH(QString, color);
        m_menu = std::make_unique<Menu>(nullptr, color);
        QCOMPARE(m_menu->styleSheet(), QString("background-color: #" + color));
        m_menu->resize(QSize(200, 300));
        m_menu->fill(ids(1), nullptr);
        const QImage image = m_menu->grab().toImage();
        for (const QPoint& point : {QPoint(0, 0), QPoint(100, 150), QPoint(199, 299), QPoint(30, 30)})
            QCOMPARE(image.pixelColor(point), QColor('#' + color));
    }

    void aNewMenuHasAnEmptyGridAndGrowsNoFurther()
    {
        QCOMPARE(m_menu->sizePolicy().horizontalPolicy(), QSizePolicy::Maximum);
        QCOMPARE(m_menu->sizePolicy().verticalPolicy(), QSizePolicy::Maximum);
        QVERIFY(grid());
        QCOMPARE(grid()->alignment(), Qt::AlignLeft | Qt::AlignTop);
        QCOMPARE(grid()->count(), 0);
    }

    void aNewMenuTellsItsNativeWindow()
    {
        const int low = static_cast<int>(m_menu->winId());
        QCOMPARE(debugOutput(), QStringList(QStringLiteral("PrincipalWidget winId: %1").arg(low)));
    }

    // --- The grid

    void fillingMakesTheCells_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("cells");
        QTest::newRow("1x1") << QSize(1, 1) << 0;
        QTest::newRow("too narrow") << QSize(73, 1000) << 0;
        QTest::newRow("too low") << QSize(1000, 111) << 0;
        QTest::newRow("one cell") << QSize(74, 112) << 1;
        QTest::newRow("1024x726") << QSize(1024, 726) << 13 * 6;
        QTest::newRow("10000x10000") << QSize(10000, 10000) << 135 * 89;
    }
    void fillingMakesTheCells()
    {
        QFETCH(QSize, size);
        QFETCH(int, cells);
        m_menu->setFixedSize(size);
        m_menu->fill(QStringList(), nullptr);
        QCOMPARE(grid()->count(), cells);
        for (int i = 0; i < grid()->count(); ++i) {
            QSpacerItem* const spacer = grid()->itemAt(i)->spacerItem();
            QVERIFY(spacer);
            QCOMPARE(spacer->sizeHint(), QSize(74, 112));
            QCOMPARE(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Fixed);
            QCOMPARE(spacer->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
        }
    }

    void applicationsFillTheColumnsFromTopToBottom()
    {
        m_menu->setFixedSize(3 * 74 + 50, 3 * 112 + 50);
        m_menu->fill(ids(4), nullptr);
        QCOMPARE(cells(), QStringLiteral("a0 a3 ./a1 . ./a2 . ."));
        m_menu->show();
        QCOMPARE(button("a0")->geometry(), QRect(0, 0, 74, 112));
        QCOMPARE(button("a2")->geometry(), QRect(0, 224, 74, 112));
        QCOMPARE(button("a3")->geometry(), QRect(74, 0, 74, 112));
        for (const AppButton* b : buttons())
            QVERIFY(b->isFlat());
        QCOMPARE(buttons().size(), 4);
    }

    void theLastCellsFitIntoTheMenuToo()
    {
        m_menu->setFixedSize(1024, 726);
        m_menu->fill(ids(13 * 6), nullptr);
        m_menu->show();
        QCOMPARE(button("a77")->geometry(), QRect(12 * 74, 5 * 112, 74, 112));
    }

    void fillingAfterResizingGivesEachItsOwnCell()
    {
        m_menu->resize(QSize(2 * 74, 2 * 112));
        m_menu->fill(ids(3), nullptr);
        QCOMPARE(cells(), QStringLiteral("a0 a2/a1 ."));
        QCOMPARE(grid()->count(), 4);
    }

    void surplusButtonsAreHiddenAndComeBackInOrder()
    {
        m_menu->resize(QSize(2 * 74, 2 * 112));
        m_menu->show();
        m_menu->fill(ids(6), nullptr);
        QCOMPARE(cells(), QStringLiteral("a0 a2/a1 a3"));
        QCOMPARE(shown(), ids(4));
        m_menu->resize(QSize(74, 112));
        QCOMPARE(cells(), QStringLiteral("a0"));
        QCOMPARE(shown(), ids(1));
        m_menu->resize(QSize(3 * 74, 3 * 112));
        QCOMPARE(cells(), QStringLiteral("a0 a3 ./a1 a4 ./a2 a5 ."));
        QCOMPARE(shown(), ids(6));
        m_menu->resize(QSize(1, 1));
        QCOMPARE(grid()->count(), 0);
        QCOMPARE(shown(), QStringList());
        m_menu->resize(QSize(6 * 74, 112));
        QCOMPARE(cells(), QStringLiteral("a0 a1 a2 a3 a4 a5"));
        QCOMPARE(button("a5")->parentWidget(), m_menu.get());
    }

    void resizingFixesTheSizeAndReplacesTheGrid()
    {
        m_menu->fill(ids(2), nullptr);
        const QPointer<QGridLayout> before = grid();
        m_menu->resize(QSize(300, 400));
        QVERIFY(!before);
        QCOMPARE(m_menu->size(), QSize(300, 400));
        QCOMPARE(m_menu->minimumSize(), QSize(300, 400));
        QCOMPARE(m_menu->maximumSize(), QSize(300, 400));
        QCOMPARE(grid()->alignment(), Qt::AlignLeft | Qt::AlignTop);
        QCOMPARE(grid()->count(), 4 * 3);
    }

    void anyWidgetCanBePlacedBehindTheButtons()
    {
        m_menu->resize(QSize(2 * 74, 2 * 112));
        m_menu->fill(ids(2), nullptr);
        const auto first = new QWidget;
        first->setAccessibleName("first");
        m_menu->place(first);
        QCOMPARE(cells(), QStringLiteral("a0 first/a1 ."));
        for (const char* name : {"second", "third"}) {
            const auto widget = new QWidget;
            widget->setAccessibleName(name);
            m_menu->place(widget);
            QCOMPARE(widget->parentWidget(), m_menu.get());
            QCOMPARE(widget->isHidden(), qstrcmp(name, "third") == 0);
        }
        QCOMPARE(cells(), QStringLiteral("a0 first/a1 second"));
        m_menu->resize(QSize(5 * 74, 112));
        QCOMPARE(cells(), QStringLiteral("a0 a1 first second third"));
    }

    void aWidgetThatWasDeletedLeavesNoGapAfterTheNextResize()
    {
        m_menu->resize(QSize(3 * 74, 112));
        m_menu->fill(ids(3), nullptr);
        delete button("a1");
        m_menu->resize(QSize(3 * 74, 112));
        QCOMPARE(cells(), QStringLiteral("a0 a2 ."));
    }

    void aHugeMenuHoldsManyApplications()
    {
        m_menu->resize(QSize(10000, 10000));
        m_menu->fill(ids(100), nullptr);
        m_menu->show();
        QCOMPARE(button("a88")->geometry(), QRect(0, 88 * 112, 74, 112));
        QCOMPARE(button("a99")->geometry(), QRect(74, 10 * 112, 74, 112));
        m_menu->resize(QSize(1, 1));
        QCOMPARE(shown(), QStringList());
    }

    // --- Applications

    void everyApplicationOfTheCatalogueHasItsButton()
    {
        const QStringList all = catalogue::applicationIds();
        m_menu->resize(QSize(1024, 726));
        m_menu->fill(all, nullptr);
        QCOMPARE(all.size(), 48);
        QCOMPARE(buttons().size(), 48);
        for (int i = 0; i < 48; ++i) {
            const QString name = catalogue::applicationValue(all.at(i), QStringLiteral("name"));
            QCOMPARE(buttons().at(i)->accessibleName(), name);
        }
    }

    void theCatalogueIsToldTheList_data()
    {
        QTest::addColumn<bool>("unconnected");
        QTest::newRow("without a server") << false;
        QTest::newRow("with a server that is gone") << true;
    }
    void theCatalogueIsToldTheList()
    {
        QFETCH(bool, unconnected);
        TWClient client;
        m_menu->fill(ids(3), unconnected ? &client : nullptr);
        QCOMPARE(Application::validApplications(), ids(3));
    }

    void withAnUnconnectedServerThereAreNoButtonsButCells()
    {
        TWClient client;
        m_menu->setFixedSize(1024, 726);
        m_menu->fill(ids(3), &client);
        QVERIFY(buttons().isEmpty());
        QCOMPARE(grid()->count(), 13 * 6);
        QVERIFY(sandbox().log().isEmpty()); // nor are there instances
    }

    void withAServerNamesAndIconsAreTheServers()
    {
        TwServer server;
        server.data.servers.insert("here", {"127.0.0.1", "windows"});
        for (const char* id : {"one", "two"}) {
            TwData::Application application; // whole: every empty answer would be waited for
            application.name = id;
            application.displayName = QString("Server's %1").arg(id);
            application.execPath = "C:\\app.exe";
            application.arguments = "-a";
            application.server = "here";
            application.icon = Sandbox::readFile(":/icons/64x64/logo.png");
            server.data.applications.insert(id, application);
        }
        QVERIFY(server.start());
        sandbox().writeSettings("[Server]\nTidewellServerAddress=127.0.0.1\nTidewellServerPort=" +
                                QByteArray::number(server.port()) + '\n');
        TWClient client;
        QVERIFY(client.connectToServer());
        m_menu->fill({"one", "two"}, &client);
        QCOMPARE(buttons().size(), 2);
        QCOMPARE(buttons().at(0)->accessibleName(), QStringLiteral("Server's one"));
        QCOMPARE(buttons().at(1)->accessibleName(), QStringLiteral("Server's two"));
        QVERIFY(!buttons().at(0)->icon().pixmap(64).isNull());
        const QSignalSpy launched(m_menu.get(), SIGNAL(launchApplication(AppInstance*)));
        buttons().at(0)->click();
        QCOMPARE(launched.first().first().value<AppInstance*>()->server(), &client);
    }

    void aClickLaunchesTheButtonsApplication()
    {
        m_menu->fill(ids(3), nullptr);
        const QSignalSpy launched(m_menu.get(), SIGNAL(launchApplication(AppInstance*)));
        button("a1")->click();
        button("a2")->click();
        QCOMPARE(launched.count(), 2);
        const auto first = launched.at(0).first().value<AppInstance*>();
        QCOMPARE(first->name(), QStringLiteral("a1"));
        QVERIFY(!first->server());
        QVERIFY(!first->parent());
        QCOMPARE(launched.at(1).first().value<AppInstance*>()->name(), QStringLiteral("a2"));
    }

    void theSlotPassesTheApplicationOn()
    {
        AppInstance instance(QStringLiteral("kcalc"), nullptr);
        const QSignalSpy launched(m_menu.get(), SIGNAL(launchApplication(AppInstance*)));
        QVERIFY(
            QMetaObject::invokeMethod(m_menu.get(), "launchApplicationSlot", Q_ARG(AppInstance*, &instance)));
        QCOMPARE(launched.count(), 1);
        QCOMPARE(launched.first().first().value<AppInstance*>(), &instance);
    }

    void theInstancesGoWhenTheMenuGoes()
    {
        m_menu->fill(ids(2), nullptr);
        QSignalSpy launched(m_menu.get(), SIGNAL(launchApplication(AppInstance*)));
        button("a0")->click();
        button("a1")->click();
        const QPointer<AppInstance> first = launched.at(0).first().value<AppInstance*>();
        const QPointer<AppInstance> second = launched.at(1).first().value<AppInstance*>();
        const QSignalSpy told(first, SIGNAL(deleteAppInstance()));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(first && second);
        m_menu.reset();
        QCOMPARE(told.count(), 1);
        QVERIFY(first && second); // not before the event loop runs
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!first && !second);
    }

    // --- The logo

    void thePictureLiesInTheMiddleAndMovesWithTheSize()
    {
        QPixmap mark(20, 20);
        mark.fill(Qt::red);
        m_menu->resize(QSize(300, 200));
        m_menu->setOpacity(0.9);
        m_menu->setPixmap(mark, true, false);
        QVERIFY(m_menu->grab().toImage().pixelColor(141, 91).green() < 40);
        m_menu->resize(QSize(400, 300));
        const QImage image = m_menu->grab().toImage();
        QVERIFY(image.pixelColor(191, 141).green() < 40);
        QCOMPARE(image.pixelColor(141, 91), QColor("#e6eaed"));
    }

    void theLogoIsTheProductsMarkInTheMiddle()
    {
        const QPixmap logo(QStringLiteral(":/icons/other/tidewell.png"));
        m_menu->resize(QSize(1024, 726));
        QPixmap other(30, 30);
        other.fill(Qt::red);
        m_menu->setPixmap(other, false, true); // goes
        m_menu->setLogo();
        const QImage shownLogo = m_menu->grab().toImage();
        PixmapFrame expected(nullptr, QPixmap());
        expected.setStyleSheet(QStringLiteral("background-color: #e6eaed"));
        expected.setFixedSize(1024, 726);
        expected.setOpacity(0.9);
        expected.setPixmap(logo, true, false);
        QCOMPARE(shownLogo, expected.grab().toImage());
    }

    void theLogoIsPaintedFaintly()
    {
        QPixmap mark(20, 20);
        mark.fill(Qt::black);
        m_menu->resize(QSize(300, 200));
        m_menu->setLogo();
        m_menu->setPixmap(mark, true, false);
        // A tenth of e6eaed shines through.
        const int shade = m_menu->grab().toImage().pixelColor(150, 100).green();
        QVERIFY2(shade >= 21 && shade <= 26, qPrintable(QString::number(shade)));
    }

    // --- Keyboard

    void theArrowKeysMoveByCell()
    {
        m_menu->resize(QSize(3 * 74, 2 * 112));
        m_menu->fill(ids(5), nullptr); // a0 a2 a4 / a1 a3 .
        m_menu->show();
        QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
        m_menu->setFocus();
        const auto press = [this](Qt::Key key) {
            QWidget* const widget = QApplication::focusWidget();
            QTest::keyClick(widget ? widget : m_menu.get(), key);
            return focused();
        };
        QCOMPARE(press(Qt::Key_Down), QStringLiteral("a0")); // nobody had it
        QCOMPARE(press(Qt::Key_Right), QStringLiteral("a2"));
        QCOMPARE(press(Qt::Key_Down), QStringLiteral("a3"));
        QCOMPARE(press(Qt::Key_Down), QStringLiteral("a3"));
        QCOMPARE(press(Qt::Key_Right), QStringLiteral("a3")); // nothing there
        QCOMPARE(press(Qt::Key_Up), QStringLiteral("a2"));
        QCOMPARE(press(Qt::Key_Right), QStringLiteral("a4"));
        QCOMPARE(press(Qt::Key_Left), QStringLiteral("a2"));
        QCOMPARE(press(Qt::Key_Left), QStringLiteral("a0"));
        QCOMPARE(press(Qt::Key_Left), QStringLiteral("a0"));
        // They show where they are.
        QCOMPARE(button("a0")->grab().toImage().pixelColor(2, 37), QColor(0x12566b));
        const QSignalSpy launched(m_menu.get(), SIGNAL(launchApplication(AppInstance*)));
        press(Qt::Key_Return);
        QCOMPARE(launched.count(), 1);
        QCOMPARE(launched.first().first().value<AppInstance*>()->name(), QStringLiteral("a0"));
    }

    void theTabKeyFollowsTheOrder()
    {
        m_menu->resize(QSize(2 * 74, 2 * 112));
        m_menu->fill(ids(4), nullptr);
        m_menu->show();
        QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
        button("a0")->setFocus();
        for (const char* label : {"a1", "a2", "a3", "a0"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(focused(), QString(label));
        }
    }

    void withoutCellsTheArrowKeysDoNothing()
    {
        m_menu->resize(QSize(1, 1));
        m_menu->fill(ids(2), nullptr);
        m_menu->show();
        QVERIFY(QTest::qWaitForWindowActive(m_menu.get()));
        QTest::keyClick(m_menu.get(), Qt::Key_Down);
        QCOMPARE(focused(), QString());
        // Not even when there was a focus once.
        m_menu->resize(QSize(200, 300));
        button("a0")->setFocus();
        m_menu->resize(QSize(1, 300));
        QTest::keyClick(m_menu.get(), Qt::Key_Down);
        QVERIFY(!button("a0")->hasFocus());
    }
};

QTEST_MAIN(MenuTest)
#include "tst_menu.moc"
