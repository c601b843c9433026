#include "tests/cli/CliTest.h"
#include "tests/endtoend/signature/MakersKeys.h"

#include "harness/BuildPaths.h"

namespace {

using namespace CliCases;

const QString requireSignature = QStringLiteral("--require-signature");
const QString file = QStringLiteral("--file");

/// quillmarsh-cli of a maker who signs.
class CliSignatureTest : public CliTest
{
protected:
    explicit CliSignatureTest(const QString &program = QStringLiteral(SIGNING_COMMAND_LINE_PROGRAM))
    {
        m_scenario = std::make_unique<CliScenario>(QStringLiteral("DevMaa"), makeNativeSystem(program));
    }

    QString served() { return scenario().firmware.imageFile(scenario().model()); }
    void publish(const QByteArray &signature)
    {
        MakersKeys::publish(scenario().firmware, scenario().model(), signature);
    }
    /// Returns the last line of the log that begins with this text.
    QString logged(const char *beginning)
    {
        QString last;
        for (const QJsonObject &event : scenario().events(QStringLiteral("log"))) {
            const QString line = event.value(QLatin1String("line")).toString();
            if (line.startsWith(QLatin1String(beginning)))
                last = line;
        }
        return last;
    }
    void expectRefused(const QStringList &arguments, const QString &reason, const char *stage = "fetching")
    {
        EXPECT_EQ(run(arguments), 4);
        expectResult("failed", stage, "signature-refused", 4);
        EXPECT_EQ(logged("The image is refused: "), QStringLiteral("The image is refused: ") + reason);
        expectUntouchedDevice();
    }
    QString fileOfTheUsers()
    {
        const QString path = scenario().program.workingFolder() + QLatin1String("/../mine.img");
        EXPECT_TRUE(WholeFile::write(path, m_bytes));
        return path;
    }

    const QByteArray m_bytes = QByteArray("an image of one's own").repeated(5000);
};

TEST_F(CliSignatureTest, EachOfTheMakersKeysMaySign)
{
    for (const char *key : {"first", "second"}) {
        publish(MakersKeys::sign(served(), key));
        EXPECT_EQ(run({update}), 0) << key;
        expectSucceeded("resetting");
        EXPECT_TRUE(logged("The signature is valid. Key ").endsWith(MakersKeys::comment));
    }
    EXPECT_EQ(scenario().burned(), scenario().image());
    EXPECT_EQ(run({update, requireSignature}), 0) << "the server's image has one anyway";
}

TEST_F(CliSignatureTest, EachWrongSignatureOfAServerIsRefusedWithItsReason)
{
    expectRefused({update}, QStringLiteral("The manifest has no signature for it."));
    const QByteArray good = MakersKeys::sign(served());
    publish("garbage");
    expectRefused({update}, QStringLiteral("Its signature is not in minisign's format."));
    publish(good.left(100));
    expectRefused({update}, QStringLiteral("Its signature is not in minisign's format."));
    publish(QByteArray(good).replace("1.4.2", "9.9.9"));
    expectRefused({update}, QStringLiteral("Its signature or its trusted comment was altered."));
    publish(MakersKeys::sign(served(), "first", QStringLiteral("model:DevMab version:1.4.2")));
    expectRefused({update}, QStringLiteral("It was signed for DevMab, not for DevMaa."));
    publish(MakersKeys::sign(served(), "first", MakersKeys::comment, {QStringLiteral("-l")}));
    expectRefused({update}, QStringLiteral("Its signature is of the legacy kind, which is not accepted."));
    publish(MakersKeys::sign(fileOfTheUsers()));
    expectRefused({update}, QStringLiteral("It is not the image that was signed."));
    publish(MakersKeys::sign(served(), "stranger"));
    EXPECT_EQ(run({update}), 4);
    expectResult("failed", "fetching", "signature-refused", 4);
    EXPECT_TRUE(logged("The image is refused: It was signed with the key ")
                    .endsWith(QLatin1String(", which this program does not know.")));
    publish(good);
    EXPECT_EQ(run({update}), 0);
}

TEST_F(CliSignatureTest, APersonSeesTheReason)
{
    publish("garbage");
    EXPECT_EQ(runWithTextOutput({update}), 4);
    EXPECT_TRUE(scenario().program.standardOutput().contains(
        QLatin1String("the firmware has no valid signature of its maker for this model")));
}

TEST_F(CliSignatureTest, AFileWithoutASignatureIsRefusedOnlyIfOneIsRequired)
{
    const QString image = fileOfTheUsers();
    expectRefused({update, file, image, requireSignature}, QStringLiteral("No signature lies beside it."));
    EXPECT_EQ(run({update, file, image}), 0);
    EXPECT_EQ(logged("No signature lies "),
              QStringLiteral("No signature lies beside the file. It is written without a check."));
    EXPECT_EQ(scenario().burned(), m_bytes);
}

TEST_F(CliSignatureTest, AFileIsWrittenOnlyWithItsOwnSignature)
{
    const QString image = fileOfTheUsers();
    ASSERT_TRUE(WholeFile::write(image + QStringLiteral(".minisig"), MakersKeys::sign(served())));
    expectRefused({update, file, image}, QStringLiteral("It is not the image that was signed."));
    ASSERT_TRUE(WholeFile::write(image + QStringLiteral(".minisig"), MakersKeys::sign(image)));
    EXPECT_EQ(run({update, file, image, requireSignature}), 0);
    expectSucceeded("resetting");
    EXPECT_EQ(scenario().burned(), m_bytes);
}

TEST_F(CliSignatureTest, ADeviceInItsBootloaderIsTheModelThatIsNamed)
{
    CliScenario &s = scenario();
    s.devices = {ModelOnBus::bootloader(s.model())};
    const QString image = fileOfTheUsers();
    const QString signature = image + QStringLiteral(".minisig");
    const QStringList arguments{update, file, image, QStringLiteral("--model"), s.model(), requireSignature};
    ASSERT_TRUE(WholeFile::write(signature,
                                 MakersKeys::sign(image, "first", QStringLiteral("model:DevMab version:1"))));
    expectRefused(arguments, QStringLiteral("It was signed for DevMab, not for DevMaa."));
    ASSERT_TRUE(WholeFile::write(signature, MakersKeys::sign(image)));
    EXPECT_EQ(run(arguments), 0);
    EXPECT_EQ(s.burned(), m_bytes);
}

TEST_F(CliSignatureTest, ManifestVerifyAndCheckVerifyTheSignature)
{
    const QStringList verify{QStringLiteral("manifest"), QStringLiteral("verify"),
                             QStringLiteral("--download")};
    const auto verdictOn = [this](const char *what) {
        for (const QJsonObject &finding : scenario().events(QStringLiteral("finding"))) {
            if (finding.value(QLatin1String("what")) == QLatin1String(what))
                return finding.value(QLatin1String("verdict")).toString();
        }
        return QString();
    };
    publish(MakersKeys::sign(served()));
    EXPECT_EQ(run(verify), 0);
    EXPECT_EQ(verdictOn("DevMaa/signature"), QStringLiteral("ok"));
    EXPECT_EQ(verdictOn("DevMaa/signed-image"), QStringLiteral("ok"));
    EXPECT_EQ(run({QStringLiteral("check"), QStringLiteral("--model"), QStringLiteral("DevMaa")}), 0);
    EXPECT_EQ(verdictOn("image-signature"), QStringLiteral("ok"));
    publish(MakersKeys::sign(fileOfTheUsers()));
    EXPECT_EQ(run(verify), 4);
    EXPECT_EQ(verdictOn("DevMaa/signed-image"), QStringLiteral("problem"));
}

/// quillmarsh-cli of a maker who does not sign.
class CliWithoutKeysTest : public CliSignatureTest
{
protected:
    CliWithoutKeysTest() : CliSignatureTest(BuildPaths::commandLineProgram()) {}
};

TEST_F(CliWithoutKeysTest, SignaturesAreIgnored)
{
    publish("garbage");
    EXPECT_EQ(run({update}), 0);
    const QString image = fileOfTheUsers();
    ASSERT_TRUE(WholeFile::write(image + QStringLiteral(".minisig"), "garbage"));
    EXPECT_EQ(run({update, file, image}), 0);
    EXPECT_EQ(scenario().burned(), m_bytes);
    for (const char *beginning : {"Checking the signature", "The signature", "No signature", "The image is"})
        EXPECT_EQ(logged(beginning), QString());
}

TEST_F(CliWithoutKeysTest, ASignatureThatIsRequiredCannotBeVerified)
{
    const QString reason = QStringLiteral("This program was built without the maker's keys.");
    publish(MakersKeys::sign(served()));
    expectRefused({update, requireSignature}, reason, "idle");
    const QString image = fileOfTheUsers();
    ASSERT_TRUE(WholeFile::write(image + QStringLiteral(".minisig"), MakersKeys::sign(image)));
    expectRefused({update, file, image, requireSignature}, reason, "idle");
}

} // namespace
