#include "devices/HidMarkers.h"

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

QStringList markersOf(QVector<HidInterface> interfaces)
{
    HidMarkers::fillFromPositions(interfaces);
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

TEST(HidMarkersTest, InterfacesWithoutAPathAreNotTakenForOne)
{
    EXPECT_EQ(markersOf({entry(nullptr, 0), entry(nullptr, 1)}),
              (QStringList{QStringLiteral("MI_00&Col01"), QStringLiteral("MI_01&Col01")}));
    EXPECT_TRUE(markersOf({}).isEmpty());
}

} // namespace
