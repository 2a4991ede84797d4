#include "files/filesystemwidget.h"

FileSystemWidget::FileSystemWidget(QWidget* parent)
    : QWidget(parent)
{}
