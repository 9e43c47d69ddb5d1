#include "SiteIndexPage.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HSTStringUtils.h"
#include "SiteHtml.h"

namespace boardtool {

std::string SiteIndexPage::kindOf(const HBOBoard &board) {
  if (board.isIntegratedBoard())
    return "integrated";
  if (board.isReferenceBoard())
    return "reference";
  return "daughter";
}

namespace {

std::size_t componentCount(const HBOBoard &board) {
  std::size_t count = 0;
  for (const auto &entry : board.getBoardComponents())
    count += entry.second != nullptr;
  return count;
}

std::string row(const SiteEntry &entry) {
  const HBOBoard &b = *entry.board;
  const HBOBoardComponent *fpga = b.getActivePart();
  const std::string part = fpga ? fpga->getPartName() : std::string();
  const std::string title = b.getDisplayName().empty() ? b.getName() : b.getDisplayName();
  // The words that the search box looks for, in lower case as the script
  // compares them.
  const std::string search =
      HSTStringUtils::toLower(b.getName() + " " + b.getVendor() + " " + b.getDisplayName() + " " +
                              part + " " + b.getDescription());
  const std::string href = "boards/" + entry.page;
  std::string source = b.isUserDefined() ? "<span class=\"tag user\">user</span>"
                                         : "<span class=\"tag\">installed</span>";
  if (entry.hiddenBy)
    source += " <span class=\"tag off\">hidden</span>";
  std::string out = "<tr data-search=\"" + SiteHtml::escape(search) + "\">";
  out += "<td data-key=\"" + SiteHtml::escape(title) + "\">" + SiteHtml::link(href, title) +
         "<span class=\"sub mono\">" + SiteHtml::escape(b.getName()) + "</span></td>";
  out += "<td>" + SiteHtml::escape(b.getVendor()) + "</td>";
  out += "<td class=\"mono\">" + (part.empty() ? "&ndash;" : SiteHtml::escape(part)) + "</td>";
  out += "<td>" + SiteIndexPage::kindOf(b) + "</td>";
  out += "<td>" + SiteHtml::escape(b.getBoardSchemaVersion()) + "</td>";
  out += "<td class=\"num\">" + std::to_string(componentCount(b)) + "</td>";
  out += "<td>" + source + "</td>";
  out += "<td class=\"desc\">" + SiteHtml::escape(b.getDescription()) + "</td>";
  return out + "</tr>\n";
}

} // namespace

std::string SiteIndexPage::render(const std::vector<SiteEntry> &entries) {
  std::string out = SiteHtml::begin("Board catalog", "");
  out += "<h1>Board catalog</h1>\n"
         "<div class=\"searchbar\"><input id=\"search\" type=\"search\" autofocus "
         "placeholder=\"Search by name, vendor, part or description\" "
         "aria-label=\"Search boards\"><span id=\"count\" class=\"muted\">" +
         std::to_string(entries.size()) + (entries.size() == 1 ? " board" : " boards") +
         "</span></div>\n"
         "<table id=\"boards\" class=\"boards sortable\">\n<thead><tr><th>Board</th>"
         "<th>Vendor</th><th>FPGA part</th><th>Kind</th><th>Schema</th>"
         "<th class=\"num\">Components</th><th>Source</th><th>Description</th></tr></thead>\n"
         "<tbody>\n";
  for (const SiteEntry &entry : entries)
    out += row(entry);
  out += "</tbody>\n</table>\n";
  return out + SiteHtml::end("");
}

} // namespace boardtool
