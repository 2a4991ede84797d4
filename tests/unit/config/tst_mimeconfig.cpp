#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "shell/toolbutton.h"
#include "support/markingtranslator.h"
#include "support/mimeconfigtest.h"
#include "support/ownmethods.h"

#include <QGridLayout>
#include <QSettings>
#include <QtTest>

class EditorTest : public MimeConfigTest
{
    Q_OBJECT

    // A server with three extensions.
    void useServer()
    {
        startServer();
        addExtension(QStringLiteral(".odt"), "a:b");
        addExtension(QStringLiteral(".doc"), "b:c:d");
        addExtension(QStringLiteral(".none"), "unheard-of");
        connectServer();
        takeRequests();
    }

    void openWithServer(const QString& path = QString())
    {
        useServer();
        open(path);
        takeRequests();
        clearDebugOutput();
    }

    QGridLayout* grid() { return qobject_cast<QGridLayout*>(editor().layout()); }

    QString placeOf(QWidget* widget)
    {
        int row = 0;
        int column = 0;
        int rows = 0;
        int columns = 0;
        grid()->getItemPosition(grid()->indexOf(widget), &row, &column, &rows, &columns);
        return QStringLiteral("%1 %2 %3 %4").arg(row).arg(column).arg(rows).arg(columns);
    }

    static QStringList textsIn(const QListWidget* list)
    {
        QStringList texts;
        for (int row = 0; row < list->count(); ++row)
            texts.append(list->item(row)->text());
        return texts;
    }

    static QStringList textsIn(const QComboBox* box)
    {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
        return texts;
    }

    static QImage picture(const QIcon& icon, int extent) { return icon.pixmap(extent, extent).toImage(); }

    static QImage resource(const char* path, int extent)
    {
        return picture(QIcon(QLatin1String(path)), extent);
    }

private slots:
    // --- What it is made of

    void itIsAToolOfThePanel()
    {
        open();
        auto* const tool = qobject_cast<ConfigurationDialog*>(static_cast<QObject*>(&editor()));
        QVERIFY(tool);
        QCOMPARE(tool->name(), QStringLiteral("File\nassociations"));
        QCOMPARE(tool->widget(), &editor());
        QCOMPARE(picture(tool->icon(), 48), resource(":/icons/applications/mimetypes.png", 48));
        QVERIFY(!tool->icon().availableSizes().isEmpty());
        QCOMPARE(editor().parentWidget(), panel());
        QVERIFY(!editor().isWindow()); // shown in place
        QVERIFY(editor().isEmbedded());
        QCOMPARE(editor().windowTitle(), QStringLiteral("quillet"));
        const MarkingTranslator translator;
        QCOMPARE(tool->name(), QStringLiteral("MimeConfig|File\nassociations"));
        open();
        QCOMPARE(groups()->itemText(groups()->count() - 1), QStringLiteral("MimeConfig|<No group>"));
        QCOMPARE(groups()->itemText(0), QStringLiteral("Development"));
    }

    void theSignalAndTheSlotsHaveTheirNames()
    {
        QCOMPARE(ownMethods(MimeConfig::staticMetaObject),
                 QStringList({"mimeChanged()", "accept()", "reject()", "deleteSelected()",
                              "appGroupActivated(int)", "updateSelected(int)", "extensionsActivated(int)",
                              "applicationsToSelectedClicked()", "upClicked()", "downClicked()",
                              "applicationsChanged(int)", "selectedChanged(int)"}));
    }

    void theWidgetsStandInAGrid()
    {
        open();
        QCOMPARE(grid()->horizontalSpacing(), 10);
        QCOMPARE(grid()->verticalSpacing(), 10);
        QCOMPARE(grid()->contentsMargins(), QMargins(20, 20, 20, 20));
        QCOMPARE(placeOf(button("backButton")), QStringLiteral("0 0 1 1"));
        QCOMPARE(placeOf(groups()), QStringLiteral("1 0 1 1"));
        QCOMPARE(placeOf(applications()), QStringLiteral("2 0 7 1"));
        QCOMPARE(placeOf(button("addButton")), QStringLiteral("3 1 1 1"));
        QCOMPARE(placeOf(extensions()), QStringLiteral("1 2 1 2"));
        QCOMPARE(placeOf(selected()), QStringLiteral("2 2 7 2"));
        QCOMPARE(placeOf(button("upButton")), QStringLiteral("3 4 1 1"));
        QCOMPARE(placeOf(button("downButton")), QStringLiteral("4 4 1 1"));
        QCOMPARE(placeOf(button("removeButton")), QStringLiteral("6 4 1 1"));
        QCOMPARE(placeOf(button("acceptButton")), QStringLiteral("9 3 1 1"));
        QCOMPARE(placeOf(button("cancelButton")), QStringLiteral("9 4 1 1"));
        QCOMPARE(grid()->count(), 11);
        QList<int> stretch;
        for (int column = 0; column < 5; ++column)
            stretch.append(grid()->columnStretch(column));
        QCOMPARE(stretch, QList<int>({3, 1, 3, 3, 1}));
        QCOMPARE(groups()->minimumHeight(), 64);
        QCOMPARE(groups()->maximumHeight(), 64);
        QCOMPARE(groups()->iconSize(), QSize(32, 32));
        QCOMPARE(extensions()->minimumHeight(), 64);
        QCOMPARE(extensions()->maximumHeight(), 64);
        QCOMPARE(applications()->iconSize(), QSize(32, 32));
        QCOMPARE(selected()->iconSize(), QSize(32, 32));
    }

    void theButtonsHaveTheirPicturesAndOnlyBackAToolTip_data()
    {
        QTest::addColumn<QByteArray>("picture");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("accessibleName");
        QTest::addColumn<bool>("enabled");
        const auto row = [](const char* name, const char* picture, const char* toolTip,
                            const char* accessibleName, bool enabled) {
            QTest::newRow(name) << QByteArray(picture) << QString::fromLatin1(toolTip)
                                << QString::fromLatin1(accessibleName) << enabled;
        };
        row("backButton", "back.png", "Go back", "Go back", true);
        row("addButton", "forward.png", "", "Add", false);
        row("upButton", "up.png", "", "Move up", false);
        row("downButton", "down.png", "", "Move down", false);
        row("removeButton", "remove.png", "", "Remove", false);
        row("acceptButton", "accept.png", "", "Accept", true);
        row("cancelButton", "cancel.png", "", "Cancel", true);
    }
    void theButtonsHaveTheirPicturesAndOnlyBackAToolTip()
    {
        const MarkingTranslator translator;
        const auto marked = [](const QString& text) {
            return text.isEmpty() ? text : QStringLiteral("MimeConfig|") + text;
        };
        open();
        QFETCH(QByteArray, picture);
        QFETCH(QString, toolTip);
        QFETCH(QString, accessibleName);
        auto* const tool = qobject_cast<ToolButton*>(button(QTest::currentDataTag()));
        QVERIFY(tool);
        QCOMPARE(tool->toolTip(), marked(toolTip));
        QCOMPARE(tool->accessibleName(), marked(accessibleName));
        QTEST(tool->isEnabled(), "enabled");
        ToolButton expected(QIcon(QLatin1String(":/icons/32x32/") + QLatin1String(picture)), QString());
        expected.setEnabled(tool->isEnabled());
        const auto paint = [](QWidget* widget) {
            QImage image(58, 58, QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            widget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
            return image;
        };
        QCOMPARE(paint(tool), paint(&expected));
        QVERIFY(QFile::exists(QLatin1String(":/icons/32x32/") + QLatin1String(picture)));
    }

    // --- What it shows at first

    void theServersListsAreShown()
    {
        useServer();
        open();
        QCOMPARE(textsIn(groups()), QStringList({"Office", "Tools", "<No group>"}));
        QCOMPARE(groups()->itemData(0).toString(), QStringLiteral("office"));
        QCOMPARE(groups()->itemData(2).toString(), QStringLiteral("-1"));
        QCOMPARE(textsIn(extensions()), QStringList({".odt", ".doc", ".none"}));
        QCOMPARE(groups()->currentIndex(), 0);
        QCOMPARE(extensions()->currentIndex(), 0);
        QCOMPARE(idsIn(applications()), QStringList({"a", "b", "c"}));
        QCOMPARE(textsIn(applications()), QStringList({"Program a", "Program b", "Program c"}));
        QCOMPARE(shown(), QStringLiteral("a:b"));
        QCOMPARE(textsIn(selected()), QStringList({"Program a", "Program b"}));
        QCOMPARE(picture(selected()->item(0)->icon(), 32).pixelColor(1, 1), QColor(Qt::red));
        QCOMPARE(enabledButtons(), QString());
        QCOMPARE(messages().filter(QStringLiteral("Appending")),
                 QStringList({"Appending application Program a...", "Appending application Program b...",
                              "Appending application Program c..."}));
        // Nothing is asked for but what is shown.
        const QList<QByteArray> requests = takeRequests();
        QCOMPARE(requests.count("_byteArray_get_application_icon?a"), 2);
        QCOMPARE(requests.count("_byteArray_get_application_icon?d"), 0);
        QCOMPARE(requests.count("get_applications?.odt"), 1);
        QCOMPARE(requests.count("get_applications_by_group?office"), 1);
    }

    void theBuiltInListsAreShownWithoutAServer()
    {
        Application::setValidApplications({"notepad", "calculator", "chrome"});
        open();
        QCOMPARE(textsIn(groups()),
                 QStringList({"Development", "Games", "Graphics Applications", "Internet Applications",
                              "Multimedia", "Office", "Other", "Utilities", "<No group>"}));
        QCOMPARE(groups()->itemData(7).toString(), QStringLiteral("utilities"));
        QCOMPARE(picture(groups()->itemIcon(7), 32), resource(":/icons/groups/utilities.png", 32));
        QVERIFY(!groups()->itemIcon(7).availableSizes().isEmpty());
        QVERIFY(groups()->itemIcon(8).isNull());
        QCOMPARE(textsIn(extensions()), catalogue::extensionLines());
        choose(groups(), 7);
        QCOMPARE(idsIn(applications()), QStringList({"notepad", "calculator"}));
        QCOMPARE(shown(), QString());
        QCOMPARE(QFile::exists(filePath()), false);
    }

    void thereIsAlwaysAGroup()
    {
        startServer();
        data().groups.clear();
        connectServer();
        open();
        QCOMPARE(textsIn(groups()).last(), QStringLiteral("<No group>"));
        takeRequests();
        choose(groups(), groups()->count() - 1);
        QCOMPARE(takeRequests().first(), QByteArray("get_applications_by_group?-1"));
        QCOMPARE(applications()->count(), 0);
    }

    void aGroupWithoutNameAndANameWithoutGroupDoNoHarm()
    {
        startServer();
        data().groups[1].name = QStringLiteral("Tools:and more");
        addExtension(QStringLiteral(".odt"), "a");
        connectServer();
        open();
        QCOMPARE(textsIn(groups()), QStringList({"Office", "Tools", "<No group>"}));
    }

    // --- Groups and what may be pressed

    void choosingAGroupShowsItsApplications()
    {
        openWithServer();
        applications()->setCurrentRow(1);
        QCOMPARE(enabledButtons(), QStringLiteral("add"));
        choose(groups(), 1);
        QCOMPARE(idsIn(applications()), QStringList({"c", "d"}));
        QCOMPARE(applications()->currentRow(), -1);
        QCOMPARE(enabledButtons(), QString());
        choose(groups(), 2);
        QCOMPARE(applications()->count(), 0);
        groups()->setCurrentIndex(0); // not the user's doing
        QCOMPARE(applications()->count(), 0);
    }

    void theButtonsAreEnabledByTheCurrentRow()
    {
        openWithServer();
        choose(extensions(), 1);
        QCOMPARE(enabledButtons(), QString());
        selected()->setCurrentRow(0);
        QCOMPARE(enabledButtons(), QStringLiteral("down remove"));
        selected()->setCurrentRow(1);
        QCOMPARE(enabledButtons(), QStringLiteral("up down remove"));
        selected()->setCurrentRow(2);
        QCOMPARE(enabledButtons(), QStringLiteral("up remove"));
        selected()->setCurrentRow(-1);
        QCOMPARE(enabledButtons(), QString());
        applications()->setCurrentRow(0);
        QCOMPARE(enabledButtons(), QStringLiteral("add"));
        applications()->setCurrentRow(-1);
        QCOMPARE(enabledButtons(), QString());
        selected()->setCurrentRow(2);
        choose(groups(), 0);
        add(QStringLiteral("a")); // below the current one
        QCOMPARE(enabledButtons(), QStringLiteral("up down remove add"));
    }

    // --- Changes

    void entriesMoveUpAndDown()
    {
        openWithServer();
        choose(extensions(), 1);
        select(selected(), QStringLiteral("b"));
        click("downButton");
        QCOMPARE(shown(), QStringLiteral("c:b:d"));
        QCOMPARE(selected()->currentRow(), 1);
        QCOMPARE(selected()->selectedItems(), QList<QListWidgetItem*>{selected()->item(1)});
        QCOMPARE(enabledButtons(), QStringLiteral("up down remove"));
        click("downButton");
        QCOMPARE(shown(), QStringLiteral("c:d:b"));
        QCOMPARE(enabledButtons(), QStringLiteral("up remove"));
        editor().downClicked();
        QCOMPARE(shown(), QStringLiteral("c:d:b"));
        click("upButton");
        click("upButton");
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
        QCOMPARE(selected()->currentRow(), 0);
        QCOMPARE(enabledButtons(), QStringLiteral("down remove"));
        editor().upClicked();
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
        QCOMPARE(selected()->item(0)->text(), QStringLiteral("Program b"));
        QVERIFY(!selected()->item(0)->icon().isNull());
        selected()->setCurrentRow(-1);
        editor().upClicked();
        editor().downClicked();
        QCOMPARE(shown(), QStringLiteral("b:c:d"));
    }

    void addedOnesComeLastAndOnce()
    {
        openWithServer();
        add(QStringLiteral("c"));
        QCOMPARE(shown(), QStringLiteral("a:b:c"));
        QCOMPARE(selected()->item(2)->text(), QStringLiteral("Program c"));
        QVERIFY(!selected()->item(2)->icon().isNull());
        click("addButton");
        add(QStringLiteral("a"));
        QCOMPARE(shown(), QStringLiteral("a:b:c"));
        editor().updateSelected(0); // the catalogue's and the added ones
        QCOMPARE(shown(), QStringLiteral("a:b:c"));
    }

    void withNothingChosenNothingIsAddedOrRemoved()
    {
        openWithServer();
        editor().applicationsToSelectedClicked();
        editor().deleteSelected();
        QCOMPARE(shown(), QStringLiteral("a:b"));
        applications()->setCurrentRow(0);
        applications()->clearSelection(); // as with Ctrl and the mouse
        click("addButton");
        QCOMPARE(shown(), QStringLiteral("a:b"));
        editor().accept();
        QVERIFY(messages().contains(QStringLiteral("deletedItems: ")));
    }

    void removedOnesGoAndNothingIsCurrent()
    {
        openWithServer();
        choose(extensions(), 1);
        remove(QStringLiteral("c"));
        QCOMPARE(shown(), QStringLiteral("b:d"));
        QCOMPARE(selected()->currentRow(), -1);
        QCOMPARE(enabledButtons(), QString());
        editor().updateSelected(1);
        QCOMPARE(shown(), QStringLiteral("b:d")); // still deleted
        choose(groups(), 0);
        add(QStringLiteral("c"));
        editor().updateSelected(1);
        QCOMPARE(shown(), QStringLiteral("b:c:d")); // no longer
        remove(QStringLiteral("b"));
        remove(QStringLiteral("c"));
        remove(QStringLiteral("d"));
        QCOMPARE(selected()->count(), 0);
        QCOMPARE(enabledButtons(), QStringLiteral("add"));
    }

    void anApplicationThatIsThereTwiceIsRemovedTwice()
    {
        Application::setValidApplications({"kwrite"});
        open();
        for (int i = 0; i < 2; ++i) {
            auto* const entry = new QListWidgetItem(QStringLiteral("K"), selected());
            entry->setData(Qt::UserRole, QStringLiteral("kwrite"));
        }
        remove(QStringLiteral("kwrite"));
        QCOMPARE(selected()->count(), 0);
        QCOMPARE(selected()->currentRow(), -1);
    }

    void whatTheCatalogueHasExcludedCountsAsDeleted()
    {
        useServer();
        // Qt remembers for the process what it could not write.
        QSettings(catalogue::extensionsPath(), QSettings::IniFormat)
            .setValue(QStringLiteral(".odt"), QStringLiteral("d:!a:!c"));
        open();
        QCOMPARE(shown(), QStringLiteral("b:d"));
        editor().updateSelected(0); // they are appended again, and saved once
        expectQuestion(QMessageBox::Discard);
        editor().accept();
        QVERIFY(messages().contains(QStringLiteral("deletedItems: a:c")));
        QSettings(catalogue::extensionsPath(), QSettings::IniFormat).remove(QStringLiteral(".odt"));
    }
};
QTEST_MAIN(EditorTest)
#include "tst_mimeconfig.moc"
