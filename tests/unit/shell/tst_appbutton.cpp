#include "shell/appbutton.h"

#include "instances/appinstance.h"
#include "support/markingtranslator.h"
#include "support/quillettest.h"

#include <QAccessible>
#include <QGraphicsColorizeEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QIconEngine>
#include <QMetaMethod>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace {

// Tells what picture it was asked for last.
class RecordingEngine : public QIconEngine
{
public:
    struct Asked
    {
        QSize size;
        QIcon::Mode mode = QIcon::Disabled;
        QIcon::State state = QIcon::On;
    };

    explicit RecordingEngine(Asked* asked)
        : m_asked(asked)
    {}
    void paint(QPainter*, const QRect&, QIcon::Mode, QIcon::State) override {}
    QIconEngine* clone() const override { return new RecordingEngine(m_asked); }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        *m_asked = {size, mode, state};
        QPixmap pixmap(size);
        pixmap.fill(Qt::red);
        return pixmap;
    }

private:
    Asked* const m_asked;
};

const QColor ground(Qt::magenta); // behind the button
// The strip's colour at 0.85 upon it.
const QColor strip(234, 199, 240);

bool isNear(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) <= 2 && qAbs(a.green() - b.green()) <= 2 && qAbs(a.blue() - b.blue()) <= 2;
}

} // namespace

class AppButtonTest : public QuilletTest
{
    Q_OBJECT

    std::unique_ptr<QWidget> m_window;

    static QIcon icon(int width, int height, const QColor& color = Qt::red)
    {
        QPixmap pixmap(width, height);
        pixmap.fill(color);
        return QIcon(pixmap);
    }

    AppButton* tool(const QIcon& icon, const QString& text = QString(), QWidget* widget = nullptr)
    {
        const auto button = new AppButton(icon, text, widget, m_window.get());
        button->setFlat(true);
        button->show();
        return button;
    }

    AppButton* application(AppInstance& instance)
    {
        const auto button = new AppButton(&instance, m_window.get());
        button->setFlat(true);
        return button;
    }

    // A button as it looks upon the window, alone.
    QImage look(AppButton* button) const
    {
        for (AppButton* other : m_window->findChildren<AppButton*>()) {
            if (other != button && other->pos() == button->pos())
                other->hide();
        }
        button->show();
        return m_window->grab(button->geometry()).toImage().convertToFormat(QImage::Format_RGB32);
    }

    static void enter(AppButton* button)
    {
        QEnterEvent event(QPointF(10, 10), QPointF(10, 10), QPointF(10, 10));
        QCoreApplication::sendEvent(button, &event);
    }

    static void leave(AppButton* button)
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(button, &event);
    }

    // The rectangle of everything in the icon's part that is not the window's own colour.
    static QRect iconPart(const QImage& image)
    {
        QRegion region;
        for (int y = 0; y < 75; ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) != ground)
                    region += QRect(x, y, 1, 1);
            }
        }
        return region.boundingRect();
    }

private slots:
    void init()
    {
        QuilletTest::init();
        qRegisterMetaType<AppInstance*>();
        m_window = std::make_unique<QWidget>();
        m_window->setFixedSize(200, 200);
        QPalette palette;
        palette.setColor(QPalette::Window, ground);
        m_window->setPalette(palette);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        QuilletTest::cleanup();
    }

    void signalsAndSlotsComeInOrder()
    {
        const QStringList expected{"appButtonClicked(AppInstance*)", "appButtonClicked(QWidget*)",
                                   "buttonClicked()"};
        QStringList found;
        const QMetaObject& meta = AppButton::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            found.append(QString::fromLatin1(meta.method(i).methodSignature()));
        QCOMPARE(found, expected);
        QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
        QCOMPARE(meta.method(meta.methodOffset() + 1).methodType(), QMetaMethod::Signal);
        QCOMPARE(meta.method(meta.methodOffset() + 2).methodType(), QMetaMethod::Slot);
        QCOMPARE(QByteArray(meta.superClass()->className()), QByteArray("QPushButton"));
    }

    void everyButtonHasItsFixedSize()
    {
        AppInstance instance(QStringLiteral("kcalc"), nullptr);
        for (const AppButton* button : {tool(QIcon(), "x"), application(instance)}) {
            QCOMPARE(button->size(), QSize(74, 112));
            QCOMPARE(button->minimumSize(), QSize(74, 112));
            QCOMPARE(button->maximumSize(), QSize(74, 112));
        }
    }

    // --- Labels

    void anApplicationsLabelIsItsNameOrItsIdBroken_data()
    {
        QTest::addColumn<QByteArray>("name"); // in the catalogue
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("label");
        QTest::newRow("one word") << QByteArray("Editor") << "mine"
                                  << "Editor";
        QTest::newRow("two words") << QByteArray("Text Editor") << "mine"
                                   << "Text\nEditor";
        QTest::newRow("blanks at the ends") << QByteArray("\" Editor  \"") << "mine"
                                            << "Editor";
        QTest::newRow("no name") << QByteArray() << "mine"
                                 << "mine";
        QTest::newRow("a blank name") << QByteArray("\"  \"") << "mine"
                                      << "mine";
        QTest::newRow("unknown") << QByteArray() << " two words "
                                 << "two\nwords";
        QTest::newRow("nothing at all") << QByteArray() << ""
                                        << "Unkonwn";
        QTest::newRow("blanks alone") << QByteArray() << "  \n"
                                      << "Unkonwn";
        QTest::newRow("a shortcut's sign") << QByteArray("R&D") << "mine"
                                           << "R&D";
    }
    void anApplicationsLabelIsItsNameOrItsIdBroken()
    {
        QFETCH(QByteArray, name);
        QFETCH(QString, id);
        QFETCH(QString, label);
        sandbox().writeUserApplications("[mine]\nname=" + name + "\n");
        AppInstance instance(id, nullptr);
        AppButton* const button = application(instance);
        QCOMPARE(look(button), look(tool(instance.icon(), label)));
        QCOMPARE(button->accessibleName(), label.simplified());
        QVERIFY(button->shortcut().isEmpty());
    }

    void theUnknownLabelIsTranslated()
    {
        const MarkingTranslator translator;
        AppInstance instance(QString(), nullptr);
        QCOMPARE(application(instance)->accessibleName(), QStringLiteral("AppButton|Unkonwn"));
    }

    void aToolsLabelIsNotBroken()
    {
        const QImage broken = look(tool(QIcon(), "a\nb"));
        QVERIFY(look(tool(QIcon(), "a b")) != broken);
        QCOMPARE(tool(QIcon(), "File\nassociations")->accessibleName(), QStringLiteral("File associations"));
    }

    void hostileNamesAreOnlyText_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("300 characters") << QString(300, 'm');
        QTest::newRow("many blanks") << QStringLiteral("a ").repeated(150);
        QTest::newRow("line feeds") << "one\ntwo\nthree\nfour";
        QTest::newRow("right to left") << QString::fromUtf8("עורך טקסט גדול מאוד");
        QTest::newRow("outside the basic plane") << QString::fromUtf8("🌊🌊🌊 🌊🌊🌊🌊🌊🌊🌊");
        QTest::newRow("HTML") << "<h1>Big</h1> <img src='x'> &lt;";
        QTest::newRow("marks upon marks") << QString(QLatin1Char('e') + QString(60, QChar(0x301)));
    }
    void hostileNamesAreOnlyText()
    {
        QFETCH(QString, name);
        AppInstance instance(name, nullptr); // unknown: its id is its label
        const QImage image = look(application(instance));
        const QImage silent = look(tool(QIcon()));
        bool somethingIsWritten = false;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (y < 75 || y > 107)
                    QCOMPARE(image.pixelColor(x, y), ground);
                else
                    somethingIsWritten |= image.pixel(x, y) != silent.pixel(x, y);
            }
        }
        QVERIFY(somethingIsWritten);
    }

    // --- Painting

    void atRestTheIconFillsItsRectangleAndTheLabelItsStrip()
    {
        RecordingEngine::Asked asked;
        const QImage image = look(tool(QIcon(new RecordingEngine(&asked))));
        QCOMPARE(asked.size, QSize(64, 64));
        QCOMPARE(asked.mode, QIcon::Normal);
        QCOMPARE(asked.state, QIcon::Off);
        for (int y = 0; y < 112; ++y) {
            for (int x = 0; x < 74; ++x) {
                const QColor color = image.pixelColor(x, y);
                if (QRect(QPoint(5, 5), QPoint(69, 69)).contains(x, y))
                    QCOMPARE(color, QColor(Qt::red));
                else if (y >= 75 && y <= 107)
                    QVERIFY(isNear(color, strip));
                else
                    QCOMPARE(color, ground);
            }
        }
    }

    void anIconOfAnyShapeFillsItsRectangle_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(16, 16);
        QTest::newRow("wide") << QSize(64, 32);
        QTest::newRow("4000 pixels") << QSize(4000, 4000);
        QTest::newRow("4000 pixels wide") << QSize(4000, 100);
    }
    void anIconOfAnyShapeFillsItsRectangle()
    {
        QFETCH(QSize, size);
        QCOMPARE(iconPart(look(tool(icon(size.width(), size.height())))), QRect(5, 5, 65, 65));
    }

    void withoutAPictureThereIsTheStripAlone_data()
    {
        QTest::addColumn<QIcon>("icon");
        QTest::newRow("no icon") << QIcon();
        QTest::newRow("no file") << QIcon(QStringLiteral(":/icons/applications/nobody.png"));
    }
    void withoutAPictureThereIsTheStripAlone()
    {
        QFETCH(QIcon, icon);
        AppButton* const button = tool(icon);
        QCOMPARE(iconPart(look(button)), QRect());
        enter(button);
        QCOMPARE(iconPart(look(button)), QRect());
        QVERIFY(isNear(look(button).pixelColor(40, 90), strip));
    }

    void theLabelIsBlackInItsFontInTheMiddleOfTheStrip()
    {
        QImage expected(74, 112, QImage::Format_RGB32);
        expected.fill(ground);
        {
            QPainter painter(&expected);
            QFont font(QStringLiteral("Helvetica"), 13);
            font.setPixelSize(13);
            painter.setFont(font);
            painter.setPen(Qt::black);
            painter.setOpacity(0.85);
            const QRect rectangle(QPoint(0, 75), QPoint(74, 107));
            painter.fillRect(rectangle, QColor(0xE6EAED));
            painter.drawText(rectangle, Qt::AlignCenter, QStringLiteral("Text\nEditor"));
        }
        QCOMPARE(look(tool(QIcon(), "Text\nEditor")), expected);
    }

    void withoutHelveticaLabelsAreWrittenInWhatHasItsWidths()
    {
        AppButton::installFontFallbacks();
        const auto undo = qScopeGuard([] { QFont::removeSubstitutions(QStringLiteral("Helvetica")); });
        const QStringList sameWidths({"arial", "liberation sans"}); // Qt keeps them so
        QCOMPARE(QFont::substitutes(QStringLiteral("Helvetica")), sameWidths);
#ifdef Q_OS_WIN
        // Of a size that nobody has asked for: fonts that were found are kept.
        const QString family = QFontInfo(QFont(QStringLiteral("Helvetica"), 71)).family().toLower();
        QVERIFY2(sameWidths.contains(family), qPrintable(family));
#endif
    }

    void aLabelThatIsAPixelSizeTooWideIsWrittenThatMuchSmaller()
    {
        QFont font(QStringLiteral("Helvetica"), 13);
        const auto width = [&font](const QString& text, int size) {
            font.setPixelSize(size);
            return QFontMetrics(font).horizontalAdvance(text);
        };
        QString wide; // which letters make one depends on the font
        for (const char letter : {'i', 'a', 'n', 'o', 'c', 'e', 'r', 't', 'm', 'C', 'W'}) {
            QString line;
            while (width(line, 13) <= 74)
                line += QLatin1Char(letter);
            if (width(line, 12) <= 74)
                wide = line;
        }
        QVERIFY(!wide.isEmpty());
        const QString label = QStringLiteral("Wide\n") + wide;
        font.setPixelSize(12);
        QImage expected(74, 112, QImage::Format_RGB32);
        expected.fill(ground);
        {
            QPainter painter(&expected);
            painter.setFont(font);
            painter.setPen(Qt::black);
            painter.setOpacity(0.85);
            const QRect rectangle(QPoint(0, 75), QPoint(74, 107));
            painter.fillRect(rectangle, QColor(0xE6EAED));
            painter.drawText(rectangle, Qt::AlignCenter, label);
        }
        QCOMPARE(look(tool(QIcon(), label)), expected);
    }

    void aLabelThatIsTooWideIsElided()
    {
        QVERIFY(look(tool(QIcon(), QString(30, 'm'))) == look(tool(QIcon(), QString(40, 'm'))));
        QVERIFY(look(tool(QIcon(), QString(4, 'm'))) != look(tool(QIcon(), QString(5, 'm'))));
    }

    void whilePressedTheIconShrinksTowardsItsMiddle()
    {
        RecordingEngine::Asked asked;
        AppButton* const button = tool(QIcon(new RecordingEngine(&asked)), "x");
        const QImage before = look(button);
        QTest::mousePress(button, Qt::LeftButton);
        const QImage pressed = look(button);
        QCOMPARE(iconPart(pressed), QRect(QPoint(10, 10), QPoint(64, 64)));
        QCOMPARE(asked.size, QSize(54, 54));
        const QRect label(0, 70, 74, 42);
        QCOMPARE(pressed.copy(label), before.copy(label));
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(look(button), before);
    }

    void theIconIsScaledSmoothly()
    {
        const QIcon picture(QStringLiteral(":/icons/applications/kwrite.png"));
        AppButton* const button = tool(picture, "x");
        QImage expected(74, 112, QImage::Format_RGB32);
        expected.fill(ground);
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            painter.drawPixmap(QRect(QPoint(5, 5), QPoint(69, 69)), picture.pixmap(64, 64));
        }
        QCOMPARE(look(button).copy(0, 0, 74, 75), expected.copy(0, 0, 74, 75));
    }

    void whileHoveredTheIconIsTinted_data()
    {
        QTest::addColumn<bool>("pressed");
        QTest::newRow("at rest") << false;
        QTest::newRow("pressed") << true;
    }
    void whileHoveredTheIconIsTinted()
    {
        QFETCH(bool, pressed);
        const int p = pressed ? 5 : 0;
        const QIcon picture(QStringLiteral(":/icons/applications/kcalc.png"));
        AppButton* const button = tool(picture, "x");
        if (pressed)
            QTest::mousePress(button, Qt::LeftButton);
        const QImage before = look(button);
        enter(button);
        QImage expected(74, 112, QImage::Format_RGB32);
        expected.fill(ground);
        {
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            QGraphicsScene scene;
            auto* const item = new QGraphicsPixmapItem(picture.pixmap(64 - 2 * p, 64 - 2 * p));
            auto* const effect = new QGraphicsColorizeEffect;
            effect->setColor(QColor(255, 255, 128, 32));
            item->setGraphicsEffect(effect);
            scene.addItem(item);
            const QRect place(QPoint(p + 5, p + 5), QPoint(69 - p, 69 - p));
            scene.render(&painter, place, QRectF(), Qt::KeepAspectRatio);
        }
        const QRect upper(0, 0, 74, 75);
        QCOMPARE(look(button).copy(upper), expected.copy(upper));
        QVERIFY(before.copy(upper) != expected.copy(upper));
        QCOMPARE(look(button).copy(0, 75, 74, 37), before.copy(0, 75, 74, 37));
        leave(button);
        QCOMPARE(look(button), before);
    }

    void aHoveredIconKeepsItsShape()
    {
        AppButton* const button = tool(icon(64, 32));
        enter(button);
        const QRect part = iconPart(look(button));
        QCOMPARE(part.width(), 65);
        QVERIFY(part.height() >= 32 && part.height() <= 34);
    }

    void underTheWaitCursorTheLookStays_data()
    {
        QTest::addColumn<bool>("onTheButton"); // or on its window
        QTest::newRow("its own") << true;
        QTest::newRow("its window's") << false;
    }
    void underTheWaitCursorTheLookStays()
    {
        QFETCH(bool, onTheButton);
        AppButton* const button = tool(icon(64, 64), "x");
        QWidget* const widget = onTheButton ? button : m_window.get();
        const QImage before = look(button);
        const QSignalSpy clicked(button, SIGNAL(clicked()));
        widget->setCursor(Qt::WaitCursor);
        enter(button);
        QCOMPARE(look(button), before);
        QTest::mousePress(button, Qt::LeftButton);
        QCOMPARE(look(button), before);
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(clicked.count(), 1); // the look alone
        widget->setCursor(Qt::ArrowCursor);
        enter(button);
        QVERIFY(look(button) != before);
        // What it shows already goes when the mouse does.
        widget->setCursor(Qt::WaitCursor);
        leave(button);
        QCOMPARE(look(button), before);
    }

    void everyChangeOfLookGoesThroughASmallerSize()
    {
        AppButton* const button = tool(icon(64, 64), "x");
        struct Sizes : QObject
        {
            QList<QSize> seen;
            bool eventFilter(QObject*, QEvent* event) override
            {
                if (event->type() == QEvent::Resize)
                    seen.append(static_cast<QResizeEvent*>(event)->size());
                return false;
            }
        } sizes;
        button->installEventFilter(&sizes);
        const QList<QSize> once{QSize(73, 111), QSize(74, 112)};
        const auto taken = [&sizes] {
            const QList<QSize> seen = sizes.seen;
            sizes.seen.clear();
            return seen;
        };
        enter(button);
        QCOMPARE(taken(), once);
        QTest::mousePress(button, Qt::LeftButton);
        QCOMPARE(taken(), once);
        QTest::mouseRelease(button, Qt::LeftButton);
        QCOMPARE(taken(), once);
        leave(button);
        QCOMPARE(taken(), once);
        leave(button); // nothing changes now
        QCOMPARE(taken(), QList<QSize>());
        QCOMPARE(button->minimumSize(), QSize(74, 112));
        QCOMPARE(button->maximumSize(), QSize(74, 112));
    }

    void aButtonHiddenWhilePressedComesBackAtRest()
    {
        AppButton* const button = tool(icon(64, 64), "x");
        const QImage before = look(button);
        QTest::mousePress(button, Qt::LeftButton);
        button->hide();
        button->show();
        QCOMPARE(look(button), before);
    }

    // --- Clicks

    void aClickTellsTheApplication()
    {
        AppInstance instance(QStringLiteral("kcalc"), nullptr);
        AppButton* const button = application(instance);
        button->show();
        const QSignalSpy applications(button, SIGNAL(appButtonClicked(AppInstance*)));
        const QSignalSpy widgets(button, SIGNAL(appButtonClicked(QWidget*)));
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(applications.count(), 1);
        QCOMPARE(applications.first().first().value<AppInstance*>(), &instance);
        QVERIFY(QMetaObject::invokeMethod(button, "buttonClicked"));
        QCOMPARE(applications.count(), 2);
        QCOMPARE(widgets.count(), 0);
    }

    void aClickTellsTheTool()
    {
        QWidget widget;
        AppButton* const button = tool(QIcon(), "x", &widget);
        const QSignalSpy applications(button, SIGNAL(appButtonClicked(AppInstance*)));
        const QSignalSpy widgets(button, SIGNAL(appButtonClicked(QWidget*)));
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(widgets.count(), 1);
        QCOMPARE(widgets.first().first().value<QWidget*>(), &widget);
        QCOMPARE(applications.count(), 0);
    }

    void theLookChangesWhenThePressHasBeenTold()
    {
        AppButton* const button = tool(icon(64, 64), "x");
        const QImage before = look(button);
        QImage then;
        connect(button, &AppButton::pressed, button, [&] { then = look(button); });
        QTest::mousePress(button, Qt::LeftButton);
        QCOMPARE(then, before);
        QVERIFY(look(button) != before);
    }

    void theLookIsAtRestAgainBeforeTheClickIsTold()
    {
        AppButton* const button = tool(icon(64, 64), "x");
        const QImage before = look(button);
        QImage then;
        connect(button, &AppButton::clicked, button, [&] { then = look(button); });
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(then, before);
    }

    // --- Keyboard and screen readers

    void enterAndSpacePressOnce_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Enter") << int(Qt::Key_Return);
        QTest::newRow("Enter on the keypad") << int(Qt::Key_Enter);
        QTest::newRow("space") << int(Qt::Key_Space);
    }
    void enterAndSpacePressOnce()
    {
        QFETCH(int, key);
        AppButton* const button = tool(QIcon(), "x");
        const QSignalSpy clicked(button, SIGNAL(clicked()));
        QTest::keyClick(button, static_cast<Qt::Key>(key));
        QCOMPARE(clicked.count(), 1);
        QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(button, &held);
        QCOMPARE(clicked.count(), 1);
    }

    void theFocusFrameIsForTheKeyboardAlone_data()
    {
        QTest::addColumn<int>("reason");
        QTest::addColumn<bool>("shown");
        QTest::newRow("tab") << int(Qt::TabFocusReason) << true;
        QTest::newRow("tab backwards") << int(Qt::BacktabFocusReason) << true;
        QTest::newRow("shortcut") << int(Qt::ShortcutFocusReason) << true;
        QTest::newRow("mouse") << int(Qt::MouseFocusReason) << false;
        QTest::newRow("the program") << int(Qt::OtherFocusReason) << false;
    }
    void theFocusFrameIsForTheKeyboardAlone()
    {
        QFETCH(int, reason);
        QFETCH(bool, shown);
        AppButton* const other = tool(QIcon());
        other->move(100, 0);
        other->setFocus();
        AppButton* const button = tool(icon(64, 64), "x");
        const QImage before = look(button);
        button->setFocus(static_cast<Qt::FocusReason>(reason));
        QVERIFY(button->hasFocus());
        QCOMPARE(look(button) != before, shown);
        // The window goes and comes back.
        other->setFocus(Qt::ActiveWindowFocusReason);
        QCOMPARE(look(button), before);
        button->setFocus(Qt::ActiveWindowFocusReason);
        QCOMPARE(look(button) != before, shown);
    }

    void theFocusFrameTouchesNeitherIconNorStrip()
    {
        AppButton* const button = tool(icon(64, 64), "x");
        const QImage before = look(button);
        button->setFocus(Qt::TabFocusReason);
        const QImage focused = look(button);
        for (const QRect& filled : {QRect(QPoint(5, 5), QPoint(69, 69)), QRect(0, 75, 74, 33)})
            QCOMPARE(focused.copy(filled), before.copy(filled));
        QCOMPARE(iconPart(focused), QRect(QPoint(2, 2), QPoint(72, 72)));
        for (const QPoint& point : {QPoint(2, 37), QPoint(72, 37), QPoint(37, 2), QPoint(37, 72)})
            QCOMPARE(focused.pixelColor(point), QColor(0x12566b));
    }

    void screenReadersHearAButtonWithItsWholeLabel()
    {
        AppInstance instance(QStringLiteral("a very long name of an application"), nullptr);
        AppButton* const button = application(instance);
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(button);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("a very long name of an application"));
    }
};

QTEST_MAIN(AppButtonTest)
#include "tst_appbutton.moc"
