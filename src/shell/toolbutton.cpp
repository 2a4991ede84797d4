#include "shell/toolbutton.h"

#include "shell/keyboard.h"

#include <QKeyEvent>
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

void ToolButton::keyPressEvent(QKeyEvent* event)
{
    if (!shell::isHeldEnter(*event))
        QPushButton::keyPressEvent(event);
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
    if (!isFilled)
        m_focusFrame.paint(&painter, rect().adjusted(1, 1, -1, -1));
}

void ToolButton::emitClicked()
{
    emit clicked(m_widget);
}
