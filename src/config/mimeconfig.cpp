#include "config/mimeconfig.h"

#include "catalogue/application.h"
#include "catalogue/cataloguefiles.h"
#include "env/inifile.h"
#include "shell/keyboard.h"
#include "shell/messagebox.h"
#include "shell/ownwindow.h"
#include "shell/toolbutton.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QListWidget>
#include <QPointer>
#include <QShortcut>
#include <QSignalBlocker>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace {

constexpr QLatin1Char listSeparator(':');

const char noGroup[] = "-1"; // stands for the applications that are in none

QString associationsPath()
{
    return QDir::homePath() + QStringLiteral("/.quillet/mime/extensions");
}

QIcon groupIcon(const QString& id)
{
    const QString picture = env::readValue(catalogue::groupsPath(), id + QStringLiteral("/icon"));
    return QIcon(QStringLiteral(":/icons/groups") + QDir::separator() + picture + QStringLiteral(".png"));
}

QString idOf(const QListWidgetItem* entry)
{
    return entry->data(Qt::UserRole).toString();
}

const QListWidgetItem* append(QListWidget* list, const Application& application)
{
    auto* const entry = new QListWidgetItem(application.icon(), Application::displayName(application.id()));
    entry->setData(Qt::UserRole, application.id());
    list->addItem(entry); // which owns it
    return entry;
}

// The ids of applications that are the caller's, and deleted.
QStringList takeIds(const QList<Application*>& applications)
{
    QStringList ids;
    for (const Application* const application : applications)
        ids.append(application->id());
    qDeleteAll(applications);
    return ids;
}

using ButtonState = std::pair<QWidget*, bool>;

// Enables each button, or not. The focus of one that is disabled goes to `heir`.
void enable(std::initializer_list<ButtonState> states, QWidget* heir)
{
    const bool inherits = std::any_of(states.begin(), states.end(), [](const ButtonState& state) {
        return !state.second && state.first->hasFocus();
    });
    for (const ButtonState& state : states)
        state.first->setEnabled(state.second);
    if (inherits)
        heir->setFocus(Qt::TabFocusReason);
}

} // namespace

MimeConfig::MimeConfig(QWidget* panel, const QString& path)
    : QDialog(panel)
    , ConfigurationDialog(panel)
{
    setWindowTitle(QLatin1String(shell::ownWindowTitle));
    shell::setPageFlags(this);
    setStyleSheet(styleSheetFor("MimeConfig"));
    m_form.setUp(this);
    fillGroups();
    fillExtensions();
    connectWidgets();
    addKeys();

    if (m_form.groupBox->count() > 0)
        appGroupActivated(0);
    if (!path.isEmpty())
        showExtensionOf(path);
    else if (m_form.extensionsBox->count() > 0)
        updateSelected(0);
}

QIcon MimeConfig::icon()
{
    return QIcon(QStringLiteral(":/icons/applications") + QDir::separator() +
                 QStringLiteral("mimetypes.png"));
}

QString MimeConfig::name()
{
    return tr("File\nassociations");
}

QWidget* MimeConfig::widget()
{
    return this;
}

// --- Setting up

void MimeConfig::connectWidgets()
{
    connect(m_form.backButton, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_form.addButton, SIGNAL(clicked()), this, SLOT(applicationsToSelectedClicked()));
    connect(m_form.upButton, SIGNAL(clicked()), this, SLOT(upClicked()));
    connect(m_form.downButton, SIGNAL(clicked()), this, SLOT(downClicked()));
    connect(m_form.removeButton, SIGNAL(clicked()), this, SLOT(deleteSelected()));
    connect(m_form.acceptButton, SIGNAL(clicked()), this, SLOT(accept()));
    connect(m_form.cancelButton, SIGNAL(clicked()), this, SLOT(reject()));
    connect(m_form.groupBox, SIGNAL(activated(int)), this, SLOT(appGroupActivated(int)));
    connect(m_form.extensionsBox, SIGNAL(activated(int)), this, SLOT(extensionsActivated(int)));
    connect(m_form.applicationsList, SIGNAL(currentRowChanged(int)), this, SLOT(applicationsChanged(int)));
    connect(m_form.selectedList, SIGNAL(currentRowChanged(int)), this, SLOT(selectedChanged(int)));
}

void MimeConfig::addKeys()
{
    const auto addKey = [](QListWidget* list, int key, ToolButton* button) {
        auto* const shortcut = new QShortcut(QKeySequence(key), list);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, SIGNAL(activated()), button, SLOT(click()));
    };
    addKey(m_form.applicationsList, Qt::Key_Insert, m_form.addButton);
    addKey(m_form.selectedList, Qt::ALT + Qt::Key_Up, m_form.upButton);
    addKey(m_form.selectedList, Qt::ALT + Qt::Key_Down, m_form.downButton);
    addKey(m_form.selectedList, Qt::Key_Delete, m_form.removeButton);
}

void MimeConfig::fillGroups()
{
    const QStringList ids = Application::groupIds();
    const QStringList names = Application::groupNames();
    for (int i = 0; i < ids.size(); ++i)
        m_form.groupBox->addItem(groupIcon(ids.at(i)), names.value(i), ids.at(i));
    m_form.groupBox->addItem(tr("<No group>"), QLatin1String(noGroup));
}

void MimeConfig::fillExtensions()
{
    m_form.extensionsBox->clear();
    m_form.extensionsBox->addItems(Application::extensionsList());
}

void MimeConfig::showExtensionOf(const QString& path)
{
    const QString extension = QLatin1Char('.') + QFileInfo(path).suffix();
    const auto find = [this, &extension] {
        return m_form.extensionsBox->findText(extension, Qt::MatchExactly | Qt::MatchCaseSensitive);
    };
    int index = find();
    if (index < 0) {
        Application::clearAssociation(extension); // which adds it, as far as the catalogue can be added to
        fillExtensions();
        index = find();
        if (index < 0)
            MimeConfig::reject();
    }
    updateSelected(index);
    m_form.extensionsBox->setEnabled(false);
}

// --- What is in view

QStringList MimeConfig::shownIds() const
{
    QStringList ids;
    for (int row = 0; row < m_form.selectedList->count(); ++row)
        ids.append(idOf(m_form.selectedList->item(row)));
    return ids;
}

void MimeConfig::appGroupActivated(int index)
{
    m_form.applicationsList->clear();
    const QString group = m_form.groupBox->itemData(index).toString();
    const QList<Application*> applications = Application::applicationsByGroup(group);
    for (const Application* const application : applications) {
        const QListWidgetItem* const entry = append(m_form.applicationsList, *application);
        qDebug("Appending application %s...", qUtf8Printable(entry->text()));
    }
    qDeleteAll(applications);
}

void MimeConfig::updateSelected(int index)
{
    m_form.selectedList->clear();
    m_form.extensionsBox->setCurrentIndex(index);
    m_shownExtension = m_form.extensionsBox->currentIndex();
    const QString extension = m_form.extensionsBox->currentText();
    const QList<Application*> associated = Application::applicationsFor(extension);
    m_edits.deleted += takeIds(Application::excludedApplications(extension));

    QStringList ids;
    for (const Application* const application : associated)
        ids.append(application->id());
    for (const QString& id : config::idsToShow(ids, m_edits)) {
        const int known = ids.indexOf(id);
        if (known >= 0)
            append(m_form.selectedList, *associated.at(known));
        else
            append(m_form.selectedList, Application(id));
    }
    qDeleteAll(associated);
}

void MimeConfig::extensionsActivated(int index)
{
    // The box has moved on already; what is saved is the one in view, and the user sees which it is.
    m_form.extensionsBox->setCurrentIndex(m_shownExtension);
    if (!save())
        return;
    m_edits = {};
    updateSelected(index);
}

void MimeConfig::applicationsChanged(int row)
{
    enable({{m_form.addButton, row != -1}}, m_form.applicationsList);
}

void MimeConfig::selectedChanged(int row)
{
    const int count = m_form.selectedList->count();
    enable({{m_form.removeButton, row != -1},
            {m_form.upButton, config::rowAbove(row, count) != -1},
            {m_form.downButton, config::rowBelow(row, count) != -1}},
           m_form.selectedList);
}

// --- Changes

void MimeConfig::applicationsToSelectedClicked()
{
    const QList<QListWidgetItem*> chosen = m_form.applicationsList->selectedItems();
    for (const QListWidgetItem* const entry : chosen) {
        const QString id = idOf(entry);
        const QStringList shown = shownIds();
        m_edits = config::afterAdding(m_edits, shown, id);
        if (!shown.contains(id))
            append(m_form.selectedList, Application(id));
    }
    selectedChanged(m_form.selectedList->currentRow()); // which may not be the last one any more
}

void MimeConfig::deleteSelected()
{
    QStringList chosen;
    for (const QListWidgetItem* const entry : m_form.selectedList->selectedItems())
        chosen.append(idOf(entry));
    for (const QString& id : std::as_const(chosen)) {
        m_edits = config::afterDeleting(m_edits, id);
        bool found = false;
        for (int row = m_form.selectedList->count() - 1; row >= 0; --row) {
            if (idOf(m_form.selectedList->item(row)) == id) {
                delete m_form.selectedList->takeItem(row);
                found = true;
            }
        }
        if (found)
            m_form.selectedList->setCurrentRow(-1);
    }
}

void MimeConfig::upClicked()
{
    const int row = m_form.selectedList->currentRow();
    moveSelected(row, config::rowAbove(row, m_form.selectedList->count()));
}

void MimeConfig::downClicked()
{
    const int row = m_form.selectedList->currentRow();
    moveSelected(row, config::rowBelow(row, m_form.selectedList->count()));
}

void MimeConfig::moveSelected(int from, int to)
{
    if (to == -1)
        return;
    {
        const QSignalBlocker between(m_form.selectedList); // other entries become current on the way
        m_form.selectedList->insertItem(to, m_form.selectedList->takeItem(from));
        m_form.selectedList->setCurrentRow(to);
    }
    selectedChanged(to);
}

// --- Saving

bool MimeConfig::save()
{
    QStringList modified;
    if (m_form.extensionsBox->currentIndex() != -1) {
        const QString extension = m_form.extensionsBox->currentText();
        modified = config::modifiedItems(shownIds(), takeIds(Application::applicationsFor(extension)));
    }
    m_edits.deleted.removeDuplicates();
    qDebug("modifiedItems: %s", qUtf8Printable(modified.join(listSeparator)));
    qDebug("deletedItems: %s", qUtf8Printable(m_edits.deleted.join(listSeparator)));
    if (modified.isEmpty() && m_edits.deleted.isEmpty())
        return true;

    const QPointer<MimeConfig> self(this);
    const QMessageBox::StandardButton answer =
        shell::showBox(this, QMessageBox::Question, tr("Modified configuration"),
                       tr("Are you sure you want to change applications configuration?"),
                       QMessageBox::Save | QMessageBox::Discard);
    if (answer != QMessageBox::Save) {
        qDebug("Didn't save!");
        return self;
    }
    const QStringList entries = config::associationEntries(modified, m_edits.deleted);
    const QString key = m_form.extensionsBox->currentText();
    qDebug("key: %s", qUtf8Printable(key));
    env::writeValue(associationsPath(), key, entries.join(listSeparator));
    emit mimeChanged();
    return self;
}

void MimeConfig::accept()
{
    if (!save())
        return;
    if (m_embedded)
        hide();
    else
        QDialog::accept();
}

void MimeConfig::reject()
{
    if (m_embedded)
        hide();
    else
        QDialog::reject();
}

// --- The keyboard

// No focus proxy: the Tab key would lead to the dialog itself, and on from the proxy.
void MimeConfig::focusInEvent(QFocusEvent* event)
{
    QDialog::focusInEvent(event);
    QWidget* const first = m_form.extensionsBox->isEnabled() ? static_cast<QWidget*>(m_form.extensionsBox)
                                                             : m_form.applicationsList;
    first->setFocus(event->reason());
}

void MimeConfig::keyPressEvent(QKeyEvent* event)
{
    // The dialog's own default button is forgotten, where it is no window, when another button had the focus.
    if (!shell::pressWithEnter(m_form.acceptButton, *event))
        QDialog::keyPressEvent(event);
}
