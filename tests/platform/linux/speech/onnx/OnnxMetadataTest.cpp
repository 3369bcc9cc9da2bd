#include "platform/linux/speech/onnx/OnnxMetadata.h"

#include "platform/linux/speech/onnx/OnnxBytes.h"
#include "support/QtPrinters.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

namespace tavrin {
namespace {

using testing::field;
using testing::numberField;
using testing::onnxFile;
using testing::property;
using testing::varint;

OnnxResult<OnnxMetadata> read(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return readOnnxMetadata(buffer, "m.onnx");
}

const OnnxProblem malformed{OnnxFault::Malformed, "m.onnx"};

class OnnxMetadataFileTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    QString path() const { return folder.filePath("m.onnx"); }

    QFile& write(const QByteArray& bytes)
    {
        m_file.setFileName(path());
        EXPECT_TRUE(m_file.open(QIODevice::WriteOnly));
        EXPECT_EQ(m_file.write(bytes), bytes.size());
        EXPECT_TRUE(m_file.flush());
        return m_file;
    }

private:
    QFile m_file;
};

TEST(OnnxMetadataTest, PropertiesInputsAndOutputsAreRead)
{
    const auto metadata = read(onnxFile({.properties = {{"model_type", "zipformer2"}, {"T", "45"}},
        .inputs = {"x", "cached_key_0", "processed_lens"},
        .outputs = 4}));

    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->properties,
        (QHash<QByteArray, QByteArray>{{"model_type", "zipformer2"}, {"T", "45"}}));
    EXPECT_EQ(metadata->inputs, (QStringList{"x", "cached_key_0", "processed_lens"}));
    EXPECT_EQ(metadata->outputs, 4);
    EXPECT_EQ(metadata->producer, "by-hand");
}

TEST(OnnxMetadataTest, FieldsMayComeInAnyOrderWithOthersOfEveryKindBetween)
{
    const QByteArray others = numberField(5, 1) + varint(200 << 3 | 1) + QByteArray(8, 'e')
        + varint(201 << 3 | 5) + QByteArray(4, 'f') + field(202, "bytes");
    const auto metadata =
        read(property("a", "1") + others + onnxFile({.properties = {{"b", "2"}}}) + others);

    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->properties.value("a"), "1");
    EXPECT_EQ(metadata->properties.value("b"), "2");
}

TEST(OnnxMetadataTest, OfAKeyThatStandsThereTwiceTheLastHolds)
{
    const auto metadata = read(onnxFile({.properties = {{"k", "first"}, {"k", "second"}}}));

    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->properties.value("k"), "second");
}

TEST(OnnxMetadataTest, AModelWithoutPropertiesHasNone)
{
    const auto metadata = read(onnxFile({}));

    ASSERT_TRUE(metadata);
    EXPECT_TRUE(metadata->properties.isEmpty());
    EXPECT_EQ(metadata->inputs.size(), 2);
}

TEST(OnnxMetadataTest, OverlongKeysAndValuesAreLeftOut)
{
    const QByteArray longest(64LL * 1024, 'v');
    const auto metadata = read(onnxFile(
        {.properties = {{"whole", longest}, {"cut", longest + 'v'}, {QByteArray(257, 'k'), "1"}}}));

    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->properties.value("whole"), longest);
    EXPECT_TRUE(metadata->properties.value("cut").isEmpty());
    EXPECT_EQ(metadata->properties.size(), 2);
}

TEST(OnnxMetadataTest, WhatIsNoModelIsRefused)
{
    EXPECT_EQ(read("").error(), malformed);
    EXPECT_EQ(read("not an onnx file").error(), malformed);
    EXPECT_EQ(read(property("k", "v")).error(), malformed) << "no graph";
    EXPECT_EQ(read(numberField(7, 1)).error(), malformed) << "a graph that is a number";
}

TEST(OnnxMetadataTest, ALengthBeyondTheEndIsRefused)
{
    const QByteArray model = onnxFile({});
    for (const quint64 length : {quint64{1}, quint64{1} << 31, quint64{1} << 62, ~quint64{0}}) {
        const QByteArray beyond = varint(14 << 3 | 2) + varint(length);
        EXPECT_EQ(read(model + beyond).error(), malformed) << length;
        EXPECT_EQ(read(field(7, varint(1 << 3 | 2) + varint(length))).error(), malformed) << length;
    }
}

TEST(OnnxMetadataTest, NumbersOfMoreThanTenBytesAreRefused)
{
    const QByteArray ten = QByteArray(9, '\xff') + '\x01';
    const QByteArray eleven = QByteArray(10, '\xff') + '\x01';
    const QByteArray model = onnxFile({});

    EXPECT_TRUE(read(model + varint(1 << 3) + ten));
    EXPECT_EQ(read(model + varint(1 << 3) + eleven).error(), malformed);
    EXPECT_EQ(read(model + eleven).error(), malformed);
}

TEST(OnnxMetadataTest, TagsThatProtobufDoesNotHaveAreRefused)
{
    const QByteArray model = onnxFile({});
    for (const quint64 wire : {3U, 4U, 6U, 7U})
        EXPECT_EQ(read(model + varint(20 << 3 | wire) + varint(0)).error(), malformed) << wire;
    EXPECT_EQ(read(model + varint(0) + varint(0)).error(), malformed) << "field 0";
    EXPECT_EQ(read(model + varint(quint64{1} << 40) + varint(0)).error(), malformed);
}

TEST(OnnxMetadataTest, EveryTruncationIsRefusedOrLosesOnlyPropertiesAtTheEnd)
{
    const QByteArray whole = onnxFile({.properties = {{"a", "1"}, {"b", "2"}}});
    const qsizetype graphEnd = onnxFile({}).size();
    for (qsizetype size = 0; size < whole.size(); ++size) {
        const auto metadata = read(whole.left(size));
        if (metadata) {
            EXPECT_GE(size, graphEnd);
            EXPECT_LT(metadata->properties.size(), 2);
        } else {
            EXPECT_EQ(metadata.error(), malformed);
        }
    }
}

TEST(OnnxMetadataTest, ANestedMessageEndsWhereItsLengthSays)
{
    // The key's length reaches into the value: within the property, but not within the key's rest.
    const QByteArray inner = varint(1 << 3 | 2) + varint(100) + "key";
    EXPECT_EQ(read(onnxFile({}) + field(14, inner) + QByteArray(200, '\x08')).error(), malformed);
}

TEST(OnnxMetadataTest, MoreFieldsThanAnyModelHasAreRefused)
{
    QByteArray graph;
    for (int i = 0; i <= 1'000'000; ++i)
        graph += QByteArray("\x08\x01");
    EXPECT_EQ(read(field(7, graph)).error(), malformed);

    QByteArray properties;
    for (int i = 0; i <= 1000; ++i)
        properties += property("key" + QByteArray::number(i), "v");
    EXPECT_EQ(read(onnxFile({}) + properties).error(), malformed);
}

TEST_F(OnnxMetadataFileTest, AFileOfGigabytesIsReadInNoTimeAndWithoutItsWeights)
{
    // A file with a hole: two gigabytes of weights that take no room on the disk.
    constexpr qint64 weights = 2LL * 1024 * 1024 * 1024;
    const QByteArray inputs = field(11, field(1, "x"));
    const QByteArray head = varint(5 << 3 | 2) + varint(weights);
    QFile& file = write(varint(7 << 3 | 2)
        + varint(static_cast<quint64>(head.size() + weights + inputs.size())) + head);
    ASSERT_TRUE(file.seek(file.pos() + weights));
    file.write(inputs + property("T", "45"));
    file.close();
    ASSERT_GT(QFileInfo(path()).size(), weights);

    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    QElapsedTimer timer;
    timer.start();
    const auto metadata = readOnnxMetadata(path());
    EXPECT_LT(timer.elapsed(), 1000);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);

    ASSERT_TRUE(metadata);
    EXPECT_EQ(metadata->properties.value("T"), "45");
    EXPECT_EQ(metadata->inputs, QStringList{"x"});
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 10'000) << "kilobytes";
}

TEST_F(OnnxMetadataFileTest, AFileTellsItsNameInTheProblem)
{
    write("not an onnx file").close();
    EXPECT_EQ(readOnnxMetadata(path()).error(), malformed);
}

TEST_F(OnnxMetadataFileTest, WhatIsNoFileIsRefusedAtOnce)
{
    const OnnxProblem unreadable{OnnxFault::Unreadable, path()};
    EXPECT_EQ(readOnnxMetadata(path()).error(), unreadable) << "nothing";

    ASSERT_EQ(mkfifo(QFile::encodeName(path()).constData(), 0600), 0);
    EXPECT_EQ(readOnnxMetadata(path()).error(), unreadable) << "a pipe that nobody writes into";
    QFile::remove(path());

    QDir().mkdir(path());
    EXPECT_EQ(readOnnxMetadata(path()).error(), unreadable) << "a folder";
}

} // namespace
} // namespace tavrin
