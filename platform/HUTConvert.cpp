#include "HUTConvert.h"
#include "ComMsgMgr.h"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace {

std::string trimmed(const std::string &text) {
  std::string::size_type b = 0, e = text.size();
  while (b < e && std::isspace(static_cast<unsigned char>(text[b])))
    ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(text[e - 1])))
    --e;
  return text.substr(b, e - b);
}

} // namespace

bool HUTConvert::stringToBoolean(const std::string &text, bool &out, bool sendMsg) {
  std::string t = trimmed(text);
  const char *s = t.c_str();
  if (!strcasecmp(s, "true") || !strcmp(s, "1") || !strcasecmp(s, "yes") || !strcasecmp(s, "on")) {
    out = true;
    return true;
  }
  if (!strcasecmp(s, "false") || !strcmp(s, "0") || !strcasecmp(s, "no") || !strcasecmp(s, "off")) {
    out = false;
    return true;
  }
  if (sendMsg)
    ComMsgMgr::sendMsg("common", ComMsg::Warning, "@1-1@%s", text);
  return false;
}

bool HUTConvert::toBool(const std::string &text) {
  bool b = false;
  return stringToBoolean(text, b, false) && b;
}

bool HUTConvert::stringToDouble(const std::string &text, double &out) {
  std::string t = trimmed(text);
  if (t.empty())
    return false;
  errno = 0;
  char *end = nullptr;
  double v = std::strtod(t.c_str(), &end);
  if (*end != '\0' || errno == ERANGE)
    return false;
  out = v;
  return true;
}

bool HUTConvert::stringToFloat(const std::string &text, float &out) {
  double d = 0;
  if (!stringToDouble(text, d))
    return false;
  if (std::isfinite(d) && std::fabs(d) > 3.402823466e38)
    return false;
  out = static_cast<float>(d);
  return true;
}

std::string HUTConvert::quoteValue(std::string_view text) {
  // A hostile file may hold megabytes in one attribute.
  const std::size_t kLongest = 64;
  if (text.size() <= kLongest)
    return std::string(text);
  return std::string(text.substr(0, kLongest)) + "...";
}
