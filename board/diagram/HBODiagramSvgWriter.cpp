#include "HBODiagramSvgWriter.h"
#include "HSTStringUtils.h"

#include "HBODiagramContent.h"
#include "HBODiagramLayout.h"

#include <string>

namespace {

using Rect = HBODiagramLayout::Rect;
using Kind = HBODiagramContent::Kind;

const char kDot[] = " \xC2\xB7 ";

// Generic families only: a named font may be missing offline, and the
// layout leaves room for the widest of the usual sans-serif faces.
const char kStyle[] = R"(
svg { background: #ffffff; }
text { font-family: sans-serif; fill: #1f2a36; }
.title { font-size: 20px; font-weight: bold; }
.subtitle { font-size: 12px; fill: #56616d; }
.heading { font-size: 11px; font-weight: bold; fill: #56616d; letter-spacing: 0.04em; }
:is(g.component, g.sample) rect { fill: #eaf1fb; stroke: #3d6fb4; stroke-width: 1.5; }
:is(g.component, g.sample)[data-kind="fpga"] rect.body { fill: #fff5e3; stroke: #c27c0e; stroke-width: 2; }
:is(g.component, g.sample)[data-kind="connector"] rect { fill: #e8f5ec; stroke: #2e8a4b; }
:is(g.component, g.sample)[data-enabled="false"] rect { fill: #f2f2f2; stroke: #a9afb5; stroke-dasharray: 5 3; }
g.component[data-enabled="false"] text { fill: #8d949b; }
.box-title { font-size: 13px; font-weight: bold; }
.box-detail { font-size: 11px; fill: #56616d; }
.bank-line { font-size: 11px; fill: #56616d; }
path.connection, path.legend-connection { fill: none; stroke: #2b4560; stroke-width: 2; }
:is(path.connection, path.legend-connection).disabled { stroke: #bcc3ca; stroke-dasharray: 6 4; }
path.link { fill: none; stroke: #7c8995; stroke-width: 1.2; stroke-dasharray: 2 3; }
path.fit-link { fill: none; stroke: #9aa5b1; stroke-width: 1; stroke-dasharray: 3 3; }
path.rail-link { fill: none; stroke: #b5473c; stroke-width: 1.2; }
.width-label { font-size: 11px; font-weight: bold; text-anchor: middle; paint-order: stroke;
  stroke: #ffffff; stroke-width: 3px; }
.width-label.disabled { fill: #9aa1a8; }
.link-label { font-size: 10px; fill: #56616d; text-anchor: middle; paint-order: stroke;
  stroke: #ffffff; stroke-width: 3px; }
g.bank-tag rect { fill: #c27c0e; stroke: none; }
g.bank-tag text { font-size: 10px; font-weight: bold; fill: #ffffff; text-anchor: middle; }
g.daughter rect, g.sample[data-kind="daughter"] rect { fill: #f6f0fb; stroke: #7a4fa3; stroke-width: 1.5; }
g.daughter text { font-size: 12px; font-weight: bold; fill: #5b3a7d; }
g.fitting rect, g.sample[data-kind="fitting"] rect { fill: #fafbfc; stroke: #9aa5b1; stroke-dasharray: 4 3; }
g.fitting text { font-size: 11px; }
g.fitting text.card-title { font-weight: bold; fill: #56616d; }
g.rail rect, g.sample[data-kind="rail"] rect { fill: #fdf0ee; stroke: #b5473c; }
g.rail text { font-size: 11px; fill: #56616d; }
g.rail text.rail-name { font-size: 12px; font-weight: bold; fill: #1f2a36; }
g.power-band rect { fill: none; stroke: #e0c4c0; stroke-dasharray: 2 4; }
g.legend rect.frame { fill: #ffffff; stroke: #c9d0d6; }
g.legend text { font-size: 11px; }
g.legend text.legend-title { font-size: 12px; font-weight: bold; }
)";

std::string attr(const char *name, int value) {
  return std::string(" ") + name + "=\"" + std::to_string(value) + "\"";
}

std::string rectXml(const Rect &rect, const std::string &extra = "") {
  return "<rect" + attr("x", rect.x) + attr("y", rect.y) + attr("width", rect.w) +
         attr("height", rect.h) + extra + "/>";
}

std::string textXml(const std::string &cls, int x, int y, const std::string &text,
                    const std::string &extra = "") {
  return "<text class=\"" + cls + "\"" + attr("x", x) + attr("y", y) + extra + ">" +
         HBODiagramSvgWriter::escape(text) + "</text>";
}

std::string titleXml(const std::string &text) {
  return "<title>" + HBODiagramSvgWriter::escape(text) + "</title>";
}

std::string pathData(const std::vector<HBODiagramLayout::Point> &points) {
  std::string d;
  for (std::size_t i = 0; i < points.size(); ++i)
    d += (i ? " L" : "M") + std::to_string(points[i].x) + " " + std::to_string(points[i].y);
  return d;
}

const char *kindName(Kind kind) {
  switch (kind) {
  case Kind::Fpga:
    return "fpga";
  case Kind::Connector:
    return "connector";
  case Kind::Chip:
    break;
  }
  return "chip";
}

std::string plural(int count, const char *one, const char *many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

void writeBox(std::string &out, const HBODiagramContent::Box &box, const Rect &rect, bool hub) {
  out += "<g class=\"component\" data-name=\"" + HBODiagramSvgWriter::escape(box.name) +
         "\" data-kind=\"" + kindName(box.kind) + "\" data-enabled=\"" +
         (box.enabled ? "true" : "false") + "\">";
  std::string tip = box.title + " (" + box.name + ")";
  if (!box.detail.empty())
    tip += "\n" + box.detail;
  tip += "\n" + box.group;
  if (!box.enabled)
    tip += "\noff under this jumper setting";
  out += titleXml(tip);
  out += rectXml(rect, " rx=\"6\" class=\"body\"");
  const int x = rect.x + 10;
  if (!hub) {
    out += textXml("box-title", x, rect.y + 20,
                   HBODiagramSvgWriter::shorten(box.title, HBODiagramLayout::s_titleChars));
    std::string detail = box.shortName.empty() ? box.name : box.shortName;
    if (!box.detail.empty() && box.detail != box.name)
      detail += kDot + box.detail;
    out += textXml("box-detail", x, rect.y + 37,
                   HBODiagramSvgWriter::shorten(detail, HBODiagramLayout::s_detailChars));
    out += "</g>\n";
    return;
  }
  // The hub has room for more: its part, then its banks, one a line.
  const int centre = rect.x + rect.w / 2;
  const std::string middle = " text-anchor=\"middle\"";
  out += textXml("box-title", centre, rect.y + 26,
                 HBODiagramSvgWriter::shorten(box.title, HBODiagramLayout::s_titleChars), middle);
  out += textXml(
      "box-detail", centre, rect.y + 44,
      HBODiagramSvgWriter::shorten(box.detail.empty() ? box.name : box.name + kDot + box.detail,
                                   HBODiagramLayout::s_detailChars + 4),
      middle);
  if (!box.banks.empty()) {
    int y = rect.y + 82;
    out += textXml("heading", centre, y - 4, "I/O BANKS", middle);
    for (const auto &bank : box.banks) {
      y += HBODiagramLayout::s_lineHeight;
      std::string line = "bank " + bank.id;
      if (!bank.vcco.empty())
        line += kDot + bank.vcco + " V";
      line += kDot + plural(bank.pins, "pin", "pins");
      out += textXml("bank-line", centre, y - 4, HBODiagramSvgWriter::shorten(line, 34), middle);
    }
  }
  out += "</g>\n";
}

void writeLegend(std::string &out, const HBODiagramLayout &layout) {
  const Rect &frame = layout.getLegend();
  out += "<g class=\"legend\">";
  out += rectXml(frame, " rx=\"6\" class=\"frame\"");
  out += textXml("legend-title", frame.x + 12, frame.y + 20, "Legend");
  const int left = frame.x + 12;
  const int right = frame.x + frame.w / 2 + 6;
  int y = frame.y + 34;
  auto swatch = [&](int x, int row, const std::string &cls, const std::string &kind,
                    const std::string &enabled, const std::string &text) {
    const int top = y + row * 22;
    out += "<g class=\"" + cls + "\" data-kind=\"" + kind + "\" data-enabled=\"" + enabled + "\">";
    out += rectXml({x, top, 28, 16}, " rx=\"3\" class=\"body\"");
    out += "</g>";
    out += textXml("legend-text", x + 36, top + 12, text);
  };
  auto line = [&](int x, int row, const std::string &cls, const std::string &text) {
    const int middle = y + row * 22 + 8;
    out += "<path class=\"" + cls + "\" d=\"M" + std::to_string(x) + " " + std::to_string(middle) +
           " L" + std::to_string(x + 28) + " " + std::to_string(middle) + "\"/>";
    out += textXml("legend-text", x + 36, middle + 4, text);
  };
  // The samples take the look of the real thing from the same style rules,
  // but are no component, connection or daughter board themselves.
  using Sample = HBODiagramLayout::Sample;
  auto plain = [&](int x, int row, const char *kind, const std::string &text) {
    out += "<g class=\"sample\" data-kind=\"" + std::string(kind) + "\">" +
           rectXml({x, y + row * 22, 28, 16}, " rx=\"3\"") + "</g>";
    out += textXml("legend-text", x + 36, y + row * 22 + 12, text);
  };
  int row = 0;
  for (Sample sample : layout.getLegendBoxes()) {
    switch (sample) {
    case Sample::Fpga:
      swatch(left, row, "sample", "fpga", "true", "FPGA, with its I/O banks");
      break;
    case Sample::Chip:
      swatch(left, row, "sample", "chip", "true", "chip, under its group");
      break;
    case Sample::Connector:
      swatch(left, row, "sample", "connector", "true", "connector");
      break;
    case Sample::Off:
      swatch(left, row, "sample", "chip", "false", "off under this jumper setting");
      break;
    case Sample::Daughter:
      plain(left, row, "daughter", "daughter board on its connector");
      break;
    default:
      plain(left, row, "rail", "power rail, with its supplies");
      break;
    }
    ++row;
  }
  row = 0;
  for (Sample sample : layout.getLegendLines()) {
    switch (sample) {
    case Sample::Connection:
      line(right, row, "legend-connection", "connection; the label counts its wires");
      break;
    case Sample::ConnectionOff:
      line(right, row, "legend-connection disabled", "connection off under this setting");
      break;
    case Sample::Link:
      line(right, row, "link", "interface, where no connection is given");
      break;
    case Sample::Bank:
      out += "<g class=\"bank-tag\">" + rectXml({right + 2, y + row * 22, 24, 16}, " rx=\"3\"") +
             textXml("bank-text", right + 14, y + row * 22 + 12, "B") + "</g>";
      out += textXml("legend-text", right + 36, y + row * 22 + 12, "FPGA bank the connection uses");
      break;
    case Sample::Fitting:
      plain(right, row, "fitting", "daughter boards that fit");
      break;
    default:
      line(right, row, "rail-link", "from a rail to a rail it lists");
      break;
    }
    ++row;
  }
  y += layout.getLegendRows() * 22 + 8;
  for (const std::string &text : layout.getJumperLines()) {
    y += HBODiagramLayout::s_lineHeight;
    out += textXml("legend-text", left, y, HBODiagramSvgWriter::shorten(text, 80));
  }
  out += "</g>\n";
}

} // namespace

std::string HBODiagramSvgWriter::escape(const std::string &text) {
  return HSTStringUtils::escapeMarkup(text);
}

std::string HBODiagramSvgWriter::shorten(const std::string &text, std::size_t chars) {
  // Count characters by their first bytes, so that a cut never splits one.
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) == 0x80)
      continue;
    if (count + 1 == chars) {
      std::size_t rest = 0;
      for (std::size_t j = i; j < text.size(); ++j)
        rest += (static_cast<unsigned char>(text[j]) & 0xC0) != 0x80 ? 1 : 0;
      if (rest > 1)
        return text.substr(0, i) + "\xE2\x80\xA6";
      return text;
    }
    ++count;
  }
  return text;
}

std::string HBODiagramSvgWriter::write(const HBODiagramContent &content,
                                       const HBODiagramLayout &layout) {
  const auto &boxes = content.getBoxes();
  const auto &links = content.getLinks();
  const auto &rects = layout.getBoxes();
  std::string out;
  out.reserve(4096 + 600 * boxes.size() + 300 * links.size());
  out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"board-diagram\"" +
         attr("width", layout.getWidth()) + attr("height", layout.getHeight()) + " viewBox=\"0 0 " +
         std::to_string(layout.getWidth()) + " " + std::to_string(layout.getHeight()) +
         "\" role=\"img\">\n";
  out += "<title>" + escape(content.getTitle() + " (" + content.getName() + ")") + "</title>\n";
  out += "<style>" + std::string(kStyle) + "</style>\n";
  out += rectXml({0, 0, layout.getWidth(), layout.getHeight()}, " fill=\"#ffffff\"") + "\n";

  const auto title = layout.getTitle();
  out += textXml("title", title.x, title.y, shorten(content.getTitle(), 70)) + "\n";
  out += textXml("subtitle", title.x, title.y + 22,
                 shorten(content.getName() + kDot + content.getSubtitle(), 160)) +
         "\n";

  for (const auto &heading : layout.getHeadings())
    out += textXml("heading", heading.at.x, heading.at.y,
                   shorten(heading.text, HBODiagramLayout::s_detailChars + 6)) +
           "\n";

  for (const auto &frame : layout.getFrames()) {
    const auto &daughter = content.getDaughters()[frame.daughter];
    out += "<g class=\"daughter\" data-board=\"" + escape(daughter.board) + "\">";
    out += titleXml(daughter.title + " (" + daughter.board + ") on " + daughter.baseConnector);
    out += rectXml(frame.rect, " rx=\"8\"");
    out +=
        textXml("frame-title", frame.rect.x + 12, frame.rect.y + 19, shorten(daughter.title, 30));
    out += "</g>\n";
  }

  for (const auto &card : layout.getCards()) {
    const auto &box = boxes[card.box];
    const Rect &connector = rects[card.box];
    const int y = connector.y + connector.h / 2;
    out += "<path class=\"fit-link\" d=\"M" + std::to_string(connector.right()) + " " +
           std::to_string(y) + " L" + std::to_string(card.rect.x) + " " + std::to_string(y) +
           "\"/>\n";
    out += "<g class=\"fitting\" data-connector=\"" + escape(box.name) + "\">";
    out += rectXml(card.rect, " rx=\"6\"");
    out += textXml("card-title", card.rect.x + 10, card.rect.y + 18, "Daughter boards that fit");
    int line = card.rect.y + 18;
    for (const auto &fit : box.fitting) {
      line += HBODiagramLayout::s_lineHeight;
      out += "<text class=\"card-line\"" + attr("x", card.rect.x + 10) + attr("y", line) + ">" +
             titleXml(fit.connector + " (" + fit.match + ")") +
             escape(shorten(fit.board, 24) + kDot + fit.match) + "</text>";
    }
    if (box.fittingTotal > box.fitting.size()) {
      line += HBODiagramLayout::s_lineHeight;
      out += textXml("card-line", card.rect.x + 10, line,
                     "and " + std::to_string(box.fittingTotal - box.fitting.size()) + " more");
    }
    out += "</g>\n";
  }

  // Lines first, then the boxes over their ends, then the labels over all.
  const auto &routes = layout.getRoutes();
  for (std::size_t l = 0; l < links.size(); ++l) {
    const auto &link = links[l];
    if (routes[l].points.size() < 2)
      continue;
    std::string cls = link.connection ? "connection" : "link";
    if (link.connection && !link.enabled)
      cls += " disabled";
    std::string tip = link.name;
    if (link.connection) {
      tip += ": " + plural(link.width, "wire", "wires");
      if (!link.banks.empty())
        tip += ", FPGA bank " + link.banks;
      if (!link.enabled)
        tip += ", off under this jumper setting";
    } else {
      tip += ": interface";
    }
    out += "<path class=\"" + cls + "\" data-name=\"" + escape(link.name) + "\" d=\"" +
           pathData(routes[l].points) + "\">" + titleXml(tip) + "</path>\n";
  }

  for (std::size_t i = 0; i < boxes.size(); ++i)
    writeBox(out, boxes[i], rects[i], i == content.getHub());

  for (std::size_t l = 0; l < links.size(); ++l) {
    const auto &link = links[l];
    const auto &route = routes[l];
    if (route.points.size() < 2)
      continue;
    if (!route.hasLabel)
      continue;
    if (!link.connection) {
      out += textXml("link-label", route.label.x, route.label.y, shorten(link.name, 24)) + "\n";
      continue;
    }
    out += textXml(link.enabled ? "width-label" : "width-label disabled", route.label.x,
                   route.label.y, "\xC3\x97" + std::to_string(link.width));
    if (route.hasBankTag) {
      out += "<g class=\"bank-tag\">" + rectXml(route.bankTag, " rx=\"3\"") +
             textXml("bank-text", route.bankTag.x + route.bankTag.w / 2, route.bankTag.y + 12,
                     "B" + link.banks) +
             "</g>";
    }
    out += "\n";
  }

  const auto &rails = content.getRails();
  if (!rails.empty()) {
    const Rect &band = layout.getPowerBand();
    out += "<g class=\"power-band\">" + rectXml(band, " rx=\"8\"") + "</g>\n";
    out += textXml("heading", band.x + 8, band.y + 18, "POWER RAILS") + "\n";
    const auto &railRects = layout.getRails();
    for (const auto &edge : layout.getRailEdges())
      out += "<path class=\"rail-link\" d=\"" + pathData(edge.points) + "\"/>\n";
    for (std::size_t r = 0; r < rails.size(); ++r) {
      const Rect &rect = railRects[r];
      out += "<g class=\"rail\" data-name=\"" + escape(rails[r].name) + "\">";
      std::string tip = rails[r].name;
      for (const std::string &supply : rails[r].supplies)
        tip += "\nsupply " + supply;
      for (const std::string &member : rails[r].rails)
        tip += "\nrail " + member;
      out += titleXml(tip);
      out += rectXml(rect, " rx=\"5\"");
      out += textXml("rail-name", rect.x + 10, rect.y + 18,
                     shorten(rails[r].name, HBODiagramLayout::s_titleChars));
      int y = rect.y + 18;
      for (const std::string &line : HBODiagramLayout::railLines(rails[r])) {
        y += HBODiagramLayout::s_lineHeight;
        out += textXml("rail-line", rect.x + 10, y,
                       shorten(line, HBODiagramLayout::s_detailChars + 2));
      }
      out += "</g>\n";
    }
  }

  writeLegend(out, layout);
  out += "</svg>\n";
  return out;
}
