#pragma once

#include <QTabWidget>

/// A tab widget that is built with a CustomTabBar (which it owns) as its tab bar.
class CustomTabWidget : public QTabWidget
{
    Q_OBJECT

public:
    explicit CustomTabWidget(QWidget *parent = nullptr);
};
