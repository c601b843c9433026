#include "devices/hid/HidMarkers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

HidInterface entry(const char *path, int interfaceNumber)
{
    HidInterface seen;
    seen.path = QByteArray(path);
    seen.interfaceNumber = interfaceNumber;
    return seen;
}

QStringList markersOf(QVector<HidInterface> interfaces, int collections = 0)
{
    HidMarkers::fillFromPositions(interfaces, [collections](const QByteArray &) { return collections; });
    QStringList markers;
    for (const HidInterface &seen : qAsConst(interfaces))
        markers.append(seen.markers);
    return markers;
}

TEST(HidMarkersTest, NameInterfaceAndCollectionInTwoHexadecimalDigits)
{
    EXPECT_EQ(HidMarkers::text(0, 4), QStringLiteral("MI_00&Col04"));
    EXPECT_EQ(HidMarkers::text(2, 1), QStringLiteral("MI_02&Col01"));
    EXPECT_EQ(HidMarkers::text(10, 16), QStringLiteral("MI_0a&Col10"));
}

TEST(HidMarkersTest, AnUnknownInterfaceNumberIsLeftOut)
{
    EXPECT_EQ(HidMarkers::text(-1, 1), QStringLiteral("Col01"));
}

TEST(HidMarkersTest, NeighboursWithTheSamePathAreCollectionsOfOneInterface)
{
    EXPECT_EQ(markersOf({entry("/dev/hidraw0", 0), entry("/dev/hidraw1", 1), entry("/dev/hidraw1", 1),
                         entry("/dev/hidraw1", 1), entry("/dev/hidraw1", 1), entry("/dev/hidraw2", 0)}),
              (QStringList{QStringLiteral("MI_00&Col01"), QStringLiteral("MI_01&Col01"),
                           QStringLiteral("MI_01&Col02"), QStringLiteral("MI_01&Col03"),
                           QStringLiteral("MI_01&Col04"), QStringLiteral("MI_00&Col01")}));
}

TEST(HidMarkersTest, InterfacesWithoutAPathAreNotTreatedAsOne)
{
    EXPECT_EQ(markersOf({entry(nullptr, 0), entry(nullptr, 1)}),
              (QStringList{QStringLiteral("MI_00&Col01"), QStringLiteral("MI_01&Col01")}));
    EXPECT_TRUE(markersOf({}).isEmpty());
}

TEST(HidMarkersTest, NestedCollectionsDoNotMakeAnInterfaceLookLikeOneWithMore)
{
    EXPECT_EQ(markersOf({entry("a", 1), entry("a", 1), entry("a", 1), entry("a", 1)}, 3),
              (QStringList{QStringLiteral("MI_01&Col01"), QStringLiteral("MI_01&Col02"),
                           QStringLiteral("MI_01&Col03"), QStringLiteral("MI_01&Col03")}));
}

TEST(HidMarkersTest, TopLevelCollectionsAreCountedWithoutTheNestedOnes)
{
    const QByteArray pointer = QByteArray::fromHex("05010902a1010901a100150025017508950109308102c0c0");
    const QByteArray keys = QByteArray::fromHex("050c0901a1018502150025017508950109308102c0");
    EXPECT_EQ(HidMarkers::topLevelCollections(pointer), 1);
    EXPECT_EQ(HidMarkers::topLevelCollections(pointer + keys + keys), 3);
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray::fromHex("27a1a1a1a1") + keys + keys), 2)
        << "item data";
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray::fromHex("fe0200a1a1") + keys + keys), 2)
        << "long item";
}

TEST(HidMarkersTest, AMalformedDescriptorDoesNoHarm)
{
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray()), 0);
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray::fromHex("fe")), 0);
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray::fromHex("feff00a1")), 0);
    EXPECT_EQ(HidMarkers::topLevelCollections(QByteArray::fromHex("c0c0a1")), 1);
}

} // namespace
