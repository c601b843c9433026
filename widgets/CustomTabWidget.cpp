#include "widgets/CustomTabWidget.h"

#include "widgets/CustomTabBar.h"

CustomTabWidget::CustomTabWidget(QWidget *parent) : QTabWidget(parent)
{
    setTabBar(new CustomTabBar(this));
}
