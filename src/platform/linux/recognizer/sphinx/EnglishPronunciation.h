#pragma once

#include <QString>

struct lexicon_struct;

namespace tavrin {

/// How English speakers say a name, from flite's lexicon and its letter-to-sound rules, in the
/// phones of the CMU set that English Sphinx models use. One thread.
class EnglishPronunciation {
public:
    EnglishPronunciation();

    /// The phones of @p term, "CH AE T JH IY P IY T IY" for "ChatGPT": inner capitals begin a word,
    /// capitals in a row and digits are named one by one, everything else only separates. Empty
    /// when there is nothing to say, or letters that English does not know.
    [[nodiscard]] QString phonesOf(const QString& term) const;

private:
    [[nodiscard]] QString phonesOfWord(const QString& word) const;

    lexicon_struct* m_lexicon; // Static data of the library's.
};

} // namespace tavrin
