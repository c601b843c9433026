#include "tests/endtoend/AccessibilityTest.h"

#include <QImage>
#include <QRect>

namespace {

/// How the focus looks. Pictures are those of the screen.
class VisibleFocusTest : public AccessibilityTest
{
protected:
    QImage picture()
    {
        const QString file = scenario().program.workingFolder() + QStringLiteral("/screen.png");
        EXPECT_TRUE(scenario().probe.grabScreen(file));
        return QImage(file).convertToFormat(QImage::Format_RGB32);
    }

    QRect placeOf(const char *control)
    {
        const QJsonArray at =
            scenario().probe.read(QString::fromLatin1(control)).value(QLatin1String("geometry")).toArray();
        return {at.at(0).toInt(), at.at(1).toInt(), at.at(2).toInt(), at.at(3).toInt()};
    }

    static QRect difference(const QImage &one, const QImage &other)
    {
        QRect changed;
        for (int y = 0; y < one.height(); ++y) {
            for (int x = 0; x < one.width(); ++x) {
                if (one.pixel(x, y) != other.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        return changed;
    }
};

TEST_F(VisibleFocusTest, EachControlInTurnHasARingAndNothingElseChanges)
{
    start("en_US.UTF-8");
    UpdateScenario &s = scenario();
    ASSERT_TRUE(s.probe.waitForWholeText(EndToEnd::connection, EndToEnd::detected));
    const QImage without = picture();
    for (const char *control :
         {"writeTypeBox", "partitionSelectBox", "restartBox", "iapBox", "logBox", "startButton"}) {
        SCOPED_TRACE(control);
        const std::string before = focused();
        ASSERT_TRUE(press({"Tab"}));
        ASSERT_TRUE(pollUntil([&] { return focused() != before; }, eventLimitMs, 50));
        const QRect place = placeOf(control);
        QImage now = picture();
        // Drawn at the next opportunity, not with the event.
        ASSERT_TRUE(pollUntil(
            [&] {
                now = picture();
                return difference(without, now).intersects(place.adjusted(-3, -3, 3, 3));
            },
            eventLimitMs, 50));
        const QRect changed = difference(without, now);
        EXPECT_TRUE(place.adjusted(-3, -3, 3, 3).contains(changed));
        EXPECT_GE(changed.width(), place.width());
        EXPECT_GE(changed.height(), place.height());
    }
    if (const QByteArray folder = qgetenv("QUILLMARSH_PICTURES"); !folder.isEmpty()) {
        EXPECT_TRUE(picture().save(QString::fromUtf8(folder) + QStringLiteral("/focus.png")));
    }
}

} // namespace
