#pragma once

#include <QPoint>
#include <QSize>

namespace shell {

// How a picture is put into a frame.
struct PictureFit
{
    enum Scaling
    {
        AsItIs,
        ToWidth,  // of the frame, keeping its shape
        ToHeight, // likewise
    };

    Scaling scaling = AsItIs;
    QPoint corner; // its top left one, in the frame
};

// `scaled` goes before `centered`: a scaled picture lies in the corner. A picture larger than its frame is
// centred with a negative corner. Where there is no picture or no room, nothing is scaled.
PictureFit fitPicture(const QSize& picture, const QSize& frame, bool centered, bool scaled);

} // namespace shell
