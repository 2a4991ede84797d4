#include "shell/picturefit.h"

namespace shell {

PictureFit fitPicture(const QSize& picture, const QSize& frame, bool centered, bool scaled)
{
    if (scaled) {
        if (picture.isEmpty() || frame.isEmpty())
            return {};
        const double widths = static_cast<double>(picture.width()) / frame.width();
        const double heights = static_cast<double>(picture.height()) / frame.height();
        return {widths > heights ? PictureFit::ToWidth : PictureFit::ToHeight, QPoint()};
    }
    if (!centered)
        return {};
    const QPoint corner((frame.width() - picture.width()) / 2, (frame.height() - picture.height()) / 2);
    return {PictureFit::AsItIs, corner};
}

} // namespace shell
