// The association editor under the keyboard and assistive technology, and with contents of all kinds.
#include "catalogue/application.h"
#include "support/mimeconfigtest.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QElapsedTimer>
#include <QPushButton>
#include <QtTest>

class EditorKeysTest : public MimeConfigTest
{
    Q_OBJECT

    void openWithServer()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        addExtension(QStringLiteral(".doc"), "b:c:d");
        connectServer();
        open();
        show();
    }

    QString focused()
    {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? widget->objectName() : QString();
    }

    static void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }

private slots:
    void theExtensionHasTheFocusAtFirst()
    {
        openWithServer();
        QCOMPARE(focused(), QStringLiteral("extensionsBox"));
    }

    void onOneFileTheApplicationsHaveTheFocusAtFirst()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        open(QStringLiteral("/x.odt"));
        show();
        QCOMPARE(focused(), QStringLiteral("applicationsList"));
    }

    void tabGoesThroughWhatCanBeUsed()
    {
        openWithServer();
        QStringList way;
        for (int i = 0; i < 11; ++i) {
            key(Qt::Key_Tab);
            way.append(focused());
        }
        QCOMPARE(way, QStringList({"selectedList", "downButton", "removeButton", "acceptButton",
                                   "cancelButton", "backButton", "groupBox", "applicationsList", "addButton",
                                   "extensionsBox", "selectedList"}));
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(focused(), QStringLiteral("extensionsBox"));
        select(selected(), QStringLiteral("b"));
        way.clear();
        for (int i = 0; i < 9; ++i) {
            key(Qt::Key_Backtab, Qt::ShiftModifier);
            way.append(focused());
        }
        QCOMPARE(way, QStringList({"addButton", "applicationsList", "groupBox", "backButton", "cancelButton",
                                   "acceptButton", "removeButton", "upButton", "selectedList"}));
    }

    void enterAcceptsAndEscapeGoesBackFromEverywhere_data()
    {
        QTest::addColumn<QByteArray>("widget");
        for (const char* const name : {"groupBox", "applicationsList", "extensionsBox", "selectedList"})
            QTest::newRow(name) << QByteArray(name);
    }
    void enterAcceptsAndEscapeGoesBackFromEverywhere()
    {
        QFETCH(QByteArray, widget);
        openWithServer();
        for (const bool hasCurrent : {false, true}) {
            applications()->setCurrentRow(hasCurrent ? 0 : -1);
            selected()->setCurrentRow(hasCurrent ? 0 : -1);
            for (const int pressed : {Qt::Key_Return, Qt::Key_Enter}) {
                show();
                button(widget)->setFocus();
                clearDebugOutput();
                key(pressed, pressed == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
                QVERIFY(editor().isHidden());
                QCOMPARE(messages().size(), 2); // it looked for changes
            }
            show();
            button(widget)->setFocus();
            clearDebugOutput();
            key(Qt::Key_Escape);
            QVERIFY(editor().isHidden());
            QCOMPARE(messages(), QStringList());
        }
    }

    void enterAcceptsAlsoAfterAButtonHadTheKeyboard()
    {
        openWithServer();
        for (const char* const name : {"acceptButton", "cancelButton", "backButton"}) {
            show();
            button(name)->setFocus(Qt::TabFocusReason);
            button("extensionsBox")->setFocus(Qt::TabFocusReason);
            clearDebugOutput();
            key(Qt::Key_Return);
            QVERIFY(editor().isHidden());
            QCOMPARE(messages().size(), 2); // it looked for changes
        }
    }

    void enterThatIsHeldNeitherAcceptsNorPresses()
    {
        openWithServer();
        for (const char* const name : {"extensionsBox", "selectedList", "acceptButton", "cancelButton"}) {
            button(name)->setFocus(Qt::TabFocusReason);
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
            QCoreApplication::sendEvent(button(name), &held);
            QVERIFY(editor().isVisible());
        }
    }

    void enterPressesTheButtonThatHasTheFocus()
    {
        openWithServer();
        select(selected(), QStringLiteral("b"));
        button("upButton")->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
        QCOMPARE(shown(), QStringLiteral("b:a"));
        QVERIFY(editor().isVisible());
        button("cancelButton")->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
        QVERIFY(editor().isHidden());
        show();
        QCOMPARE(focused(), QStringLiteral("extensionsBox"));
        expectQuestion(QMessageBox::Discard);
        key(Qt::Key_Return); // accepts again
        QVERIFY(editor().isHidden());
    }

    void addMoveAndRemoveHaveKeys()
    {
        openWithServer();
        applications()->setFocus();
        key(Qt::Key_Insert); // nothing is current
        QCOMPARE(shown(), QStringLiteral("a:b"));
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QCOMPARE(applications()->currentRow(), 2);
        key(Qt::Key_Insert);
        QCOMPARE(shown(), QStringLiteral("a:b:c"));
        QCOMPARE(focused(), QStringLiteral("applicationsList"));
        selected()->setFocus();
        QCOMPARE(selected()->currentRow(), 0);
        key(Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(shown(), QStringLiteral("b:a:c"));
        key(Qt::Key_Down, Qt::AltModifier);
        key(Qt::Key_Down, Qt::AltModifier); // no further
        QCOMPARE(shown(), QStringLiteral("b:c:a"));
        key(Qt::Key_Up, Qt::AltModifier);
        QCOMPARE(shown(), QStringLiteral("b:a:c"));
        key(Qt::Key_Delete);
        QCOMPARE(shown(), QStringLiteral("b:c"));
        QCOMPARE(selected()->currentRow(), -1);
        QCOMPARE(focused(), QStringLiteral("selectedList"));
        key(Qt::Key_Delete); // nothing is current
        QCOMPARE(shown(), QStringLiteral("b:c"));
        key(Qt::Key_Down);
        QCOMPARE(selected()->currentRow(), 0);
    }

    void aButtonThatIsDisabledUnderTheFocusHandsItToItsList()
    {
        openWithServer();
        select(selected(), QStringLiteral("b"));
        button("upButton")->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Space); // it is the first now
        QCOMPARE(focused(), QStringLiteral("selectedList"));
        button("removeButton")->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Space);
        QCOMPARE(focused(), QStringLiteral("selectedList"));
        QCOMPARE(shown(), QStringLiteral("a"));
        QCOMPARE(selected()->currentRow(), -1);
        QCOMPARE(enabledButtons(), QString());
        key(Qt::Key_Down);
        QCOMPARE(selected()->currentRow(), 0);
        QCOMPARE(enabledButtons(), QStringLiteral("remove"));
    }

    void whatTheKeyboardComesToIsChosen()
    {
        openWithServer();
        applications()->setFocus(Qt::TabFocusReason);
        QCOMPARE(applications()->currentRow(), 0);
        choose(groups(), 1);
        selected()->setFocus(Qt::TabFocusReason);
        QCOMPARE(enabledButtons(), QStringLiteral("down remove"));
        key(Qt::Key_Delete);
        QCOMPARE(shown(), QStringLiteral("b"));
        applications()->setFocus(Qt::TabFocusReason);
        key(Qt::Key_Insert);
        QCOMPARE(shown(), QStringLiteral("b:c"));
    }

    void theMouseLeavesTheKeyboardWhereItIs()
    {
        openWithServer();
        select(selected(), QStringLiteral("b"));
        selected()->setFocus();
        QTest::mouseClick(button("removeButton"), Qt::LeftButton);
        QCOMPARE(shown(), QStringLiteral("a"));
        QCOMPARE(focused(), QStringLiteral("selectedList"));
    }

    void theArrowsChooseInTheBoxesAndListsAlone()
    {
        openWithServer();
        key(Qt::Key_Down);
        QCOMPARE(extensions()->currentText(), QStringLiteral(".doc"));
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
        groups()->setFocus();
        key(Qt::Key_Down);
        QCOMPARE(idsIn(applications()), QStringList({"c", "d"}));
    }

    void hiddenItGivesTheFocusAway()
    {
        openWithServer();
        auto* const behind = new QPushButton(QStringLiteral("behind"), panel());
        behind->show();
        editor().reject();
        QCOMPARE(QApplication::focusWidget(), behind);
    }

    void everythingHasANameForAssistiveTechnology_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("groupBox") << "Group";
        QTest::newRow("applicationsList") << "Applications of the group";
        QTest::newRow("extensionsBox") << "Extension";
        QTest::newRow("selectedList") << "Applications that open the extension";
        QTest::newRow("addButton") << "Add";
    }
    void everythingHasANameForAssistiveTechnology()
    {
        openWithServer();
        QAccessibleInterface* const widget =
            QAccessible::queryAccessibleInterface(button(QTest::currentDataTag()));
        QVERIFY(widget);
        QTEST(button(QTest::currentDataTag())->accessibleName(), "name");
        // A box's name is its current text on this platform.
        if (!qobject_cast<QComboBox*>(button(QTest::currentDataTag())))
            QTEST(widget->text(QAccessible::Name), "name");
    }

    // --- Contents

    void namesOfAllKindsAreTheEntriesTexts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("HTML") << "<b>Bold</b> & <img src=x> brave";
        QTest::newRow("right to left") << QString::fromUtf8("\xD7\xA2\xD7\x95\xD7\xA8\xD7\x9A (2013)");
        QTest::newRow("line feeds") << "One\ntwo\nthree";
        QTest::newRow("long") << QString(5000, QLatin1Char('W'));
        QTest::newRow("a refusal") << "Error: no such thing";
    }
    void namesOfAllKindsAreTheEntriesTexts()
    {
        QFETCH(QString, name);
        startServer();
        addApplication(QStringLiteral("x"), name);
        data().groups[0].applications = QStringList({"x", "a"});
        addExtension(QStringLiteral(".odt"), "x:a");
        connectServer();
        open();
        show();
        QCOMPARE(applications()->item(0)->text(), name);
        QCOMPARE(selected()->item(0)->text(), name);
        for (const QListWidget* const list : {applications(), selected()}) {
            QCOMPARE(list->visualItemRect(list->item(0)).height(), 40);
            QCOMPARE(list->visualItemRect(list->item(0)).width(), list->viewport()->width());
        }
        QCOMPARE(editor().size(), QSize(1024, 726));
    }

    void anEmptyNameAndAMissingPictureTakeTheSameRoom()
    {
        startServer();
        addApplication(QStringLiteral("x"), QString());
        data().applications[QStringLiteral("x")].icon.clear();
        data().groups[0].applications = QStringList({"x", "a"});
        addExtension(QStringLiteral(".odt"), "x:a");
        connectServer();
        open();
        show();
        QCOMPARE(selected()->item(0)->text(), QString());
        QCOMPARE(selected()->visualItemRect(selected()->item(0)).height(), 40);
        QCOMPARE(selected()->visualItemRect(selected()->item(1)).top(), 40);
    }

    void longEntriesOfTheBoxesDoNotWidenThePage()
    {
        startServer();
        data().groups[0].name = QString(500, QLatin1Char('W'));
        addExtension(QString(500, QLatin1Char('W')), "a");
        connectServer();
        open();
        QVERIFY2(editor().minimumSizeHint().width() <= 640,
                 qPrintable(QString::number(editor().minimumSizeHint().width())));
    }

    void manyExtensionsAndApplicationsOpen()
    {
        startServer();
        QStringList all;
        for (int i = 0; i < 500; ++i) {
            all.append(QStringLiteral("application%1").arg(i));
            addApplication(all.last(), QStringLiteral("Application %1").arg(i));
        }
        data().groups[0].applications = all;
        for (int i = 0; i < 5000; ++i)
            addExtension(QStringLiteral(".e%1").arg(i), "a:b");
        connectServer();
        takeRequests();
        QElapsedTimer clock;
        clock.start();
        open();
        const qint64 opened = clock.restart();
        show();
        const qint64 painted = clock.restart();
        QCOMPARE(extensions()->count(), 5000);
        QCOMPARE(applications()->count(), 500);
        // The lists, a picture and a name for each entry, and nothing else.
        QCOMPARE(takeRequests().size(), 5 + 2 * 502);
        choose(extensions(), 4999);
        const qint64 switched = clock.restart();
        QCOMPARE(shown(), QStringLiteral("a:b"));
        QCOMPARE(takeRequests().size(), 1 + 2 + 1 + 2 * 2); // what to compare with, and what to show
        extensions()->showPopup();
        QVERIFY(QTest::qWaitForWindowExposed(extensions()->view()->window()));
        const qint64 popped = clock.restart();
        extensions()->hidePopup();
        qInfo("opened %lld ms, shown %lld ms, switched %lld ms, dropped down %lld ms", opened, painted,
              switched, popped);
    }
};

QTEST_MAIN(EditorKeysTest)
#include "tst_mimeconfigkeys.moc"
