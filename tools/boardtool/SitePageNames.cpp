#include "SitePageNames.h"

#include "HSTStringUtils.h"

namespace boardtool {

namespace {
// Long enough for any real board name, short of the 255 bytes that file
// systems allow a name, with room for a counter and ".html".
const std::size_t kMaxStem = 120;
} // namespace

std::string SitePageNames::stem(const std::string &name) {
  std::string out;
  for (char c : name) {
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       c == '-' || c == '_';
    // A dot is kept only after a plain character, so that no name begins
    // with one (hidden files) and none holds "..".
    const bool dot = c == '.' && !out.empty() && out.back() != '.' && out.back() != '_';
    out += plain || dot ? c : '_';
    if (out.size() == kMaxStem)
      break;
  }
  // Nor may it end in one: "NAME..html".
  while (!out.empty() && out.back() == '.')
    out.pop_back();
  if (out.empty())
    out = "board";
  return out;
}

const std::string &SitePageNames::assign(const HBOBoard *board, const std::string &name) {
  auto known = m_pages.find(board);
  if (known != m_pages.end())
    return known->second;
  const std::string base = stem(name);
  std::string page = base + ".html";
  for (unsigned n = 2; m_taken.count(HSTStringUtils::toLower(page)); ++n)
    page = base + "-" + std::to_string(n) + ".html";
  m_taken.insert(HSTStringUtils::toLower(page));
  return m_pages.emplace(board, page).first->second;
}

std::string SitePageNames::pageOf(const HBOBoard *board) const {
  auto it = m_pages.find(board);
  return it == m_pages.end() ? std::string() : it->second;
}

} // namespace boardtool
