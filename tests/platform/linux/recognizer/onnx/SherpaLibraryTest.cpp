#include "platform/linux/recognizer/onnx/SherpaLibrary.h"

#include "support/QtPrinters.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

const QString realFolder = QStringLiteral(TAVRIN_SHERPA_FOLDER);
const QString fakeFolder = QStringLiteral(TAVRIN_FAKE_SHERPA_FOLDER);

/// A folder with files of the test's choice. What fails comes first here: a library that was loaded
/// stays for the rest of the process.
class SherpaLibraryTest : public ::testing::Test {
protected:
    QTemporaryDir folder;

    QString library() const { return folder.filePath("libsherpa-onnx-c-api.so"); }

    QString partner() const { return folder.filePath("libonnxruntime.so"); }

    static void write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    static OnnxProblem problem(const QString& of)
    {
        const auto opened = SherpaLibrary::open(of);
        EXPECT_FALSE(opened);
        return opened ? OnnxProblem{} : opened.error();
    }
};

TEST_F(SherpaLibraryTest, AFolderWithoutTheLibraryIsTold)
{
    EXPECT_EQ(problem(folder.path()), (OnnxProblem{OnnxFault::NoLibrary, library()}));
    EXPECT_EQ(problem(folder.filePath("absent")).fault, OnnxFault::NoLibrary);
    EXPECT_EQ(problem("").fault, OnnxFault::NoLibrary);
}

TEST_F(SherpaLibraryTest, ALibraryWithoutItsPartnerIsNotEvenLoaded)
{
    ASSERT_TRUE(QFile::copy(realFolder + "/libsherpa-onnx-c-api.so", library()));
    EXPECT_EQ(problem(folder.path()), (OnnxProblem{OnnxFault::NoPartner, partner()}));
}

TEST_F(SherpaLibraryTest, WhatIsNoLibraryIsTold)
{
    write(library(), "no library");
    write(partner(), "no library");
    const OnnxProblem told = problem(folder.path());
    EXPECT_EQ(told.fault, OnnxFault::LibraryBroken);
    EXPECT_TRUE(told.detail.contains("libsherpa-onnx-c-api.so")) << told.detail.toStdString();
}

TEST_F(SherpaLibraryTest, ABrokenPartnerIsTold)
{
    ASSERT_TRUE(QFile::copy(realFolder + "/libsherpa-onnx-c-api.so", library()));
    write(partner(), "no library");
    const OnnxProblem told = problem(folder.path());
    EXPECT_EQ(told.fault, OnnxFault::LibraryBroken);
    EXPECT_TRUE(told.detail.contains("libonnxruntime.so")) << told.detail.toStdString();
}

TEST_F(SherpaLibraryTest, AnotherVersionIsToldWithThoseThatAreKnown)
{
    EXPECT_EQ(problem(fakeFolder + "/other-version"),
        (OnnxProblem{OnnxFault::LibraryVersion, "1.14.0 (1.13.5, 1.13.6, 1.13.7, 1.13.8)"}));
}

TEST_F(SherpaLibraryTest, AMissingFunctionIsTold)
{
    EXPECT_EQ(problem(fakeFolder + "/incomplete"),
        (OnnxProblem{OnnxFault::LibraryIncomplete, "SherpaOnnxCreateOnlineRecognizer"}));
}

TEST_F(SherpaLibraryTest, TheLibraryIsLoadedOnceForTheWholeProcess)
{
    const auto first = SherpaLibrary::open(realFolder);
    ASSERT_TRUE(first) << first.error().detail.toStdString();
    EXPECT_STREQ((*first)->versionText(), "1.13.8");
    EXPECT_EQ(SherpaLibrary::open(realFolder + "/../" + realFolder.section('/', -1)), first);

    EXPECT_EQ(problem(fakeFolder + "/other-version").fault, OnnxFault::OtherLibrary);
}

} // namespace
} // namespace tavrin
