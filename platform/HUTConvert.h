// Small text conversions of the platform.
#ifndef BOARDLIB_PLATFORM_HUTCONVERT_H
#define BOARDLIB_PLATFORM_HUTCONVERT_H

#include <cctype>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace HUTConvert {
/// How parseInteger reads a text: all of it (an optional sign and digits,
/// nothing else), or as strtol does (leading blanks, a sign, and the digits
/// up to the first other character, the rest ignored).
enum class IntegerForm { Whole, Prefix };
enum class IntegerResult { Ok, NotANumber, OutOfRange };

/// The one checked conversion of decimal integers read from files: a value
/// that \p T cannot hold is OutOfRange, never cut or wrapped. \p out is set
/// only on Ok.
template <typename T>
IntegerResult parseInteger(std::string_view text, T &out, IntegerForm form = IntegerForm::Whole) {
  const char *p = text.data();
  const char *end = p + text.size();
  if (form == IntegerForm::Prefix)
    while (p != end && std::isspace(static_cast<unsigned char>(*p)))
      ++p;
  // from_chars takes a '-' but no '+'.
  if (p != end && *p == '+' && end - p > 1 && p[1] != '-')
    ++p;
  T value{};
  const auto [stop, error] = std::from_chars(p, end, value);
  if (error == std::errc::invalid_argument || (form == IntegerForm::Whole && stop != end))
    return IntegerResult::NotANumber;
  if (error == std::errc::result_out_of_range)
    return IntegerResult::OutOfRange;
  out = value;
  return IntegerResult::Ok;
}

/// A value of \p text fit for a message: long ones are cut.
std::string quoteValue(std::string_view text);

/// Reads "true"/"false", "1"/"0", "yes"/"no", "on"/"off" in any case, with
/// blanks around allowed. Returns false, \p out untouched, for anything else;
/// with \p sendMsg a warning says which text was refused.
bool stringToBoolean(const std::string &text, bool &out, bool sendMsg);
/// The boolean of \p text, false for text that is no boolean.
bool toBool(const std::string &text);
/// Reads a whole decimal floating-point text (blanks around allowed).
/// Returns false, \p out untouched, for anything else, also for an
/// out-of-range value.
bool stringToFloat(const std::string &text, float &out);
bool stringToDouble(const std::string &text, double &out);
} // namespace HUTConvert

#endif
