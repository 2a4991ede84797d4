#include "files/icondelegate.h"

IconDelegate::IconDelegate(const QSize& cell, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_cell(cell)
{}

QSize IconDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return m_cell;
}
