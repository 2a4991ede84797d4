#pragma once

#include <QColor>
#include <QEvent>
#include <QImage>
#include <QRect>
#include <QWidget>

// What a widget itself paints, on nothing: neither its background nor its parent's shows.
inline QImage paintedAlone(QWidget* widget)
{
    QImage image(widget->size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    widget->render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

// The least rectangle that holds every pixel of this colour; null when there is none.
inline QRect boundsOf(const QImage& image, const QColor& color)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

// Whether every pixel within is of this colour.
inline bool isFilled(const QImage& image, const QRect& within, const QColor& color)
{
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            if (image.pixelColor(x, y) != color)
                return false;
        }
    }
    return true;
}

inline bool isBlank(const QImage& image)
{
    return isFilled(image, image.rect(), Qt::transparent);
}

// Of the frame around what has the focus, everywhere in the shell.
constexpr QRgb focusColor = 0xff12566b;

// Counts the paintings of what it is a filter of.
class PaintCounter : public QObject
{
public:
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

inline QPixmap plainPixmap(const QSize& size, const QColor& color)
{
    QPixmap pixmap(size);
    pixmap.fill(color);
    return pixmap;
}
