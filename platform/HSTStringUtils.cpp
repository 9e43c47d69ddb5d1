#include "HSTStringUtils.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

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

bool HSTStringUtils::UpperLess::operator()(std::string_view a, std::string_view b) const {
  const std::size_t n = a.size() < b.size() ? a.size() : b.size();
  // Keys of one map mostly begin alike: the bytes that are equal as they
  // stand are equal upper-cased, so they are skipped eight at a time.
  std::size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    std::uint64_t x, y;
    std::memcpy(&x, a.data() + i, sizeof(x));
    std::memcpy(&y, b.data() + i, sizeof(y));
    if (x != y)
      break;
  }
  for (; i < n; ++i) {
    const auto x = static_cast<unsigned char>(upperC(a[i]));
    const auto y = static_cast<unsigned char>(upperC(b[i]));
    if (x != y)
      return x < y;
  }
  return a.size() < b.size();
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

namespace {
void appendHex4(std::string &out, unsigned value) {
  static const char digits[] = "0123456789abcdef";
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4)
    out += digits[(value >> shift) & 0xF];
}

// The length of the valid UTF-8 sequence at \p i, or 0 for a byte that
// starts none. JSON must be UTF-8, and file names need not be.
std::size_t utf8Length(const std::string &s, std::size_t i) {
  unsigned char c = static_cast<unsigned char>(s[i]);
  std::size_t len = 0;
  unsigned min = 0;
  unsigned cp = 0;
  if (c >= 0xC2 && c <= 0xDF) {
    len = 2;
    cp = c & 0x1F;
    min = 0x80;
  } else if (c >= 0xE0 && c <= 0xEF) {
    len = 3;
    cp = c & 0x0F;
    min = 0x800;
  } else if (c >= 0xF0 && c <= 0xF4) {
    len = 4;
    cp = c & 0x07;
    min = 0x10000;
  } else {
    return 0;
  }
  if (i + len > s.size())
    return 0;
  for (std::size_t k = 1; k < len; ++k) {
    unsigned char cc = static_cast<unsigned char>(s[i + k]);
    if ((cc & 0xC0) != 0x80)
      return 0;
    cp = (cp << 6) | (cc & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
    return 0;
  return len;
}

} // namespace

void HSTStringUtils::appendJsonQuoted(std::string &out, const std::string &s) {
  out += '"';
  for (std::size_t i = 0; i < s.size();) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\b':
        out += "\\b";
        break;
      case '\f':
        out += "\\f";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (c < 0x20)
          appendHex4(out, c);
        else
          out += static_cast<char>(c);
      }
      ++i;
      continue;
    }
    std::size_t len = utf8Length(s, i);
    if (len == 0) {
      appendHex4(out, 0xFFFD); // a byte that is no UTF-8
      ++i;
      continue;
    }
    out.append(s, i, len);
    i += len;
  }
  out += '"';
}

std::string HSTStringUtils::jsonQuoted(const std::string &s) {
  std::string out;
  appendJsonQuoted(out, s);
  return out;
}

std::string HSTStringUtils::numberedName(std::string_view base, long long number) {
  char digits[24];
  const auto written = std::to_chars(digits, digits + sizeof(digits), number);
  std::string name;
  name.reserve(base.size() + 1 + static_cast<std::size_t>(written.ptr - digits));
  name += base;
  name += '_';
  name.append(digits, written.ptr);
  return name;
}

namespace {
// Levenshtein distance over ASCII-lower-cased bytes, in one row.
std::size_t editDistance(const std::string &a, const std::string &b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j)
    row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    const char ca = lowerC(a[i - 1]);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      std::size_t above = row[j];
      std::size_t substitute = diagonal + (ca == lowerC(b[j - 1]) ? 0 : 1);
      row[j] = std::min({above + 1, row[j - 1] + 1, substitute});
      diagonal = above;
    }
  }
  return row[b.size()];
}
} // namespace

std::vector<std::string> HSTStringUtils::closestMatches(const std::string &word,
                                                        const std::vector<std::string> &candidates,
                                                        std::size_t limit) {
  // Long words and long candidates make the table large: names longer than
  // any real one are not compared.
  constexpr std::size_t kLongest = 256;
  std::vector<std::pair<std::size_t, std::size_t>> scored; // distance, index
  if (word.empty() || word.size() > kLongest)
    return {};
  const std::size_t allowed = std::max<std::size_t>(2, word.size() / 3);
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    if (candidates[i].size() > kLongest)
      continue;
    std::size_t distance = editDistance(word, candidates[i]);
    if (distance <= allowed && distance < std::max(word.size(), candidates[i].size()))
      scored.emplace_back(distance, i);
  }
  std::stable_sort(scored.begin(), scored.end(),
                   [](const auto &a, const auto &b) { return a.first < b.first; });
  std::vector<std::string> out;
  for (const auto &entry : scored) {
    if (out.size() == limit)
      break;
    if (std::find(out.begin(), out.end(), candidates[entry.second]) == out.end())
      out.push_back(candidates[entry.second]);
  }
  return out;
}

std::string HSTStringUtils::didYouMean(const std::string &word,
                                       const std::vector<std::string> &candidates) {
  std::vector<std::string> matches = closestMatches(word, candidates);
  if (matches.empty())
    return std::string();
  std::string text = " (did you mean ";
  for (std::size_t i = 0; i < matches.size(); ++i) {
    if (i)
      text += i + 1 == matches.size() ? " or " : ", ";
    text += "'" + matches[i] + "'";
  }
  return text + "?)";
}

void HSTStringUtils::appendUtf8(std::string &out, unsigned long cp) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
    cp = 0xFFFD;
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

std::string HSTStringUtils::utf16ToUtf8(std::string_view in, bool littleEndian) {
  const unsigned char *b = reinterpret_cast<const unsigned char *>(in.data());
  const std::size_t n = in.size();
  auto unit = [&](std::size_t i) -> unsigned long {
    return littleEndian ? (b[i] | (b[i + 1] << 8)) : ((b[i] << 8) | b[i + 1]);
  };
  std::string out;
  out.reserve(n);
  for (std::size_t i = 0; i + 1 < n; i += 2) {
    unsigned long u = unit(i);
    if (u >= 0xD800 && u <= 0xDBFF && i + 3 < n) {
      unsigned long low = unit(i + 2);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    if (!(i == 0 && u == 0xFEFF))
      appendUtf8(out, u);
  }
  return out;
}

std::string HSTStringUtils::escapeMarkup(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
    case '&':
      out += "&amp;";
      break;
    case '<':
      out += "&lt;";
      break;
    case '>':
      out += "&gt;";
      break;
    case '"':
      out += "&quot;";
      break;
    case '\'':
      out += "&#39;";
      break;
    default:
      out += static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t' && c != '\r' ? '?' : c;
    }
  }
  return out;
}
