#pragma once

#include <QStyledItemDelegate>

// Paints the entries of the icon view, names below their icons, all in cells of one size: a view that lays
// out a large folder asks for every entry's size, which would otherwise ask for every entry's icon.
class IconDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // In pixels.
    IconDelegate(const QSize& cell, QObject* parent);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    // Lines of a long name without blanks may break after its punctuation.
    QString displayText(const QVariant& value, const QLocale& locale) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    const QSize m_cell;
};
