#pragma once

#include "harness/session/ScreenReaderSession.h"
#include "tests/endtoend/EndToEnd.h"

#include <QJsonDocument>

#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

/// The program as a screen reader finds it, operated with a keyboard and without a mouse.
class AccessibilityTest : public EndToEndTest
{
protected:
    /// Role and name of each control in a window, in the order of the tree.
    using Controls = std::multiset<std::pair<std::string, std::string>>;

    void start(const char *locale)
    {
        UpdateScenario &s = scenario();
        ASSERT_TRUE(s.display.start(s.screen));
        ASSERT_TRUE(m_reader.start(s.display.display())) << m_reader.errorText().toStdString();
        m_reader.addTo(
            [&s](const QString &name, const QString &value) { s.program.setVariable(name, value); });
        s.program.setLocale(QString::fromLatin1(locale));
        ASSERT_TRUE(s.start()) << s.errorText().toStdString();
    }

    /// Everything of a window that can have the focus, or shows a value.
    Controls controlsOf(const char *window)
    {
        static const std::set<std::string> roles{"push button", "check box",     "combo box",   "text",
                                                 "page tab",    "page tab list", "progress bar"};
        Controls found;
        for (const QJsonValue &object : objects()) {
            const std::string role = textOf(object, "role");
            const std::string name = textOf(object, "name");
            // Qt's own, in sight only where a row of tabs is too long.
            if (name == "Scroll Left" || name == "Scroll Right")
                continue;
            if (textOf(object, "window") == window && roles.count(role) != 0)
                found.emplace(role, name);
        }
        return found;
    }

    std::set<std::string> labelsOf(const char *window, const char *role, const char *name)
    {
        std::set<std::string> labels;
        for (const QJsonValue &object : objects()) {
            if (textOf(object, "window") != window || textOf(object, "role") != role ||
                textOf(object, "name") != name)
                continue;
            for (const QJsonValue &label : object[QLatin1String("labels")].toArray())
                labels.insert(label.toString().toStdString());
        }
        return labels;
    }

    std::string roleOfWindow(const char *window)
    {
        for (const QJsonValue &object : objects()) {
            if (textOf(object, "name") == window)
                return textOf(object, "role");
        }
        return "no such window";
    }

    bool press(const QStringList &keys) { return m_reader.press(keys); }
    bool press(std::initializer_list<const char *> keys)
    {
        QStringList names;
        for (const char *key : keys)
            names.append(QString::fromLatin1(key));
        return press(names);
    }

    /// Presses Tab until `name` has the focus, at most twenty times. Returns what had it on the way.
    std::vector<std::string> tabTo(const char *name)
    {
        std::vector<std::string> order;
        while (order.size() < 20 && (order.empty() || order.back() != name)) {
            const std::string before = focused();
            if (!press({"Tab"}))
                return order;
            pollUntil([&] { return focused() != before; }, 2000, 50);
            order.push_back(focused());
        }
        return order;
    }

    bool waitForFocus(const char *name)
    {
        return pollUntil([&] { return focused() == name; }, eventLimitMs, 50);
    }

    /// The name of what the reader was told to have the focus last.
    std::string focused()
    {
        std::string last;
        for (const QJsonValue &event : m_reader.heard()) {
            if (textOf(event, "type") == "object:state-changed:focused" &&
                event[QLatin1String("on")].toInt() == 1)
                last = textOf(event, "name");
        }
        return last;
    }

    bool waitUntilHeard(const char *role, const char *name)
    {
        return pollUntil(
            [&] {
                for (const QJsonValue &event : m_reader.heard()) {
                    if (textOf(event, "type") == "object:state-changed:showing" &&
                        textOf(event, "role") == role && textOf(event, "name") == name)
                        return true;
                }
                return false;
            },
            EndToEnd::updateLimitMs, 50);
    }

    std::vector<double> valuesHeard(const char *name)
    {
        std::vector<double> values;
        for (const QJsonValue &event : m_reader.heard()) {
            if (textOf(event, "type") == "object:property-change:accessible-value" &&
                textOf(event, "name") == name)
                values.push_back(event[QLatin1String("value")].toDouble());
        }
        return values;
    }

    std::string everythingHeard()
    {
        return QJsonDocument(m_reader.heard()).toJson(QJsonDocument::Compact).toStdString();
    }

    QJsonArray objects() { return m_reader.objects(QStringLiteral("quillmarsh")); }
    static std::string textOf(const QJsonValue &object, const char *field)
    {
        return object[QLatin1String(field)].toString().toStdString();
    }

    ScreenReaderSession m_reader;
};
