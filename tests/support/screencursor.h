#pragma once

#include <QImage>
#include <QString>

// The picture of the mouse cursor on an X display (":99"), as its user sees it; null when it cannot be had.
QImage screenCursor(const QString& display);
