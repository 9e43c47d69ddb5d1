#include "ComMsgCatalog.h"

#include <cctype>
#include <cstring>
#include <unordered_map>

namespace {

struct Entry {
  const char *key;
  const char *text;
};

// Placeholder catalog; the full table of texts is filled in separately.
const Entry kEntries[] = {
    {"@49-36@%s", "Board file '%s' does not exist."},
    {"@49-56@%s%s", "Failed to read board file '%s'%s."},
    {"@50-1@%s%d%s", "XML syntax error in '%s' at line %d: %s."},
    {"@50-2@%s%s", "Cannot read XML file '%s': %s."},
};

const std::unordered_map<std::string, const char *> &table() {
  static const std::unordered_map<std::string, const char *> t = [] {
    std::unordered_map<std::string, const char *> m;
    for (const Entry &e : kEntries)
      m.emplace(e.key, e.text);
    return m;
  }();
  return t;
}

} // namespace

const char *ComMsgCatalog::findTemplate(const std::string &key) {
  auto it = table().find(key);
  return it == table().end() ? nullptr : it->second;
}

std::string ComMsgCatalog::fill(const std::string &tmpl, const std::vector<std::string> &args) {
  std::string out;
  std::size_t next = 0;
  for (std::size_t i = 0; i < tmpl.size(); ++i) {
    if (tmpl[i] == '%' && i + 1 < tmpl.size()) {
      char c = tmpl[i + 1];
      if (c == 's' || c == 'd') {
        if (next < args.size())
          out += args[next];
        ++next;
        ++i;
        continue;
      }
      if (c == '%') {
        out += '%';
        ++i;
        continue;
      }
    }
    out += tmpl[i];
  }
  for (; next < args.size(); ++next) {
    out += " : ";
    out += args[next];
  }
  return out;
}

std::string ComMsgCatalog::categoryLabel(const std::string &category) {
  if (category == "board")
    return "Board";
  if (category == "xml")
    return "XML";
  if (category == "common")
    return "Common";
  if (category.empty())
    return "Board";
  std::string label = category;
  label[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(label[0])));
  return label;
}

std::vector<std::string> ComMsgCatalog::allKeys() {
  std::vector<std::string> keys;
  for (const Entry &e : kEntries)
    keys.emplace_back(e.key);
  return keys;
}
