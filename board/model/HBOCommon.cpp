#include "HBOCommon.h"
#include "HSTStringUtils.h"

namespace HBOCommon {

const char *const PIN_NAME = "NAME";
const char *const PIN_INDEX = "INDEX";
const char *const PIN_LOC = "LOC";
const char *const PIN_DIFFTERM = "DIFF_TERM";
const char *const PIN_DQS_BIAS = "DQS_BIAS";
const char *const PIN_DRIVE = "DRIVE";
const char *const PIN_EQUALIZATION = "EQUALIZATION";
const char *const PIN_IBUF_LOW_PWR = "IBUF_LOW_PWR";
const char *const PIN_IOSTD = "IOSTANDARD";
const char *const PIN_ODT = "ODT";
const char *const PIN_OUTPUT_IMPEDANCE = "OUTPUT_IMPEDANCE";
const char *const PIN_PRE_EMPHASIS = "PRE_EMPHASIS";
const char *const PIN_SLEW = "SLEW";
const char *const s_dirSep = "/";

// The case and white-space rules are the platform's "C"-locale ones, so that
// look-ups do not depend on a locale the embedding application sets.
void toLowerInPlace(std::string &text) { text = HSTStringUtils::toLower(std::move(text)); }

void toUpperInPlace(std::string &text) { text = HSTStringUtils::toUpper(std::move(text)); }

std::string toLowerCopy(const std::string &text) { return HSTStringUtils::toLower(text); }

std::string toUpperCopy(const std::string &text) { return HSTStringUtils::toUpper(text); }

bool iEquals(const std::string &a, const std::string &b) { return HSTStringUtils::iequals(a, b); }

std::string trimCopy(const std::string &text) { return HSTStringUtils::trim(text); }

} // namespace HBOCommon

// Replaces every occurrence of \p oldName, compared ignoring case, by the
// lower-cased \p newName, left to right without rescanning what was put in.
// It knows no token borders: evaluation compares names ignoring case, and
// the readers never put one jumper name inside another.
std::string HBOCommon::renameJumper(const std::string &expression, const std::string &oldName,
                                    const std::string &newName) {
  if (oldName.empty())
    return expression;
  const std::string replacement = HBOCommon::toLowerCopy(newName);
  // Byte-wise case conversion keeps every offset of the original.
  const std::string upperExpression = HBOCommon::toUpperCopy(expression);
  const std::string upperOld = HBOCommon::toUpperCopy(oldName);
  std::string out;
  std::string::size_type pos = 0;
  for (std::string::size_type hit; (hit = upperExpression.find(upperOld, pos)) != std::string::npos;
       pos = hit + oldName.size()) {
    out.append(expression, pos, hit - pos);
    out += replacement;
  }
  out.append(expression, pos, std::string::npos);
  return out;
}
