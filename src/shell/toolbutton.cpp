#include "shell/toolbutton.h"

#include "shell/focusframe.h"

#include <QFocusEvent>
#include <QPainter>

namespace {
constexpr int extent = 58;        // pixels
constexpr int pictureExtent = 48; // pixels
constexpr qreal disabledOpacity = 0.25;
} // namespace

ToolButton::ToolButton(const QIcon& icon, const QString& toolTip, QWidget* parent)
    : QPushButton(parent)
    , m_icon(icon)
{
    setToolTip(toolTip);
    setAccessibleName(toolTip);
    setFixedSize(extent, extent);
    connect(this, SIGNAL(clicked()), this, SLOT(emitClicked()));
}

void ToolButton::enterEvent(QEvent*)
{
    update();
}

void ToolButton::leaveEvent(QEvent*)
{
    update();
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setOpacity(isEnabled() ? 1.0 : disabledOpacity);
    const bool isFilled = isDown() && !m_icon.isNull();
    if (isFilled)
        painter.fillRect(rect(), Qt::lightGray);
    if (!m_icon.isNull()) {
        const bool isLit = isEnabled() && testAttribute(Qt::WA_UnderMouse);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(QPoint(5, 5), QPoint(53, 53)),
                           m_icon.pixmap(pictureExtent, pictureExtent, isLit ? QIcon::Active : QIcon::Normal,
                                         isLit ? QIcon::On : QIcon::Off));
    }
    // The fill leaves no room around it.
    if (m_hasKeyboardFocus && !isFilled)
        shell::drawFocusFrame(&painter, rect().adjusted(1, 1, -1, -1), palette().color(QPalette::Highlight));
}

void ToolButton::focusInEvent(QFocusEvent* event)
{
    m_hasKeyboardFocus = shell::isKeyboardFocus(*event);
    QPushButton::focusInEvent(event);
}

void ToolButton::focusOutEvent(QFocusEvent* event)
{
    m_hasKeyboardFocus = false;
    QPushButton::focusOutEvent(event);
}

void ToolButton::emitClicked()
{
    emit clicked(m_widget);
}
