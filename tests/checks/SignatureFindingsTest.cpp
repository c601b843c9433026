#include "checks/SignatureFindings.h"

#include "checks/Texts.h"
#include "tests/signature/Signatures.h"

#include <gtest/gtest.h>

namespace {

const QString what = QStringLiteral("DevMaa/signature");
const QString model = QStringLiteral("DevMaa");

Finding findingFor(const char *signature, const char *key = "first")
{
    return SignatureFindings::signature(what, QString::fromUtf8(Signatures::text(signature)), model,
                                        {QString::fromLatin1(Signatures::key(key))});
}

TEST(SignatureFindingsTest, ACorrectSignatureIsReportedWithItsKeyAndComment)
{
    const Finding finding = findingFor("good");
    EXPECT_EQ(finding.what, what);
    EXPECT_EQ(finding.verdict, Finding::Verdict::Ok);
    EXPECT_TRUE(finding.text.endsWith(QStringLiteral("comment: model:DevMaa version:1.4.2")));
    EXPECT_EQ(findingFor("second", "second").verdict, Finding::Verdict::Ok);
}

TEST(SignatureFindingsTest, EachKindOfWrongSignatureIsAProblemWithADifferentText)
{
    QStringList texts;
    for (const char *name : {"second", "other-model", "no-model", "legacy", "not-there"}) {
        const Finding finding = findingFor(name);
        EXPECT_EQ(finding.verdict, Finding::Verdict::Problem) << name;
        EXPECT_FALSE(finding.remedy.isEmpty()) << name;
        texts.append(finding.text);
    }
    texts.removeDuplicates();
    EXPECT_EQ(texts.size(), 5);
}

TEST(SignatureFindingsTest, EachVerdictHasADifferentTextInBothLanguages)
{
    for (const Texts::Language language : {Texts::Language::English, Texts::Language::Chinese}) {
        Texts::setLanguage(language);
        QStringList texts;
        for (int verdict = 0; verdict <= static_cast<int>(SignatureVerdict::Interrupted); ++verdict) {
            ImageVerifier::Result result;
            result.verdict = static_cast<SignatureVerdict>(verdict);
            const Finding finding = SignatureFindings::verification(what, result, model);
            EXPECT_EQ(finding.verdict == Finding::Verdict::Ok, result.verdict == SignatureVerdict::Valid);
            texts.append(finding.text);
        }
        EXPECT_EQ(texts.removeDuplicates(), 0);
        EXPECT_FALSE(texts.contains(QString()));
    }
    Texts::setLanguage(Texts::Language::English);
}

} // namespace
