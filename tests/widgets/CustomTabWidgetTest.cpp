#include "widgets/CustomTabWidget.h"

#include "widgets/CustomTabBar.h"

#include <gtest/gtest.h>

namespace {

TEST(CustomTabWidgetTest, IsBuiltWithACustomTabBar)
{
    const CustomTabWidget tabs;
    EXPECT_NE(qobject_cast<CustomTabBar *>(tabs.tabBar()), nullptr);
}

TEST(CustomTabWidgetTest, EveryTabIs112By32WhateverItsText)
{
    CustomTabWidget tabs;
    tabs.resize(780, 385);
    tabs.addTab(new QWidget, QString());
    tabs.addTab(new QWidget, QStringLiteral("FlashTheImage"));
    tabs.addTab(new QWidget, QString(200, QLatin1Char('W')));
    tabs.show();
    for (int index = 0; index < tabs.count(); ++index)
        EXPECT_EQ(tabs.tabBar()->tabRect(index).size(), QSize(112, 32)) << index;
}

} // namespace
