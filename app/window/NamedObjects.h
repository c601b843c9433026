#pragma once

#include <QLatin1String>

/// Shorthands for giving widgets and layouts their objectName where they are made.
namespace NamedObjects {

/// Makes a layout without a parent.
template <typename Layout>
Layout *makeLayout(const char *name)
{
    auto *layout = new Layout;
    layout->setObjectName(QLatin1String(name));
    return layout;
}

/// Names `widget` and returns it.
template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

} // namespace NamedObjects
