// What the block diagram of a board shows, gathered from its object graph
// once, so that the layout and the writer never go back to the board: the
// FPGA with its I/O banks, the other components grouped by what they are,
// the connections with their widths and whether the jumper setting leaves
// them live, the daughter boards that fit each connector or sit on it, and
// the power rails. Everything is in a fixed order, so that one board always
// gives the same diagram.
#ifndef BOARDLIB_HBODIAGRAMCONTENT_H
#define BOARDLIB_HBODIAGRAMCONTENT_H

#include "HBODiagramOptions.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

class HBOBoard;

class HBODiagramContent {
public:
  enum class Kind { Fpga, Chip, Connector };

  /// One I/O bank of the FPGA: its id, its VCCO where the pins give one, and
  /// how many of the FPGA's pins lie in it.
  struct Bank {
    std::string id;
    std::string vcco;
    int pins = 0;
  };

  /// A daughter connector of the catalog that fits one of the board's
  /// connectors: its full name, the board it belongs to, and how it fits
  /// ("explicit", "full" or "partial").
  struct Fitting {
    std::string connector;
    std::string board;
    std::string match;
  };

  /// One component of the board.
  struct Box {
    std::string name;
    /// The name as the box shows it: in a daughter board's frame without
    /// the base connector in front; else empty, for the name itself.
    std::string shortName;
    std::string title;
    std::string detail;
    /// The heading it is drawn under: the major group, else the sub type.
    std::string group;
    Kind kind = Kind::Chip;
    /// False when it has connections and the jumper setting turns off all
    /// of them.
    bool enabled = true;
    /// The daughter board it came with, on an integrated board; -1 for the
    /// board's own components.
    int daughter = -1;
    std::vector<Fitting> fitting;
    /// How many fitting connectors there were before the list was cut.
    std::size_t fittingTotal = 0;
    std::vector<Bank> banks;
  };

  /// A line between two boxes: a connection of the board (\p connection),
  /// or, where no connection joins them, an interface of one that leads to
  /// the other.
  struct Link {
    std::string name;
    std::size_t from = 0;
    std::size_t to = 0;
    int width = 0;
    bool enabled = true;
    bool connection = true;
    /// The FPGA banks the connection's FPGA pins lie in, such as "34" or
    /// "15+16"; empty when it does not end on the FPGA.
    std::string banks;
  };

  /// A daughter board of an integrated board and the base connector it
  /// sits on.
  struct Daughter {
    std::string baseConnector;
    std::string board;
    std::string title;
    std::string connector;
  };

  struct Rail {
    std::string name;
    std::vector<std::string> supplies;
    std::vector<std::string> rails;
    bool direct = false;
    int phases = 0;
  };

  /// The most fitting daughter connectors listed beside one connector; the
  /// rest are counted.
  static constexpr std::size_t s_maxFitting = 4;

  /// Gathers the diagram of \p board under \p options. Jumpers of the
  /// setting that the board does not have, or values that are no boolean,
  /// are left out here: checkJumpers tells about them.
  HBODiagramContent(const HBOBoard &board, const HBODiagramOptions &options);

  /// Whether every jumper of \p options names a jumper of \p board (case
  /// does not matter) and sets it to "true" or "false"; each that does not
  /// is told as a message that lists what would do.
  static bool checkJumpers(const HBOBoard &board, const HBODiagramOptions &options);

  const std::string &getTitle() const { return m_title; }
  const std::string &getName() const { return m_name; }
  const std::string &getSubtitle() const { return m_subtitle; }
  const std::vector<Box> &getBoxes() const { return m_boxes; }
  const std::vector<Link> &getLinks() const { return m_links; }
  const std::vector<Daughter> &getDaughters() const { return m_daughters; }
  const std::vector<Rail> &getRails() const { return m_rails; }
  /// The index of the box the others are drawn around: the FPGA, else the
  /// first connector, else the first box; the box count when there is none.
  std::size_t getHub() const { return m_hub; }
  /// Each jumper with the state it is drawn in, in the board's order.
  const std::vector<std::pair<std::string, bool>> &getJumperStates() const {
    return m_jumperStates;
  }
  /// Whether \p options changed any jumper from its default.
  bool isJumperSettingGiven() const { return m_settingGiven; }

private:
  void gatherBoxes(const HBOBoard &board, const HBODiagramOptions &options);
  void gatherLinks(const HBOBoard &board);
  void gatherRails(const HBOBoard &board);
  std::size_t findBox(const std::string &name) const;

  std::string m_title;
  std::string m_name;
  std::string m_subtitle;
  std::vector<Box> m_boxes;
  std::map<std::string, std::size_t> m_boxIndex;
  std::vector<Link> m_links;
  std::vector<Daughter> m_daughters;
  std::vector<Rail> m_rails;
  std::size_t m_hub = 0;
  std::vector<std::pair<std::string, bool>> m_jumperStates;
  bool m_settingGiven = false;
};

#endif
