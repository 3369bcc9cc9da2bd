#pragma once

#include "base/LocalizedText.h"

/// Texts of the dictionary page; those of the dialog that edits a term stand in EditTermTexts.h.
namespace tavrin::texts {

inline constexpr LocalizedText dictionaryTitle{u"词典", u"詞典", u"Dictionary"};
inline constexpr LocalizedText dictionarySubtitle{u"保存人名和惯用写法，提升识别与 AI 整理的效果。",
    u"儲存人名與慣用寫法，提升辨識與 AI 整理的效果。",
    u"Save names and preferred spellings to improve recognition and AI editing."};

inline constexpr LocalizedText searchTerms{u"搜索词条", u"搜尋詞條", u"Search terms"};
inline constexpr LocalizedText allTerms{u"全部", u"全部", u"All"};
inline constexpr LocalizedText learnedTerms{u"已学习", u"已學習", u"Learned"};
inline constexpr LocalizedText manualTerms{u"手动", u"手動", u"Manual"};

inline constexpr LocalizedText enterTerm{
    u"输入词条，例如 Tavrin", u"輸入詞條，例如 Tavrin", u"Enter a term, for example Tavrin"};
inline constexpr LocalizedText addTerm{u"添加词条", u"新增詞條", u"Add term"};
inline constexpr LocalizedText learnCorrections{
    u"从修改中学习", u"從修改中學習", u"Learn corrections"};
inline constexpr LocalizedText openWritingStyle{u"写作风格…", u"寫作風格…", u"Writing style…"};

inline constexpr LocalizedText learnedBadge{u"✦ 已学习", u"✦ 已學習", u"✦ Learned"};
inline constexpr LocalizedText manualBadge{u"手动", u"手動", u"Manual"};
inline constexpr LocalizedText editRow{u"编辑", u"編輯", u"Edit"};
inline constexpr LocalizedText deleteRow{u"删除", u"刪除", u"Delete"};
/// The same for those who hear the buttons, with the term of the row.
inline constexpr LocalizedText editNamedRow{u"编辑 %1", u"編輯 %1", u"Edit %1"};
inline constexpr LocalizedText deleteNamedRow{u"删除 %1", u"刪除 %1", u"Delete %1"};

/// The terms in all, and those of them that were learned.
inline constexpr LocalizedText termCount{
    u"%1 个词条，已学习 %2 个", u"%1 個詞條，已學習 %2 個", u"%1 terms, %2 learned"};
inline constexpr LocalizedText noMatchingTerms{
    u"没有匹配的词条", u"沒有符合的詞條", u"No matching terms"};
inline constexpr LocalizedText noTermsYet{u"还没有词条。请在上方添加第一个人名或惯用写法。",
    u"還沒有詞條。請在上方新增第一個人名或慣用寫法。",
    u"No terms yet. Add your first name or preferred spelling above."};

} // namespace tavrin::texts
