// The board commands over the embedded sample data.
#include "HBOBoard.h"
#include "HBOJumper.h"
#include "HBOScriptCommands.h"
#include "HSTStringUtils.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

using tclany = zeb::tcltasks::tclany;
using Options = HBOScriptCommands::QueryOptions;

class ScriptCommands : public ::testing::Test {
protected:
  static void SetUpTestSuite() { s_commands = new HBOScriptCommands(); }
  static void TearDownTestSuite() {
    delete s_commands;
    s_commands = nullptr;
  }
  void SetUp() override {
    HCPProperty::UndoHistory::clear();
    s_commands->setCurrentBoard(std::string());
  }

  static std::vector<tclany> get(const std::string &command, Options options = Options()) {
    options.quiet = true;
    return s_commands->getObjects(command, options);
  }
  static std::vector<tclany> of(const std::string &command, const std::vector<tclany> &from,
                                const std::vector<std::string> &patterns = {}) {
    Options options;
    options.hasOfObjects = true;
    options.ofObjects = from;
    options.patterns = patterns;
    return get(command, options);
  }
  static std::vector<std::string> names(const std::vector<tclany> &objects) {
    std::vector<std::string> out;
    for (const tclany &h : objects)
      out.push_back(HCPProperty::getObjectName(h));
    return out;
  }
  static std::string prop(const std::string &name, const tclany &object) {
    HATAttrAny value;
    s_commands->getProperty(name, object, value, true);
    return value.toString();
  }
  static tclany sample() {
    Options options;
    options.patterns = {"*sample*"};
    auto boards = get("get_boards", options);
    EXPECT_EQ(1u, boards.size());
    return boards.empty() ? tclany() : boards.front();
  }

  static HBOScriptCommands *s_commands;
};

HBOScriptCommands *ScriptCommands::s_commands = nullptr;

TEST_F(ScriptCommands, BoardsComeInNameOrderAndPatternsSelectThem) {
  std::vector<std::string> all = names(get("get_boards"));
  ASSERT_GE(all.size(), 5u);
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
  Options options;
  options.patterns = {"*falcon*", "*heron*"};
  EXPECT_EQ(3u, get("get_boards", options).size());
  options.patterns = {"*FALCON_EVAL:1.1"};
  EXPECT_TRUE(get("get_boards", options).empty());
  options.nocase = true;
  EXPECT_EQ(1u, get("get_boards", options).size());
  options = Options();
  options.regexp = true;
  options.patterns = {".*:(heron|wren)_.*"};
  EXPECT_EQ(2u, get("get_boards", options).size());
  options.patterns = {"(unclosed"};
  EXPECT_THROW(get("get_boards", options), HCPProperty::Error);
  // A pattern that would backtrack for ages, or one nested past what a
  // pattern needs, is an error that names it, not a hang or a crash.
  for (const std::string &pattern : {std::string("(.*.*)*X"), std::string(20000, '(') + "a"}) {
    options.patterns = {pattern};
    try {
      get("get_boards", options);
      ADD_FAILURE() << "no error for " << pattern.substr(0, 20);
    } catch (const HCPProperty::Error &e) {
      EXPECT_NE(std::string::npos, std::string(e.what()).find("regular expression")) << e.what();
    }
  }
}

TEST_F(ScriptCommands, OfObjectsWalksDownAndBackUp) {
  tclany board = sample();
  std::vector<tclany> components = of("get_board_components", {board});
  EXPECT_EQ(5u, components.size());
  EXPECT_EQ("kestrel-boards:sample_kit:led_2bits:1.0",
            HCPProperty::getObjectName(components.front()));
  EXPECT_EQ(2u, of("get_board_jumpers", {board}).size());
  EXPECT_EQ(4u, of("get_board_buses", {board}).size());
  EXPECT_EQ(2u, of("get_board_parameters", {board}).size());
  EXPECT_EQ(4u, of("get_board_component_interfaces", {board}).size());
  EXPECT_EQ((std::vector<std::string>{"kestrel-boards:sample_kit:part0:1.0"}),
            names(of("get_board_parts", {board})));

  std::vector<tclany> uart = of("get_board_component_interfaces", {board}, {"usb_uart"});
  ASSERT_EQ(1u, uart.size());
  EXPECT_EQ(2u, of("get_board_interface_ports", uart).size());
  EXPECT_EQ((std::vector<std::string>{"uart_rxd", "uart_txd"}),
            names(of("get_board_component_pins", uart)));
  EXPECT_EQ(1u, of("get_board_ip_presets", uart).size());
  EXPECT_EQ(1u, of("get_board_ip_preferences", uart).size());

  // Back up: a pin to its port, interface, component and board.
  std::vector<tclany> pins = of("get_board_component_pins", uart);
  EXPECT_EQ(names({board}), names(of("get_boards", pins)));
  EXPECT_EQ((std::vector<std::string>{"kestrel-boards:sample_kit:part0:1.0"}),
            names(of("get_board_components", {pins.front()})));
  EXPECT_EQ((std::vector<std::string>{"usb_uart"}),
            names(of("get_board_component_interfaces", {pins.front()})));
  std::vector<tclany> nets =
      of("get_board_bus_nets", of("get_board_buses", {board}, {"part0_led_2bits*"}));
  EXPECT_EQ(2u, nets.size());
  EXPECT_EQ(names({board}), names(of("get_boards", nets)));
  // Parameters know no owner; they are found on the boards.
  EXPECT_EQ(names({board}), names(of("get_boards", of("get_board_parameters", {board}))));
  // Unrelated classes are an error that names both.
  try {
    of("get_board_jumpers", nets);
    ADD_FAILURE() << "nets have no jumpers";
  } catch (const HCPProperty::Error &e) {
    EXPECT_NE(std::string::npos, std::string(e.what()).find("board_bus_net")) << e.what();
    EXPECT_NE(std::string::npos, std::string(e.what()).find("board_jumper")) << e.what();
  }
}

TEST_F(ScriptCommands, FiltersAndEmptyResultsWarnUnlessQuiet) {
  tclany board = sample();
  Options options;
  options.hasOfObjects = true;
  options.ofObjects = {board};
  options.filter = "TYPE == chip && SUB_TYPE =~ *button*";
  options.quiet = true;
  EXPECT_EQ(1u, s_commands->getObjects("get_board_components", options).size());
  options.filter = "TYPE ==";
  EXPECT_THROW(s_commands->getObjects("get_board_components", options), HCPProperty::Error);

  test::MessageRecorder messages;
  options.filter = "TYPE == nothing";
  options.quiet = false;
  EXPECT_TRUE(s_commands->getObjects("get_board_components", options).empty());
  EXPECT_EQ(1u, messages.count("1-2"));
  options.quiet = true;
  s_commands->getObjects("get_board_components", options);
  EXPECT_EQ(1u, messages.count("1-2"));
}

TEST_F(ScriptCommands, PropertiesListInUpperCaseAndDeprecatedOnesWarn) {
  tclany board = sample();
  std::vector<std::string> listed = s_commands->listProperty(board);
  EXPECT_NE(listed.end(), std::find(listed.begin(), listed.end(), "VENDOR_NAME"));
  for (const std::string &name : listed)
    EXPECT_EQ(HSTStringUtils::toUpper(name), name);
  std::string report = s_commands->reportProperty(board);
  EXPECT_EQ(0u, report.find("Property")) << report;
  EXPECT_NE(std::string::npos, report.find("kestrel-boards:sample_kit:1.0")) << report;

  tclany part0 = of("get_board_parts", {board}).at(0);
  EXPECT_NE(std::string::npos, s_commands->reportProperty(part0).find(
                                   "Deprecated:\n  BOARD_NAME: Use 'get_property BOARD_NAME"));
  EXPECT_EQ(std::string::npos, report.find("Deprecated:")) << "a board has no deprecated property";
  test::MessageRecorder messages;
  HATAttrAny value;
  s_commands->getProperty("BOARD_NAME", part0, value);
  EXPECT_EQ("sample_kit", value.toString());
  EXPECT_EQ(1u, messages.count("1-3"));
  EXPECT_THROW(s_commands->getProperty("NO_SUCH_PROPERTY", part0, value), HCPProperty::Error);
  EXPECT_FALSE(s_commands->getProperty("NO_SUCH_PROPERTY", part0, value, true));
  EXPECT_FALSE(s_commands->getProperty("PARAM.no_such", part0, value));
}

} // namespace
