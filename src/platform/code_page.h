// Code page 1251: conversion, letter case and blanks.
//
// Text inside the engine is single-byte text in this code page, any byte value allowed; text at the
// boundary and every path is wide. The tables are fixed: the process locale is never asked.
#pragma once

#include <string>
#include <string_view>

namespace orv::platform {

/// The one character that counts as a blank; tabs and line ends do not.
inline constexpr char kBlank = ' ';

/// The wide character of a byte. Every byte has one of its own, so bytes -> wide -> bytes loses
/// nothing; byte 0x98, which the page leaves out, stands for U+0098.
wchar_t ToWide(char byte) noexcept;
/// The byte of a wide character; "?" for a character that the page does not have.
char ToByte(wchar_t wide) noexcept;
/// Whether the page has a byte for the character.
bool HasByte(wchar_t wide) noexcept;

/// Whether every byte is an ASCII character, the same in all code pages that matter here.
bool IsAscii(std::string_view bytes) noexcept;

std::wstring ToWide(std::string_view bytes);
/// One byte a character; a surrogate pair is one character.
std::string ToBytes(std::wstring_view wide);
/// The same, into a buffer whose old content is replaced.
void ToWide(std::string_view bytes, std::wstring& wide);
/// The same, in a buffer that only ever grows; the view is good until its next use.
std::string_view ToBytes(std::wstring_view wide, std::string& room);

/// The small letter of a capital letter of the page (Latin, Cyrillic with U+0401, the page's other
/// letters); every other byte is itself.
char FoldCase(char byte) noexcept;
std::string FoldCase(std::string_view bytes);
void FoldCaseInPlace(std::string& bytes) noexcept;
/// The same through the page; characters outside it are left as they are.
wchar_t FoldCase(wchar_t wide) noexcept;
std::wstring FoldCase(std::wstring_view wide);

/// The text without the blanks at its two ends (at its start, at its end). The view points into the
/// argument.
std::string_view Trim(std::string_view text) noexcept;
std::string_view TrimLeft(std::string_view text) noexcept;
std::string_view TrimRight(std::string_view text) noexcept;
std::wstring_view Trim(std::wstring_view text) noexcept;

}  // namespace orv::platform
