#include "config/mimeconfigform.h"

#include "shell/toolbutton.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QListView>
#include <QListWidget>
#include <QStyledItemDelegate>

namespace {

// Pixels.
constexpr int spacing = 10;
constexpr int margin = 20;
constexpr int boxHeight = 64;
constexpr int pictureExtent = 32;
constexpr int entryHeight = 40;

constexpr int leastBoxLength = 8; // letters

// The editor's texts stand in one context.
QString text(const char* source)
{
    return QCoreApplication::translate("MimeConfig", source);
}

// Paints entries of one height, each name on one line and in its own direction. What a name is does not
// change how wide an entry is, so that nothing is measured.
class EntryDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return QSize(0, entryHeight);
    }

    QString displayText(const QVariant& value, const QLocale&) const override
    {
        constexpr QChar rightToLeft(0x202B);
        const QString name = value.toString().simplified();
        return name.isRightToLeft() ? rightToLeft + name : name;
    }
};

ToolButton* createButton(QWidget* parent, const char* name, const char* picture, const QString& toolTip = {})
{
    const QIcon icon(QStringLiteral(":/icons/32x32") + QDir::separator() + QLatin1String(picture));
    auto* const button = new ToolButton(icon, toolTip, parent);
    button->setObjectName(QLatin1String(name));
    button->setFocusPolicy(Qt::TabFocus); // the mouse leaves the keyboard where it is
    return button;
}

QComboBox* createBox(QWidget* parent, const char* name)
{
    auto* const box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setFixedHeight(boxHeight);
    // Thousands of entries are not measured, and the longest does not push the rest aside.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(leastBoxLength);
    if (auto* const view = qobject_cast<QListView*>(box->view()))
        view->setUniformItemSizes(true);
    return box;
}

QListWidget* createList(QWidget* parent, const char* name)
{
    auto* const list = new QListWidget(parent);
    list->setObjectName(QLatin1String(name));
    list->setIconSize(QSize(pictureExtent, pictureExtent));
    list->setItemDelegate(new EntryDelegate(list));
    list->setUniformItemSizes(true);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The entry that becomes current when the keyboard comes to the list is not selected yet.
    QObject::connect(list, &QListWidget::currentRowChanged, list, [list](int row) {
        if (row != -1 && list->selectedItems().isEmpty())
            list->item(row)->setSelected(true);
    });
    return list;
}

} // namespace

void MimeConfigForm::setUp(QWidget* widget)
{
    // In the order in which Tab goes through them.
    backButton =
        createButton(widget, "backButton", "back.png", text(QT_TRANSLATE_NOOP("MimeConfig", "Go back")));
    groupBox = createBox(widget, "groupBox");
    groupBox->setIconSize(QSize(pictureExtent, pictureExtent));
    applicationsList = createList(widget, "applicationsList");
    addButton = createButton(widget, "addButton", "forward.png");
    extensionsBox = createBox(widget, "extensionsBox");
    selectedList = createList(widget, "selectedList");
    upButton = createButton(widget, "upButton", "up.png");
    downButton = createButton(widget, "downButton", "down.png");
    removeButton = createButton(widget, "removeButton", "remove.png");
    acceptButton = createButton(widget, "acceptButton", "accept.png");
    cancelButton = createButton(widget, "cancelButton", "cancel.png");
    for (ToolButton* const button : {addButton, upButton, downButton, removeButton})
        button->setEnabled(false);
    acceptButton->setDefault(true);

    groupBox->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Group")));
    applicationsList->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Applications of the group")));
    addButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Add")));
    extensionsBox->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Extension")));
    selectedList->setAccessibleName(
        text(QT_TRANSLATE_NOOP("MimeConfig", "Applications that open the extension")));
    upButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Move up")));
    downButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Move down")));
    removeButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Remove")));
    acceptButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Accept")));
    cancelButton->setAccessibleName(text(QT_TRANSLATE_NOOP("MimeConfig", "Cancel")));

    layOut(widget);
}

void MimeConfigForm::layOut(QWidget* widget) const
{
    auto* const grid = new QGridLayout(widget);
    grid->setSpacing(spacing);
    grid->setContentsMargins(margin, margin, margin, margin);
    grid->addWidget(backButton, 0, 0, Qt::AlignLeft);
    grid->addWidget(groupBox, 1, 0);
    grid->addWidget(applicationsList, 2, 0, 7, 1);
    grid->addWidget(addButton, 3, 1);
    grid->addWidget(extensionsBox, 1, 2, 1, 2);
    grid->addWidget(selectedList, 2, 2, 7, 2);
    grid->addWidget(upButton, 3, 4);
    grid->addWidget(downButton, 4, 4);
    grid->addWidget(removeButton, 6, 4);
    grid->addWidget(acceptButton, 9, 3, Qt::AlignRight);
    grid->addWidget(cancelButton, 9, 4);
    for (int column = 0; column <= 4; ++column)
        grid->setColumnStretch(column, column == 1 || column == 4 ? 1 : 3);
}
