// The block diagrams of boards: every sample board draws as SVG with a group
// per component and a path per connection, a jumper setting greys exactly
// what it turns off, an integrated board shows its daughter boards in place,
// a board of sixty components lays out without overlaps, names from a board
// file stay text, and a diagram replaces its file whole or not at all.
#include "../repo/RepoTestSupport.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardComponent.h"
#include "HBOBoardDiagram.h"
#include "HBODiagramContent.h"
#include "HBODiagramLayout.h"
#include "HBOParser.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>

namespace {

using Rect = HBODiagramLayout::Rect;

struct Svg {
  pugi::xml_document doc;
  explicit Svg(const std::string &text) {
    const pugi::xml_parse_result parsed = doc.load_string(text.c_str());
    EXPECT_TRUE(parsed) << parsed.description();
  }
  pugi::xpath_node_set all(const std::string &query) const {
    return doc.select_nodes(query.c_str());
  }
  std::set<std::string> names(const std::string &query) const {
    std::set<std::string> out;
    for (const pugi::xpath_node &node : all(query))
      out.insert(node.node().attribute("data-name").value());
    return out;
  }
};

Rect rectOf(const pugi::xml_node &group) {
  const pugi::xml_node rect = group.child("rect");
  return {rect.attribute("x").as_int(), rect.attribute("y").as_int(),
          rect.attribute("width").as_int(), rect.attribute("height").as_int()};
}

std::unique_ptr<HBOBoard> readBoard(const std::string &path) {
  auto board = std::make_unique<HBOBoard>();
  HBOParser parser;
  EXPECT_TRUE(parser.parseFile(path, board.get())) << path;
  return board;
}

const std::string kSampleKit =
    test::dataPath("../../data/boards/board_files/kestrel-boards/sample_kit/1.0/board.xml");

class SampleDiagrams : public test::RepoTest {};

// Every board of the embedded installation, drawn with the catalog's
// fitting daughter boards: the shape that pages and tests rely on.
TEST_F(SampleDiagrams, EveryBoardDrawsOneGroupPerComponentAndOnePathPerConnection) {
  useDataDirs({"../../data"});
  HBOBoardCReposMgr *catalog = repo();
  ASSERT_GE(catalog->getBoardPartMap().size(), 10u);
  for (const auto &entry : catalog->getBoardPartMap()) {
    const HBOBoard &board = *entry.second;
    SCOPED_TRACE(board.getName());
    Svg svg(HBOBoardDiagram::toSvg(board));
    const pugi::xml_node root = svg.doc.child("svg");
    EXPECT_FALSE(root.attribute("viewBox").empty());
    EXPECT_GT(root.attribute("width").as_int(), 0);
    EXPECT_GT(root.attribute("height").as_int(), 0);
    EXPECT_EQ(1u, svg.all("//g[@class='legend']").size());
    EXPECT_TRUE(svg.all("//script | //*[@href] | //image | //foreignObject").empty());

    std::set<std::string> components;
    for (const auto &component : board.getBoardComponents())
      components.insert(component.second->getComponentName());
    EXPECT_EQ(components, svg.names("//g[@class='component']"));
    EXPECT_EQ(components.size(), svg.all("//g[@class='component']").size());

    std::set<std::string> live, off;
    for (const HBOBoardBus *bus : board.getBuses())
      (bus->getIsEnabled() == "true" ? live : off).insert(bus->getName());
    EXPECT_EQ(live, svg.names("//path[@class='connection']"));
    EXPECT_EQ(off, svg.names("//path[@class='connection disabled']"));
  }
  // A lifted legacy board part describes no connections: its FPGA's
  // interfaces tell which chip hangs off it.
  bool used = false;
  const HBOBoard *osprey =
      HBOBoardCDataManager().getBoard("kestrel-boards:osprey_soc:1.1", used, true);
  ASSERT_NE(nullptr, osprey);
  ASSERT_TRUE(osprey->getBuses().empty());
  EXPECT_EQ((std::set<std::string>{"ddr3_sdram", "fixed_io", "push_btns_2bits", "temp_sensor"}),
            Svg(HBOBoardDiagram::toSvg(*osprey)).names("//path[@class='link'][@data-name]"));
  // The Falcon's connectors list the catalog's daughter boards beside them.
  const HBOBoard *falcon =
      HBOBoardCDataManager().getBoard("kestrel-boards:falcon_eval:1.1", used, true);
  ASSERT_NE(nullptr, falcon);
  Svg svg(HBOBoardDiagram::toSvg(*falcon));
  EXPECT_EQ(2u, svg.all("//g[@class='fitting']").size());
  HBODiagramOptions bare;
  bare.showFittingBoards = false;
  EXPECT_TRUE(Svg(HBOBoardDiagram::toSvg(*falcon, bare)).all("//g[@class='fitting']").empty());
}

TEST(Diagram, AJumperSettingGreysExactlyWhatItTurnsOff) {
  std::unique_ptr<HBOBoard> board = readBoard(kSampleKit);
  // By default J1 is in and J2 out: every connection is live.
  Svg defaults(HBOBoardDiagram::toSvg(*board));
  EXPECT_TRUE(defaults.all("//path[@class='connection disabled']").empty());

  HBODiagramOptions options;
  options.jumpers = {{"j1", "FALSE"}, {"J2", "true"}};
  Svg set(HBOBoardDiagram::toSvg(*board, options));
  EXPECT_EQ((std::set<std::string>{"part0_led_2bits_1", "part0_usb_uart_1"}),
            set.names("//path[@class='connection disabled']"));
  EXPECT_EQ((std::set<std::string>{"led_2bits", "usb_uart"}),
            set.names("//g[@class='component'][@data-enabled='false']"));
  EXPECT_NE(nullptr, set.doc.find_node([](const pugi::xml_node &node) {
    return std::string(node.child_value()).find("J1=false J2=true") != std::string::npos;
  }));
  // The legend explains what is drawn, and only that: what is off only
  // under the setting, never the rails or frames this board lacks.
  const std::string offSamples = "//g[@class='legend']/g[@data-enabled='false'] | "
                                 "//g[@class='legend']/path[@class='legend-connection disabled']";
  EXPECT_TRUE(defaults.all(offSamples).empty());
  EXPECT_EQ(2u, set.all(offSamples).size());
  EXPECT_TRUE(set.all("//g[@class='legend']/g[@data-kind='rail' or @data-kind='daughter' or "
                      "@data-kind='fitting']")
                  .empty());
  // Drawing for a setting leaves the board as it was.
  for (const HBOBoardBus *bus : board->getBuses())
    EXPECT_EQ("true", bus->getIsEnabled()) << bus->getName();
}

TEST(Diagram, AnUnknownJumperOrValueIsToldWithWhatWouldDo) {
  std::unique_ptr<HBOBoard> board = readBoard(kSampleKit);
  test::MessageRecorder messages;
  HBODiagramOptions options;
  options.jumpers = {{"J9", "true"}, {"J1", "on"}};
  EXPECT_FALSE(HBOBoardDiagram::checkOptions(*board, options));
  EXPECT_EQ((std::vector<std::string>{"49-200", "49-201"}), messages.ids());
  EXPECT_TRUE(messages.mentions("no jumper 'J9'. Its jumpers are: J1, J2."));
  test::ScratchDir dir;
  EXPECT_FALSE(HBOBoardDiagram::writeSvg(*board, dir.path() + "/x.svg", options));
  std::ifstream written(dir.path() + "/x.svg");
  EXPECT_FALSE(written.good());
}

TEST(Diagram, NamesFromABoardFileStayText) {
  std::unique_ptr<HBOBoard> board = readBoard(test::dataPath("diagram_hostile/board.xml"));
  const std::string text = HBOBoardDiagram::toSvg(*board);
  Svg svg(text);
  EXPECT_TRUE(svg.all("//script | //img | //*[@onerror]").empty());
  const std::string hostile = "x\"><img src=x onerror=alert(1)>";
  EXPECT_EQ((std::set<std::string>{"part0", hostile}), svg.names("//g[@class='component']"));
  EXPECT_EQ(1u, svg.names("//path[@class='connection']").count("<path d='M0 0'/>"));
  EXPECT_EQ("<script>alert(1)</script>",
            std::string(svg.doc.select_node("//text[@class='title']").node().child_value()));
  EXPECT_EQ(std::string::npos, text.find("<img"));
}

TEST(Diagram, WritingReplacesTheFileWholeOrTellsWhy) {
  std::unique_ptr<HBOBoard> board = readBoard(kSampleKit);
  test::ScratchDir dir;
  const std::string path = dir.write("kit.svg", "old");
  ASSERT_TRUE(HBOBoardDiagram::writeSvg(*board, path));
  std::ifstream in(path);
  std::stringstream bytes;
  bytes << in.rdbuf();
  EXPECT_EQ(HBOBoardDiagram::toSvg(*board), bytes.str());

  test::MessageRecorder messages;
  const std::string missing = dir.path() + "/no/such/dir/kit.svg";
  EXPECT_FALSE(HBOBoardDiagram::writeSvg(*board, missing));
  ASSERT_EQ(1u, messages.ids().size());
  EXPECT_EQ("49-202", messages.ids().front());
  EXPECT_TRUE(messages.mentions(missing));
}

class IntegratedDiagram : public test::RepoTest {};

// The Falcon with a card on each connector: each card is a frame beside the
// connector it sits on, holding everything it brought.
TEST_F(IntegratedDiagram, DaughterBoardsStandInPlaceAtTheirConnectors) {
  useDataDirs({"../../data"});
  HBOBoardCDataManager manager;
  std::unique_ptr<HBOBoard> board(
      manager.createIntegratdBoard("kestrel-boards:falcon_eval:1.1",
                                   {{"fmc_lpc_connector", "kestrel-boards:finch_gpio:fmc_plug:1.1"},
                                    {"pmod_ja", "kestrel-boards:tern_pmod_led:pmod_plug:1.0"}},
                                   "falcon_cards"));
  ASSERT_NE(nullptr, board);
  Svg svg(HBOBoardDiagram::toSvg(*board));
  const std::map<std::string, std::pair<std::string, std::set<std::string>>> expected = {
      {"fmc_lpc_connector",
       {"kestrel-boards:finch_gpio:1.1",
        {"fmc_lpc_connector_fmc_plug", "fmc_lpc_connector_finch_leds_8bits",
         "fmc_lpc_connector_finch_switches_8bits"}}},
      {"pmod_ja",
       {"kestrel-boards:tern_pmod_led:1.0", {"pmod_ja_pmod_plug", "pmod_ja_tern_leds_4bits"}}}};
  EXPECT_EQ(2u, svg.all("//g[@class='daughter']").size());
  // A connector with a card on it lists no others that would fit.
  EXPECT_TRUE(svg.all("//g[@class='fitting']").empty());
  for (const auto &[connector, daughter] : expected) {
    SCOPED_TRACE(daughter.first);
    const pugi::xml_node frame =
        svg.doc
            .select_node(("//g[@class='daughter'][@data-board='" + daughter.first + "']").c_str())
            .node();
    ASSERT_TRUE(frame);
    const Rect outer = rectOf(frame);
    const Rect base = rectOf(
        svg.doc.select_node(("//g[@class='component'][@data-name='" + connector + "']").c_str())
            .node());
    EXPECT_GT(outer.x, base.right());
    EXPECT_TRUE(outer.y <= base.bottom() && base.y <= outer.bottom());
    std::set<std::string> inside;
    for (const pugi::xpath_node &node : svg.all("//g[@class='component']")) {
      const Rect box = rectOf(node.node());
      if (box.x > outer.x && box.right() < outer.right() && box.y > outer.y &&
          box.bottom() < outer.bottom())
        inside.insert(node.node().attribute("data-name").value());
    }
    EXPECT_EQ(daughter.second, inside);
  }
}

// A reference board of sixty components in eight groups, every one wired to
// the FPGA, some of them through a jumper.
std::string sixtyComponents(test::ScratchDir &dir) {
  static const char *groups[] = {
      "Clock Sources", "External Memory", "Reset", "Sensors", "General Purpose Input or Output",
      "Video",         "Miscellaneous"};
  std::string components = "<component name=\"part0\" type=\"fpga\" part_name=\"kv10-tq64-1\" "
                           "pin_map_file=\"part0_pins.xml\"/>\n";
  std::string connections, pins;
  int index = 0;
  for (int i = 0; i < 59; ++i) {
    const bool connector = i >= 45;
    const std::string name = (connector ? "conn" : "chip") + std::to_string(i);
    components += "<component name=\"" + name + "\" display_name=\"Component number " +
                  std::to_string(i) + "\" type=\"" + (connector ? "connector" : "chip") +
                  "\" sub_type=\"" + (connector ? "pmod" : "chip") + "\" major_group=\"" +
                  (connector ? "Pmod" : groups[i % 7]) + "\"/>\n";
    const int width = 1 + i % 4;
    const std::string jumper = i % 6 ? ""
                                     : "<enablement_dependencies><jumpers><jumper name=\"J1\">"
                                       "false</jumper></jumpers></enablement_dependencies>";
    connections += "<connection name=\"c" + name + "\" component1=\"part0\" component2=\"" + name +
                   "\"><connection_map name=\"m" + name + "\" c1_st_index=\"" +
                   std::to_string(index) + "\" c1_end_index=\"" +
                   std::to_string(index + width - 1) + "\" c2_st_index=\"0\" c2_end_index=\"" +
                   std::to_string(width - 1) + "\">" + jumper + "</connection_map></connection>\n";
    for (int p = 0; p < width; ++p, ++index)
      pins += "<pin index=\"" + std::to_string(index) + "\" name=\"p" + std::to_string(index) +
              "\" loc=\"A" + std::to_string(index) + "\" iobank.bank=\"" +
              std::to_string(12 + index / 40) + "\"/>\n";
  }
  return test::BoardBuilder()
      .body("<jumpers><jumper name=\"J1\" "
            "default_value=\"true\"><description>LEDs</description></jumper></"
            "jumpers>\n<components>\n" +
            components + "</components>\n<connections>\n" + connections + "</connections>\n")
      .pins(pins)
      .writeTo(dir);
}

TEST(DiagramLayout, SixtyComponentsLayOutWithoutOverlapsAndWithStraightLines) {
  test::ScratchDir dir;
  std::unique_ptr<HBOBoard> board = readBoard(sixtyComponents(dir));
  ASSERT_EQ(60u, board->getBoardComponents().size());
  const HBODiagramContent content(*board, HBODiagramOptions());
  const HBODiagramLayout layout(content);
  const std::vector<Rect> &boxes = layout.getBoxes();
  ASSERT_EQ(60u, boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    EXPECT_TRUE(boxes[i].x >= 0 && boxes[i].y >= 0 && boxes[i].right() <= layout.getWidth() &&
                boxes[i].bottom() <= layout.getHeight());
    for (std::size_t j = i + 1; j < boxes.size(); ++j)
      EXPECT_FALSE(boxes[i].overlaps(boxes[j]))
          << content.getBoxes()[i].name << " and " << content.getBoxes()[j].name;
  }
  EXPECT_FALSE(layout.getLegend().overlaps(boxes[content.getHub()]));

  // Every line is one horizontal stroke between the FPGA and its box, and
  // no two labels sit on one height on the same side.
  std::set<std::pair<int, int>> labels;
  ASSERT_EQ(59u, layout.getRoutes().size());
  for (const HBODiagramLayout::Route &route : layout.getRoutes()) {
    ASSERT_EQ(2u, route.points.size());
    EXPECT_EQ(route.points[0].y, route.points[1].y);
    EXPECT_TRUE(labels.insert({route.label.x, route.label.y}).second);
  }
  // The chips are shared out between both sides of the FPGA, so the
  // diagram is not five times as tall as it is wide.
  EXPECT_LT(layout.getHeight(), 3 * layout.getWidth());

  Svg svg(HBOBoardDiagram::toSvg(*board));
  EXPECT_EQ(60u, svg.all("//g[@class='component']").size());
  EXPECT_EQ(10u, svg.all("//path[@class='connection disabled']").size());
}

} // namespace
