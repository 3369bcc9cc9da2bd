#include "platform/linux/speech/protocol/RecognizerProtocol.h"

#include "platform/linux/speech/engine/SpeechEngineTexts.h"
#include "platform/linux/speech/onnx/OnnxProblem.h"
#include "platform/linux/speech/onnx/OnnxTexts.h"
#include "support/QtPrinters.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace Qt::StringLiterals;

namespace tavrin::recognizer {
namespace {

/// A message of bytes, which need not make sense.
QByteArray raw(quint32 length, const QByteArray& rest)
{
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes.append(static_cast<char>(length >> shift));
    return bytes + rest;
}

TEST(RecognizerProtocolTest, AMessageIsItsLengthItsKindItsNumbersAndItsContent)
{
    EXPECT_EQ(toBytes({MessageKind::Sound, 0x01020304, 5, "ab"}),
        QByteArray::fromHex("0b000000"
                            "02"
                            "04030201"
                            "05000000"
                            "6162"));
}

TEST(RecognizerProtocolTest, MessagesAreFoundHoweverTheyArrive)
{
    const Message first{MessageKind::Begin, 1, 7, "content"};
    const Message second{MessageKind::Failed, 2, 8, {}};
    const QByteArray bytes = toBytes(first) + toBytes(second);
    for (qsizetype size = 1; size <= bytes.size(); ++size) {
        MessageReader reader;
        QList<Message> found;
        for (qsizetype at = 0; at < bytes.size(); at += size) {
            reader.append(QByteArrayView(bytes).sliced(at, std::min(size, bytes.size() - at)));
            while (auto message = reader.next())
                found.append(*message);
        }
        EXPECT_EQ(found, (QList<Message>{first, second})) << size;
        EXPECT_FALSE(reader.isBroken());
    }
}

TEST(RecognizerProtocolTest, WhatIsNoMessageEndsTheReading)
{
    const QByteArray good = toBytes({MessageKind::Hello, 0, 0, {}});
    for (const QByteArray& bad : {raw(0, {}), raw(8, QByteArray(8, 'x')), raw((1U << 20) + 1, {}),
             raw(0xFFFFFFFF, {}), raw(9, QByteArray(9, '\0')), raw(9, QByteArray(9, '\5')),
             raw(9, QByteArray(9, '\x47')), raw(9, QByteArray(9, '\xFF'))}) {
        MessageReader reader;
        reader.append(good + bad + good);
        EXPECT_TRUE(reader.next());
        EXPECT_FALSE(reader.next()) << bad.toHex().toStdString();
        EXPECT_TRUE(reader.isBroken()) << bad.toHex().toStdString();
        EXPECT_FALSE(reader.next());
    }
}

TEST(RecognizerProtocolTest, TheLongestMessageArrivesAndALongerOneIsNotMade)
{
    const Message longest{MessageKind::Done, 1, 1, QByteArray((1 << 20) - 9, 'x')};
    MessageReader reader;
    reader.append(toBytes(longest));
    EXPECT_EQ(reader.next(), longest);
    EXPECT_TRUE(toBytes({MessageKind::Done, 1, 1, QByteArray((1 << 20) - 8, 'x')}).isEmpty());
}

TEST(RecognizerProtocolTest, ARequestArrivesWhole)
{
    const SpeechRequest request{true, SpeechTaskHint::Dictation, {u"麦克风"_s, u"Tavrin"_s}, true};
    EXPECT_EQ(readRequest(requestContent(request)), request);
    EXPECT_EQ(readRequest(requestContent({})), SpeechRequest());
}

TEST(RecognizerProtocolTest, OfManyTermsTheFirstThousandAreSentAndLongOnesNotAtAll)
{
    SpeechRequest request;
    request.contextualStrings.append(QString(201, u'x'));
    request.contextualStrings.append(QString(200, u'y'));
    for (int i = 0; i < 5'000; ++i)
        request.contextualStrings.append(QString::number(i));
    const auto read = readRequest(requestContent(request));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->contextualStrings.size(), 1'000);
    EXPECT_EQ(read->contextualStrings.first(), QString(200, u'y'));
    EXPECT_EQ(read->contextualStrings.last(), u"998"_s);
}

TEST(RecognizerProtocolTest, SoundArrivesSampleBySample)
{
    std::vector<qint16> samples(24'000);
    std::iota(samples.begin(), samples.end(), qint16(-12'000));
    EXPECT_EQ(readSound(soundContent(samples)), samples);
    EXPECT_EQ(readSound(soundContent({})), std::vector<qint16>());
    EXPECT_EQ(soundContent(std::vector<qint16>{1, -2}), QByteArray::fromHex("0100feff"));
}

TEST(RecognizerProtocolTest, TextsNumbersAndStatesArriveWhole)
{
    EXPECT_EQ(readText(textContent(u"你好，world 🎙"_s)), u"你好，world 🎙"_s);
    EXPECT_EQ(readText(textContent({})), QString());
    EXPECT_EQ(readVersion(versionContent(7)), 7U);
    EXPECT_EQ(readFailure(failureContent(-3)), -3);
    const EngineState state{true, 2, u"/models/en"_s};
    EXPECT_EQ(readState(stateContent(state)), state);
}

TEST(RecognizerProtocolTest, OfATextThatIsTooLongTheEndIsSent)
{
    const auto read = readText(textContent(QString(300'000, u'a') + QString(199'999, u'b') + u'c'));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, QString(199'999, u'b') + u'c');
}

TEST(RecognizerProtocolTest, AContentThatIsCutOrTooLongReadsAsNothing)
{
    const auto refused = [](const QByteArray& content, auto read) {
        for (qsizetype size = 0; size < content.size(); ++size)
            EXPECT_FALSE(read(content.first(size))) << size;
        EXPECT_FALSE(read(content + 'x'));
    };
    refused(versionContent(1), readVersion);
    refused(stateContent({true, 1, u"abc"_s}), readState);
    refused(requestContent({true, SpeechTaskHint::Search, {u"term"_s}, false}), readRequest);
    refused(textContent(u"text"_s), readText);
    refused(failureContent(4), readFailure);
    EXPECT_FALSE(readSound("abc"));
    EXPECT_FALSE(readSound(QByteArray(48'002, '\0')));
}

TEST(RecognizerProtocolTest, AContentThatClaimsTooMuchReadsAsNothing)
{
    EXPECT_FALSE(readText(QByteArray::fromHex("7ffffffe")));
    EXPECT_FALSE(readText(QByteArray::fromHex("fffffffe")));
    EXPECT_FALSE(readText(QByteArray::fromHex("00061a82") + QByteArray(400'002, 'a')));
    EXPECT_FALSE(readRequest(QByteArray::fromHex("01"
                                                 "04"
                                                 "00"
                                                 "0000"))); // No such hint.
    EXPECT_FALSE(readRequest(QByteArray::fromHex("01"
                                                 "01"
                                                 "00"
                                                 "ffff")));
    EXPECT_FALSE(readRequest(QByteArray::fromHex("01"
                                                 "01"
                                                 "00"
                                                 "0001"
                                                 "7ffffffe")));
    EXPECT_FALSE(readRequest(QByteArray::fromHex("01"
                                                 "01"
                                                 "00"
                                                 "0001"
                                                 "00000192")
        + QByteArray(402, 'a'))); // A term of 201 units.
    EXPECT_FALSE(readState(QByteArray::fromHex("01"
                                               "0000"
                                               "00002002")
        + QByteArray(8'194, 'a')));
}

TEST(RecognizerProtocolTest, AStateTellsWhatTheEngineSaysOfItself)
{
    for (const SpeechAvailability& said : {SpeechAvailability{true, texts::sphinxReady, u"en"_s},
             SpeechAvailability{false, texts::noSphinxModel, {}},
             SpeechAvailability{false, texts::brokenSphinxModel, u"/models/x"_s},
             SpeechAvailability{true, texts::onnxReady, u"zipformer"_s}}) {
        const auto heard = availabilityOf(stateOf(said));
        ASSERT_TRUE(heard);
        EXPECT_EQ(heard->isAvailable, said.isAvailable);
        EXPECT_EQ(heard->text.en, said.text.en);
        EXPECT_EQ(heard->argument, said.argument);
    }
    EXPECT_FALSE(availabilityOf({true, 24, {}}));
    EXPECT_FALSE(availabilityOf({true, 0xFFFF, {}}));
}

TEST(RecognizerProtocolTest, EveryProblemOfANeuralModelCanBeTold)
{
    for (int fault = 1; fault <= static_cast<int>(OnnxFault::ModelRefused); ++fault) {
        const LocalizedText text = textOf(static_cast<OnnxFault>(fault));
        const auto heard = availabilityOf(stateOf({false, text, u"file"_s}));
        ASSERT_TRUE(heard) << fault;
        EXPECT_EQ(heard->text.en, text.en);
    }
}

} // namespace
} // namespace tavrin::recognizer
