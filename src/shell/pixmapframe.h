#pragma once

#include <QFrame>
#include <QPixmap>

// A frame that paints one picture behind its children. It has no border of its own. GUI thread only.
class PixmapFrame : public QFrame
{
    Q_OBJECT

public:
    PixmapFrame(QWidget* parent, const QPixmap& pixmap);

    // From 0.0, nothing to be seen of the picture, to 1.0.
    void setOpacity(double opacity);
    // Centred, or scaled to fit into the frame as it is now, or neither: in the top left corner.
    void setPixmap(const QPixmap& pixmap, bool centered, bool scaled);

    using QFrame::resize;

public slots:
    // Fits the picture to the frame's size, which must be done whenever that has changed.
    //
    // Wanted: a scaled picture is scaled anew from its last copy; the picture that was given is not kept.
    void resize();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_opacity = 1.0;
    QPixmap m_pixmap;
    int m_x = 0; // the picture's top left corner in the frame, pixels
    int m_y = 0;
    bool m_centered = false;
    bool m_scaled = false;
};
