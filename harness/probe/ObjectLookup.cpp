#include "harness/probe/ObjectLookup.h"

#include <QApplication>
#include <QWidget>

#include <functional>

namespace {

using Matches = std::function<bool(const QWidget &)>;

QWidget *findAmongAll(const Matches &matches)
{
    QWidget *hidden = nullptr;
    const auto widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        if (!matches(*widget))
            continue;
        if (widget->isVisible())
            return widget;
        hidden = widget;
    }
    return hidden;
}

QWidget *findWindow(const QString &title)
{
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible() && window->windowTitle() == title)
            return window;
    }
    return nullptr;
}

} // namespace

QWidget *ObjectLookup::find(const QString &name)
{
    const QLatin1String windowPrefix("window:");
    if (name.startsWith(windowPrefix))
        return findWindow(name.mid(windowPrefix.size()));
    if (name.isEmpty())
        return nullptr;
    QWidget *byName = findAmongAll([&](const QWidget &widget) { return widget.objectName() == name; });
    if (byName)
        return byName;
    return findAmongAll(
        [&](const QWidget &widget) { return name == QLatin1String(widget.metaObject()->className()); });
}
