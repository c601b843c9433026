#pragma once

#include "widgets/CustomComboBox.h"

#include <QStyledItemDelegate>

/// Flat rows of one fixed height (26 pixels) for the combo box's list.
class CustomComboBox::CustomItemDelegate : public QStyledItemDelegate
{
public:
    explicit CustomItemDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
