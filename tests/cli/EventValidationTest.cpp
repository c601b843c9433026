#include "tests/cli/EventValidation.h"

#include <gtest/gtest.h>

namespace {

const char *const time = R"("time":"2020-01-02T03:04:05.678Z")";

QByteArray event(const char *fields)
{
    return QByteArray("{") + time + ',' + fields + "}\n";
}

TEST(EventValidationTest, EventsThatMatchTheSchemaPass)
{
    EXPECT_EQ(
        EventValidation::problemsIn(event(R"("event":"stage","stage":"fetching")") +
                                    event(R"("event":"progress","percent":7,"bytes":null,"total":null)")),
        QString());
}

TEST(EventValidationTest, EventsThatViolateTheSchemaAreFound)
{
    for (const char *fields : {R"("event":"stage","stage":"fetched")", R"("event":"stage")",
                               R"("event":"unknown")", R"("event":"stage","stage":"fetching","more":1)",
                               R"("event":"progress","percent":101,"bytes":null,"total":null)"})
        EXPECT_TRUE(EventValidation::problemsIn(event(fields)).contains(QLatin1String("Line 1"))) << fields;
    EXPECT_NE(EventValidation::problemsIn("no object\n"), QString());
    EXPECT_NE(EventValidation::problemsIn("{\"event\":\"stage\",\"stage\":\"fetching\"}\n"), QString());
    EXPECT_NE(EventValidation::problemsIn(event(R"("event":"log","line":"x")").trimmed()), QString());
    EXPECT_NE(EventValidation::problemsIn(QByteArray()), QString());
}

} // namespace
