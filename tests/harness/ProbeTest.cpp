#include "harness/process/Polling.h"
#include "harness/session/XvfbSession.h"
#include "tests/common/AnotherAttempt.h"
#include "tests/harness/RunningSubject.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

enum class Screen { Offscreen, Xvfb };

void PrintTo(Screen screen, std::ostream *stream)
{
    *stream << (screen == Screen::Xvfb ? "Xvfb" : "Offscreen");
}

class ProbeTest : public testing::TestWithParam<Screen>
{
protected:
    void SetUp() override
    {
        if (GetParam() == Screen::Xvfb) {
            ASSERT_TRUE(m_screen.start()) << qPrintable(m_screen.errorText());
            m_subject.stage.setDisplay(m_screen.display());
        }
        ASSERT_TRUE(m_subject.start()) << qPrintable(m_subject.errorText());
    }

    void expectStatus(const QString &text)
    {
        EXPECT_TRUE(probe().waitForText(QStringLiteral("statusLabel"), text))
            << qPrintable(probe().errorText());
    }

    /// Waits until the program has handled all posted events: window system events are delivered in order.
    void letItActOnEverything()
    {
        ASSERT_TRUE(probe().setText(QStringLiteral("fileEdit"), QString()));
        ASSERT_TRUE(probe().type(QStringLiteral("fileEdit"), QStringLiteral("x")));
        ASSERT_TRUE(probe().waitForText(QStringLiteral("fileEdit"), QStringLiteral("x")))
            << qPrintable(probe().errorText());
    }

    ProbeClient &probe() { return m_subject.probe; }

    XvfbSession m_screen; // Must outlive the program on it.
    RunningSubject m_subject;
};

TEST_P(ProbeTest, AReadReturnsWhatAWidgetShows)
{
    const QJsonObject label = probe().read(QStringLiteral("statusLabel"));
    EXPECT_EQ(label[QLatin1String("class")].toString(), QLatin1String("QLabel"));
    EXPECT_EQ(label[QLatin1String("text")].toString(), QStringLiteral("idle 空闲"));
    EXPECT_EQ(label[QLatin1String("styleSheet")].toString(), QLatin1String("color: blue;"));
    EXPECT_EQ(label[QLatin1String("toolTip")].toString(), QLatin1String("what it does"));
    EXPECT_TRUE(label[QLatin1String("visible")].toBool());
    EXPECT_TRUE(label[QLatin1String("enabled")].toBool());
    EXPECT_EQ(label[QLatin1String("geometry")].toArray().size(), 4);
    EXPECT_FALSE(probe().isEnabled(QStringLiteral("disabledButton")));
    EXPECT_FALSE(probe().isVisible(QStringLiteral("hiddenLabel")));
    const QJsonArray items = probe().read(QStringLiteral("typeBox"))[QLatin1String("items")].toArray();
    EXPECT_EQ(items, (QJsonArray{QLatin1String("USB"), QLatin1String("HID")}));
}

TEST_P(ProbeTest, AnObjectIsFoundByItsClassNameWhenNoneHasThatObjectName)
{
    EXPECT_EQ(probe().read(QStringLiteral("QComboBox"))[QLatin1String("objectName")].toString(),
              QLatin1String("typeBox"));
}

TEST_P(ProbeTest, AnUnknownObjectOrOperationIsAnError)
{
    EXPECT_TRUE(probe().read(QStringLiteral("nobody")).isEmpty());
    EXPECT_TRUE(probe().errorText().contains(QLatin1String("no object nobody")));
    const QJsonObject answer = probe().request(
        {{QLatin1String("op"), QLatin1String("dance")}, {QLatin1String("object"), QLatin1String("typeBox")}});
    EXPECT_FALSE(answer[QLatin1String("ok")].toBool());
    EXPECT_TRUE(probe().errorText().contains(QLatin1String("no operation dance")));
}

TEST_P(ProbeTest, AClickThatOpensAModalDialogIsAnsweredAndTheDialogCanBeRead)
{
    ASSERT_TRUE(probe().click(QStringLiteral("askButton"))) << qPrintable(probe().errorText());
    ASSERT_TRUE(probe().waitForWindow(QStringLiteral("QMessageBox"))) << qPrintable(probe().errorText());
    const QJsonObject box = probe().window(QStringLiteral("QMessageBox"));
    EXPECT_EQ(box[QLatin1String("text")].toString(), QLatin1String("Really?"));
    EXPECT_TRUE(box[QLatin1String("modal")].toBool());
    EXPECT_EQ(box[QLatin1String("buttons")].toArray().size(), 2);
    EXPECT_TRUE(probe().pressDialogButton(QStringLiteral("Ok"))) << qPrintable(probe().errorText());
    expectStatus(QStringLiteral("agreed"));
    EXPECT_TRUE(probe().waitForNoWindow(QStringLiteral("QMessageBox")));
}

TEST_P(ProbeTest, AModalDialogBlocksClicksAndClosesAsItDoesForAUser)
{
    ASSERT_TRUE(probe().click(QStringLiteral("askButton")));
    ASSERT_TRUE(probe().waitForWindow(QStringLiteral("QMessageBox")));
    EXPECT_TRUE(probe().click(QStringLiteral("tickBox")));
    EXPECT_TRUE(probe().close(QStringLiteral("subjectWindow")));
    ASSERT_TRUE(probe().pressDialogButton(QStringLiteral("Cancel")));
    expectStatus(QStringLiteral("declined"));
    letItActOnEverything();
    expectStatus(QStringLiteral("declined"));
    EXPECT_FALSE(probe().isChecked(QStringLiteral("tickBox")));
    // Only the first close is refused, and the blocked one does not count.
    ASSERT_TRUE(probe().close(QStringLiteral("subjectWindow")));
    expectStatus(QStringLiteral("close refused"));
}

TEST_P(ProbeTest, ADisabledButtonIgnoresClicks)
{
    EXPECT_TRUE(probe().click(QStringLiteral("disabledButton")));
    letItActOnEverything();
    expectStatus(QStringLiteral("idle"));
}

TEST_P(ProbeTest, WhatAUserCannotReachCannotBeClicked)
{
    EXPECT_FALSE(probe().click(QStringLiteral("hiddenLabel")));
    ASSERT_TRUE(probe().waitForVisible(QStringLiteral("cover"), true));
    EXPECT_FALSE(probe().click(QStringLiteral("coveredButton")));
    EXPECT_TRUE(probe().errorText().contains(QLatin1String("covered by QLabel cover")))
        << qPrintable(probe().errorText());
}

TEST_P(ProbeTest, CheckClicksOnlyWhenTheStateIsNotTheWantedOne)
{
    ASSERT_TRUE(probe().check(QStringLiteral("tickBox")));
    expectStatus(QStringLiteral("tick 2"));
    ASSERT_TRUE(probe().check(QStringLiteral("tickBox")));
    letItActOnEverything();
    EXPECT_TRUE(probe().isChecked(QStringLiteral("tickBox")));
    ASSERT_TRUE(probe().check(QStringLiteral("tickBox"), false));
    expectStatus(QStringLiteral("tick 0"));
    EXPECT_FALSE(probe().check(QStringLiteral("fileEdit")));
}

TEST_P(ProbeTest, TypedTextAndKeysArriveInALineEdit)
{
    ASSERT_TRUE(probe().type(QStringLiteral("fileEdit"), QStringLiteral("dir/A b.img"), Qt::Key_Return));
    expectStatus(QStringLiteral("entered dir/A b.img"));
}

TEST_P(ProbeTest, SetSelectsAnItemOfAComboBoxAndRefusesOneThatDoesNotExist)
{
    ASSERT_TRUE(probe().setText(QStringLiteral("typeBox"), QStringLiteral("HID")));
    EXPECT_EQ(probe().text(QStringLiteral("typeBox")), QLatin1String("HID"));
    EXPECT_FALSE(probe().setText(QStringLiteral("typeBox"), QStringLiteral("Serial")));
}

TEST_P(ProbeTest, ACloseMayBeRefusedAndTheNextOneEndsTheProgramWithItsExitCode)
{
    ASSERT_TRUE(probe().close(QStringLiteral("window:Subject")));
    expectStatus(QStringLiteral("close refused"));
    ASSERT_TRUE(probe().close(QStringLiteral("window:Subject")));
    EXPECT_EQ(m_subject.host.waitForExit(), 7) << qPrintable(m_subject.errorText());
    EXPECT_TRUE(probe().waitForDisconnect());
    EXPECT_FALSE(probe().waitForText(QStringLiteral("statusLabel"), QString(), 100));
}

TEST_P(ProbeTest, APartOfATextIsNotTakenForTheWhole)
{
    ASSERT_TRUE(probe().setText(QStringLiteral("fileEdit"), QStringLiteral("IAP Device Detected")));
    ASSERT_TRUE(probe().waitForText(QStringLiteral("fileEdit"), QStringLiteral("Device Detected")));
    EXPECT_FALSE(
        probe().waitForWholeText(QStringLiteral("fileEdit"), QStringLiteral("Device Detected"), 100));
    EXPECT_TRUE(probe().waitForWholeText(QStringLiteral("fileEdit"), QStringLiteral("IAP Device Detected")));
}

TEST_P(ProbeTest, ABlockedGuiThreadIsSeenAsALateTimer)
{
    dependsOnRealTime("the second for which the GUI thread sleeps");
    ASSERT_GE(probe().timerLate(), 0);
    ASSERT_TRUE(probe().click(QStringLiteral("sleepButton")));
    letItActOnEverything();
    const int late = probe().timerLate();
    EXPECT_GE(late, 400);
    EXPECT_LT(late, 4000);
    EXPECT_LT(probe().timerLate(), 400);
}

TEST_P(ProbeTest, PicturesOfWidgetsAreSaved)
{
    const QString path = m_subject.stage.workingFolder() + QStringLiteral("/window.png");
    EXPECT_TRUE(probe().grab(QStringLiteral("subjectWindow"), path)) << qPrintable(probe().errorText());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(4), QByteArray("\x89PNG"));
    EXPECT_FALSE(probe().grab(QStringLiteral("subjectWindow"), QStringLiteral("/no/such/folder.png")));
}

TEST_P(ProbeTest, ChildrenOfTheProgramDoNotInheritThePortFile)
{
    EXPECT_EQ(m_subject.reported(QStringLiteral("probe")), QLatin1String("unset"));
}

INSTANTIATE_TEST_SUITE_P(On, ProbeTest, testing::Values(Screen::Offscreen, Screen::Xvfb),
                         testing::PrintToStringParamName());

TEST(ProbeWithoutAPortFileTest, DoesNotAffectTheProgram)
{
    RunningSubject subject;
    subject.stage.setVariable(QStringLiteral("QUILLMARSH_PROBE_PORT_FILE"), QString());
    ASSERT_TRUE(subject.host.run(subject.stage.launch()));
    EXPECT_FALSE(subject.probe.connectThrough(subject.stage.probePortFile(), 300));
    EXPECT_TRUE(subject.host.programState().running);
    const auto tells = [&] {
        return subject.stage.standardError().contains(QLatin1String("QUILLMARSH_PROBE_PORT_FILE is not set"));
    };
    EXPECT_TRUE(pollUntil(tells));
    EXPECT_TRUE(subject.host.programState().running);
}

} // namespace
