#pragma once

#include "config/associationedits.h"
#include "config/configurationdialog.h"
#include "config/mimeconfigform.h"

#include <QDialog>

// The association editor: which applications open files of an extension, and in which order of preference.
// One extension is in view at a time; its changes are saved when another one is chosen or the user accepts.
// They go to the user's own file of associations, `.quillet/mime/extensions` in the home folder, which nobody
// reads back: what is in view always comes from the catalogue (catalogue/application.h).
//
// A tool of the configuration panel: a child of it that is shown in place. It lives as long as the panel and
// keeps its state while it is hidden. Every list comes from the server when there is one, which blocks. GUI
// thread only.
class MimeConfig : public QDialog, public ConfigurationDialog
{
    Q_OBJECT
    Q_INTERFACES(ConfigurationDialog)

public:
    // For every extension; or, with the path of a file, for that file's alone. In the latter case an editor
    // for an extension that nobody knows has rejected itself.
    explicit MimeConfig(QWidget* panel, const QString& path = QString());

    QIcon icon() override;
    QString name() override;
    QWidget* widget() override;

    // Whether accepting and rejecting only hide it, as in the panel; otherwise it closes as dialogs do.
    bool isEmbedded() const { return m_embedded; }
    void setEmbedded(bool embedded) { m_embedded = embedded; }

signals:
    // The user's file of associations was saved. Whether it could be written is not known.
    void mimeChanged();

public slots:
    void accept() override;
    void reject() override;
    void deleteSelected();
    void appGroupActivated(int index);
    void updateSelected(int index);
    void extensionsActivated(int index);
    void applicationsToSelectedClicked();
    void upClicked();
    void downClicked();
    void applicationsChanged(int row);
    void selectedChanged(int row);

protected:
    // The keyboard begins at the extensions, or at the applications when there is but one extension.
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void connectWidgets();
    void addKeys();
    void fillGroups();
    void fillExtensions();
    void showExtensionOf(const QString& path);

    void moveSelected(int from, int to);
    QStringList shownIds() const;
    // Asks before it saves; nothing when there is nothing to save. False when the editor is gone meanwhile.
    bool save();

    MimeConfigForm m_form;
    bool m_embedded = true;
    int m_shownExtension = -1; // the extensions box's entry whose applications are in view
    config::AssociationEdits m_edits;
};
