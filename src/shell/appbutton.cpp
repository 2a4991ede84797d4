#include "shell/appbutton.h"

#include "instances/appinstance.h"
#include "shell/keyboard.h"
#include "shell/labelbreak.h"
#include "shell/launchergrid.h"

#include <QGraphicsColorizeEffect>
#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QKeyEvent>
#include <QPainter>

namespace {

constexpr int pressedOffset = 5; // pixels
constexpr int iconFirst = 5;     // left and top of the icon, pixels
constexpr int iconLast = 69;     // right and bottom, inclusive
constexpr int iconHalf = 32;     // half the side of the picture that an icon is asked for
constexpr int fontSize = 13;
const char fontFamily[] = "Helvetica";
constexpr QRgb stripColor = 0xE6EAED;
constexpr double stripOpacity = 0.85;

QRect labelStrip()
{
    return {QPoint(0, 75), QPoint(74, 107)};
}

QString labelOf(const AppInstance& application)
{
    QString label = application.displayName().trimmed();
    if (label.isEmpty())
        label = application.name().trimmed();
    if (label.isEmpty())
        label = AppButton::tr("Unkonwn"); // spelled so: the translations' key
    return shell::breakLabel(label);
}

// A label that is a little too wide is written a pixel smaller rather than cut short.
QFont labelFont(const QString& label)
{
    QFont font(QLatin1String(fontFamily), fontSize);
    const auto fitsAt = [&](int size) {
        font.setPixelSize(size);
        return shell::fitLabel(label, QFontMetrics(font), shell::launcherCell.width()) == label;
    };
    if (!fitsAt(fontSize) && !fitsAt(fontSize - 1))
        font.setPixelSize(fontSize);
    return font;
}

} // namespace

AppButton::AppButton(AppInstance* application, const QIcon& icon, const QString& text, QWidget* widget,
                     QWidget* parent)
    : QPushButton(parent)
    , m_application(application)
    , m_widget(widget)
    , m_text(text)
{
    setFixedSize(shell::launcherCell);
    setIcon(icon);
    // Not the button's own text, which would take "&" for a shortcut.
    setAccessibleName(text.simplified());
    connect(this, SIGNAL(clicked()), this, SLOT(buttonClicked()));
}

AppButton::AppButton(AppInstance* application, QWidget* parent)
    : AppButton(application, application->icon(), labelOf(*application), nullptr, parent)
{}

AppButton::AppButton(const QIcon& icon, const QString& text, QWidget* widget, QWidget* parent)
    : AppButton(nullptr, icon, text, widget, parent)
{}

void AppButton::installFontFallbacks()
{
    QFont::insertSubstitutions(QLatin1String(fontFamily),
                               {QStringLiteral("Arial"), QStringLiteral("Liberation Sans")});
}

void AppButton::buttonClicked()
{
    if (m_application)
        emit appButtonClicked(m_application);
    else
        emit appButtonClicked(m_widget);
}

void AppButton::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    paintIcon(painter);
    // Around the icon, touching neither its rectangle nor the label's strip.
    m_focusFrame.paint(&painter,
                       QRect(QPoint(iconFirst - 3, iconFirst - 3), QPoint(iconLast + 3, iconLast + 3)));
    paintLabel(painter);
}

void AppButton::paintIcon(QPainter& painter) const
{
    const int side = (iconHalf - m_pressedOffset) * 2;
    const QPixmap pixmap = icon().pixmap(QSize(side, side), QIcon::Normal, QIcon::Off);
    if (pixmap.isNull()) // also an icon whose file does not exist, which is not null itself
        return;
    const QRect place(QPoint(iconFirst + m_pressedOffset, iconFirst + m_pressedOffset),
                      QPoint(iconLast - m_pressedOffset, iconLast - m_pressedOffset));
    painter.setRenderHint(QPainter::SmoothPixmapTransform); // the place is a pixel larger than the picture
    if (!m_hovered) {
        painter.drawPixmap(place, pixmap);
        return;
    }
    QGraphicsScene scene;
    QGraphicsPixmapItem* const item = scene.addPixmap(pixmap);
    const auto effect = new QGraphicsColorizeEffect; // the item's
    effect->setColor(QColor(255, 255, 128, 32));
    item->setGraphicsEffect(effect);
    scene.render(&painter, place, item->boundingRect(), Qt::KeepAspectRatio);
}

void AppButton::paintLabel(QPainter& painter) const
{
    painter.setFont(labelFont(m_text));
    painter.setPen(Qt::black);
    painter.setOpacity(stripOpacity); // of the text too
    painter.setClipRect(labelStrip());
    painter.fillRect(labelStrip(), QColor(stripColor));
    painter.drawText(labelStrip(), Qt::AlignCenter,
                     shell::fitLabel(m_text, painter.fontMetrics(), shell::launcherCell.width()));
}

bool AppButton::isWaiting() const
{
    return cursor().shape() == Qt::WaitCursor;
}

// Wanted instead of update(): a change of size lays the menu out anew and paints the button in any case.
void AppButton::refresh()
{
    const QSize before = size();
    setFixedSize(before - QSize(1, 1));
    setFixedSize(before);
}

void AppButton::enterEvent(QEvent* event)
{
    QPushButton::enterEvent(event);
    if (!isWaiting()) {
        m_hovered = true;
        refresh();
    }
}

void AppButton::leaveEvent(QEvent* event)
{
    if (m_hovered) {
        m_hovered = false;
        refresh();
    }
    QPushButton::leaveEvent(event);
}

void AppButton::mousePressEvent(QMouseEvent* event)
{
    QPushButton::mousePressEvent(event);
    if (!isWaiting()) {
        m_pressedOffset = pressedOffset;
        refresh();
    }
}

void AppButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_pressedOffset != 0) {
        m_pressedOffset = 0;
        refresh();
    }
    QPushButton::mouseReleaseEvent(event); // tells of the click
}

void AppButton::hideEvent(QHideEvent* event)
{
    m_pressedOffset = 0; // a hidden button is not told of the release
    QPushButton::hideEvent(event);
}

void AppButton::keyPressEvent(QKeyEvent* event)
{
    if (shell::isArrowKey(*event))
        event->ignore();
    else if (!shell::pressWithEnter(this, *event))
        QPushButton::keyPressEvent(event);
}
