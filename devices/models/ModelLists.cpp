#include "devices/models/ModelLists.h"

#include <algorithm>
#include <iterator>

namespace {

template <typename List>
bool contains(const List &names, const QString &name)
{
    return std::any_of(std::begin(names), std::end(names), [&name](std::string_view candidate) {
        return name == QLatin1String(candidate.data(), static_cast<int>(candidate.size()));
    });
}

} // namespace

bool ModelLists::isCol04(const QString &name)
{
    return contains(col04, name);
}

bool ModelLists::isMi00(const QString &name)
{
    return contains(mi00, name);
}

bool ModelLists::isHidPathModel(const QString &name)
{
    return isCol04(name) || isMi00(name);
}

bool ModelLists::handsIdsToIapPanel(const QString &name)
{
    return contains(iapIdHandOver, name);
}
