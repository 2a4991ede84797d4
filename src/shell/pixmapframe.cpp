#include "shell/pixmapframe.h"

#include "shell/picturefit.h"

#include <QPainter>

PixmapFrame::PixmapFrame(QWidget* parent, const QPixmap& pixmap)
    : QFrame(parent)
    , m_pixmap(pixmap)
{}

void PixmapFrame::setOpacity(double opacity)
{
    m_opacity = opacity;
    repaint();
}

void PixmapFrame::setPixmap(const QPixmap& pixmap, bool centered, bool scaled)
{
    m_pixmap = pixmap;
    m_centered = centered;
    m_scaled = scaled;
    resize();
}

void PixmapFrame::resize()
{
    const shell::PictureFit fit = shell::fitPicture(m_pixmap.size(), size(), m_centered, m_scaled);
    if (fit.scaling == shell::PictureFit::ToWidth)
        m_pixmap = m_pixmap.scaledToWidth(width(), Qt::SmoothTransformation);
    else if (fit.scaling == shell::PictureFit::ToHeight)
        m_pixmap = m_pixmap.scaledToHeight(height(), Qt::SmoothTransformation);
    m_x = fit.corner.x();
    m_y = fit.corner.y();
    repaint();
}

void PixmapFrame::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    painter.drawPixmap(m_x, m_y, m_pixmap);
}
