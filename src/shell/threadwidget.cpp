#include "shell/threadwidget.h"

#include "shell/closebutton.h"
#include "shell/elidedlabel.h"
#include "shell/focusframe.h"
#include "shell/messagebox.h"
#include "shell/plainbutton.h"
#include "shell/threadbutton.h"

#include <QGridLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace {

constexpr int gap = 2;           // pixels; around the items and between them; a focus frame has room there
constexpr int previewMargin = 4; // pixels

void makeBold(QLabel* label)
{
    QFont font = label->font();
    font.setWeight(QFont::Bold); // 75
    label->setFont(font);
}

void setColor(QLabel* label, const QColor& color)
{
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color); // for all colour groups
    label->setPalette(palette);
}

void add(QGridLayout* layout, QLabel* label, int row, Qt::Alignment alignment)
{
    label->setAlignment(alignment);
    layout->addWidget(label, row, 0, alignment);
}

} // namespace

ThreadWidget::ThreadWidget(bool expanded, QWidget* parent)
    : QFrame(parent)
    , m_layout(new QGridLayout(this))
    , m_name(new ElidedLabel(this))
    , m_text(new ElidedLabel(this))
    , m_expanded(expanded)
{
    setFrameShape(QFrame::StyledPanel);
    m_layout->setContentsMargins(gap, gap, gap, gap);
    m_layout->setSpacing(gap);
    m_layout->setColumnStretch(0, 1); // the buttons beside the texts take no more than they need
    m_name->setObjectName(QStringLiteral("nameLabel"));
    m_text->setObjectName(QStringLiteral("textLabel"));
    if (expanded)
        addExpandedItems();
    m_closeButton = makeCloseButton("closeButton", "cancel.png", tr("Close"));
    m_layout->addWidget(m_closeButton, 0, 1, Qt::AlignRight | Qt::AlignTop);
    connect(m_closeButton, SIGNAL(clicked()), this, SLOT(closeButtonClickedSlot()));
    if (!expanded) {
        addPanelItems();
        return;
    }
    m_killButton = makeCloseButton("killButton", "terminate.png", tr("Terminate"));
    m_layout->addWidget(m_killButton, 1, 1, Qt::AlignRight | Qt::AlignTop);
    connect(m_killButton, SIGNAL(clicked()), this, SLOT(killButtonClickedSlot()));
}

ThreadButton* ThreadWidget::threadButton() const
{
    return m_button;
}

void ThreadWidget::setThreadButton(ThreadButton* threadButton)
{
    m_button = threadButton;
    if (!threadButton)
        return;
    makeBold(m_name);
    for (CloseButton* const button : {m_closeButton, m_killButton}) {
        if (button)
            button->setAccessibleDescription(threadButton->name());
    }
    m_closeButton->setVisible(threadButton->kind() != ThreadButton::FixedButton);
    if (m_expanded)
        showSnapshot();
}

void ThreadWidget::closeButtonClickedSlot()
{
    if (m_button)
        emit closeButtonClicked(m_button);
}

void ThreadWidget::killButtonClickedSlot()
{
    if (!m_button)
        return;
    const QPointer<ThreadWidget> self(this);
    const QPointer<ThreadButton> asked(m_button);
    const QMessageBox::StandardButton answer =
        shell::showBox(nullptr, QMessageBox::Warning, tr("Terminate application"),
                       tr("You are going to terminate the application.\nAll unsaved data will be lost.\n"
                          "Are you sure you want to do this?"),
                       QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer != QMessageBox::Yes || !self || !asked)
        return;
    if (m_status) {
        m_status->setText(tr("Terminating application"));
        makeBold(m_status);
        setColor(m_status, Qt::black);
    }
    emit killButtonClicked(asked);
}

void ThreadWidget::setName(const QString& threadName)
{
    m_name->setText(threadName);
}

void ThreadWidget::setText(const QString& threadText)
{
    m_text->setText(threadText);
}

void ThreadWidget::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    for (const CloseButton* const button : {m_closeButton, m_killButton}) {
        if (button)
            button->paintFocusFrame(&painter);
    }
}

void ThreadWidget::clicked()
{
    if (m_button)
        emit clicked(m_button);
}

CloseButton* ThreadWidget::makeCloseButton(const char* name, const char* picture,
                                           const QString& accessibleName)
{
    auto* const button =
        new CloseButton(QIcon(QLatin1String(":/icons/32x32/") + QLatin1String(picture)), this);
    button->setObjectName(QLatin1String(name));
    button->setAccessibleName(accessibleName);
    return button;
}

void ThreadWidget::addPanelItems()
{
    setStyleSheet(QStringLiteral("background-color: #%1").arg(QStringLiteral("e6eaed")));
    add(m_layout, m_name, 0, Qt::AlignLeft | Qt::AlignTop);
    add(m_layout, m_text, 1, Qt::AlignLeft | Qt::AlignTop);
}

void ThreadWidget::addExpandedItems()
{
    add(m_layout, m_name, 0, Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter);
    add(m_layout, m_text, 1, Qt::AlignHCenter | Qt::AlignTop | Qt::AlignVCenter);
    m_status = new ElidedLabel(this);
    m_status->setObjectName(QStringLiteral("statusLabel"));
    m_status->setText(tr("Running"));
    makeBold(m_status);
    setColor(m_status, Qt::darkGreen);
    add(m_layout, m_status, 2, Qt::AlignCenter);

    m_preview = new PlainButton(this);
    setFocusProxy(m_preview);
    m_preview->setObjectName(QStringLiteral("preview"));
    m_preview->setFlat(true);
    m_preview->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    m_preview->setMinimumSize(1, 1); // many tasks share a small screen
    m_layout->addWidget(m_preview, 3, 0);
    connect(m_preview, SIGNAL(clicked()), this, SLOT(clicked()));
}

void ThreadWidget::showSnapshot()
{
    if (!m_previewLabel) {
        const auto layout = new QVBoxLayout(m_preview);
        layout->setContentsMargins(previewMargin, previewMargin, previewMargin, previewMargin);
        m_previewLabel = new QLabel(m_preview);
        m_previewLabel->setObjectName(QStringLiteral("previewLabel"));
        m_previewLabel->setScaledContents(true);
        m_previewLabel->setSizePolicy(QSizePolicy::Ignored,
                                      QSizePolicy::Ignored); // whatever the picture's size
        layout->addWidget(m_previewLabel);
    }
    m_preview->setAccessibleName(m_button->name());
    m_preview->setAccessibleDescription(m_button->taskText());
    m_previewLabel->setPixmap(m_button->snapshot());
}
