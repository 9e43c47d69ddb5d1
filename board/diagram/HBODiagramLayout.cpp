#include "HBODiagramLayout.h"

#include <algorithm>
#include <map>

namespace {

constexpr int kMargin = 24;
constexpr int kTitleHeight = 72;
constexpr int kLaneRoom = 40;
constexpr int kColumnGap = 170;
constexpr int kOuterGap = 70;
constexpr int kBoxGap = 14;
constexpr int kGroupGap = 12;
constexpr int kHeadingHeight = 22;
constexpr int kFrameHeader = 30;
constexpr int kInnerGap = 10;
constexpr int kLaneStep = 6;

using Rect = HBODiagramLayout::Rect;
using Point = HBODiagramLayout::Point;

int cardHeight(const HBODiagramContent::Box &box) {
  const std::size_t lines = box.fitting.size() + (box.fittingTotal > box.fitting.size() ? 1 : 0);
  return 26 + HBODiagramLayout::s_lineHeight * static_cast<int>(lines) + 6;
}

int hubHeight(const HBODiagramContent::Box &box) {
  int height = 70;
  if (!box.banks.empty())
    height += 22 + HBODiagramLayout::s_lineHeight * static_cast<int>(box.banks.size());
  return height + 12;
}

} // namespace

int HBODiagramLayout::boxHeight(int links) { return std::max(52, 18 * (links + 1)); }

HBODiagramLayout::HBODiagramLayout(const HBODiagramContent &content) {
  m_title = {kMargin, kMargin + 24};
  m_boxes.resize(content.getBoxes().size());
  m_side.assign(content.getBoxes().size(), -1);
  placeColumns(content);
  routeLinks(content);
  placeRails(content, m_contentBottom + 36);
  const int railBottom = m_powerBand.h > 0 ? m_powerBand.bottom() : m_contentBottom;
  placeLegend(content, railBottom + 30);

  m_width = std::max({m_rightEdge, m_legend.right(), m_powerBand.right()}) + kMargin;
  for (const Route &route : m_routes)
    for (const Point &point : route.points)
      m_width = std::max(m_width, point.x + kMargin);
  m_height = m_legend.bottom() + kMargin;
}

void HBODiagramLayout::placeColumns(const HBODiagramContent &content) {
  const auto &boxes = content.getBoxes();
  const std::size_t hub = content.getHub();
  const int leftX = kMargin + kLaneRoom;
  const int hubX = leftX + s_boxWidth + kColumnGap;
  const int rightX = hubX + s_hubWidth + kColumnGap;
  const int outerX = rightX + s_boxWidth + kOuterGap;

  // How many lines each box has to the hub: they set its height.
  std::vector<int> hubLinks(boxes.size(), 0);
  for (const auto &link : content.getLinks()) {
    if (link.from >= boxes.size() || link.to >= boxes.size())
      continue;
    if (link.from == hub)
      ++hubLinks[link.to];
    else if (link.to == hub)
      ++hubLinks[link.from];
  }

  // The connector each daughter board sits on, when the board has it.
  std::vector<std::size_t> baseOf(content.getDaughters().size(), boxes.size());
  for (std::size_t d = 0; d < content.getDaughters().size(); ++d)
    for (std::size_t i = 0; i < boxes.size(); ++i)
      if (i != hub && boxes[i].daughter < 0 &&
          boxes[i].name == content.getDaughters()[d].baseConnector)
        baseOf[d] = i;

  // Sides: the chips to the left, the connectors to the right, and what a
  // daughter board brought into its frame beyond its connector.
  std::map<std::string, std::vector<std::size_t>> left, right;
  std::vector<std::vector<std::size_t>> framed(content.getDaughters().size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const auto &box = boxes[i];
    if (i == hub) {
      m_side[i] = 0;
    } else if (box.daughter >= 0 && baseOf[static_cast<std::size_t>(box.daughter)] < boxes.size()) {
      m_side[i] = 2;
      framed[static_cast<std::size_t>(box.daughter)].push_back(i);
    } else if (box.kind == HBODiagramContent::Kind::Connector) {
      m_side[i] = 1;
      right[box.group].push_back(i);
    } else {
      m_side[i] = -1;
      left[box.group].push_back(i);
    }
  }
  // In a frame the daughter's own connector comes first, level with the
  // connector it is plugged into.
  for (std::size_t d = 0; d < framed.size(); ++d)
    std::stable_sort(framed[d].begin(), framed[d].end(), [&](std::size_t a, std::size_t b) {
      return (boxes[a].name == content.getDaughters()[d].connector) >
             (boxes[b].name == content.getDaughters()[d].connector);
    });

  // The chip groups go, in their order, to the shorter side, so that a
  // board of many chips stands on both sides of its FPGA instead of in one
  // long column. The connectors stay on the right, beside what fits them.
  auto groupHeight = [&](const std::vector<std::size_t> &members, bool withOuter) {
    int height = kHeadingHeight + kGroupGap;
    for (std::size_t i : members) {
      int slot = boxHeight(hubLinks[i]);
      if (withOuter && !boxes[i].fitting.empty())
        slot = std::max(slot, cardHeight(boxes[i]));
      const auto frame = std::find(baseOf.begin(), baseOf.end(), i);
      if (withOuter && frame != baseOf.end()) {
        const std::size_t members = framed[static_cast<std::size_t>(frame - baseOf.begin())].size();
        slot = std::max(slot + kFrameHeader,
                        kFrameHeader + static_cast<int>(members) * (boxHeight(0) + kInnerGap));
      }
      height += slot + kBoxGap;
    }
    return height;
  };
  std::vector<std::pair<std::string, std::vector<std::size_t>>> leftGroups, rightGroups;
  int leftEstimate = 0;
  int rightEstimate = 0;
  for (const auto &group : right) {
    rightGroups.push_back(group);
    rightEstimate += groupHeight(group.second, true);
  }
  for (const auto &group : left) {
    const int height = groupHeight(group.second, false);
    if (leftEstimate <= rightEstimate) {
      leftGroups.push_back(group);
      leftEstimate += height;
    } else {
      rightGroups.push_back(group);
      rightEstimate += height;
      for (std::size_t i : group.second)
        m_side[i] = 1;
    }
  }

  // The columns, from a top of 0; moved into place below.
  int leftHeight = 0;
  for (const auto &group : leftGroups) {
    m_headings.push_back({group.first, {leftX, leftHeight + 15}});
    leftHeight += kHeadingHeight;
    for (std::size_t i : group.second) {
      m_boxes[i] = {leftX, leftHeight, s_boxWidth, boxHeight(hubLinks[i])};
      leftHeight += m_boxes[i].h + kBoxGap;
    }
    leftHeight += kGroupGap;
  }
  const std::size_t leftHeadings = m_headings.size();

  int rightHeight = 0;
  for (const auto &group : rightGroups) {
    m_headings.push_back({group.first, {rightX, rightHeight + 15}});
    rightHeight += kHeadingHeight;
    for (std::size_t i : group.second) {
      const int height = boxHeight(hubLinks[i]);
      int slot = height;
      const auto frame = std::find(baseOf.begin(), baseOf.end(), i);
      if (frame != baseOf.end()) {
        const std::size_t d = static_cast<std::size_t>(frame - baseOf.begin());
        int y = rightHeight + kFrameHeader;
        for (std::size_t member : framed[d]) {
          m_boxes[member] = {outerX + 28, y, s_innerWidth, boxHeight(0)};
          y += boxHeight(0) + kInnerGap;
        }
        Frame placed;
        placed.daughter = d;
        placed.rect = {outerX, rightHeight, s_innerWidth + 44,
                       y - rightHeight + (framed[d].empty() ? kInnerGap : 0)};
        m_frames.push_back(placed);
        m_boxes[i] = {rightX, rightHeight + kFrameHeader, s_boxWidth, height};
        slot = std::max(height + kFrameHeader, placed.rect.h);
      } else {
        m_boxes[i] = {rightX, rightHeight, s_boxWidth, height};
        if (!boxes[i].fitting.empty()) {
          Card card;
          card.box = i;
          card.rect = {outerX, rightHeight, s_cardWidth, cardHeight(boxes[i])};
          m_cards.push_back(card);
          slot = std::max(slot, card.rect.h);
        }
      }
      rightHeight += slot + kBoxGap;
    }
    rightHeight += kGroupGap;
  }

  // The hub is as tall as the taller column, and each column is centred on
  // it.
  const int top = kMargin + kTitleHeight;
  int hubTall = 0;
  if (hub < boxes.size())
    hubTall = std::max({hubHeight(boxes[hub]), leftHeight - kBoxGap - kGroupGap,
                        rightHeight - kBoxGap - kGroupGap});
  const int leftShift = top + std::max(0, (hubTall - leftHeight) / 2);
  const int rightShift = top + std::max(0, (hubTall - rightHeight) / 2);
  for (std::size_t i = 0; i < boxes.size(); ++i)
    m_boxes[i].y += m_side[i] < 0 ? leftShift : rightShift;
  for (std::size_t h = 0; h < m_headings.size(); ++h)
    m_headings[h].at.y += h < leftHeadings ? leftShift : rightShift;
  for (Frame &frame : m_frames)
    frame.rect.y += rightShift;
  for (Card &card : m_cards)
    card.rect.y += rightShift;
  if (hub < boxes.size())
    m_boxes[hub] = {hubX, top, s_hubWidth, hubTall};

  m_contentBottom = top;
  m_rightEdge = kMargin;
  for (const Rect &rect : m_boxes) {
    m_contentBottom = std::max(m_contentBottom, rect.bottom());
    m_rightEdge = std::max(m_rightEdge, rect.right());
  }
  for (const Frame &frame : m_frames) {
    m_contentBottom = std::max(m_contentBottom, frame.rect.bottom());
    m_rightEdge = std::max(m_rightEdge, frame.rect.right());
  }
  for (const Card &card : m_cards) {
    m_contentBottom = std::max(m_contentBottom, card.rect.bottom());
    m_rightEdge = std::max(m_rightEdge, card.rect.right());
  }
  // The title is wide too.
  m_rightEdge = std::max(m_rightEdge, kMargin + s_legendWidth);
}

void HBODiagramLayout::routeLinks(const HBODiagramContent &content) {
  const auto &boxes = content.getBoxes();
  const auto &links = content.getLinks();
  const std::size_t hub = content.getHub();
  m_routes.resize(links.size());

  // The lines of each box to the hub share its height evenly.
  std::vector<std::vector<std::size_t>> hubLines(boxes.size());
  for (std::size_t l = 0; l < links.size(); ++l) {
    const auto &link = links[l];
    if (link.from >= boxes.size() || link.to >= boxes.size() || link.from == link.to)
      continue;
    if (link.from == hub || link.to == hub)
      hubLines[link.from == hub ? link.to : link.from].push_back(l);
  }

  int leftLanes = 0;
  int rightLanes = 0;
  int channels = 0;
  std::map<std::size_t, int> frameLanes;
  for (std::size_t l = 0; l < links.size(); ++l) {
    const auto &link = links[l];
    Route &route = m_routes[l];
    if (link.from >= boxes.size() || link.to >= boxes.size() || link.from == link.to)
      continue;
    const Rect &a = m_boxes[link.from];
    const Rect &b = m_boxes[link.to];
    const bool toHub = link.from == hub || link.to == hub;
    const std::size_t other = link.from == hub ? link.to : link.from;
    const int side = m_side[other];

    if (toHub && (side == -1 || side == 1)) {
      const Rect &hubRect = m_boxes[hub];
      const Rect &box = m_boxes[other];
      const auto &lines = hubLines[other];
      const int position =
          static_cast<int>(std::find(lines.begin(), lines.end(), l) - lines.begin());
      const int y = box.y + box.h * (position + 1) / (static_cast<int>(lines.size()) + 1);
      const int hubEdge = side < 0 ? hubRect.x : hubRect.right();
      const int boxEdge = side < 0 ? box.right() : box.x;
      route.points = {{hubEdge, y}, {boxEdge, y}};
      route.label = {(hubEdge + boxEdge) / 2, y - 4};
      if (!link.banks.empty()) {
        const int width = 10 + 7 * static_cast<int>(link.banks.size() + 1);
        route.hasBankTag = true;
        route.bankTag = {side < 0 ? hubRect.x + 3 : hubRect.right() - 3 - width, y - 8, width, 16};
      }
      continue;
    }

    // A daughter board's connector and the connector it sits on face each
    // other.
    const bool frameA = m_side[link.from] == 2;
    const bool frameB = m_side[link.to] == 2;
    if (frameA != frameB && m_side[frameA ? link.to : link.from] == 1) {
      const Rect &base = frameA ? b : a;
      const Rect &inner = frameA ? a : b;
      const int y = std::min(std::max(inner.y + inner.h / 2, base.y + 8), base.bottom() - 8);
      route.points = {{base.right(), y}, {inner.x, y}};
      route.label = {(base.right() + inner.x) / 2, y - 4};
      continue;
    }
    // Two boxes of one column are joined down a lane at \p x left of them.
    auto alongLane = [&](int x) {
      const int ya = a.y + a.h / 2;
      const int yb = b.y + b.h / 2;
      route.points = {{a.x, ya}, {x, ya}, {x, yb}, {b.x, yb}};
      route.hasLabel = false;
    };
    if (frameA && frameB && boxes[link.from].daughter == boxes[link.to].daughter) {
      int &lane = frameLanes[static_cast<std::size_t>(boxes[link.from].daughter)];
      alongLane(a.x - 8 - kLaneStep * (lane++ % 3));
      continue;
    }
    if (m_side[link.from] == -1 && m_side[link.to] == -1) {
      alongLane(a.x - 10 - kLaneStep * (leftLanes++ % 5));
      continue;
    }
    // Anything else goes round the right of everything, and from the left
    // column under the columns first.
    const int laneX = m_rightEdge + 14 + kLaneStep * (rightLanes++ % 8);
    auto exitPoints = [&](std::size_t end, std::vector<Point> &points) {
      const Rect &rect = m_boxes[end];
      const int y = rect.y + rect.h / 2;
      if (m_side[end] == -1) {
        const int leftLane = rect.x - 10 - kLaneStep * (leftLanes % 5);
        const int channel = m_contentBottom + 14 + kLaneStep * (channels % 6);
        points.push_back({rect.x, y});
        points.push_back({leftLane, y});
        points.push_back({leftLane, channel});
        points.push_back({laneX, channel});
      } else {
        points.push_back({rect.right(), y});
        points.push_back({laneX, y});
      }
    };
    std::vector<Point> first, second;
    exitPoints(link.from, first);
    exitPoints(link.to, second);
    if (m_side[link.from] == -1 || m_side[link.to] == -1) {
      ++leftLanes;
      ++channels;
    }
    route.points = first;
    route.points.insert(route.points.end(), second.rbegin(), second.rend());
    route.label = {first.back().x + 4, (first.back().y + second.back().y) / 2};
  }
  if (channels > 0)
    m_contentBottom += 14 + kLaneStep * std::min(channels, 6);
  if (rightLanes > 0)
    m_rightEdge += 14 + kLaneStep * std::min(rightLanes, 8);
}

std::vector<std::string> HBODiagramLayout::railLines(const HBODiagramContent::Rail &rail) {
  std::vector<std::string> lines;
  std::string detail;
  if (rail.direct)
    detail = "direct";
  if (rail.phases > 0)
    detail += (detail.empty() ? "" : " \xC2\xB7 ") + std::to_string(rail.phases) + " phases";
  if (!detail.empty())
    lines.push_back(detail);
  std::string line;
  std::size_t count = 0;
  for (const std::string &supply : rail.supplies) {
    if (lines.size() >= 4) {
      ++count;
      continue;
    }
    const std::string piece = (line.empty() ? "" : ", ") + supply;
    // Supply names are upper case and wide: fewer of them fit a line.
    if (!line.empty() && line.size() + piece.size() > s_detailChars - 5) {
      lines.push_back(line + ",");
      line = supply;
    } else {
      line += piece;
    }
  }
  if (!line.empty())
    lines.push_back(line);
  if (count > 0)
    lines.push_back("and " + std::to_string(count) + " more");
  return lines;
}

void HBODiagramLayout::placeRails(const HBODiagramContent &content, int top) {
  const auto &rails = content.getRails();
  if (rails.empty())
    return;
  // A rail stands a row below every rail that lists it. The network is
  // what a board file says, so a cycle in it must not loop: no rail goes
  // deeper than there are rails.
  const std::size_t count = rails.size();
  std::map<std::string, std::size_t> index;
  for (std::size_t i = 0; i < count; ++i)
    index.emplace(rails[i].name, i);
  std::vector<std::size_t> waiting(count, 0);
  std::vector<std::vector<std::size_t>> next(count);
  for (std::size_t i = 0; i < count; ++i)
    for (const std::string &member : rails[i].rails) {
      const auto found = index.find(member);
      if (found == index.end() || found->second == i)
        continue;
      m_railEdges.push_back({i, found->second, {}});
      next[i].push_back(found->second);
      ++waiting[found->second];
    }
  // Longest paths from the rails that none lists, each rail and line taken
  // once; the rails of a cycle stay where their first feeders put them.
  std::vector<std::size_t> depth(count, 0);
  std::vector<std::size_t> ready;
  for (std::size_t i = 0; i < count; ++i)
    if (waiting[i] == 0)
      ready.push_back(i);
  while (!ready.empty()) {
    const std::size_t rail = ready.back();
    ready.pop_back();
    for (std::size_t member : next[rail]) {
      depth[member] = std::max(depth[member], depth[rail] + 1);
      if (--waiting[member] == 0)
        ready.push_back(member);
    }
  }

  const int width = std::max(m_rightEdge - kMargin, 4 * (s_railWidth + 24));
  m_rails.resize(count);
  int y = top + 34;
  std::map<std::size_t, std::vector<std::size_t>> levels;
  for (std::size_t i = 0; i < count; ++i)
    levels[depth[i]].push_back(i);
  for (const auto &level : levels) {
    int x = kMargin;
    int rowHeight = 0;
    for (std::size_t i : level.second) {
      const int height = 26 + s_lineHeight * static_cast<int>(railLines(rails[i]).size()) + 4;
      if (x > kMargin && x + s_railWidth > kMargin + width) {
        x = kMargin;
        y += rowHeight + 24;
        rowHeight = 0;
      }
      m_rails[i] = {x, y, s_railWidth, height};
      x += s_railWidth + 24;
      rowHeight = std::max(rowHeight, height);
    }
    if (rowHeight > 0)
      y += rowHeight + 40;
  }
  // A line leaves its rail downwards and turns below the lowest box of the
  // rail's row, at a height of the rail's own, so that it crosses no box
  // and runs along no other rail's line.
  std::map<int, int> rowBottom;
  std::map<int, std::vector<std::size_t>> rowSources;
  for (const Rect &rect : m_rails)
    rowBottom[rect.y] = std::max(rowBottom[rect.y], rect.bottom());
  for (RailEdge &edge : m_railEdges) {
    const Rect &from = m_rails[edge.from];
    const Rect &to = m_rails[edge.to];
    std::vector<std::size_t> &sources = rowSources[from.y];
    std::size_t lane = std::find(sources.begin(), sources.end(), edge.from) - sources.begin();
    if (lane == sources.size())
      sources.push_back(edge.from);
    const int bend = rowBottom[from.y] + 8 + kLaneStep * static_cast<int>(lane % 4);
    const int fromX = from.x + from.w / 2;
    const int toX = to.x + to.w / 2 + (to.y > bend ? 0 : 12);
    edge.points = {{fromX, from.bottom()},
                   {fromX, bend},
                   {toX, bend},
                   {toX, to.y > bend ? to.y : to.bottom()}};
  }

  int right = kMargin;
  for (const Rect &rect : m_rails)
    right = std::max(right, rect.right());
  m_powerBand = {kMargin - 8, top, right - kMargin + 16, y - 40 - top + 12};
}

int HBODiagramLayout::getLegendRows() const {
  return static_cast<int>(std::max(m_legendBoxes.size(), m_legendLines.size()));
}

void HBODiagramLayout::placeLegend(const HBODiagramContent &content, int top) {
  using Kind = HBODiagramContent::Kind;
  bool kinds[3] = {false, false, false};
  bool off = false, daughter = false, fitting = false;
  for (const HBODiagramContent::Box &box : content.getBoxes()) {
    kinds[static_cast<int>(box.kind)] = true;
    off = off || !box.enabled;
    daughter = daughter || box.daughter >= 0;
    fitting = fitting || !box.fitting.empty();
  }
  bool live = false, dead = false, link = false, bank = false;
  for (const HBODiagramContent::Link &line : content.getLinks()) {
    live = live || (line.connection && line.enabled);
    dead = dead || (line.connection && !line.enabled);
    link = link || !line.connection;
    bank = bank || !line.banks.empty();
  }
  bool railLink = false;
  for (const HBODiagramContent::Rail &rail : content.getRails())
    railLink = railLink || !rail.rails.empty();
  const std::pair<bool, Sample> boxes[] = {
      {kinds[static_cast<int>(Kind::Fpga)], Sample::Fpga},
      {kinds[static_cast<int>(Kind::Chip)], Sample::Chip},
      {kinds[static_cast<int>(Kind::Connector)], Sample::Connector},
      {off, Sample::Off},
      {daughter, Sample::Daughter},
      {!content.getRails().empty(), Sample::Rail}};
  const std::pair<bool, Sample> lines[] = {
      {live, Sample::Connection}, {dead, Sample::ConnectionOff}, {link, Sample::Link},
      {bank, Sample::Bank},       {fitting, Sample::Fitting},    {railLink, Sample::RailLink}};
  for (const auto &entry : boxes)
    if (entry.first)
      m_legendBoxes.push_back(entry.second);
  for (const auto &entry : lines)
    if (entry.first)
      m_legendLines.push_back(entry.second);

  std::string line = content.getJumperStates().empty() ? "No jumpers." : "Jumpers drawn:";
  for (const auto &state : content.getJumperStates()) {
    const std::string piece = " " + state.first + "=" + (state.second ? "true" : "false");
    if (line.size() + piece.size() > 72) {
      m_jumperLines.push_back(line);
      line = "  ";
    }
    line += piece;
  }
  m_jumperLines.push_back(line);
  // The rows of samples, then the jumper setting; a board file can have
  // any number of jumpers, but the legend lists at most twenty lines.
  if (m_jumperLines.size() > 20) {
    m_jumperLines.resize(20);
    m_jumperLines.back() = "  ...";
  }
  m_legend = {kMargin, top, s_legendWidth,
              30 + getLegendRows() * 22 + 8 +
                  s_lineHeight * static_cast<int>(m_jumperLines.size()) + 8};
}
