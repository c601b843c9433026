#include "widgets/CustomItemDelegate.h"

#include <QPainter>

CustomComboBox::CustomItemDelegate::CustomItemDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

void CustomComboBox::CustomItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                               const QModelIndex &index) const
{
    painter->fillRect(option.rect, QColor(240, 240, 240));
    QStyledItemDelegate::paint(painter, option, index);
}

QSize CustomComboBox::CustomItemDelegate::sizeHint(const QStyleOptionViewItem &option,
                                                   const QModelIndex &index) const
{
    return {QStyledItemDelegate::sizeHint(option, index).width(), 26};
}
