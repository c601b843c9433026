#include "harness/probe/Operate.h"

#include "simulator/jsonlines/Answer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaEnum>
#include <QPainter>
#include <QPixmap>
#include <QRegion>
#include <QScreen>
#include <QWindow>

#include <private/qhighdpiscaling_p.h>
#include <qpa/qwindowsysteminterface.h>

namespace {

using Queued = QWindowSystemInterface::AsynchronousDelivery;

Qt::MouseButton buttonOf(const QString &name)
{
    if (name == QLatin1String("right"))
        return Qt::RightButton;
    if (name == QLatin1String("middle"))
        return Qt::MiddleButton;
    return Qt::LeftButton;
}

bool isBlocked(const QWidget &widget)
{
    const QWidget *modal = QApplication::activeModalWidget();
    return modal && modal->window() != widget.window();
}

/// Returns the region of the screen that is not covered by windows of the program.
QRegion background(const QScreen &screen)
{
    QRegion rest(screen.geometry());
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            rest -= window->frameGeometry();
    }
    return rest;
}

QString describe(const QWidget *widget)
{
    if (!widget)
        return QStringLiteral("nothing");
    return QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ') + widget->objectName();
}

void postMouse(QWindow &window, const QPoint &place, Qt::MouseButton button, bool press)
{
    const QPointF local = QHighDpi::toNativeLocalPosition(QPointF(place), &window);
    const QPointF global = QHighDpi::toNativePixels(QPointF(window.mapToGlobal(place)), &window);
    QWindowSystemInterface::handleMouseEvent<Queued>(
        &window, local, global, press ? Qt::MouseButtons(button) : Qt::NoButton, button,
        press ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease);
}

QJsonObject clickAt(QWidget &widget, const QPoint &place, Qt::MouseButton button)
{
    QWidget &top = *widget.window();
    QWindow *window = top.windowHandle();
    if (!widget.isVisible() || !window)
        return Answer::failure(QStringLiteral("not visible: ") + describe(&widget));
    const QPoint inTop = widget.mapTo(&top, place);
    const QWidget *hit = top.childAt(inTop);
    if (!hit && top.rect().contains(inTop))
        hit = &top;
    if (hit != &widget && !(hit && widget.isAncestorOf(hit)))
        return Answer::failure(describe(&widget) + QStringLiteral(" is covered by ") + describe(hit));
    postMouse(*window, inTop, button, true);
    postMouse(*window, inTop, button, false);
    return Answer::success(
        {{QLatin1String("enabled"), widget.isEnabled()}, {QLatin1String("blocked"), isBlocked(widget)}});
}

/// Returns a point at which a left click toggles the button. Check boxes react only to clicks on their
/// indicator and text, which are at the left.
QPoint clickablePoint(const QAbstractButton &button)
{
    const QPoint middle = button.rect().center();
    return button.inherits("QCheckBox") || button.inherits("QRadioButton")
               ? QPoint(qMin(8, middle.x()), middle.y())
               : middle;
}

QString standardName(const QDialogButtonBox &box, QAbstractButton *button)
{
    const QMetaEnum names = QMetaEnum::fromType<QDialogButtonBox::StandardButtons>();
    return QLatin1String(names.valueToKey(box.standardButton(button)));
}

QAbstractButton *dialogButton(const QWidget &dialog, const QString &name)
{
    const auto boxes = dialog.findChildren<QDialogButtonBox *>();
    for (const QDialogButtonBox *box : boxes) {
        const auto buttons = box->buttons();
        for (QAbstractButton *button : buttons) {
            QString text = button->text();
            if (text.remove(QLatin1Char('&')) == name || standardName(*box, button) == name)
                return button;
        }
    }
    return nullptr;
}

} // namespace

QJsonObject Operate::click(QWidget &widget, const QJsonObject &request)
{
    QPoint place = widget.rect().center();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        place = clickablePoint(*button);
    place.setX(request.value(QLatin1String("x")).toInt(place.x()));
    place.setY(request.value(QLatin1String("y")).toInt(place.y()));
    return clickAt(widget, place, buttonOf(request.value(QLatin1String("button")).toString()));
}

QJsonObject Operate::check(QWidget &widget, const QJsonObject &request)
{
    auto *button = qobject_cast<QAbstractButton *>(&widget);
    if (!button || !button->isCheckable())
        return Answer::failure(QStringLiteral("cannot be checked: ") + describe(&widget));
    if (button->isChecked() == request.value(QLatin1String("checked")).toBool(true))
        return Answer::success();
    return clickAt(widget, clickablePoint(*button), Qt::LeftButton);
}

QJsonObject Operate::close(QWidget &widget)
{
    QWindow *window = widget.window()->windowHandle();
    if (!window || !widget.window()->isVisible())
        return Answer::failure(QStringLiteral("no visible window: ") + describe(&widget));
    QWindowSystemInterface::handleCloseEvent<Queued>(window);
    return Answer::success({{QLatin1String("blocked"), isBlocked(widget)}});
}

QJsonObject Operate::move(QWidget &widget, const QJsonObject &request)
{
    widget.window()->move(request.value(QLatin1String("x")).toInt(),
                          request.value(QLatin1String("y")).toInt());
    return Answer::success();
}

QJsonObject Operate::key(QWidget &widget, const QJsonObject &request)
{
    QWindow *window = widget.window()->windowHandle();
    if (!window || !widget.isVisible())
        return Answer::failure(QStringLiteral("not visible: ") + describe(&widget));
    widget.setFocus(Qt::OtherFocusReason);
    const auto send = [window](int code, const QString &text) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QWindowSystemInterface::handleKeyEvent<Queued>(window, type, code, Qt::NoModifier, text);
    };
    const QString text = request.value(QLatin1String("text")).toString();
    for (const QChar &character : text)
        send(character.toUpper().unicode(), character);
    if (request.contains(QLatin1String("key")))
        send(request.value(QLatin1String("key")).toInt(), QString());
    return Answer::success();
}

QJsonObject Operate::pressDialogButton(const QString &name)
{
    QWidget *modal = QApplication::activeModalWidget();
    QList<QWidget *> dialogs = modal ? QList<QWidget *>{modal} : QApplication::topLevelWidgets();
    for (const QWidget *dialog : dialogs) {
        if (!dialog->isVisible())
            continue;
        if (QAbstractButton *button = dialogButton(*dialog, name))
            return clickAt(*button, button->rect().center(), Qt::LeftButton);
    }
    return Answer::failure(QStringLiteral("no dialog with a button ") + name);
}

QJsonObject Operate::setText(QWidget &widget, const QString &text)
{
    if (auto *edit = qobject_cast<QLineEdit *>(&widget)) {
        edit->setText(text);
        emit edit->textEdited(text);
        return Answer::success();
    }
    auto *box = qobject_cast<QComboBox *>(&widget);
    if (!box)
        return Answer::failure(QStringLiteral("takes no text: ") + describe(&widget));
    const int index = box->findText(text);
    if (index < 0)
        return Answer::failure(QStringLiteral("no item ") + text + QStringLiteral(" in ") +
                               describe(&widget));
    box->setCurrentIndex(index);
    emit box->activated(index);
    return Answer::success();
}

QJsonObject Operate::grabWidget(QWidget &widget, const QString &path)
{
    if (!widget.grab().save(path))
        return Answer::failure(QStringLiteral("cannot save ") + path);
    return Answer::success();
}

QJsonObject Operate::grabScreen(const QString &path)
{
    QScreen *screen = QGuiApplication::primaryScreen();
    QPixmap picture = screen ? screen->grabWindow(0) : QPixmap();
    if (picture.isNull())
        return Answer::failure(QStringLiteral("the screen cannot be grabbed"));
    QPainter painter(&picture);
    painter.setClipRegion(background(*screen));
    painter.fillRect(picture.rect(), Qt::white);
    painter.end();
    if (!picture.save(path))
        return Answer::failure(QStringLiteral("cannot save ") + path);
    return Answer::success(
        {{QLatin1String("width"), picture.width()}, {QLatin1String("height"), picture.height()}});
}
