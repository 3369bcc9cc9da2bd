#include "devcloud/polish/Corpus.h"

#include "devcloud/polish/Polish.h"
#include "devcloud/text/Utf8.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <unicode/translit.h>

namespace tavrin::devcloud {
namespace {

using testing::corpus;
using testing::CorpusEntry;

/// Turns simplified characters into traditional ones.
class Traditional {
public:
    Traditional()
    {
        UErrorCode status = U_ZERO_ERROR;
        m_converter.reset(
            icu::Transliterator::createInstance("Simplified-Traditional", UTRANS_FORWARD, status));
    }

    std::string operator()(const std::string& text) const
    {
        icu::UnicodeString converted = icu::UnicodeString::fromUTF8(text);
        m_converter->transliterate(converted);
        std::string result;
        return converted.toUTF8String(result);
    }

private:
    std::unique_ptr<icu::Transliterator> m_converter;
};

TEST(CorpusTest, HoldsEnoughSentencesOfEachKind)
{
    std::set<std::string> said;
    std::set<Style> styles;
    for (const CorpusEntry& entry : corpus()) {
        said.insert(entry.said + static_cast<char>('0' + static_cast<int>(entry.style)));
        styles.insert(entry.style);
    }

    EXPECT_GE(said.size(), 600U);
    EXPECT_EQ(styles.size(), 6U);
}

TEST(CorpusTest, EachSentenceIsWrittenAsAnEditorWould)
{
    for (const CorpusEntry& entry : corpus())
        EXPECT_EQ(polish(entry.said, entry.style), entry.wanted) << entry.place;
}

TEST(CorpusTest, TraditionalCharactersGetWhatSimplifiedOnesGet)
{
    const Traditional traditional;
    int compared = 0;
    for (const CorpusEntry& entry : corpus()) {
        const std::string said = traditional(entry.said);
        if (said == entry.said)
            continue;
        EXPECT_EQ(polish(said, entry.style), traditional(entry.wanted)) << entry.place;
        ++compared;
    }
    EXPECT_GE(compared, 150);
}

TEST(CorpusTest, WhatIsWrittenOnceStaysAsItIs)
{
    for (const CorpusEntry& entry : corpus()) {
        const std::string once = polish(entry.said, Style::Professional);
        EXPECT_EQ(polish(once, Style::Professional), once) << entry.place;
    }
}

TEST(CorpusTest, SpaceAroundASentenceChangesNothing)
{
    for (const CorpusEntry& entry : corpus())
        EXPECT_EQ(polish(" \n" + entry.said + " \t\n", entry.style), entry.wanted) << entry.place;
}

} // namespace
} // namespace tavrin::devcloud
