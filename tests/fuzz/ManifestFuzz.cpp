#include "tests/fuzz/Fuzz.h"

#include "update/FirmwareManifest.h"

// The first line is the device key, the rest the manifest.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input = Fuzz::bytes(data, size);
    const int end = input.indexOf('\n');
    const QString key = QString::fromUtf8(input.left(end));
    const FirmwareManifest::Parsed parsed = FirmwareManifest::parse(input.mid(end + 1));
    Fuzz::require(parsed.ok || parsed.root.isEmpty(), "a manifest that was refused has no content");

    const FirmwareManifest::Address address = FirmwareManifest::fileAddress(parsed.root, key);
    Fuzz::require(!address.messages.isEmpty(), "every lookup says how it went");
    if (!address.url.isEmpty())
        Fuzz::require(parsed.ok, "an address comes from a manifest that was accepted");
    FirmwareManifest::md5(parsed.root, key);
    const auto urls = FirmwareManifest::downloadUrls(parsed.root);
    if (!address.url.isEmpty())
        Fuzz::require(urls.contains(key), "the chooser offers every model that can be downloaded");
    return 0;
}
