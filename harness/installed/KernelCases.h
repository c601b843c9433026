#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>
#include <vector>

/// What the installed programs have to do on the bus of a real kernel.
class KernelCases
{
public:
    struct Place
    {
        /// Seen by the user under the same name: image, plugins, logs.
        QString stage;
        QString user;
        QString home;
    };

    struct Case
    {
        QString name;
        /// Returns what went wrong; empty when all went well.
        std::function<QString()> play;
    };

    explicit KernelCases(Place place) : m_place(std::move(place)) {}

    std::vector<Case> all() const;

private:
    Place m_place;
};
