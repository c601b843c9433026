#include "simulator/bus/WindowsHidPath.h"

#include <gtest/gtest.h>

namespace {

HidNodeDescription node(int number, int collection = 1, int collections = 1)
{
    HidNodeDescription described;
    described.number = number;
    described.collection = collection;
    described.collections = collections;
    return described;
}

BusPresenter::Device deviceWith(const QVector<HidNodeDescription> &nodes)
{
    BusPresenter::Device device;
    device.ids = {0xF104, 0xA009};
    device.nodes = nodes;
    return device;
}

QByteArray beginningOf(const BusPresenter::Device &device, int index, int collection = 1)
{
    const QByteArray path = WindowsHidPath::of(device, index, collection);
    return path.left(path.indexOf('#', path.indexOf('#') + 1) + 1);
}

TEST(WindowsHidPathTest, ASingleInterfaceHasNoMarker)
{
    EXPECT_EQ(beginningOf(deviceWith({node(0)}), 0), QByteArray("\\\\?\\hid#vid_f104&pid_a009#"));
}

TEST(WindowsHidPathTest, EachOfSeveralInterfacesIsNamedInLowerCase)
{
    const auto device = deviceWith({node(0), node(10)});
    EXPECT_EQ(beginningOf(device, 0), QByteArray("\\\\?\\hid#vid_f104&pid_a009&mi_00#"));
    EXPECT_EQ(beginningOf(device, 1), QByteArray("\\\\?\\hid#vid_f104&pid_a009&mi_0a#"));
}

TEST(WindowsHidPathTest, EachOfSeveralCollectionsIsNamed)
{
    const auto ofOneNode = deviceWith({node(0, 1, 4)});
    EXPECT_EQ(beginningOf(ofOneNode, 0, 4), QByteArray("\\\\?\\hid#vid_f104&pid_a009&col04#"));
    EXPECT_EQ(WindowsHidPath::collectionsOf(ofOneNode.nodes.first()), 4);
    const auto ofTwoNodes = deviceWith({node(0, 1), node(0, 4), node(1)});
    EXPECT_EQ(beginningOf(ofTwoNodes, 0), QByteArray("\\\\?\\hid#vid_f104&pid_a009&mi_00&col01#"));
    EXPECT_EQ(beginningOf(ofTwoNodes, 1), QByteArray("\\\\?\\hid#vid_f104&pid_a009&mi_00&col04#"));
    EXPECT_EQ(beginningOf(ofTwoNodes, 2), QByteArray("\\\\?\\hid#vid_f104&pid_a009&mi_01#"));
}

TEST(WindowsHidPathTest, EqualDevicesOnTwoPortsHaveDifferentPathsOfTheHidClass)
{
    auto device = deviceWith({node(0)});
    const QByteArray first = WindowsHidPath::of(device, 0, 1);
    device.position = 1;
    EXPECT_NE(WindowsHidPath::of(device, 0, 1), first);
    EXPECT_TRUE(first.endsWith("#{4d1e55b2-f16f-11cf-88cb-001111000030}"));
}

} // namespace
