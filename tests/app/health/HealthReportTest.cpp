#include "app/health/HealthReport.h"

#include "app/health/HealthFixture.h"
#include "platform/linux/LinuxTexts.h"

using namespace Qt::StringLiterals;

namespace tavrin {
namespace {

class HealthReportTest : public testing::HealthFixture {
protected:
    void makeWell()
    {
        preferences.setValue(keys::cloudAccessToken, u"access"_s);
        preferences.setValue(keys::lastDeliveryVerified, true);
    }
};

TEST_F(HealthReportTest, EachVerdictIsALineWithItsTitle)
{
    texts = linuxTexts();
    makeWell();
    EXPECT_EQ(healthReport(read()),
        u"Accessibility: ✓ Allowed — can insert at the current cursor\n"
        u"Microphone: ✓ Allowed — listens only when triggered\n"
        u"Speech Recognition: ✓ Allowed — ready to transcribe\n"
        u"Tavrin Cloud: ✓ Signed in to Tavrin Cloud\n"
        u"Cursor delivery: ✓ Most recent insertion completed\n"
        u"Recogniser: ✓ Recogniser, language: Mandarin\n"_s);
}

TEST_F(HealthReportTest, AllIsWellAlsoBeforeTheFirstDelivery)
{
    makeWell();
    EXPECT_TRUE(isAllWell(read()));
    preferences.remove(keys::lastDeliveryVerified);
    EXPECT_TRUE(isAllWell(read()));
}

TEST_F(HealthReportTest, EveryProblemCounts)
{
    texts = linuxTexts();
    makeWell();
    const auto isWellDespite = [this](auto& value, auto worse) {
        const auto before = std::exchange(value, worse);
        const bool isWell = isAllWell(read());
        value = before;
        return isWell;
    };
    EXPECT_FALSE(isWellDespite(accessibility.trusted, false));
    EXPECT_FALSE(isWellDespite(permissions.microphone, AuthorizationStatus::NotDetermined));
    EXPECT_FALSE(isWellDespite(permissions.speech, AuthorizationStatus::Denied));
    EXPECT_FALSE(isWellDespite(recognizer.available, false));
    EXPECT_FALSE(isWellDespite(devices.device(1).silent, std::optional(true)));
    EXPECT_FALSE(isWellDespite(workspace.everyProgramReached, false));
    EXPECT_TRUE(isAllWell(read()));

    preferences.setValue(keys::lastDeliveryVerified, false);
    EXPECT_FALSE(isAllWell(read()));
    preferences.setValue(keys::lastDeliveryVerified, true);
    preferences.remove(keys::cloudAccessToken);
    EXPECT_FALSE(isAllWell(read()));
}

} // namespace
} // namespace tavrin
