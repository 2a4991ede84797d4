#include "shell/threadbutton.h"

#include "shell/taskfitting.h"

#include <QPainter>
#include <QRadialGradient>

namespace {

constexpr int iconExtent = 43;  // pixels
constexpr int pressedInset = 2; // pixels on each side
constexpr int lightExtent = 50; // pixels; where the selection's light stands, and how far it reaches

QBrush selectionBrush()
{
    const QPointF light(lightExtent, lightExtent);
    QRadialGradient gradient(light, lightExtent, light);
    gradient.setColorAt(0, Qt::white);
    gradient.setColorAt(1, Qt::lightGray);
    QBrush brush(gradient);
    brush.setColor(Qt::lightGray); // a gradient stays one
    return brush;
}

} // namespace

ThreadButton::ThreadButton(QWidget* widget, int kind, const QPixmap& picture, const QString& name,
                           const QString& text, qlonglong windowId, quint32 processId, quint32 further)
    : m_widget(widget)
    , m_name(name)
    , m_text(text)
    , m_picture(picture)
    , m_kind(kind)
    , m_windowId(windowId)
    , m_processId(processId)
    , m_further(further)
{
    setFixedSize(shell::taskButtonWidth, shell::taskBarHeight);
    setIconSize(QSize(iconExtent, iconExtent));
    setAccessibleName(name);
    setAccessibleDescription(text); // several buttons may have the same name
    connect(this, SIGNAL(clicked()), this, SLOT(buttonClicked()));
}

void ThreadButton::setSelected(bool selected)
{
    m_selected = selected;
    update();
}

void ThreadButton::closeButton()
{
    emit closeThreadButton(m_index);
}

void ThreadButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool isPower = m_kind == PowerButton;
    const bool isFilled = m_selected && !isPower;
    QPixmap picture = m_picture;
    if (isPower && isDown())
        picture = QPixmap(QStringLiteral(":/icons/64x64/power-pressed.png"));
    if (!picture.isNull()) {
        const int d = isDown() && !isPower ? pressedInset : 0;
        if (isFilled)
            painter.fillRect(rect(), selectionBrush());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(QPoint(8 + d, 5 + d), QPoint(40 - d, 37 - d)), picture);
    }
    // The selection leaves no room around it.
    if (!isFilled)
        m_focusFrame.paint(&painter, rect().adjusted(1, 1, -1, -1));
}

void ThreadButton::buttonClicked()
{
    if (m_widget)
        emit threadButtonClicked(m_widget, false);
    else
        emit threadButtonClicked(m_windowId);
}
