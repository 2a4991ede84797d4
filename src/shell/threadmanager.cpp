#include "shell/threadmanager.h"

#include "shell/keyboard.h"
#include "shell/launchergrid.h"
#include "shell/overviewgrid.h"
#include "shell/ownwindow.h"
#include "shell/threadbutton.h"
#include "shell/threadwidget.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QThread>
#include <QTimer>

#include <utility>

namespace {

constexpr int noticeWidth = 400;         // pixels
constexpr int noticeHeight = 200;        // pixels
constexpr unsigned long noticeSleep = 1; // s
constexpr int noticeDuration = 6000;     // ms

QLabel* makeNotice(const QString& text)
{
    const auto notice = new QLabel(text, nullptr, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);
    notice->setAttribute(Qt::WA_DeleteOnClose);
    QFont font = notice->font();
    font.setWeight(QFont::Bold); // 75
    notice->setFont(font);
    notice->setFixedSize(noticeWidth, noticeHeight);
    notice->setAlignment(Qt::AlignCenter);
    return notice;
}

} // namespace

ThreadManager::ThreadManager(const QList<ThreadButton*>& buttons, int fixedButtons,
                             std::function<void(ThreadButton*)> select, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
    , m_layout(new QGridLayout(this))
    , m_select(std::move(select))
{
    setWindowTitle(QLatin1String(shell::ownWindowTitle));
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    move(screen.topLeft());
    setFixedSize(screen.size());
    for (int i = qMax(0, fixedButtons); i < buttons.size(); ++i)
        m_tasks.append(buttons.at(i));
    buildGrid();
}

void ThreadManager::update(int)
{
    clearGrid();
    buildGrid();
}

void ThreadManager::closeAllThreads() {}

void ThreadManager::killAllThreads() {}

void ThreadManager::disconnect()
{
    const QPointer<ThreadManager> self(this);
    // Deletes itself when it is closed.
    const QPointer<QLabel> notice(makeNotice(tr("The session is being suspended. Please, wait.")));
    notice->show();
    QCoreApplication::processEvents(); // so that it is seen
    QThread::sleep(noticeSleep);
    if (notice)
        QTimer::singleShot(noticeDuration, notice, SLOT(close()));
    if (self)
        QTimer::singleShot(noticeDuration, this, SLOT(close()));
}

void ThreadManager::exit()
{
    const QPointer<ThreadManager> self(this);
    emit finished();
    if (self)
        close();
}

void ThreadManager::setSelected(ThreadButton* button)
{
    if (!button)
        return;
    const QPointer<ThreadButton> selected(button);
    const auto select = m_select; // closing may delete the overview
    close();
    if (selected && select)
        select(selected);
}

void ThreadManager::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        exit();
    } else if (shell::isArrowKey(*event)) {
        if (QWidget* const tile = tileToFocus(event->key()))
            tile->setFocus(Qt::TabFocusReason);
    } else if (!shell::pressWithEnter(focusWidget(), *event)) {
        QWidget::keyPressEvent(event);
    }
}

QWidget* ThreadManager::tileToFocus(int key) const
{
    const QWidget* const focused = focusWidget();
    const int current = focused ? m_layout->indexOf(focused->parentWidget()) : -1;
    if (current < 0)
        return m_tasks.isEmpty() ? nullptr : m_layout->itemAtPosition(0, 0)->widget();
    const auto next =
        shell::neighbour({m_columns, m_columns}, {current % m_columns, current / m_columns}, key);
    return next ? qobject_cast<ThreadWidget*>(m_layout->itemAtPosition(next->row, next->column)->widget())
                : nullptr;
}

void ThreadManager::buildGrid()
{
    m_tasks.removeAll(nullptr);
    m_columns = shell::overviewColumns(m_tasks.size());
    if (m_tasks.isEmpty())
        QTimer::singleShot(0, this, SLOT(close())); // whoever made the overview still shows it
    for (int i = 0; i < m_columns; ++i) {
        m_layout->setRowStretch(i, 1);
        m_layout->setColumnStretch(i, 1);
    }
    for (int cell = 0; cell < m_columns * m_columns; ++cell) {
        QWidget* const content = cell < m_tasks.size() ? makeTile(m_tasks.at(cell)) : new QWidget(this);
        m_layout->addWidget(content, cell / m_columns, cell % m_columns);
    }
}

void ThreadManager::clearGrid()
{
    for (int cell = 0; cell < m_columns * m_columns; ++cell) {
        QLayoutItem* const item = m_layout->itemAtPosition(cell / m_columns, cell % m_columns);
        if (!item)
            continue;
        m_layout->removeItem(item);
        item->widget()->hide();
        item->widget()->deleteLater(); // it may be the one whose click led here
        delete item;
    }
    for (int i = 0; i < m_columns; ++i) { // a smaller grid may follow
        m_layout->setRowStretch(i, 0);
        m_layout->setColumnStretch(i, 0);
    }
}

QWidget* ThreadManager::makeTile(ThreadButton* button)
{
    const auto tile = new ThreadWidget(true, this);
    tile->setThreadButton(button);
    tile->setName(button->name());
    tile->setText(button->taskText());
    connect(tile, SIGNAL(clicked(ThreadButton*)), this, SLOT(setSelected(ThreadButton*)));
    return tile;
}
