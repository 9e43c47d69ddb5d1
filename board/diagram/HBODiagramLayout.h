// Where each part of a board's block diagram goes. The FPGA stands in the
// middle, as tall as the columns beside it: the chips to its left, grouped
// under headings, the connectors to its right, and beyond each connector the
// daughter board that sits on it or the catalog's daughter boards that fit
// it. Every line between the FPGA and a component is then one straight
// horizontal stroke at a height of its own, so that no line crosses a box and
// every label has room; the few other lines go round the columns. The power
// rails and the legend follow below. Sizes grow with the content, so a board
// of sixty components is as legible as one of five, only taller.
#ifndef BOARDLIB_HBODIAGRAMLAYOUT_H
#define BOARDLIB_HBODIAGRAMLAYOUT_H

#include "HBODiagramContent.h"

#include <string>
#include <utility>
#include <vector>

class HBODiagramLayout {
public:
  struct Rect {
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    int right() const { return x + w; }
    int bottom() const { return y + h; }
    bool overlaps(const Rect &other) const {
      return x < other.right() && other.x < right() && y < other.bottom() && other.y < bottom();
    }
  };
  struct Point {
    int x = 0;
    int y = 0;
  };
  /// A heading over a group of components.
  struct Heading {
    std::string text;
    Point at;
  };
  /// The line of one link of the content, in the same order: its points,
  /// where its label goes, and, on the FPGA, where its bank tag goes.
  struct Route {
    std::vector<Point> points;
    /// Lines that run along a column's edge have no room for a label.
    bool hasLabel = true;
    Point label;
    bool hasBankTag = false;
    Rect bankTag;
  };
  /// The frame of a daughter board drawn on its connector.
  struct Frame {
    std::size_t daughter = 0;
    Rect rect;
  };
  /// The card that lists the daughter boards fitting one connector.
  struct Card {
    std::size_t box = 0;
    Rect rect;
  };
  /// A line from a power rail to a rail it lists.
  struct RailEdge {
    std::size_t from = 0;
    std::size_t to = 0;
    std::vector<Point> points;
  };

  // Sizes the writer draws with.
  static constexpr int s_boxWidth = 210;
  static constexpr int s_hubWidth = 330;
  static constexpr int s_innerWidth = 200;
  static constexpr int s_cardWidth = 250;
  static constexpr int s_railWidth = 210;
  static constexpr int s_lineHeight = 16;
  static constexpr int s_legendWidth = 560;
  /// Characters of a box's title and detail lines that fit its width.
  static constexpr std::size_t s_titleChars = 26;
  static constexpr std::size_t s_detailChars = 30;

  explicit HBODiagramLayout(const HBODiagramContent &content);

  int getWidth() const { return m_width; }
  int getHeight() const { return m_height; }
  Point getTitle() const { return m_title; }
  /// One rectangle per box of the content, in its order.
  const std::vector<Rect> &getBoxes() const { return m_boxes; }
  const std::vector<Route> &getRoutes() const { return m_routes; }
  const std::vector<Heading> &getHeadings() const { return m_headings; }
  const std::vector<Frame> &getFrames() const { return m_frames; }
  const std::vector<Card> &getCards() const { return m_cards; }
  /// One rectangle per rail of the content; the band they stand in.
  const std::vector<Rect> &getRails() const { return m_rails; }
  const std::vector<RailEdge> &getRailEdges() const { return m_railEdges; }
  const Rect &getPowerBand() const { return m_powerBand; }
  const Rect &getLegend() const { return m_legend; }
  /// The lines of the legend's jumper setting, made to fit its width.
  const std::vector<std::string> &getJumperLines() const { return m_jumperLines; }

  /// What the legend explains, only what the diagram shows: boxes in its
  /// left column, lines and tags in its right.
  enum class Sample {
    Fpga,
    Chip,
    Connector,
    Off,
    Daughter,
    Rail,
    Connection,
    ConnectionOff,
    Link,
    Bank,
    Fitting,
    RailLink
  };
  const std::vector<Sample> &getLegendBoxes() const { return m_legendBoxes; }
  const std::vector<Sample> &getLegendLines() const { return m_legendLines; }
  /// The rows of samples, the taller of the two columns.
  int getLegendRows() const;

  /// The height of a box that has \p links lines to the FPGA: each line
  /// gets a height of its own, far enough from the next for its label.
  static int boxHeight(int links);
  /// The lines written in a power rail's box under its name: whether it is
  /// direct and phased, then its supplies, cut after a few lines.
  static std::vector<std::string> railLines(const HBODiagramContent::Rail &rail);

private:
  void placeColumns(const HBODiagramContent &content);
  void routeLinks(const HBODiagramContent &content);
  void placeRails(const HBODiagramContent &content, int top);
  void placeLegend(const HBODiagramContent &content, int top);

  int m_width = 0;
  int m_height = 0;
  Point m_title;
  std::vector<Rect> m_boxes;
  std::vector<Route> m_routes;
  std::vector<Heading> m_headings;
  std::vector<Frame> m_frames;
  std::vector<Card> m_cards;
  std::vector<Rect> m_rails;
  std::vector<RailEdge> m_railEdges;
  Rect m_powerBand;
  Rect m_legend;
  std::vector<std::string> m_jumperLines;
  std::vector<Sample> m_legendBoxes;
  std::vector<Sample> m_legendLines;
  // Which side of the FPGA each box stands on: -1 left, 1 right, 2 in a
  // daughter frame or beyond, 0 the FPGA itself.
  std::vector<int> m_side;
  int m_contentBottom = 0;
  int m_rightEdge = 0;
};

#endif
