// The Spanish translation: complete, in the shape of the texts that it translates, and short enough for the
// places that they stand in.
#include "config/configurationdialog.h"
#include "config/configure.h"
#include "session/initscreen.h"
#include "shell/appbutton.h"
#include "shell/elidedlabel.h"
#include "shell/labelbreak.h"
#include "shell/threadbutton.h"
#include "support/shelltest.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <memory>

namespace {

struct Message
{
    QString context;
    QString source;
    QString translation;
};

QList<Message> messages()
{
    QFile file(QStringLiteral(TRANSLATION_SOURCE));
    if (!file.open(QFile::ReadOnly))
        qFatal("no translation source");
    QXmlStreamReader reader(&file);
    QList<Message> found;
    Message message;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == QLatin1String("name"))
            message.context = reader.readElementText();
        else if (reader.name() == QLatin1String("source"))
            message.source = reader.readElementText();
        else if (reader.name() == QLatin1String("translation")) {
            message.translation = reader.readElementText();
            found.append(message);
        }
    }
    if (reader.hasError())
        qFatal("the translation source is broken");
    return found;
}

int count(const QString& text, const QString& pattern)
{
    return text.count(QRegularExpression(pattern));
}

QStringList all(const QString& text, const QString& pattern)
{
    QStringList found;
    auto matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    found.sort();
    return found;
}

} // namespace

class TranslationTest : public ShellTest
{
    Q_OBJECT

    std::unique_ptr<QTranslator> m_translator;

    void speak(const QString& language)
    {
        if (language == QLatin1String("English"))
            return;
        m_translator = std::make_unique<QTranslator>();
        QVERIFY(m_translator->load(QStringLiteral(TRANSLATION)));
        QVERIFY(QCoreApplication::installTranslator(m_translator.get()));
    }

    static void addLanguages()
    {
        QTest::addColumn<QString>("language");
        QTest::newRow("English") << "English";
        QTest::newRow("Spanish") << "Spanish";
    }

    // Labels and buttons of a window that are narrower than what they say.
    static QStringList clipped(const QWidget* window)
    {
        QStringList found;
        const auto check = [&found](const QWidget* widget, const QString& text) {
            const QSize wanted = widget->sizeHint();
            if (widget->isVisible() && !text.isEmpty() && wanted.width() > widget->width())
                found.append(
                    QStringLiteral("%1 (%2 of %3)").arg(text).arg(widget->width()).arg(wanted.width()));
        };
        const auto labels = window->findChildren<QLabel*>();
        for (const QLabel* const label : labels) {
            if (!label->wordWrap() && !qobject_cast<const ElidedLabel*>(label))
                check(label, label->text());
        }
        const auto buttons = window->findChildren<QAbstractButton*>();
        for (const QAbstractButton* const button : buttons)
            check(button, button->text());
        const auto boxes = window->findChildren<QComboBox*>();
        for (const QComboBox* const box : boxes)
            check(box, box->currentText());
        return found;
    }

private slots:
    void cleanup()
    {
        ShellTest::cleanup();
        m_translator.reset(); // takes itself out
    }

    void theTranslationIsFoundUnderItsName()
    {
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral("quillet_es"), QFileInfo(QStringLiteral(TRANSLATION)).path()));
        QCOMPARE(translator.translate("TabBar", "Desktop"), QStringLiteral("Escritorio"));
    }

    void everyTextIsTranslated()
    {
        const QList<Message> texts = messages();
        QVERIFY(texts.size() > 70);
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(TRANSLATION)));
        for (const Message& text : texts) {
            QVERIFY2(!text.translation.trimmed().isEmpty(), qPrintable(text.source));
            QCOMPARE(translator.translate(text.context.toUtf8(), text.source.toUtf8()), text.translation);
        }
    }

    void qtsOwnTextsAreTranslatedToo()
    {
        QTranslator translator;
        QVERIFY(translator.load(QStringLiteral(TRANSLATION)));
        QCOMPARE(translator.translate("QPlatformTheme", "Save"), QStringLiteral("Guardar"));
        QCOMPARE(translator.translate("QPlatformTheme", "&Yes"), QStringLiteral("&Sí"));
        QCOMPARE(translator.translate("QFileSystemModel", "Date Modified"),
                 QStringLiteral("Fecha de modificación"));
    }

    void aTranslationHasTheShapeOfItsText_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("translation");
        const QList<Message> texts = messages();
        for (const Message& text : texts)
            QTest::addRow("%s: %s", qPrintable(text.context), qPrintable(text.source))
                << text.source << text.translation;
    }
    void aTranslationHasTheShapeOfItsText()
    {
        QFETCH(QString, source);
        QFETCH(QString, translation);
        QCOMPARE(translation.count('\n'), source.count('\n')); // a label of two lines stays one
        QCOMPARE(all(translation, "%\\d"), all(source, "%\\d"));
        QCOMPARE(count(translation, "&\\w"), count(source, "&\\w"));
        QCOMPARE(count(translation, "^\\s"), count(source, "^\\s"));
        QCOMPARE(count(translation, "\\s$"), count(source, "\\s$"));
        QCOMPARE(count(translation, "(\\.\\.\\.|:|\\.)$"), count(source, "(\\.\\.\\.|:|\\.)$"));
        QVERIFY(!translation.contains("  "));
    }

    void theLoginsTextsFit_data() { addLanguages(); }
    void theLoginsTextsFit()
    {
        QFETCH(QString, language);
        speak(language);
        InitScreen dialog;
        dialog.setModal(false); // not a question to answer
        dialog.setFixedSize(1024, 768);
        dialog.show();
        dialog.centrePanel(dialog.size());
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(clipped(&dialog), QStringList());
    }

    void thePagesTextsFit_data() { addLanguages(); }
    void thePagesTextsFit()
    {
        QFETCH(QString, language);
        speak(language);
        startShell();
        for (int page = 0; page < 3; ++page) {
            bar().buttonAt(page)->click();
            QWidget* const widget = bar().buttonAt(page)->widget();
            QTRY_VERIFY(widget->isVisible());
            QCOMPARE(clipped(widget), QStringList());
        }
        QCOMPARE(clipped(&bar()), QStringList());
    }

    void theToolsTextsFit_data() { addLanguages(); }
    void theToolsTextsFit()
    {
        QFETCH(QString, language);
        speak(language);
        startShell();
        bar().buttonAt(2)->click();
        QFont font(QStringLiteral("Helvetica"));
        font.setPixelSize(12);
        const auto buttons = shell().configuration()->findChildren<AppButton*>();
        const auto tools = shell().configuration()->findChildren<QDialog*>();
        QCOMPARE(buttons.size(), 2);
        QCOMPARE(tools.size(), 2);
        for (int i = 0; i < 2; ++i) {
            const QString label = qobject_cast<ConfigurationDialog*>(tools.at(i))->name();
            QCOMPARE(label.count('\n'), 1);
            QCOMPARE(shell::fitLabel(label, QFontMetrics(font), 74), label);
            buttons.at(i)->click();
            QTRY_VERIFY(tools.at(i)->isVisible());
            QCOMPARE(clipped(tools.at(i)), QStringList());
            tools.at(i)->reject();
        }
    }
};

QTEST_MAIN(TranslationTest)
#include "tst_translation.moc"
