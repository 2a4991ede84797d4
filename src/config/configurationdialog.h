#pragma once

#include <QIcon>
#include <QObject>
#include <QString>

class QWidget;

// What a tool of the configuration panel is to the panel. A tool derives from QDialog first and from this
// second, and lists it in Q_INTERFACES, so that qobject_cast<ConfigurationDialog*> finds it. GUI thread only.
class ConfigurationDialog
{
public:
    virtual QIcon icon() = 0;      // the picture of the tool's button
    virtual QString name() = 0;    // the button's label, translated; may contain a line break
    virtual QWidget* widget() = 0; // what is shown for the tool, normally the tool itself; not the caller's

    virtual ~ConfigurationDialog() = default;

protected:
    // The panel is not owned, and may be null.
    explicit ConfigurationDialog(QWidget* panel)
        : m_panel(panel)
    {}

    QWidget* panel() const { return m_panel; }

    // Of a tool of this class. The panel's style sheet says the background of everything below it, which
    // takes the style's own look from fields, buttons and boxes; here that ends.
    static QString styleSheetFor(const char* className)
    {
        return QStringLiteral("* { background: none } %1 { background-color: %2 }")
            .arg(QLatin1String(className), QLatin1String(background));
    }

    static constexpr char background[] = "#e6eaed"; // the panel's

private:
    Q_DISABLE_COPY(ConfigurationDialog)

    QWidget* const m_panel;
};

Q_DECLARE_INTERFACE(ConfigurationDialog, "quillet.ConfigurationDialog")
