#pragma once

#include <string_view>

/// What is known about the words around a sound. All are asked for in simplified characters;
/// @p rest is a line from behind the sound.
namespace tavrin::devcloud {

/// A clause that can be nothing but the beginning of what stands in @p rest, so that a comma
/// between them was the sound's: 我想 before anything, 我要去 before a place, 一共 before an
/// amount.
bool leadsOnTo(std::u32string_view clause, std::u32string_view rest);

/// Whether a comma belongs between the two beyond doubt: 他买了票 and 我没买.
bool areApart(std::u32string_view clause, std::u32string_view rest);

/// 嗯 按钮, 嗯 这个字: whether the sound before them is spoken of.
bool isNamed(std::u32string_view rest);

/// What a speaker goes on with after he has won time, and nobody after an answer.
bool goesOn(std::u32string_view rest);

/// With this a 嗯 may be the answer.
bool mayAnswer(std::u32string_view rest);

/// 我呃想去: whether the two belong together beyond doubt.
bool areSubjectAndWish(std::u32string_view clause, std::u32string_view rest);

} // namespace tavrin::devcloud
