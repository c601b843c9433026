#include "tests/fuzz/Fuzz.h"

#include "devices/ControlledDeviceList.h"
#include "tests/common/RecordingReporter.h"

// The first line is the model, the rest the list.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::silence();
    const QByteArray input = Fuzz::bytes(data, size);
    const int end = input.indexOf('\n');
    const QString model = QString::fromUtf8(input.left(end));
    const QByteArray list = input.mid(end + 1);

    RecordingReporter reporter;
    const bool on = ControlledDeviceList::parseDevices(list, model, reporter);
    Fuzz::require(reporter.logLines().size() <= 1, "one look-up says one thing at most");
    if (on)
        Fuzz::require(reporter.logLines() == QStringList{QLatin1String("Find dev for json dev: ") + model},
                      "a model that is on was found by its whole name");
    WriteType type;
    ControlledDeviceList::parseWriteType(list, type);
    Fuzz::require(!ControlledDeviceList::writeTypeItems(type).isEmpty(), "there is always a way to write");
    return 0;
}
