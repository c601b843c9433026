#pragma once

#include <QTabBar>

/// A tab bar whose tabs all have one fixed size, whatever their text.
class CustomTabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit CustomTabBar(QWidget *parent = nullptr);

protected:
    QSize tabSizeHint(int index) const override;
};
