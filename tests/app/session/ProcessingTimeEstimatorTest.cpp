#include "app/session/ProcessingTimeEstimator.h"

#include "platform/preferences/PreferenceKeys.h"
#include "support/ports/InMemoryPreferences.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tavrin {
namespace {

constexpr Seconds notANumber{std::numeric_limits<double>::quiet_NaN()};
constexpr Seconds endless{std::numeric_limits<double>::infinity()};

class ProcessingTimeEstimatorTest : public ::testing::Test {
protected:
    testing::InMemoryPreferences preferences;
    ProcessingTimeEstimator estimator{preferences};

    static QVariantMap sample(const QVariant& audio, const QVariant& processing)
    {
        return {{u"audio"_s, audio}, {u"processing"_s, processing}};
    }

    void store(const QVariantList& samples)
    {
        preferences.setValue(keys::processingTimingSamples, samples);
    }

    QList<double> storedProcessing() const
    {
        QList<double> result;
        for (const QVariant& stored : preferences.value(keys::processingTimingSamples).toList())
            result.append(stored.toMap().value(u"processing"_s).toDouble());
        return result;
    }

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

TEST_F(ProcessingTimeEstimatorTest, ALongerRecordingTakesLonger)
{
    estimator.recordProcessingDuration(3s, 10s);
    estimator.recordProcessingDuration(3s, 10s);

    EXPECT_NEAR(estimateInSeconds(40s), 4.069813, 1e-6); // 3 s × 4^0.22
    EXPECT_NEAR(estimateInSeconds(5s), 2.575696, 1e-6); // 3 s × 0.5^0.22
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

TEST_F(ProcessingTimeEstimatorTest, NoSessionGivesNoEstimate)
{
    EXPECT_FALSE(estimator.estimatedProcessingDurationForAudio(10s).has_value());
}

TEST_F(ProcessingTimeEstimatorTest, ASessionIsStoredAsItsTwoDurations)
{
    estimator.recordProcessingDuration(3s, 10500ms);

    EXPECT_EQ(preferences.value(keys::processingTimingSamples),
        QVariant(QVariantList{QVariantMap{{u"audio"_s, 10.5}, {u"processing"_s, 3.0}}}));
    EXPECT_EQ(preferences.synchronizations(), 0);
}

TEST_F(ProcessingTimeEstimatorTest, EmptySessionsLeaveTheKnownOnesAlone)
{
    estimator.recordProcessingDuration(3s, 10s);
    const QVariant before = preferences.value(keys::processingTimingSamples);

    for (const Seconds impossible : {Seconds(0), Seconds(-1), notANumber, endless, -endless}) {
        estimator.recordProcessingDuration(impossible, 10s);
        estimator.recordProcessingDuration(3s, impossible);
    }

    EXPECT_EQ(preferences.value(keys::processingTimingSamples), before);
}

TEST_F(ProcessingTimeEstimatorTest, TheTwentyFirstSessionDisplacesTheOldest)
{
    for (int session = 1; session <= 20; ++session)
        estimator.recordProcessingDuration(Seconds(session), 10s);
    EXPECT_EQ(storedProcessing(),
        (QList<double>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));

    estimator.recordProcessingDuration(21s, 10s);
    EXPECT_EQ(storedProcessing(),
        (QList<double>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}));
}

TEST_F(ProcessingTimeEstimatorTest, AnOverlongStoredListIsCutToTheNewestTwenty)
{
    QVariantList samples;
    for (int session = 1; session <= 40; ++session)
        samples.append(sample(10, session));
    store(samples);

    estimator.recordProcessingDuration(41s, 10s);

    ASSERT_EQ(storedProcessing().size(), 20);
    EXPECT_EQ(storedProcessing().first(), 22.0);
    EXPECT_EQ(storedProcessing().last(), 41.0);
}

TEST_F(ProcessingTimeEstimatorTest, StoredSessionsWithoutProcessingTimeAreSkipped)
{
    store({sample(10, 3), sample(10, 0), sample(10, -5)});
    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 3.0);

    store({sample(10, 0), sample(10, -5)});
    EXPECT_FALSE(estimator.estimatedProcessingDurationForAudio(10s).has_value());
}

TEST_F(ProcessingTimeEstimatorTest, StoredWholeNumbersAreNumbersToo)
{
    store({sample(10, 3LL), sample(10LL, 5)});

    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 4.0);
}

TEST_F(ProcessingTimeEstimatorTest, AStoredSessionWithoutUsableLengthCountsAsOneSecond)
{
    for (const QVariant& length : {QVariant(), QVariant(u"10"_s), QVariant(true), QVariant(-3),
             QVariant(notANumber.count()), QVariant(endless.count())}) {
        store({sample(length, 3), sample(length, 5)});
        EXPECT_DOUBLE_EQ(estimateInSeconds(1s), 4.0) << length.typeName();
    }
}

TEST_F(ProcessingTimeEstimatorTest, StoredSessionsOfTheWrongTypeAreSkipped)
{
    store({sample(10, u"3"_s), sample(10, QVariant(QVariantList{3})), sample(10, true),
        sample(10, notANumber.count()), sample(10, endless.count()), u"sample"_s, 7, QVariant(),
        QVariantList{10, 3}, sample(10, 4)});

    EXPECT_DOUBLE_EQ(estimateInSeconds(10s), 4.0);
}

TEST_F(ProcessingTimeEstimatorTest, AStoredValueThatIsNoListCountsAsEmpty)
{
    for (const QVariant& garbage : {QVariant(u"samples"_s), QVariant(7), QVariant(sample(10, 3)),
             QVariant::fromValue(nullptr), QVariant(QByteArray("[]"))}) {
        preferences.setValue(keys::processingTimingSamples, garbage);
        EXPECT_FALSE(estimator.estimatedProcessingDurationForAudio(10s).has_value());

        estimator.recordProcessingDuration(3s, 10s);
        EXPECT_EQ(storedProcessing(), QList<double>{3});
    }
}

TEST_F(ProcessingTimeEstimatorTest, AnImpossibleLengthNeverGivesAnImpossibleEstimate)
{
    store({sample(1, 3), sample(1, 5)});

    EXPECT_DOUBLE_EQ(estimateInSeconds(notANumber), 4.0);
    EXPECT_DOUBLE_EQ(estimateInSeconds(-5s), 4.0);
    EXPECT_FALSE(estimator.estimatedProcessingDurationForAudio(endless).has_value());

    store({sample(1, 1e300), sample(1, 1e300)});
    EXPECT_DOUBLE_EQ(estimateInSeconds(1s), 45.0);
}

} // namespace
} // namespace tavrin
