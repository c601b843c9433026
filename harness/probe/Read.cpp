#include "harness/probe/Read.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QJsonArray>
#include <QMessageBox>
#include <QTabBar>
#include <QWidget>

namespace {

QJsonArray rectangle(const QRect &area)
{
    return {area.x(), area.y(), area.width(), area.height()};
}

QJsonArray globalGeometry(const QWidget &widget)
{
    return rectangle(QRect(widget.mapToGlobal(QPoint(0, 0)), widget.size()));
}

/// Returns the text that the user reads on the widget. The property that contains it depends on the class.
QString shownText(const QWidget &widget)
{
    for (const char *property : {"plainText", "currentText", "text", "title", "windowTitle"}) {
        const QVariant value = widget.property(property);
        if (value.isValid())
            return value.toString();
    }
    return {};
}

QJsonArray itemTexts(const QAbstractItemModel &model)
{
    QJsonArray texts;
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(model.index(row, 0).data().toString());
    return texts;
}

QJsonArray tabs(const QTabBar &bar)
{
    QJsonArray all;
    for (int index = 0; index < bar.count(); ++index) {
        all.append(QJsonObject{{QLatin1String("text"), bar.tabText(index)},
                               {QLatin1String("visible"), bar.isTabVisible(index)},
                               {QLatin1String("rect"), rectangle(bar.tabRect(index))}});
    }
    return all;
}

QJsonObject window(const QWidget &widget)
{
    QJsonObject fields{{QLatin1String("class"), QLatin1String(widget.metaObject()->className())},
                       {QLatin1String("title"), widget.windowTitle()},
                       {QLatin1String("objectName"), widget.objectName()},
                       {QLatin1String("geometry"), globalGeometry(widget)},
                       {QLatin1String("modal"), widget.isModal()}};
    if (const auto *box = qobject_cast<const QMessageBox *>(&widget)) {
        fields.insert(QLatin1String("text"), box->text());
        fields.insert(QLatin1String("icon"), box->icon());
        QJsonArray buttons;
        const auto all = box->buttons();
        for (const QAbstractButton *button : all)
            buttons.append(button->text());
        fields.insert(QLatin1String("buttons"), buttons);
    }
    return fields;
}

} // namespace

QJsonObject Read::widget(const QWidget &widget)
{
    QJsonObject fields{{QLatin1String("class"), QLatin1String(widget.metaObject()->className())},
                       {QLatin1String("objectName"), widget.objectName()},
                       {QLatin1String("text"), shownText(widget)},
                       {QLatin1String("enabled"), widget.isEnabled()},
                       {QLatin1String("visible"), widget.isVisible()},
                       {QLatin1String("focus"), widget.hasFocus()},
                       {QLatin1String("styleSheet"), widget.styleSheet()},
                       {QLatin1String("toolTip"), widget.toolTip()},
                       {QLatin1String("geometry"), globalGeometry(widget)}};
    for (const char *property : {"checked", "checkable", "value", "minimum", "maximum", "currentIndex",
                                 "count", "readOnly", "placeholderText", "wordWrap", "windowTitle"}) {
        const QVariant value = widget.property(property);
        if (value.isValid())
            fields.insert(QLatin1String(property), QJsonValue::fromVariant(value));
    }
    if (widget.isWindow())
        fields.insert(QLatin1String("framePosition"), QJsonArray{widget.pos().x(), widget.pos().y()});
    if (const auto *box = qobject_cast<const QComboBox *>(&widget))
        fields.insert(QLatin1String("items"), itemTexts(*box->model()));
    if (const auto *view = qobject_cast<const QAbstractItemView *>(&widget); view && view->model())
        fields.insert(QLatin1String("items"), itemTexts(*view->model()));
    if (const auto *bar = qobject_cast<const QTabBar *>(&widget))
        fields.insert(QLatin1String("tabs"), tabs(*bar));
    return fields;
}

QJsonObject Read::windows()
{
    QJsonArray all;
    const auto widgets = QApplication::topLevelWidgets();
    for (const QWidget *widget : widgets) {
        if (widget->isVisible())
            all.append(window(*widget));
    }
    return {{QLatin1String("windows"), all}};
}

QJsonObject Read::tree()
{
    QJsonArray all;
    const auto widgets = QApplication::allWidgets();
    for (const QWidget *widget : widgets) {
        const QWidget *parent = widget->parentWidget();
        all.append(QJsonObject{{QLatin1String("class"), QLatin1String(widget->metaObject()->className())},
                               {QLatin1String("objectName"), widget->objectName()},
                               {QLatin1String("parent"), parent ? parent->objectName() : QString()},
                               {QLatin1String("visible"), widget->isVisible()}});
    }
    return {{QLatin1String("widgets"), all}};
}
