// Scripts of windows' lives are played, and what the tracker tells is compared with a list that a person has
// looked at: on the simulated Windows and, the same list, on the real one.
//
// QUILLET_WRITE_GOLDEN=1 writes the lists anew.
#include "winapi/windowtracker.h"

#include "support/quillettest.h"
#include "support/windowscript.h"
#include "winapi/windowoperations.h"

#include <QDir>
#include <QtTest>

using namespace winapi;

class WorkingDayTest : public QuilletTest
{
    Q_OBJECT

    static constexpr int m_period = 300; // ms

    static QString told(const WindowEvent& event, const QString& name)
    {
        switch (event.kind) {
        case WindowEvent::Mapped:
            return QStringLiteral("map   %1").arg(name);
        case WindowEvent::Unmapped:
            return QStringLiteral("unmap %1").arg(name);
        case WindowEvent::Retitled:
            break;
        }
        return QStringLiteral("title %1 \"%2\"").arg(name, windowTitle(event.window));
    }

private slots:
    void whatIsToldOfAScriptIsWhatItsListSays_data()
    {
        QTest::addColumn<QString>("name");
        const QStringList scripts =
            QDir(QStringLiteral(SCRIPTS)).entryList({QStringLiteral("*.txt")}, QDir::Files);
        for (const QString& script : scripts)
            QTest::newRow(qPrintable(script)) << script.section(QLatin1Char('.'), 0, 0);
    }
    void whatIsToldOfAScriptIsWhatItsListSays()
    {
        QFETCH(QString, name);
        const QString path = QStringLiteral(SCRIPTS "/") + name;
        WindowScript script;
        QString error;
        QVERIFY2(script.load(path + QStringLiteral(".txt"), &error), qPrintable(error));

        WindowTracker tracker(desktopWidgetWindow());
        QByteArray list;
        const int end = script.duration() + m_period;
        for (int time = 0; time <= end; time += m_period) {
            script.playUntil(time);
            for (const WindowEvent& event : tracker.poll()) {
                const QString window = script.nameOf(event.window);
                if (!window.isEmpty())
                    list += QStringLiteral("%1 %2\n").arg(time, 6).arg(told(event, window)).toUtf8();
            }
        }

        const QString golden = path + QStringLiteral(".golden");
        if (qEnvironmentVariableIsSet("QUILLET_WRITE_GOLDEN"))
            Sandbox::writeFile(golden, list);
        QCOMPARE(QString::fromUtf8(list), QString::fromUtf8(Sandbox::readFile(golden)));
    }

    void aScriptThatIsNoneIsRefusedWithItsLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("error");
        QTest::newRow("no time") << QByteArray("open a \"A\"\n")
                                 << "line 1 is no event or goes back in time: open a \"A\"";
        QTest::newRow("no such action") << QByteArray("# x\n0 open a \"A\"\n10 jump a\n")
                                        << "line 3 is no event or goes back in time: 10 jump a";
        QTest::newRow("back in time") << QByteArray("10 open a \"A\"\n5 close a\n")
                                      << "line 2 is no event or goes back in time: 5 close a";
        QTest::newRow("no title") << QByteArray("10 open a\n")
                                  << "line 1 is no event or goes back in time: 10 open a";
        QTest::newRow("an option too many")
            << QByteArray("10 hide a tool\n") << "line 1 is no event or goes back in time: 10 hide a tool";
        QTest::newRow("a title too many")
            << QByteArray("10 hide a \"A\"\n") << "line 1 is no event or goes back in time: 10 hide a \"A\"";
    }
    void aScriptThatIsNoneIsRefusedWithItsLine()
    {
        QFETCH(QByteArray, content);
        const QString path = sandbox().scratch() + QStringLiteral("/script.txt");
        Sandbox::writeFile(path, content);
        WindowScript script;
        QString error;
        QVERIFY(!script.load(path, &error));
        QTEST(error, "error");
    }
};

QTEST_MAIN(WorkingDayTest)
#include "tst_workingday.moc"
