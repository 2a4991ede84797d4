#include "support/screencursor.h"

#include <QLibrary>

namespace {

// XFixesCursorImage of X11/extensions/Xfixes.h, version 2: the library comes with Wine, its header does not.
struct CursorImage
{
    short x;
    short y;
    unsigned short width;
    unsigned short height;
    unsigned short xhot;
    unsigned short yhot;
    unsigned long serial;
    unsigned long* pixels; // ARGB, one in each
    unsigned long atom;
    const char* name;
};

} // namespace

QImage screenCursor(const QString& display)
{
    QLibrary x11(QStringLiteral("X11"), 6);
    QLibrary fixes(QStringLiteral("Xfixes"), 3);
    const auto open = reinterpret_cast<void* (*)(const char*)>(x11.resolve("XOpenDisplay"));
    const auto close = reinterpret_cast<int (*)(void*)>(x11.resolve("XCloseDisplay"));
    const auto release = reinterpret_cast<int (*)(void*)>(x11.resolve("XFree"));
    const auto get = reinterpret_cast<CursorImage* (*)(void*)>(fixes.resolve("XFixesGetCursorImage"));
    void* const connection =
        open && close && release && get ? open(display.toLocal8Bit().constData()) : nullptr;
    if (!connection)
        return {};
    QImage picture;
    if (CursorImage* const image = get(connection)) {
        picture = QImage(image->width, image->height, QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < picture.width() * picture.height(); ++i)
            picture.setPixel(i % picture.width(), i / picture.width(), static_cast<QRgb>(image->pixels[i]));
        release(image);
    }
    close(connection);
    return picture;
}
