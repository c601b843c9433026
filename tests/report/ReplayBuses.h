#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>
#include <vector>

/// The buses whose reports are replayed: a bus description, and the models that the control list switches on.
namespace ReplayBuses {

struct Bus
{
    const char *name;
    /// A description in which $MODEL stands for the ids of that model.
    QByteArray description;
    /// Model names separated by blanks; "-" for a missing control list, "?" for a file that is not one.
    const char *switchedOn;
};

inline void PrintTo(const Bus &bus, std::ostream *stream)
{
    *stream << bus.name;
}

inline QByteArray devices(const QByteArray &list)
{
    return "{\"devices\":[" + list + "]}";
}

/// Returns the description of a device with these HID interfaces, or with the default ones if there are none.
inline QByteArray device(const QByteArray &key, const QByteArray &model, const QByteArray &interfaces = {},
                         const QByteArray &more = {})
{
    return "{\"key\":\"" + key + "\",\"application\":$" + model +
           (interfaces.isNull() ? QByteArray() : ",\"interfaces\":[" + interfaces + ']') + more + '}';
}

inline QByteArray foreign(const QByteArray &key, const QByteArray &ids, const QByteArray &more = {})
{
    return "{\"key\":\"" + key + "\",\"application\":" + ids + more + '}';
}

inline QByteArray twenty(const QByteArray &model, bool sameModel)
{
    const char *const others[] = {"DevMaa", "DevMac", "DevMdq", "DevMbu"};
    QByteArray list;
    for (int i = 0; i < 20; ++i)
        list += (i > 0 ? "," : "") +
                device("d" + QByteArray::number(i), sameModel ? model : QByteArray(others[i % 4]));
    return devices(list);
}

inline const QByteArray markedMi00 = R"({"number":0,"node":"hidraw_MI_00_a","acceptsReport":true},
    {"number":1,"node":"hidraw_MI_01_a"})";
inline const QByteArray markedCol04 =
    R"({"number":0,"collection":4,"node":"hidraw_Col04_a","acceptsReport":true},
    {"number":1,"node":"hidraw_other_a"})";
inline const QByteArray keyboard = R"({"vendorId":"0x1234","productId":"0x0001"})";
inline const QByteArray otherProduct = R"({"vendorId":"0xF104","productId":"0x0FFF"})";
/// Device descriptors of the ids f104:a009, which are those of DevMah, with one configuration.
inline const QByteArray vendorClass = R"(,"descriptors":"12010002ff0000ff04f109a0010001020301)"
                                      R"(0902120001010080320904000000ff000000")";
inline const QByteArray compositeUsb3 = R"(,"descriptors":"12010003ef02010904f109a0ffff0a0b0c01)"
                                        R"(0902190001010580320904000001030000000705810340000a")";
inline const QByteArray twoConfigurations =
    R"(,"descriptors":"120100020000004004f109a00001000000020902090000010080320902)"
    R"(090000020080fa")";
inline const QByteArray noConfiguration = R"(,"descriptors":"120100020000004004f109a0000100000000")";

inline std::vector<Bus> all()
{
    return {
        {"NothingAtAll", devices({}), "DevMaa"},
        {"NoRootHub", R"({"rootHub":false,"devices":[]})", "DevMaa"},
        {"OnePlainDevice", devices(device("a", "DevMaa")), "DevMaa"},
        {"OneOnABusWithoutAHub", R"({"rootHub":false,"devices":[)" + device("a", "DevMaa") + "]}", "DevMaa"},
        {"OneThatIsSwitchedOff", devices(device("a", "DevMaa")), "DevMac"},
        {"NoControlList", devices(device("a", "DevMaa")), "-"},
        {"AControlListThatIsNone", devices(device("a", "DevMaa")), "?"},
        {"ForeignDevicesOnly", devices(foreign("k", keyboard) + ',' + foreign("l", keyboard)), "DevMaa"},
        {"ForeignDevicesAround",
         devices(foreign("k", keyboard) + ',' + device("a", "DevMaa") + ',' +
                 foreign("m", R"({"vendorId":"0xFFFF","productId":0})", R"(,"class":224)")),
         "DevMaa"},
        {"AnUnknownProductOfAKnownVendor", devices(foreign("u", otherProduct)), "DevMaa"},
        {"TheSecondOnTheBusIsSwitchedOn", devices(device("a", "DevMac") + ',' + device("b", "DevMaa")),
         "DevMaa"},
        {"TwoModels", devices(device("a", "DevMac") + ',' + device("b", "DevMaa")), "DevMaa DevMac"},
        {"TwoModelsTheOtherWayRound", devices(device("b", "DevMaa") + ',' + device("a", "DevMac")),
         "DevMaa DevMac"},
        {"GapsBetweenThePositions",
         devices(device("a", "DevMac", {}, R"(,"position":7)") + ',' +
                 device("b", "DevMaa", {}, R"(,"position":90)")),
         "DevMaa DevMac"},
        {"ThePortsOfARealBus",
         devices(device("a", "DevMaa", {}, R"(,"ports":"3-2")") + ',' +
                 device("b", "DevMac", {}, R"(,"ports":"1-11")")),
         "DevMaa DevMac"},
        {"BehindAHub",
         devices(foreign("h", R"({"vendorId":"0x05e3","productId":"0x0610"})",
                         R"(,"ports":"1-2","class":9,"interfaces":[],"position":9)") +
                 ',' + device("a", "DevMaa", {}, R"(,"ports":"1-2.3","position":1)")),
         "DevMaa"},
        {"Mi00InThePath", devices(device("a", "DevMah", markedMi00)), "DevMah"},
        {"Mi00InSmallLetters",
         devices(device("a", "DevMah", R"({"number":2,"node":"hidraw_mi_00_a"},{"number":1})")), "DevMah"},
        {"Mi00ByTheNumber", devices(device("a", "DevMah", R"({"number":1},{"number":0})")), "DevMah"},
        {"NoMarker", devices(device("a", "DevMah", R"({"number":1},{"number":2})")), "DevMah"},
        {"AnUnknownInterfaceNumber", devices(device("a", "DevMah", R"({"number":-1})")), "DevMah"},
        {"TheMarkedOneDoesNotOpen",
         devices(device("a", "DevMah", R"({"number":0,"openable":false},{"number":1})")), "DevMah"},
        {"TheSecondMarkedOneOpens",
         devices(
             device("a", "DevMah", R"({"number":0,"openable":false},{"number":3,"node":"hidraw_MI_00_b"})")),
         "DevMah"},
        {"PathlessInterfaces",
         devices(device("a", "DevMah", R"({"number":0,"pathless":true},{"number":1,"pathless":true})")),
         "DevMah"},
        {"OnePathlessAmongOthers",
         devices(device("a", "DevMah", R"({"number":0,"pathless":true},{"number":1},{"number":2})")),
         "DevMah"},
        {"Col04InThePath", devices(device("a", "DevMbr", markedCol04)), "DevMbr"},
        {"Col04ByItsPlace", devices(device("a", "DevMbr", R"({"number":0,"collections":5})")), "DevMbr"},
        {"ThreeCollectionsOnly", devices(device("a", "DevMbr", R"({"number":0,"collections":3})")), "DevMbr"},
        {"DuoDevicesByBothMarkers",
         devices(device("a", "DevMah", markedMi00) + ',' + device("b", "DevMbr", markedCol04)),
         "DevMah DevMbr"},
        {"TwoOfOneDuoModel",
         devices(device("a", "DevMah", R"({"number":0,"node":"hidraw_a0"},{"number":1,"node":"hidraw_a1"})") +
                 ',' +
                 device("b", "DevMah", R"({"number":0,"node":"hidraw_b0"},{"number":1,"node":"hidraw_b1"})")),
         "DevMah"},
        {"AForeignInterfaceWithAMarker",
         devices(foreign("k", keyboard, R"(,"interfaces":[{"number":0,"node":"hidraw_MI_00_k"}])") + ',' +
                 device("a", "DevMah", R"({"number":1})")),
         "DevMah"},
        {"NoInterfaceAtAll", devices(device("a", "DevMah", "")), "DevMah"},
        {"OneBootloader", devices(device("a", "DevMaa", {}, R"(,"start":"bootloader")")), "DevMaa"},
        {"TwoBootloaders",
         devices(device("a", "DevMaa", {}, R"(,"start":"bootloader")") + ',' +
                 device("b", "DevMac", {}, R"(,"start":"bootloader")")),
         "DevMaa"},
        {"ABootloaderBesideADevice",
         devices(device("a", "DevMaa") + ',' + device("b", "DevMac", {}, R"(,"start":"bootloader")")),
         "DevMaa DevMac"},
        {"AMicrocontroller", devices(device("a", "DevMdq")), "DevMdq"},
        {"TwentyOfOneModel", twenty("DevMaa", true), "DevMaa"},
        {"TwentyOfSeveralModels", twenty("DevMaa", false), "DevMac DevMdq"},
        {"AClassOfTheVendorsOwn", devices(device("a", "DevMah", markedMi00, vendorClass)), "DevMah"},
        {"ACompositeDescriptor", devices(device("a", "DevMah", R"({"number":0})", compositeUsb3)), "DevMah"},
        {"TwoConfigurations", devices(device("a", "DevMah", markedMi00, twoConfigurations)), "DevMah"},
        {"NoConfiguration", devices(device("a", "DevMah", markedMi00, noConfiguration)), "DevMah"},
        {"AReportDescriptorOfOneByte",
         devices(device("a", "DevMah", R"({"number":0,"reportDescriptor":"00"})")), "DevMah"},
        {"AReportDescriptorThatNeverCloses",
         devices(device("a", "DevMbr",
                        R"({"number":0,"reportDescriptor":"0600ff0901a1010902a1010903a1010904a101"})")),
         "DevMbr"},
    };
}

} // namespace ReplayBuses
