// Small text conversions of the platform.
#ifndef BOARDLIB_PLATFORM_HUTCONVERT_H
#define BOARDLIB_PLATFORM_HUTCONVERT_H

#include <string>

namespace HUTConvert {
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
