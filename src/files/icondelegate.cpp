#include "files/icondelegate.h"

IconDelegate::IconDelegate(const QSize& cell, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_cell(cell)
{}

QSize IconDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return m_cell;
}

QString IconDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    constexpr int longWord = 16;          // letters; less than a cell holds
    constexpr QChar breakAllowed(0x200B); // has no width, but the height of whatever font has it
    QString text = QStyledItemDelegate::displayText(value, locale);
    if (text.size() <= longWord || text.contains(QLatin1Char(' ')))
        return text;
    for (int i = text.size() - 1; i >= 0; --i) {
        if (text.at(i) == QLatin1Char('_') || text.at(i) == QLatin1Char('-') ||
            text.at(i) == QLatin1Char('.'))
            text.insert(i + 1, breakAllowed);
    }
    return text;
}

void IconDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    const QSize icon = option->decorationSize;
    QStyledItemDelegate::initStyleOption(option, index);
    option->decorationSize = icon; // whatever the picture's: names stand on one line
    option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
}
