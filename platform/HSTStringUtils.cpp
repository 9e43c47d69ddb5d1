#include "HSTStringUtils.h"

namespace {

// Explicit ASCII tables rather than <cctype>: the process locale may have
// been changed by the embedding application.
inline char lowerC(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
inline char upperC(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
inline bool isSpaceC(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

} // namespace

bool HSTStringUtils::iequals(const std::string &a, const std::string &b) {
  if (a.size() != b.size())
    return false;
  for (std::string::size_type i = 0; i < a.size(); ++i)
    if (lowerC(a[i]) != lowerC(b[i]))
      return false;
  return true;
}

std::string HSTStringUtils::toLower(std::string text) {
  for (char &c : text)
    c = lowerC(c);
  return text;
}

std::string HSTStringUtils::toUpper(std::string text) {
  for (char &c : text)
    c = upperC(c);
  return text;
}

std::string HSTStringUtils::trim(const std::string &text) {
  std::string::size_type b = 0, e = text.size();
  while (b < e && isSpaceC(text[b]))
    ++b;
  while (e > b && isSpaceC(text[e - 1]))
    --e;
  return text.substr(b, e - b);
}

std::vector<std::string> HSTStringUtils::split(const std::string &text,
                                               const std::string &separators, bool keepEmpty) {
  std::vector<std::string> out;
  std::string::size_type pos = 0;
  while (true) {
    std::string::size_type end = text.find_first_of(separators, pos);
    std::string field = text.substr(pos, end == std::string::npos ? std::string::npos : end - pos);
    if (keepEmpty || !field.empty())
      out.push_back(std::move(field));
    if (end == std::string::npos)
      break;
    pos = end + 1;
  }
  return out;
}

bool HSTStringUtils::startsWith(const std::string &text, const std::string &prefix) {
  return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

bool HSTStringUtils::endsWith(const std::string &text, const std::string &suffix) {
  return text.size() >= suffix.size() &&
         text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

std::string HSTStringUtils::replaceAll(std::string text, const std::string &from,
                                       const std::string &to) {
  if (from.empty())
    return text;
  std::string out;
  out.reserve(text.size());
  std::string::size_type pos = 0;
  while (true) {
    std::string::size_type hit = text.find(from, pos);
    if (hit == std::string::npos)
      break;
    out.append(text, pos, hit - pos);
    out += to;
    pos = hit + from.size();
  }
  out.append(text, pos, std::string::npos);
  return out;
}
