#include "shell/elidedlabel.h"

#include <QFontInfo>
#include <QPainter>
#include <QStyle>

namespace {
constexpr int leastFontSize = 6; // pixels
} // namespace

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize ElidedLabel::sizeHint() const
{
    const int width = fontMetrics().size(Qt::TextSingleLine, line()).width();
    return minimumSizeHint() + QSize(width, 0);
}

QSize ElidedLabel::minimumSizeHint() const
{
    return QSize(0, fontMetrics().height()) + (size() - contentsRect().size());
}

void ElidedLabel::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event); // NOLINT(bugprone-parent-virtual-call): the label's own draws its text
    QPainter painter(this);
    painter.setFont(fittingFont());
    const QString shown = painter.fontMetrics().elidedText(line(), Qt::ElideRight, contentsRect().width());
    // The text decides on its direction, as in every label.
    const bool isRightToLeft = shown.isRightToLeft();
    const Qt::Alignment where =
        QStyle::visualAlignment(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight, alignment());
    const int flags = static_cast<int>(where) | Qt::TextSingleLine |
                      (isRightToLeft ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight);
    style()->drawItemText(&painter, contentsRect(), flags, palette(), isEnabled(), shown, foregroundRole());
}

QFont ElidedLabel::fittingFont() const
{
    QFont fitting = font();
    int size = QFontInfo(fitting).pixelSize();
    while (size > leastFontSize && QFontMetrics(fitting).height() > contentsRect().height())
        fitting.setPixelSize(--size);
    return fitting;
}

QString ElidedLabel::line() const
{
    QString line = text();
    for (QChar& character : line) {
        // Whatever would break the line or jump within it; control characters have no picture.
        if (character.isSpace() || character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    }
    return line;
}
