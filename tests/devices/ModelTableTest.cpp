#include "devices/models/ModelTable.h"

#include "devices/Bootloader.h"
#include "devices/models/ModelLists.h"
#include "tests/devices/DeviceTestValues.h"
#include "tests/devices/ExpectedModels.h"

#include <QMap>
#include <QPair>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

const ModelRow *lookUp(const ModelRow &ids, const LaunchOptions &options = LaunchOptions())
{
    static const ModelTable table;
    return table.find(ids.vendorId, ids.productId, options);
}

template <typename List>
QStringList sorted(const List &names)
{
    QStringList list;
    for (const std::string_view name : names)
        list.append(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
    list.sort();
    return list;
}

QStringList sortedWords(const char *words)
{
    QStringList list = QString::fromUtf8(words).split(QLatin1Char(' '));
    list.sort();
    return list;
}

TEST(ModelTableTest, HoldsTheHundredRowsInOrderWithNameGroupAndFlag)
{
    const ModelTable table;
    ASSERT_EQ(table.rows().size(), 100);
    ASSERT_EQ(std::size(expectedModels), 100U);
    QMap<QString, quint32> vendorOfGroup;
    for (int i = 0; i < 100; ++i) {
        const ExpectedModel &expected = expectedModels[i];
        const ModelRow &row = table.rows().at(i);
        EXPECT_EQ(expected.row, i + 1);
        EXPECT_EQ(row.name, QLatin1String(expected.name));
        EXPECT_EQ(row.iapFlag, expected.iapFlag) << expected.name;
        if (expected.productId != 0) {
            EXPECT_EQ(row.productId, expected.productId) << expected.name;
        }
        const QString group = QString::fromUtf8(expected.group);
        if (!vendorOfGroup.contains(group))
            vendorOfGroup.insert(group, row.vendorId);
        EXPECT_EQ(row.vendorId, vendorOfGroup.value(group)) << expected.name;
    }
    EXPECT_EQ(vendorOfGroup.size(), 21);
    EXPECT_EQ(vendorOfGroup.value(QStringLiteral("Soc")), 0x33C3U);
    const QList<quint32> vendors = vendorOfGroup.values();
    EXPECT_EQ(QSet<quint32>(vendors.begin(), vendors.end()).size(), 21) << "two groups with one vendor id";
}

TEST(ModelTableTest, NoTwoRowsHaveEqualIds)
{
    const ModelTable table;
    QSet<QPair<quint32, quint32>> ids;
    for (const ModelRow &row : table.rows())
        ids.insert({row.vendorId, row.productId});
    EXPECT_EQ(ids.size(), 100);
}

TEST(ModelTableTest, EveryRowIsFoundByItsIdsInNormalMode)
{
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        EXPECT_EQ(table.find(row.vendorId, row.productId, LaunchOptions()), &row);
    EXPECT_EQ(table.find(0x1D6B, 0x0002, LaunchOptions()), nullptr);
}

TEST(ModelTableTest, BothRowsNamedDevMdmAreRecognisedByTheirOwnIds)
{
    ASSERT_NE(lookUp(modelRow(58)), nullptr);
    EXPECT_EQ(lookUp(modelRow(58))->name, QLatin1String("DevMdm"));
    const ModelTable table;
    const ModelRow *soc = table.find(0x33C3, 0x6781, LaunchOptions());
    ASSERT_NE(soc, nullptr);
    EXPECT_EQ(soc->name, QLatin1String("DevMdm"));
    EXPECT_NE(modelRow(58).vendorId, soc->vendorId);
}

TEST(ModelTableTest, InZn58ModeOnlyTheRowZn58IsRecognised)
{
    const ModelTable table;
    for (const ModelRow &row : table.rows()) {
        const ModelRow *found = table.find(row.vendorId, row.productId, zn58Mode());
        EXPECT_EQ(found != nullptr, row.name == QLatin1String("ZN58")) << row.name.data();
    }
}

TEST(ModelTableTest, InTessilonixModeOnlyTheWantedModelIsRecognised)
{
    EXPECT_EQ(lookUp(model("DevMbs"), tessilonixMode("DevMbr")), nullptr);
    ASSERT_NE(lookUp(model("DevMbr"), tessilonixMode("DevMbr")), nullptr);
    EXPECT_EQ(lookUp(model("DevMbr"), tessilonixMode("devmbr")), nullptr) << "other letter case";
    EXPECT_EQ(lookUp(model("DevMbr"), tessilonixMode("DevMb")), nullptr) << "only the beginning";
}

TEST(ModelTableTest, TheFirstRowThatTheModeAcceptsIsTaken)
{
    const ModelTable table({{QLatin1String("first"), 1, 2, 0}, {QLatin1String("second"), 1, 2, 1}});
    EXPECT_EQ(table.find(1, 2, LaunchOptions())->name, QLatin1String("first"));
    EXPECT_EQ(table.find(1, 2, tessilonixMode("second"))->name, QLatin1String("second"));
}

TEST(ModelTableTest, TheLastRowHasTheBootloadersIds)
{
    EXPECT_EQ(modelRow(100).vendorId, Bootloader::vendorId);
    EXPECT_EQ(modelRow(100).productId, Bootloader::productId);
}

TEST(ModelListsTest, TheThreeListsContainTheirModels)
{
    EXPECT_EQ(sorted(ModelLists::col04), sortedWords("DevMar DevMcb DevMce DevMcc DevMbs DevMbr DevMcw"));
    EXPECT_EQ(sorted(ModelLists::mi00),
              sortedWords("DevMbu DevMbw DevMah DevMai DevMct DevMay DevMaz DevMdn DevMck DevMci DevMcv "
                          "DevMdb DevMdc DevMdd DevMcf DevMcj DevMby DevMbx"));
    EXPECT_EQ(sorted(ModelLists::iapIdHandOver),
              sortedWords("DevMdq DevMde DevMdf DevMdg DevMdr DevMds DevMdt DevMdi DevMdu"));
}

TEST(ModelListsTest, TheHandOverListIsTheIapRowsWithoutDevMdh)
{
    const ModelTable table;
    for (const ModelRow &row : table.rows()) {
        EXPECT_EQ(ModelLists::handsIdsToIapPanel(row.name),
                  row.iapFlag == 1 && row.name != QLatin1String("DevMdh"))
            << row.name.data();
    }
}

TEST(ModelListsTest, TwentyFiveModelsAreFoundByTheirPath)
{
    const ModelTable table;
    int count = 0;
    for (const ModelRow &row : table.rows()) {
        EXPECT_EQ(ModelLists::isHidPathModel(row.name),
                  ModelLists::isCol04(row.name) != ModelLists::isMi00(row.name));
        count += ModelLists::isHidPathModel(row.name) ? 1 : 0;
    }
    EXPECT_EQ(count, 25);
}

TEST(ModelListsTest, WholeNamesAreComparedCaseSensitively)
{
    EXPECT_TRUE(ModelLists::isMi00(QStringLiteral("DevMah")));
    EXPECT_FALSE(ModelLists::isMi00(QStringLiteral("devmah")));
    EXPECT_FALSE(ModelLists::isMi00(QStringLiteral("DevMahX")));
    EXPECT_FALSE(ModelLists::isCol04(QStringLiteral("DevMa")));
    EXPECT_FALSE(ModelLists::isHidPathModel(QString()));
}

} // namespace
