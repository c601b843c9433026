#include "tests/cli/CliEndingTest.h"
#include "tests/endtoend/signature/MakersKeys.h"

using namespace CliCases;

namespace {

void publish(CliEndingTest &t, const QByteArray &signature)
{
    MakersKeys::publish(t.s().firmware, t.s().model(), signature);
}

QByteArray signedBy(CliEndingTest &t, const char *key, const QString &comment = MakersKeys::comment)
{
    return MakersKeys::sign(t.s().firmware.imageFile(t.s().model()), key, comment);
}

} // namespace

const QVector<Ending> &endings()
{
    static const QVector<Ending> all{
        {"WithTheMakersSignature",
         "updated with an image that its maker signed",
         "DevMaa",
         {update},
         0,
         "succeeded, resetting, none",
         "has the new firmware",
         [](CliEndingTest &t) {
             publish(t, signedBy(t, "first"));
         }},
        {"WithoutASignature",
         "the image has no signature",
         "DevMaa",
         {update},
         4,
         "failed, fetching, signature-refused",
         "untouched"},
        {"SignedByAStranger",
         "the image was signed with another key",
         "DevMaa",
         {update},
         4,
         "failed, fetching, signature-refused",
         "untouched",
         [](CliEndingTest &t) {
             publish(t, signedBy(t, "stranger"));
         }},
        {"SignedForAnotherModel",
         "the image was signed for another model",
         "DevMaa",
         {update},
         4,
         "failed, fetching, signature-refused",
         "untouched",
         [](CliEndingTest &t) {
             publish(t, signedBy(t, "first", QStringLiteral("model:DevMab version:1")));
         }},
    };
    return all;
}
