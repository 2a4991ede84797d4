#include "preview/pictures.h"

#include "shell/appbutton.h"
#include "shell/closebutton.h"
#include "shell/plainbutton.h"
#include "shell/threadbutton.h"
#include "shell/toolbutton.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QtTest>

namespace {

const QColor panel(0xE6EAED);

// --- Contact sheets

QStringList allPictures()
{
    QStringList all;
    QDirIterator files(QStringLiteral(":/icons"), {QStringLiteral("*.png")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        all.append(files.next());
    all.sort();
    return all;
}

QString nameOf(const QString& picture)
{
    const QString file = picture.section(QLatin1Char('/'), -1);
    return file.left(file.size() - 4); // without .png
}

// Each picture as an icon of this size, in rows; their names beneath where there is room for them.
int paintRows(QPainter& painter, int top, int width, int size)
{
    const bool isNamed = size >= 64;
    const int cellWidth = size + (isNamed ? 26 : 12);
    const int cellHeight = size + (isNamed ? 24 : 12);
    const int columns = width / cellWidth;
    const QStringList all = allPictures();
    for (int i = 0; i < all.size(); ++i) {
        const QRect cell(i % columns * cellWidth, top + i / columns * cellHeight, cellWidth, cellHeight);
        const QPixmap picture = QIcon(all.at(i)).pixmap(size);
        painter.drawPixmap(cell.x() + (cellWidth - picture.width()) / 2, cell.y() + 6, picture);
        if (isNamed) {
            painter.drawText(
                QRect(cell.x(), cell.bottom() - 16, cellWidth, 14), Qt::AlignCenter,
                painter.fontMetrics().elidedText(nameOf(all.at(i)), Qt::ElideRight, cellWidth - 2));
        }
    }
    return top + (all.size() + columns - 1) / columns * cellHeight;
}

QPixmap sheet(const QColor& background)
{
    constexpr int width = 1080;
    QPixmap room(width, 2000);
    room.fill(background);
    QPainter painter(&room);
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(10);
    painter.setFont(font);
    int bottom = 0;
    for (const int size : {64, 48, 32, 22})
        bottom = paintRows(painter, bottom, width, size) + 8;
    painter.end();
    return room.copy(0, 0, width, bottom);
}

void showSheet(QLabel* page, const QColor& background)
{
    const QPixmap picture = sheet(background);
    page->setPixmap(picture);
    page->setFixedSize(picture.size()); // no window would become larger than the screen by itself
}

// --- Buttons

enum ButtonState
{
    Normal,
    Hovered,
    Pressed,
    Disabled
};

void enter(QPushButton* button, ButtonState state)
{
    button->setEnabled(state != Disabled);
    if (state == Hovered || state == Pressed) {
        button->setAttribute(Qt::WA_UnderMouse);
        QEvent entered(QEvent::Enter);
        QCoreApplication::sendEvent(button, &entered);
    }
    if (state == Pressed) {
        const QPointF centre = QRectF(button->rect()).center();
        QMouseEvent pressed(QEvent::MouseButtonPress, centre, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(button, &pressed);
    }
}

QIcon icon(const char* folder, const QString& name)
{
    return QIcon(QStringLiteral(":/icons/%1/%2.png").arg(QLatin1String(folder), name));
}

using Maker = std::function<QPushButton*(const QString& picture)>;

// A row of the page: the pictures as these buttons, in each state.
void addRow(QGridLayout* grid, const QString& title, const QStringList& names, const Maker& make)
{
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(title), row, 0);
    int column = 1;
    for (const ButtonState state : {Normal, Hovered, Pressed, Disabled}) {
        auto* const group = new QWidget;
        auto* const line = new QHBoxLayout(group);
        line->setSpacing(0);
        line->setMargin(0);
        for (const QString& name : names) {
            QPushButton* const button = make(name);
            enter(button, state);
            line->addWidget(button);
        }
        line->addStretch();
        grid->addWidget(group, row, column++);
    }
}

QPushButton* appButton(const QString& name)
{
    return new AppButton(icon("applications", name), name, nullptr, nullptr);
}

QPushButton* toolButton(const QString& name)
{
    return new ToolButton(icon("32x32", name), name);
}

QPushButton* closeButton(const QString& name)
{
    return new CloseButton(icon("32x32", name), nullptr);
}

QPushButton* fileButton(const QString& name)
{
    auto* const button = new QPushButton(icon("48x48", name), QString());
    button->setIconSize(QSize(40, 40));
    button->setFlat(true);
    return button;
}

QPushButton* arrow(const QString& name)
{
    auto* const button = new PlainButton(icon("64x64", name), QString());
    button->setFixedSize(24, 42);
    return button;
}

QPushButton* dialogButton(const QString& name)
{
    auto* const button = new PlainButton(icon("64x64", name), name);
    button->setIconSize(QSize(32, 32));
    return button;
}

QPushButton* threadButton(const QString& name)
{
    const bool isPower = name == QLatin1String("logoff");
    const QPixmap own(QStringLiteral(":/icons/32x32/%1.png").arg(name));
    const QPixmap picture = own.isNull() ? icon("applications", name).pixmap(48, 42) : own;
    return new ThreadButton(nullptr, isPower ? ThreadButton::PowerButton : ThreadButton::WindowButton,
                            picture, name, QString(), 0, 0, 0);
}

QWidget* buttonSheet()
{
    auto* const page = new QWidget;
    page->setObjectName(QStringLiteral("buttons"));
    page->setAutoFillBackground(true);
    page->setPalette(QPalette(panel));
    auto* const grid = new QGridLayout(page);
    int column = 1;
    for (const char* const title : {"normal", "hovered", "pressed", "disabled"})
        grid->addWidget(new QLabel(QLatin1String(title)), 0, column++);
    const auto words = [](const char* names) { return QString::fromLatin1(names).split(QLatin1Char(' ')); };
    addRow(grid, QStringLiteral("launcher"), words("msword2013 kcalc chrome"), appButton);
    addRow(grid, QStringLiteral("configuration"), words("mimetypes userconfig default"), appButton);
    addRow(grid, QStringLiteral("task bar"), words("logo folder-docs config logoff"), threadButton);
    addRow(grid, QStringLiteral("tasks"), words("notepad libreofficecalc msexcel2010 acrobat remedy"),
           threadButton);
    addRow(grid, QStringLiteral("task panel"), words("cancel terminate"), closeButton);
    addRow(grid, QStringLiteral("scrolling"), words("back forward"), arrow);
    addRow(grid, QStringLiteral("associations"), words("back forward up down"), toolButton);
    addRow(grid, QString(), words("remove accept cancel"), toolButton);
    addRow(grid, QStringLiteral("password"), words("back accept cancel"), dialogButton);
    addRow(grid, QStringLiteral("files"), words("up rename folder-new cut"), fileButton);
    addRow(grid, QString(), words("copy paste remove list-view icon-view"), fileButton);
    return page;
}

Scene openPictures(Stage&)
{
    const auto window = std::make_shared<QLabel>();
    showSheet(window.get(), panel);
    window->show();
    if (!QTest::qWaitForWindowExposed(window.get()))
        qFatal("the page does not show");
    return {window.get(), window};
}

void showButtons(const Scene& scene)
{
    QWidget* const buttons = buttonSheet();
    auto* const page = static_cast<QLabel*>(scene.page);
    page->clear();
    buttons->setParent(page);
    buttons->adjustSize();
    page->setFixedSize(buttons->size());
    buttons->show();
}

} // namespace

Page picturesPage()
{
    return {"pictures",
            "every picture at its sizes, and the buttons in their states",
            openPictures,
            {{"panel", {}, {}},
             {"white", [](const Scene& s) { showSheet(static_cast<QLabel*>(s.page), Qt::white); }, {}},
             {"buttons", showButtons, {}}}};
}
