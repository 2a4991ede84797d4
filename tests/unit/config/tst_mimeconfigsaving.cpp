// When the association editor asks, what it then does, and what it is on one file.
#include "catalogue/application.h"
#include "env/serverslot.h"
#include "support/markingtranslator.h"
#include "support/mimeconfigtest.h"

#include <QAbstractButton>
#include <QSignalSpy>
#include <QtTest>

class EditorSavingTest : public MimeConfigTest
{
    Q_OBJECT

    void openWithServer(const QString& path = QString())
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        addExtension(QStringLiteral(".doc"), "b:c:d");
        connectServer();
        open(path);
        takeRequests();
        clearDebugOutput();
    }

private slots:
    void withoutChangesNothingIsAsked()
    {
        openWithServer();
        show();
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        choose(extensions(), 1);
        click("acceptButton");
        QVERIFY(editor().isHidden());
        QCOMPARE(saved.size(), 0);
        QCOMPARE(messages().filter(QStringLiteral("Items")),
                 QStringList({"modifiedItems: ", "deletedItems: ", "modifiedItems: ", "deletedItems: "}));
        QVERIFY(!QFile::exists(filePath()));
    }

    void acceptingSavesWhatTheUserWants_data()
    {
        QTest::addColumn<bool>("save");
        QTest::newRow("Save") << true;
        QTest::newRow("Discard") << false;
    }
    void acceptingSavesWhatTheUserWants()
    {
        QFETCH(bool, save);
        openWithServer();
        show();
        select(selected(), QStringLiteral("b"));
        click("upButton");
        remove(QStringLiteral("a"));
        add(QStringLiteral("c"));
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        QByteArray seen;
        connect(&editor(), &MimeConfig::mimeChanged, this, [&] { seen = file(); });
        clearDebugOutput();
        expectQuestion(save ? QMessageBox::Save : QMessageBox::Discard);
        click("acceptButton");
        QVERIFY(editor().isHidden());
        QStringList said = {"modifiedItems: b:c", "deletedItems: a"};
        said.append(save ? QStringLiteral("key: .odt") : QStringLiteral("Didn't save!"));
        QCOMPARE(messages(), said);
        QCOMPARE(saved.size(), save ? 1 : 0);
        QCOMPARE(seen.isEmpty(), !save); // written before it is told
        QCOMPARE(file().contains(".odt=b:c:!a"), save);
    }

    void theQuestionIsTranslatable()
    {
        openWithServer();
        remove(QStringLiteral("a"));
        const MarkingTranslator translator;
        answers().expectBox(
            QStringLiteral("MimeConfig|Modified configuration"),
            QStringLiteral("MimeConfig|Are you sure you want to change applications configuration?"),
            QMessageBox::Question, QMessageBox::Save | QMessageBox::Discard, QMessageBox::Discard, &editor());
        editor().accept();
    }

    void enterThatLedToTheQuestionDoesNotAnswerIt()
    {
        openWithServer();
        show();
        remove(QStringLiteral("a"));
        answers().expectDialog("QMessageBox", [](QWidget* widget) {
            auto* const box = qobject_cast<QMessageBox*>(widget);
            QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
            QCoreApplication::sendEvent(box->focusWidget() ? box->focusWidget() : box, &held);
            QVERIFY(box->isVisible());
            box->button(QMessageBox::Discard)->click();
        });
        QTest::keyClick(button("acceptButton"), Qt::Key_Return);
        QVERIFY(editor().isHidden());
        QVERIFY(!QFile::exists(filePath()));
    }

    void theEditorMayGoWhileItAsks_data()
    {
        QTest::addColumn<bool>("accept");
        QTest::newRow("on the way out") << true;
        QTest::newRow("on the way to another extension") << false;
    }
    void theEditorMayGoWhileItAsks()
    {
        QFETCH(bool, accept);
        openWithServer();
        show();
        remove(QStringLiteral("a"));
        answers().expectDialog("QMessageBox", [&](QWidget*) { close(); });
        if (accept)
            editor().accept();
        else
            editor().extensionsActivated(1);
        QVERIFY(!QFile::exists(filePath()));
    }

    void rejectingSavesNothingAndKeepsTheChanges_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::newRow("back") << QByteArray("backButton");
        QTest::newRow("cancel") << QByteArray("cancelButton");
    }
    void rejectingSavesNothingAndKeepsTheChanges()
    {
        QFETCH(QByteArray, button);
        openWithServer();
        show();
        remove(QStringLiteral("a"));
        clearDebugOutput();
        click(button);
        QVERIFY(editor().isHidden());
        QCOMPARE(messages(), QStringList());
        show();
        QCOMPARE(shown(), QStringLiteral("b"));
        expectQuestion(QMessageBox::Save);
        click("acceptButton");
        QVERIFY(file().contains(".odt=b:!a"));
    }

    void embeddedItHidesAndOtherwiseItCloses_data()
    {
        QTest::addColumn<bool>("embedded");
        QTest::addColumn<bool>("accept");
        QTest::newRow("embedded, accept") << true << true;
        QTest::newRow("embedded, reject") << true << false;
        QTest::newRow("accept") << false << true;
        QTest::newRow("reject") << false << false;
    }
    void embeddedItHidesAndOtherwiseItCloses()
    {
        QFETCH(bool, embedded);
        QFETCH(bool, accept);
        openWithServer();
        editor().setEmbedded(embedded);
        show();
        QSignalSpy finished(&editor(), SIGNAL(finished(int)));
        click(accept ? "acceptButton" : "cancelButton");
        QVERIFY(editor().isHidden());
        QCOMPARE(finished.size(), embedded ? 0 : 1);
        if (!embedded)
            QCOMPARE(finished.at(0).at(0).toInt(), accept ? int(QDialog::Accepted) : int(QDialog::Rejected));
    }

    // --- From one extension to another

    void switchingAsksAboutTheOneInViewFirst_data()
    {
        QTest::addColumn<bool>("save");
        QTest::newRow("Save") << true;
        QTest::newRow("Discard") << false;
    }
    void switchingAsksAboutTheOneInViewFirst()
    {
        QFETCH(bool, save);
        openWithServer();
        show();
        remove(QStringLiteral("a"));
        QString inView;
        answers().expectDialog("QMessageBox", [&](QWidget* widget) {
            inView = extensions()->currentText() + QLatin1Char(' ') + shown();
            qobject_cast<QMessageBox*>(widget)
                ->button(save ? QMessageBox::Save : QMessageBox::Discard)
                ->click();
        });
        choose(extensions(), 1);
        QCOMPARE(inView, QStringLiteral(".odt b"));
        QCOMPARE(extensions()->currentIndex(), 1);
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
        QVERIFY(!editor().isHidden());
        QCOMPARE(file().contains(".odt=b:!a"), save);
        // Nothing of the changes goes along.
        choose(extensions(), 0);
        QCOMPARE(shown(), QStringLiteral("a:b"));
        editor().accept();
    }

    void switchingBackAndForthAsksForEach()
    {
        openWithServer();
        add(QStringLiteral("c"));
        expectQuestion(QMessageBox::Save);
        choose(extensions(), 1);
        remove(QStringLiteral("d"));
        expectQuestion(QMessageBox::Discard);
        choose(extensions(), 0);
        remove(QStringLiteral("b"));
        expectQuestion(QMessageBox::Save);
        choose(extensions(), 1);
        choose(extensions(), 0);
        QCOMPARE(shown(), QStringLiteral("a:b"));
        QCOMPARE(file().trimmed().split('\n').last().trimmed(), QByteArray(".odt=a:!b"));
    }

    void choosingTheSameExtensionAsksToo()
    {
        openWithServer();
        remove(QStringLiteral("a"));
        expectQuestion(QMessageBox::Discard);
        choose(extensions(), 0);
        QCOMPARE(shown(), QStringLiteral("a:b"));
    }

    void anotherIndexThanAnEntrysShowsNothing()
    {
        openWithServer();
        remove(QStringLiteral("a"));
        expectQuestion(QMessageBox::Discard);
        editor().extensionsActivated(-1);
        QCOMPARE(extensions()->currentIndex(), -1);
        QCOMPARE(shown(), QString());
        editor().extensionsActivated(7);
        QCOMPARE(extensions()->currentIndex(), -1);
        QVERIFY(messages().contains(QStringLiteral("deletedItems: ")));
    }

    void theProgramsOwnChangesOfTheBoxesDoNothing()
    {
        openWithServer();
        remove(QStringLiteral("a"));
        extensions()->setCurrentIndex(1);
        QCOMPARE(shown(), QStringLiteral("b"));
        QCOMPARE(takeRequests(), QList<QByteArray>());
    }

    // --- Without extensions, without a key

    void withoutExtensionsNothingIsShownOrModified()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a");
        // A refusal: an empty list would be one empty extension.
        server().setFault("get_application_extensions_list", TwFault(TwFault::Refused, 0, "not today"));
        connectServer();
        open();
        QCOMPARE(extensions()->count(), 0);
        for (const QByteArray& request : takeRequests())
            QVERIFY2(!request.startsWith("get_applications?"), request);
        editor().updateSelected(0);
        QCOMPARE(extensions()->currentIndex(), -1);
        clearDebugOutput();
        auto* const entry = new QListWidgetItem(QStringLiteral("A"), selected());
        entry->setData(Qt::UserRole, QStringLiteral("a"));
        editor().accept();
        QCOMPARE(messages(), QStringList({"modifiedItems: ", "deletedItems: "}));
    }

    void withAnEmptyKeyNothingIsWrittenButTheChangeIsTold()
    {
        startServer();
        addExtension(QString(), "a:b");
        addExtension(QStringLiteral(".odt"), "a");
        connectServer();
        open();
        QCOMPARE(extensions()->currentText(), QString());
        QCOMPARE(shown(), QStringLiteral("a:b"));
        QSignalSpy saved(&editor(), SIGNAL(mimeChanged()));
        remove(QStringLiteral("a"));
        clearDebugOutput();
        expectQuestion(QMessageBox::Save);
        editor().accept();
        QCOMPARE(messages(), QStringList({"modifiedItems: b", "deletedItems: a", "key: "}));
        QCOMPARE(saved.size(), 1);
        QVERIFY(!QFile::exists(filePath()));
    }

    void withAClientThatIsNotConnectedThereIsNothingToChange_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("every extension") << QString();
        QTest::newRow("one file's") << QStringLiteral("/somewhere/report.odt");
    }
    void withAClientThatIsNotConnectedThereIsNothingToChange()
    {
        QFETCH(QString, path);
        TWClient client;
        env::setServerClient(&client);
        Application::setValidApplications({"a", "b"});
        open(path);
        // An empty answer is a list of one empty text.
        QCOMPARE(groups()->count(), 2);
        QCOMPARE(groups()->itemText(0), QString());
        QCOMPARE(groups()->itemText(1), QStringLiteral("<No group>"));
        QCOMPARE(applications()->count(), 0);
        QCOMPARE(extensions()->count(), 1);
        QCOMPARE(extensions()->itemText(0), QString());
        QCOMPARE(extensions()->currentIndex(), path.isEmpty() ? 0 : -1);
        QCOMPARE(shown(), QString());
        choose(groups(), 1);
        QCOMPARE(applications()->count(), 0);
        clearDebugOutput();
        editor().accept();
        QCOMPARE(messages(), QStringList({"modifiedItems: ", "deletedItems: "}));
        QVERIFY(editor().isHidden());
    }

    // --- On one file

    void onOneFileItsExtensionAloneIsShown()
    {
        openWithServer(QStringLiteral("/somewhere/my report.v2.doc"));
        QCOMPARE(extensions()->currentText(), QStringLiteral(".doc"));
        QVERIFY(!extensions()->isEnabled());
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
        remove(QStringLiteral("c"));
        expectQuestion(QMessageBox::Save);
        editor().accept();
        QVERIFY(file().contains(".doc=b:d:!c"));
    }

    void anExtensionThatCannotBeFoundIsRejected_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("unknown") << "/somewhere/report.xyz";
        QTest::newRow("another case") << "/somewhere/REPORT.DOC";
        QTest::newRow("no suffix") << "/somewhere/report";
        QTest::newRow("the end of one") << "/somewhere/report.oc";
    }
    void anExtensionThatCannotBeFoundIsRejected()
    {
        QFETCH(QString, path);
        openWithServer(path);
        QVERIFY(editor().isHidden());
        QCOMPARE(extensions()->currentIndex(), -1);
        QVERIFY(!extensions()->isEnabled());
        QCOMPARE(shown(), QString());
        editor().accept(); // and has nothing to save
        QVERIFY(!QFile::exists(filePath()));
    }

    void anUnknownExtensionIsLookedForTwice()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        connectServer();
        takeRequests();
        open(QStringLiteral("/somewhere/report.xyz"));
        QCOMPARE(takeRequests().count("get_application_extensions_list"), 2);
        QCOMPARE(extensions()->count(), 1);
    }

    void theBuiltInListHasNoPlainExtensions()
    {
        open(QStringLiteral("/somewhere/report.pdf"));
        QVERIFY(editor().isHidden());
        QCOMPARE(extensions()->currentIndex(), -1);
    }
};

QTEST_MAIN(EditorSavingTest)
#include "tst_mimeconfigsaving.moc"
