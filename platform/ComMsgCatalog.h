// Our English texts for the message keys. A template holds the same
// placeholders as its key, in the same order.
#ifndef BOARDLIB_PLATFORM_COMMSGCATALOG_H
#define BOARDLIB_PLATFORM_COMMSGCATALOG_H

#include <string>
#include <vector>

namespace ComMsgCatalog {
/// The template registered for \p key, or null for an unknown key.
const char *findTemplate(const std::string &key);
/// Fills the placeholders (%s, %d) of \p tmpl with \p args in order. Missing
/// arguments print as empty text; surplus ones are appended after " : ".
std::string fill(const std::string &tmpl, const std::vector<std::string> &args);
/// The prefix word of a category as it appears in "[Board 49-56]".
std::string categoryLabel(const std::string &category);
/// Every key of the catalog, for completeness checks.
std::vector<std::string> allKeys();
} // namespace ComMsgCatalog

#endif
