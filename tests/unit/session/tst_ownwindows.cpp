// None of the shell's own windows ever becomes a task, whatever it is and however long it is open.
#include "config/configure.h"
#include "files/filesystemwidget.h"
#include "shell/menu.h"
#include "shell/threadbutton.h"
#include "shell/threadmanager.h"
#include "shell/threadwidget.h"
#include "support/shelltest.h"

#include <QApplication>
#include <QFile>
#include <QtTest>

namespace {

constexpr qlonglong firstOtherHandle = 0x20000;

// Gives every window that this program shows a window in the simulated Windows, as Qt for Windows does. The
// offscreen platform has none.
class NativeWindows : public QObject
{
public:
    NativeWindows() { qApp->installEventFilter(this); }

    // All that were ever shown.
    QSet<qlonglong> handles() const { return m_handles; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const widget = qobject_cast<QWidget*>(watched);
        if (widget && widget->isWindow() && widget->windowType() != Qt::Desktop) {
            if (event->type() == QEvent::Show && !event->spontaneous())
                show(widget);
            else if (event->type() == QEvent::Hide && !event->spontaneous())
                DestroyWindow(handle(widget));
            else if (event->type() == QEvent::WindowTitleChange)
                SetWindowTextW(handle(widget), title(widget));
        }
        return false;
    }

private:
    static HWND handle(const QWidget* widget)
    {
        return reinterpret_cast<HWND>(static_cast<LONG_PTR>(widget->winId()));
    }
    static LPCWSTR title(const QWidget* widget)
    {
        m_title = widget->windowTitle();
        return reinterpret_cast<LPCWSTR>(m_title.utf16());
    }

    void show(const QWidget* widget)
    {
        const auto id = static_cast<qlonglong>(widget->winId());
        const DWORD frame = widget->windowFlags() & Qt::FramelessWindowHint ? 0 : WS_CAPTION | WS_SYSMENU;
        const DWORD before = simwin::setCurrentWindowProcess(GetCurrentProcessId());
        simwin::setNextHandle(id);
        CreateWindowExW(0, L"Qt", title(widget), WS_POPUP | WS_VISIBLE | frame, 0, 0, 1, 1, nullptr, nullptr,
                        nullptr, nullptr);
        simwin::setCurrentWindowProcess(before);
        simwin::setNextHandle(firstOtherHandle);
        m_handles.insert(id);
    }

    static inline QString m_title;
    QSet<qlonglong> m_handles;
};

} // namespace

class OwnWindowsTest : public ShellTest
{
    Q_OBJECT

    static int looks() { return simwin::callNames().count("EnumWindows"); }

    static void letTenLooksPass()
    {
        const int before = looks();
        QTRY_VERIFY(looks() > before + 10);
    }

    ThreadWidget* panel() { return bar().findChild<ThreadWidget*>(); }

private slots:
    void noneOfOurWindowsIsEverATask_data()
    {
        QTest::addColumn<QString>("what");
        for (const char* what : {"pages", "overview and notice", "suspend question", "terminate question",
                                 "link box", "a window of any title"})
            QTest::newRow(what) << what;
    }
    void noneOfOurWindowsIsEverATask()
    {
        QFETCH(QString, what);
        const NativeWindows windows;
        startShellWithTracker();
        QTRY_VERIFY(looks() > 0);
        const qlonglong letter = openWindow(QStringLiteral("letter"));
        QTRY_COMPARE(shell().tasks(), QStringList("@" + hex(letter)));
        QSet<qlonglong> maximised; // by the rules
        int shown = 2;             // bar and launcher

        const auto answerLate = [](QMessageBox::StandardButton answer) {
            return [answer](QWidget* box) {
                letTenLooksPass();
                qobject_cast<QMessageBox*>(box)->button(answer)->click();
            };
        };
        if (what == QLatin1String("pages")) {
            for (QWidget* const page :
                 {static_cast<QWidget*>(shell().configuration()),
                  static_cast<QWidget*>(shell().fileManager()), static_cast<QWidget*>(shell().launcher())})
                desktop().mapWidget(page);
            letTenLooksPass();
            // Wanted: its button has its window, and is brought to the front like any other's.
            maximised.insert(static_cast<qlonglong>(shell().fileManager()->winId()));
            shown += 2;
        } else if (what == QLatin1String("overview and notice")) {
            ThreadManager overview({bar().buttonAt(3)}, 0, [](ThreadButton*) {});
            overview.show();
            overview.disconnect();
            letTenLooksPass();
            for (QWidget* const window : QApplication::topLevelWidgets()) {
                if (window->metaObject() == &QLabel::staticMetaObject && window->isVisible())
                    window->close();
            }
            shown += 2;
        } else if (what == QLatin1String("suspend question")) {
            answers().expectDialog("QMessageBox", answerLate(QMessageBox::Yes));
            shell().powerButton()->click();
            ++shown;
        } else if (what == QLatin1String("terminate question")) {
            answers().expectDialog("QMessageBox", answerLate(QMessageBox::No));
            panel()->killButtonClickedSlot();
            ++shown;
        } else if (what == QLatin1String("link box")) {
            const QString loop = sandbox().scratch() + QStringLiteral("/loop.txt");
            QVERIFY(QFile::link(loop, loop));
            answers().expectDialog("QMessageBox", answerLate(QMessageBox::Ok));
            desktop().openFile(loop);
            ++shown;
        } else {
            QWidget own[3];
            own[1].setWindowTitle(QStringLiteral("letter"));
            own[2].setWindowTitle(QStringLiteral("Save?"));
            for (QWidget& window : own)
                window.show();
            letTenLooksPass();
            for (QWidget& window : own)
                window.setWindowTitle(QStringLiteral("another"));
            letTenLooksPass();
            shown += 3;
        }

        QCOMPARE(windows.handles().size(), shown);
        QCOMPARE(shell().tasks(), QStringList("@" + hex(letter)));
        for (const qlonglong own : windows.handles()) {
            const QStringList done =
                windowCalls().filter('(' + hex(own) + ',') + windowCalls().filter('(' + hex(own) + ')');
            if (!maximised.contains(own))
                QVERIFY2(done.isEmpty(), qPrintable(done.join('\n')));
        }
    }
};

QTEST_MAIN(OwnWindowsTest)
#include "tst_ownwindows.moc"
