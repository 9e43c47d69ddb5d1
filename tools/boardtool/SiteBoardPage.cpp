#include "SiteBoardPage.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardDataProps.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOPinProps.h"
#include "HBOPowerRail.h"
#include "SiteHtml.h"
#include "SiteIndexPage.h"
#include "SitePageNames.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace boardtool {

namespace {

using H = SiteHtml;

std::string td(const std::string &text, const char *cls = nullptr) {
  return std::string(cls ? "<td class=\"" + std::string(cls) + "\">" : "<td>") + H::escape(text) +
         "</td>";
}

std::string orDash(const std::string &text) { return text.empty() ? "\xE2\x80\x93" : text; }

std::string title(const HBOBoard &board) {
  return board.getDisplayName().empty() ? board.getName() : board.getDisplayName();
}

// A board named on this page: a link to its page when it has one.
std::string boardRef(const HBOBoard *board, const SitePageNames &pages) {
  if (!board)
    return "";
  const std::string page = pages.pageOf(board);
  const std::string label = board->getName();
  return page.empty()
             ? "<span class=\"mono\">" + H::escape(label) + "</span>"
             : "<a class=\"mono\" href=\"" + H::escape(page) + "\">" + H::escape(label) + "</a>";
}

std::string section(const char *id, const char *heading) {
  return std::string("<section id=\"") + id + "\">\n<h2>" + heading + "</h2>\n";
}

const char kNone[] = "<p class=\"empty\">None.</p>\n";

// The diagram inline, from its root element on: the XML declaration and
// any DOCTYPE of a document do not belong inside HTML.
std::string diagram(const std::string &svg) {
  const std::string::size_type root = svg.find("<svg");
  if (root == std::string::npos)
    return "<p class=\"empty\">No diagram.</p>\n";
  return "<div class=\"diagram\">\n" + svg.substr(root) + "</div>\n";
}

std::vector<const HBOBoardComponent *> components(const HBOBoard &board) {
  std::vector<const HBOBoardComponent *> out;
  for (const auto &entry : board.getBoardComponents())
    if (entry.second)
      out.push_back(entry.second);
  // The FPGA first, then by type, then by name.
  std::stable_sort(out.begin(), out.end(), [](const auto *a, const auto *b) {
    const bool fa = a->getType() == "fpga", fb = b->getType() == "fpga";
    if (fa != fb)
      return fa;
    if (a->getType() != b->getType())
      return a->getType() < b->getType();
    return a->getComponentName() < b->getComponentName();
  });
  return out;
}

std::string facts(const SiteEntry &entry, const SitePageNames &pages) {
  const HBOBoard &b = *entry.board;
  const HBOBoardComponent *fpga = b.getActivePart();
  std::string revisions;
  for (const auto &revision : b.getCompatibleBoardRevisions())
    revisions += (revisions.empty() ? "" : ", ") + revision.second;
  auto fact = [](const char *name, const std::string &html) {
    return std::string("<dt>") + name + "</dt><dd>" + html + "</dd>\n";
  };
  std::string out = "<dl class=\"facts\">\n";
  out += fact("Vendor", H::escape(b.getVendor()));
  out += fact("Version", H::escape(b.getVersion()));
  out += fact("Kind", SiteIndexPage::kindOf(b));
  out +=
      fact("FPGA part", fpga ? "<span class=\"mono\">" + H::escape(fpga->getPartName()) + "</span>"
                             : std::string("none"));
  out += fact("Schema", H::escape(b.getBoardSchemaVersion()) +
                            (b.getMigratedFromSchema().empty()
                                 ? ""
                                 : " (lifted from " + H::escape(b.getMigratedFromSchema()) + ")"));
  if (!revisions.empty())
    out += fact("Revisions", H::escape(revisions));
  out += fact("Source", b.isUserDefined() ? "user repository" : "installation");
  if (!b.getBoardFile().empty())
    out += fact("File", "<span class=\"mono\">" + H::escape(b.getBoardFile()) + "</span>");
  if (!b.getSpecUrl().empty())
    out += fact("Web page", H::externalLink(b.getSpecUrl()));
  if (const HBOBoard *base = b.getBaseBoard())
    out += fact("Base board", boardRef(base, pages));
  return out + "</dl>\n";
}

std::string notes(const SiteEntry &entry, const SitePageNames &pages) {
  std::string out;
  if (entry.hides)
    out += "<p class=\"note\">This user board hides the installed board " +
           boardRef(entry.hides, pages) + " of the same name: a project sees this one.</p>\n";
  if (entry.hiddenBy)
    out += "<p class=\"note\">The user board " + boardRef(entry.hiddenBy, pages) +
           " hides this installed board: a project sees that one instead.</p>\n";
  return out;
}

std::string componentTable(const HBOBoard &board) {
  std::string out = section("components", "Components");
  const auto list = components(board);
  if (list.empty())
    return out + kNone + "</section>\n";
  out += "<table>\n<thead><tr><th>Name</th><th>Display name</th><th>Type</th><th>Sub type</th>"
         "<th>Part</th><th class=\"num\">Pins</th><th>Description</th></tr></thead>\n<tbody>\n";
  for (const HBOBoardComponent *c : list)
    out += "<tr>" + td(c->getComponentName(), "mono") + td(c->getDisplayName()) + td(c->getType()) +
           td(c->getSubType()) + td(c->getPartName(), "mono nowrap") + "<td class=\"num\">" +
           std::to_string(c->getPins().size()) + "</td>" + td(c->getDescription()) + "</tr>\n";
  return out + "</tbody>\n</table>\n</section>\n";
}

int indexValue(const std::string &text) { return std::atoi(text.c_str()); }

// The pins of a port, in the order of their index: "index: pin (LOC)".
std::string portPins(const HBOModelPort &port, const HBOBoardComponent &owner) {
  std::vector<std::pair<std::string, std::string>> map;
  for (const auto &entry : port.getPinPortMap())
    map.emplace_back(entry.first, entry.second);
  std::stable_sort(map.begin(), map.end(), [](const auto &a, const auto &b) {
    return indexValue(a.first) < indexValue(b.first);
  });
  std::string out;
  for (const auto &entry : map) {
    std::string text = entry.second;
    if (const HBOPinProps *pin = owner.findPin(entry.second)) {
      std::string extra = pin->getPinLoc();
      const std::string standard = pin->getPinIOStandard();
      if (!standard.empty())
        extra += (extra.empty() ? "" : ", ") + standard;
      if (!extra.empty())
        text += " (" + extra + ")";
    }
    if (map.size() > 1)
      text = entry.first + ": " + text;
    out += (out.empty() ? "" : "<br>") + H::escape(text);
  }
  return out;
}

std::string interfaceBlock(const HBOBusIf &intf, const HBOBoardComponent &owner) {
  std::string type, display;
  intf.getAbstractTypeVLNV(type, ":");
  intf.getDisplayName(display);
  std::string out = "<details>\n<summary><span class=\"mono\">" + H::escape(intf.getName()) +
                    "</span><span class=\"muted\">" + H::escape(type);
  if (!intf.getInterfaceMode().empty())
    out += ", " + H::escape(intf.getInterfaceMode());
  out += "</span>";
  const std::string text = !intf.getDescription().empty() ? intf.getDescription() : display;
  if (!text.empty() && text != intf.getName())
    out += " <span class=\"muted\">&mdash; " + H::escape(text) + "</span>";
  out += "</summary>\n";
  if (intf.getPortMaps().empty())
    return out + "<p class=\"empty\">No ports.</p>\n</details>\n";
  out += "<table class=\"ports\">\n<thead><tr><th>Port</th><th>Direction</th><th "
         "class=\"num\">Width</th>"
         "<th>Pins</th></tr></thead>\n<tbody>\n";
  for (const auto &entry : intf.getPortMaps()) {
    const HBOModelPort *port = entry.second;
    if (!port)
      continue;
    int width = 1;
    port->getPortWidth(width);
    out += "<tr>" + td(port->getName(), "mono") + td(port->getDirection()) + "<td class=\"num\">" +
           std::to_string(width) + "</td><td class=\"pins mono\">" + portPins(*port, owner) +
           "</td></tr>\n";
  }
  return out + "</tbody>\n</table>\n</details>\n";
}

std::string interfaceList(const HBOBoard &board) {
  std::string out = section("interfaces", "Interfaces");
  bool any = false;
  for (const HBOBoardComponent *c : components(board)) {
    std::vector<HBOBusIf *> interfaces;
    c->getInterfacesVec(interfaces);
    if (interfaces.empty())
      continue;
    any = true;
    out += "<h3>" + H::escape(c->getComponentName()) +
           (c->getDisplayName().empty()
                ? std::string()
                : " <span class=\"muted\">" + H::escape(c->getDisplayName()) + "</span>") +
           "</h3>\n";
    for (const HBOBusIf *intf : interfaces)
      if (intf)
        out += interfaceBlock(*intf, *c);
  }
  return out + (any ? "" : kNone) + "</section>\n";
}

std::string fitting(const char *title, const HBOBoard::ConnectorCache &cache,
                    const std::string &key, const SitePageNames &pages) {
  auto it = cache.find(key);
  if (it == cache.end() || it->second.empty())
    return "";
  std::string out = std::string("<tr><td class=\"fit\">") + title + "</td><td>";
  bool first = true;
  for (const HBOBoardComponent *daughter : it->second) {
    if (!daughter)
      continue;
    out += first ? "" : "<br>";
    first = false;
    const HBOBoard *board = daughter->getBoard();
    out += boardRef(board, pages) + " <span class=\"muted\">connector " +
           H::escape(daughter->getComponentName());
    if (board && !board->getDisplayName().empty())
      out += ", " + H::escape(board->getDisplayName());
    out += "</span>";
  }
  return out + "</td></tr>\n";
}

std::string connectorList(const SiteEntry &entry, const SitePageNames &pages) {
  const HBOBoard &board = *entry.board;
  std::string out = section("connectors", "Connectors and daughter boards");
  HSTVector<HBOBoardComponent *> connectors;
  board.getConnectorsList(connectors);
  const auto placed = board.getIntegratedBoardConnections();
  if (!placed.empty()) {
    out += "<h3>In place</h3>\n<table>\n<thead><tr><th>Connector</th><th>Daughter board</th>"
           "<th>Its connector</th></tr></thead>\n<tbody>\n";
    for (const auto &connection : placed)
      out += "<tr>" + td(std::get<0>(connection), "mono") + "<td>" +
             boardRef(std::get<1>(connection), pages) + "</td>" +
             td(std::get<2>(connection), "mono") + "</tr>\n";
    out += "</tbody>\n</table>\n";
  }
  if (connectors.empty())
    return out + (placed.empty() ? kNone : "") + "</section>\n";
  for (const HBOBoardComponent *connector : connectors) {
    if (!connector)
      continue;
    out += "<h3><span class=\"mono\">" + H::escape(connector->getComponentName()) +
           "</span> <span class=\"muted\">" + H::escape(connector->getSubType()) + "</span></h3>\n";
    if (!board.isReferenceBoard()) {
      std::string rows;
      for (const SiteFit &fit : entry.fits)
        if (fit.connector == connector->getComponentName())
          rows +=
              "<tr><td class=\"fit\">" + std::string(fit.how) + "</td><td>" +
              boardRef(fit.base, pages) + " <span class=\"muted\">connector " +
              H::escape(fit.baseConnector) +
              (fit.base->getDisplayName().empty() ? std::string()
                                                  : ", " + H::escape(fit.base->getDisplayName())) +
              "</span></td></tr>\n";
      out += rows.empty() ? "<p class=\"empty\">No reference board of the catalog takes it.</p>\n"
                          : "<p class=\"muted\">Plugs into:</p>\n<table>\n<tbody>\n" + rows +
                                "</tbody>\n</table>\n";
      continue;
    }
    // The catalog works out what fits for the boards a project sees only.
    if (entry.hiddenBy) {
      out += "<p class=\"muted\">Hidden: the page of " + boardRef(entry.hiddenBy, pages) +
             " lists what fits.</p>\n";
      continue;
    }
    const std::string &key = connector->getName();
    const std::string rows =
        fitting("declared", board.getExplicitlyCompatibleConnectors(), key, pages) +
        fitting("fits fully", board.getFullyCompatibleConnectors(), key, pages) +
        fitting("fits in part", board.getPartiallyCompatibleConnectors(), key, pages);
    out += rows.empty() ? "<p class=\"empty\">No daughter board of the catalog fits.</p>\n"
                        : "<table>\n<tbody>\n" + rows + "</tbody>\n</table>\n";
  }
  return out + "</section>\n";
}

std::string jumperTable(const HBOBoard &board) {
  std::string out = section("jumpers", "Jumpers");
  if (board.getJumpers().empty())
    return out + kNone + "</section>\n";
  out += "<table>\n<thead><tr><th>Name</th><th>Default</th><th>Description</th></tr></thead>\n"
         "<tbody>\n";
  for (const HBOJumper *jumper : board.getJumpers())
    if (jumper)
      out += "<tr>" + td(jumper->getName(), "mono") + td(jumper->getDefaultValue() ? "on" : "off") +
             td(jumper->getDescription()) + "</tr>\n";
  return out + "</tbody>\n</table>\n</section>\n";
}

// A rail draws from FPGA supplies and from other rails, some of them a
// number of phases of a phased rail.
std::string powerTable(const HBOBoard &board) {
  std::string out = section("power", "Power rails");
  if (board.getPowerRails().empty())
    return out + kNone + "</section>\n";
  out += "<table>\n<thead><tr><th>Rail</th><th class=\"num\">Phases</th><th>Direct</th>"
         "<th>FPGA supplies</th><th>Fed from rails</th></tr></thead>\n<tbody>\n";
  for (const HBOPowerRail &rail : board.getPowerRails()) {
    std::string rails;
    for (const std::string &from : rail.getRailNames()) {
      const int phases = rail.getMemberPhases(from);
      rails += (rails.empty() ? "" : ", ") + from +
               (phases > 0 ? " (" + std::to_string(phases) + (phases == 1 ? " phase)" : " phases)")
                           : std::string());
    }
    out += "<tr>" + td(rail.getName(), "mono") + "<td class=\"num\">" +
           (rail.getNumPhases() > 0 ? std::to_string(rail.getNumPhases()) : orDash("")) + "</td>" +
           td(rail.isDirect() ? "yes" : "no") +
           td(orDash(HBOBoardUtils::join(rail.getSupplyNames(), ", ")), "mono") +
           td(orDash(rails), "mono") + "</tr>\n";
  }
  return out + "</tbody>\n</table>\n</section>\n";
}

std::string conditionTable(const HBOBoard &board) {
  std::string out = section("conditions", "Operating conditions");
  HBOBoardDataProps::StringMap conditions;
  if (!board.getBoardDataProps().getOperatingConditions(conditions) || conditions.empty())
    return out + kNone + "</section>\n";
  out += "<table>\n<thead><tr><th>Condition</th><th>Value</th></tr></thead>\n<tbody>\n";
  for (const auto &condition : conditions)
    out += "<tr>" + td(condition.first, "mono") + td(condition.second) + "</tr>\n";
  return out + "</tbody>\n</table>\n</section>\n";
}

std::string presetTable(const HBOBoard &board) {
  std::string out = section("presets", "Presets");
  std::string rows;
  for (const auto &entry : board.getIpPresets()) {
    for (const HBOIpPreset *preset : entry.second) {
      if (!preset)
        continue;
      const std::string ip = preset->getVendor() + ":" + preset->getLibrary() + ":" +
                             preset->getName() + ":" + preset->getVersion();
      std::string params;
      for (const auto &param : preset->getParamList())
        params += "<tr>" + td(param.first, "mono") + td(param.second, "mono") + "</tr>";
      const std::size_t count = preset->getParamList().size();
      rows += "<tr>" + td(preset->getPresetName(), "mono") + td(ip, "mono") +
              td(preset->getPresetProcName(), "mono") + td(preset->getIpInterface(), "mono") +
              "<td>" +
              (count == 0 ? std::string("none")
                          : "<details><summary>" + std::to_string(count) +
                                (count == 1 ? " parameter" : " parameters") +
                                "</summary><table class=\"params\"><tbody>" + params +
                                "</tbody></table></details>") +
              "</td></tr>\n";
    }
  }
  if (rows.empty())
    return out + kNone + "</section>\n";
  return out +
         "<table "
         "class=\"presets\">\n<thead><tr><th>Preset</th><th>IP</th><th>Procedure</"
         "th><th>Interface</th>"
         "<th>Parameters</th></tr></thead>\n<tbody>\n" +
         rows + "</tbody>\n</table>\n</section>\n";
}

} // namespace

std::string SiteBoardPage::render(const SiteEntry &entry, const SitePageNames &pages,
                                  const std::string &svg) {
  const HBOBoard &b = *entry.board;
  std::string out = H::begin(title(b) + " \xE2\x80\x93 Board catalog", "../");
  out += "<h1>" + H::escape(title(b)) + "</h1>\n<p class=\"boardname mono\">" +
         H::escape(b.getName()) + "</p>\n";
  if (!b.getDescription().empty())
    out += "<p class=\"lead\">" + H::escape(b.getDescription()) + "</p>\n";
  out += notes(entry, pages) + facts(entry, pages);
  out += "<nav class=\"toc\"><a href=\"#diagram\">Diagram</a><a href=\"#components\">Components</a>"
         "<a href=\"#interfaces\">Interfaces</a><a href=\"#connectors\">Connectors</a>"
         "<a href=\"#jumpers\">Jumpers</a><a href=\"#power\">Power</a>"
         "<a href=\"#conditions\">Operating conditions</a><a href=\"#presets\">Presets</a></nav>\n";
  out += section("diagram", "Diagram") + diagram(svg) + "</section>\n";
  out += componentTable(b) + interfaceList(b) + connectorList(entry, pages) + jumperTable(b) +
         powerTable(b) + conditionTable(b) + presetTable(b);
  return out + H::end("../");
}

} // namespace boardtool
