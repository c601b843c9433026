#include "devices/models/ModelTable.h"

#include "devices/Bootloader.h"
#include "devices/models/ModelLists.h"

#include <array>
#include <string_view>
#include <utility>

namespace {

enum Group : quint8 {
#define VENDOR(group, id) group,
#define MODEL(row, name, group, productId, iapFlag)
#include "devices/models/ModelIds.inc"
#undef VENDOR
#undef MODEL
    groupCount
};

constexpr std::array<quint32, groupCount> vendorIds{
#define VENDOR(group, id) id,
#define MODEL(row, name, group, productId, iapFlag)
#include "devices/models/ModelIds.inc"
#undef VENDOR
#undef MODEL
};

struct Entry
{
    std::string_view name;
    int row;
    quint32 productId;
    Group group;
    quint8 iapFlag;
};

constexpr Entry entries[] = {
#define VENDOR(group, id)
#define MODEL(row, name, group, productId, iapFlag) {name, row, productId, group, iapFlag},
#include "devices/models/ModelIds.inc"
#undef VENDOR
#undef MODEL
};

constexpr std::size_t count = std::size(entries);

constexpr bool rowsAreNumberedInOrder()
{
    for (std::size_t i = 0; i < count; ++i) {
        if (entries[i].row != static_cast<int>(i) + 1)
            return false;
    }
    return true;
}

constexpr bool idsFitADescriptor()
{
    for (const quint32 id : vendorIds) {
        if (id > 0xFFFF)
            return false;
    }
    for (const Entry &entry : entries) {
        if (entry.productId > 0xFFFF)
            return false;
    }
    return true;
}

constexpr bool vendorIdsDiffer()
{
    for (std::size_t i = 0; i < vendorIds.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            if (vendorIds[i] == vendorIds[k])
                return false;
        }
    }
    return true;
}

constexpr bool noTwoRowsHaveEqualIds()
{
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            if (entries[i].group == entries[k].group && entries[i].productId == entries[k].productId)
                return false;
        }
    }
    return true;
}

constexpr bool groupsHaveTheirSizes()
{
    // V1 to V20, then the SoC's own vendor.
    constexpr std::array<int, groupCount> wanted{1, 20, 1, 3, 14, 7, 7, 1, 4, 2, 1,
                                                 2, 8,  4, 2, 1,  2, 5, 9, 3, 3};
    std::array<int, groupCount> sizes{};
    for (const Entry &entry : entries)
        ++sizes[entry.group];
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (sizes[i] != wanted[i])
            return false;
    }
    return true;
}

constexpr bool exactlyTheRows90To99AreIap()
{
    for (const Entry &entry : entries) {
        if (entry.iapFlag != (entry.row >= 90 && entry.row <= 99 ? 1 : 0))
            return false;
    }
    return true;
}

constexpr bool onlyDevMdmOccursTwice()
{
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            const bool allowed = entries[i].row == 58 && entries[k].row == 56;
            if ((entries[i].name == entries[k].name) != allowed)
                return false;
        }
    }
    return entries[55].name == "DevMdm";
}

constexpr bool isSocRow(std::size_t row, std::string_view name, quint32 productId)
{
    const Entry &entry = entries[row - 1];
    return entry.group == Soc && entry.name == name && entry.productId == productId;
}

template <typename List>
constexpr bool areInTheTable(const List &names)
{
    for (const std::string_view name : names) {
        bool found = false;
        for (const Entry &entry : entries)
            found = found || entry.name == name;
        if (!found)
            return false;
    }
    return true;
}

static_assert(groupCount == 21, "the vendor groups are V1 to V20 and Soc");
static_assert(count == 100, "the table has 100 rows");
static_assert(rowsAreNumberedInOrder(), "the rows are numbered 1 to 100, in order");
static_assert(idsFitADescriptor(), "an id has 16 bits");
static_assert(vendorIdsDiffer(), "two vendor groups have the same vendor id");
static_assert(noTwoRowsHaveEqualIds(), "two rows have the same vendor id and product id");
static_assert(groupsHaveTheirSizes(), "a row is in the wrong vendor group");
static_assert(exactlyTheRows90To99AreIap(), "the IAP flag belongs to the rows 90 to 99");
static_assert(onlyDevMdmOccursTwice(), "a name occurs twice (only DevMdm may, in the rows 56 and 58)");
static_assert(vendorIds[Soc] == Bootloader::vendorId, "the SoC's vendor id is known");
static_assert(isSocRow(15, "DevMdk", 0x6780), "row 15 is a model with the SoC's own ids");
static_assert(isSocRow(56, "DevMdm", 0x6781), "row 56 is a model with the SoC's own ids");
static_assert(isSocRow(100, "DevMdj", Bootloader::productId), "row 100 has the bootloader's ids");
static_assert(areInTheTable(ModelLists::col04) && areInTheTable(ModelLists::mi00) &&
                  areInTheTable(ModelLists::iapIdHandOver),
              "a per-model list names a model that the table lacks");

bool accepts(const LaunchOptions &options, QLatin1String name)
{
    if (options.isZN58Mode)
        return name == QLatin1String("ZN58");
    if (options.isTessilonixMode)
        return name == options.wantedModelName;
    return true;
}

} // namespace

ModelTable::ModelTable()
{
    m_rows.reserve(static_cast<int>(count));
    for (const Entry &entry : entries) {
        const QLatin1String name(entry.name.data(), static_cast<int>(entry.name.size()));
        m_rows.append({name, vendorIds[entry.group], entry.productId, entry.iapFlag});
    }
}

ModelTable::ModelTable(QVector<ModelRow> rows) : m_rows(std::move(rows)) {}

const ModelRow *ModelTable::find(quint32 vendorId, quint32 productId, const LaunchOptions &options) const
{
    for (const ModelRow &row : m_rows) {
        if (row.vendorId == vendorId && row.productId == productId && accepts(options, row.name))
            return &row;
    }
    return nullptr;
}
