#include "app/ProcessingTimeEstimator.h"

#include "platform/PreferenceKeys.h"
#include "support/InMemoryPreferences.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace tavrin {
namespace {

class ProcessingTimeEstimatorTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    ProcessingTimeEstimator estimator{preferences};

    double estimateInSeconds(Seconds audio) const
    {
        return estimator.estimatedProcessingDurationForAudio(audio).value().count();
    }
};

TEST_F(ProcessingTimeEstimatorTest, OneSessionGivesNoEstimate)
{
    estimator.recordProcessingDuration(3s, 10s);

    EXPECT_FALSE(estimator.estimatedProcessingDurationForAudio(10s).has_value());
}

TEST_F(ProcessingTimeEstimatorTest, SessionsOfEqualLengthAreAveraged)
{
    estimator.recordProcessingDuration(3s, 10s);
    estimator.recordProcessingDuration(5s, 10s);

    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 4.0);
}

TEST_F(ProcessingTimeEstimatorTest, AudioUnderOneSecondCountsAsOneSecond)
{
    estimator.recordProcessingDuration(2s, 800ms);
    estimator.recordProcessingDuration(2s, 1s);

    EXPECT_DOUBLE_EQ(estimateInSeconds(400ms), 2.0);
}

TEST_F(ProcessingTimeEstimatorTest, EstimateStaysWithinItsLimits)
{
    estimator.recordProcessingDuration(900ms, 10s);
    estimator.recordProcessingDuration(900ms, 10s);
    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 1.5);

    for (int session = 0; session < 20; ++session)
        estimator.recordProcessingDuration(60s, 10s);
    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 45.0);
}

TEST_F(ProcessingTimeEstimatorTest, SessionsOfOtherLengthsAreScaledAndCountLess)
{
    estimator.recordProcessingDuration(3s, 10s); // Weight 1 / 0.35, scaled to 3 s.
    estimator.recordProcessingDuration(6s, 20s); // Weight 1 / (ln 2 + 0.35), to 6 s × 0.5^0.22.

    EXPECT_NEAR(estimateInSeconds(10s), 3.540494, 1e-6);
}

TEST_F(ProcessingTimeEstimatorTest, OnlyTheNewestTwentySessionsAreKept)
{
    for (int session = 1; session <= 25; ++session)
        estimator.recordProcessingDuration(Seconds(session), 10s);

    const QVariantList samples = preferences.value(keys::processingTimingSamples).toList();
    ASSERT_EQ(samples.size(), 20);
    EXPECT_EQ(samples.first().toMap().value("processing").toDouble(), 6.0);
}

TEST_F(ProcessingTimeEstimatorTest, EmptySessionsAreIgnored)
{
    estimator.recordProcessingDuration(0s, 10s);
    estimator.recordProcessingDuration(3s, 0s);

    EXPECT_FALSE(preferences.value(keys::processingTimingSamples).isValid());
}

} // namespace
} // namespace tavrin
