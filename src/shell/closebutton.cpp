#include "shell/closebutton.h"

#include "shell/keyboard.h"

#include <QKeyEvent>
#include <QPainter>

namespace {
constexpr int extent = 16;        // pixels
constexpr int pressedExtent = 12; // pixels
} // namespace

CloseButton::CloseButton(const QIcon& icon, QWidget* parent)
    : QPushButton(QIcon(), QString(), parent)
    , m_icon(icon)
    , m_focusFrame(this, parent)
{
    setIconSize(QSize(extent, extent));
    setFixedSize(extent, extent);
    connect(this, SIGNAL(clicked()), this, SLOT(buttonClicked()));
}

void CloseButton::paintFocusFrame(QPainter* painter) const
{
    constexpr int width = FocusFrame::width;
    m_focusFrame.paint(painter, geometry().adjusted(-width, -width, width, width));
}

void CloseButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    if (m_icon.isNull())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (isDown()) {
        painter.drawPixmap(QRect(QPoint(2, 2), QPoint(14, 14)),
                           m_icon.pixmap(pressedExtent, pressedExtent, QIcon::Normal, QIcon::Off));
    } else {
        painter.drawPixmap(QRect(QPoint(0, 0), QPoint(16, 16)),
                           m_icon.pixmap(extent, extent, QIcon::Normal, QIcon::Off));
    }
}

void CloseButton::keyPressEvent(QKeyEvent* event)
{
    if (shell::isArrowKey(*event))
        event->ignore();
    else
        QPushButton::keyPressEvent(event);
}

void CloseButton::buttonClicked()
{
    emit closeButtonClicked(this);
}
