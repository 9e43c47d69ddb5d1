#include "SiteHtml.h"

#include "HSTStringUtils.h"

namespace boardtool {

std::string SiteHtml::escape(const std::string &text) { return HSTStringUtils::escapeMarkup(text); }

std::string SiteHtml::link(const std::string &href, const std::string &text) {
  return "<a href=\"" + escape(href) + "\">" + escape(text) + "</a>";
}

std::string SiteHtml::externalLink(const std::string &url) {
  const std::string lower = HSTStringUtils::toLower(url);
  if (lower.compare(0, 7, "http://") != 0 && lower.compare(0, 8, "https://") != 0)
    return escape(url);
  return "<a href=\"" + escape(url) + "\" rel=\"noreferrer\">" + escape(url) + "</a>";
}

std::string SiteHtml::begin(const std::string &title, const std::string &root) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<title>" +
         escape(title) + "</title>\n<link rel=\"stylesheet\" href=\"" + root +
         "site.css\">\n</head>\n<body>\n<header class=\"top\"><a href=\"" + root +
         "index.html\">Board catalog</a></header>\n<main>\n";
}

std::string SiteHtml::end(const std::string &root) {
  return "</main>\n<script src=\"" + root + "site.js\"></script>\n</body>\n</html>\n";
}

} // namespace boardtool
