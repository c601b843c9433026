#include "widgets/CustomTabBar.h"

CustomTabBar::CustomTabBar(QWidget *parent) : QTabBar(parent) {}

QSize CustomTabBar::tabSizeHint(int index) const
{
    Q_UNUSED(index)
    return {112, 32};
}
