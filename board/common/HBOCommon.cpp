#include "HBOCommon.h"

#include <cctype>

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

void toLowerInPlace(std::string &text) {
  for (char &c : text)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

void toUpperInPlace(std::string &text) {
  for (char &c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

std::string toLowerCopy(const std::string &text) {
  std::string result(text);
  toLowerInPlace(result);
  return result;
}

std::string toUpperCopy(const std::string &text) {
  std::string result(text);
  toUpperInPlace(result);
  return result;
}

bool iEquals(const std::string &a, const std::string &b) {
  if (a.size() != b.size())
    return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

std::string trimCopy(const std::string &text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && std::isspace(static_cast<unsigned char>(text[begin])))
    ++begin;
  while (end > begin && std::isspace(static_cast<unsigned char>(text[end - 1])))
    --end;
  return text.substr(begin, end - begin);
}

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
