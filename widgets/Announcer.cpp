#include "widgets/Announcer.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QRegularExpression>
#include <QWidget>

namespace {

class Notification : public QAccessibleObject
{
public:
    explicit Notification(Announcer *announcer) : QAccessibleObject(announcer) {}

    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(object()->parent());
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override { return {}; }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? static_cast<Announcer *>(object())->lastText() : QString();
    }
};

QAccessibleInterface *makeNotification(const QString &, QObject *object)
{
    auto *announcer = qobject_cast<Announcer *>(object);
    return announcer ? new Notification(announcer) : nullptr;
}

QString withoutNumbers(QString text)
{
    static const QRegularExpression numbers(QStringLiteral("(?<![A-Za-z0-9])[0-9]+([.,][0-9]+)*"));
    return text.remove(numbers);
}

} // namespace

Announcer::Announcer(QWidget *parent) : QObject(parent)
{
    // Installing it once more does nothing.
    QAccessible::installFactory(makeNotification);
}

bool Announcer::isNews(const QString &previous, const QString &next)
{
    return !next.trimmed().isEmpty() && withoutNumbers(previous) != withoutNumbers(next);
}

void Announcer::announce(const QString &text)
{
    if (!isNews(m_text, text))
        return;
    m_text = text;
    QAccessibleEvent name(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&name);
    // Readers speak a notification when it comes into sight.
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}
