// String helpers of the platform. Case and white space follow the "C"
// locale whatever the process locale is, so that board data read the same
// everywhere.
#ifndef BOARDLIB_PLATFORM_HSTSTRINGUTILS_H
#define BOARDLIB_PLATFORM_HSTSTRINGUTILS_H

#include <string>
#include <string_view>
#include <vector>

namespace HSTStringUtils {
/// Orders texts as their ASCII upper-case copies would be ordered, without
/// making the copies: a map whose keys are stored upper-cased can be searched
/// with a text of any case.
struct UpperLess {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};
/// Equal ignoring ASCII case.
bool iequals(const std::string &a, const std::string &b);
std::string toLower(std::string text);
std::string toUpper(std::string text);
/// Without the white space (blank, tab, new line, carriage return, vertical
/// tab, form feed) at both ends.
std::string trim(const std::string &text);
/// Splits at every character of \p separators. With \p keepEmpty false,
/// empty fields (from runs of separators or at the ends) are dropped; with
/// it true, "a,,b" gives three fields and "" gives one empty field.
std::vector<std::string> split(const std::string &text, const std::string &separators,
                               bool keepEmpty);
bool startsWith(const std::string &text, const std::string &prefix);
bool endsWith(const std::string &text, const std::string &suffix);
/// Every occurrence of \p from replaced by \p to, scanning left to right
/// without rescanning replaced text. An empty \p from changes nothing.
std::string replaceAll(std::string text, const std::string &from, const std::string &to);
/// Appends \p text as a JSON string literal, quotes included; bytes that
/// are no UTF-8 become U+FFFD, so the result is always valid JSON.
void appendJsonQuoted(std::string &out, const std::string &text);
std::string jsonQuoted(const std::string &text);
/// "base_number", the name of a numbered pin or net, made in one
/// allocation at most.
std::string numberedName(std::string_view base, long long number);
/// Appends the code point \p cp as UTF-8; what is no Unicode scalar value
/// becomes U+FFFD.
void appendUtf8(std::string &out, unsigned long cp);
/// \p text as the text or the quoted attribute value of XML, SVG or HTML:
/// the five markup characters as references (an apostrophe as "&#39;",
/// which all three know), and the control characters that XML forbids as
/// '?'. Board files are user input, so a name such as "<script>" must stay
/// text wherever it is shown.
std::string escapeMarkup(std::string_view text);
/// UTF-16 text as UTF-8, a byte order mark at its start dropped. Surrogate
/// pairs are joined; a lone surrogate becomes U+FFFD, an odd last byte is
/// dropped.
std::string utf16ToUtf8(std::string_view in, bool littleEndian);
/// The candidates closest to \p word by edit distance, ignoring case, at
/// most \p limit of them, nearest first (ties in the candidates' order):
/// the "did you mean" of a misspelt name. A candidate counts only when the
/// distance is small against the word's length, so that a word unlike
/// every candidate gets none.
std::vector<std::string> closestMatches(const std::string &word,
                                        const std::vector<std::string> &candidates,
                                        std::size_t limit = 3);
/// " (did you mean 'a' or 'b'?)" for the closest matches, empty for none.
std::string didYouMean(const std::string &word, const std::vector<std::string> &candidates);
} // namespace HSTStringUtils

#endif
