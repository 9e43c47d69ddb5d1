// current_value of a jumper: the one writable property. A change runs the
// enablement of the jumper's board, and undo and redo restore each jumper.
#include "HBOBoardBusNet.h"
#include "HUTConvert.h"
#include "SampleBoard.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using test::prop;
using test::tclany;

namespace {

class JumperValue : public test::SampleBoard {
protected:
  void set(const std::vector<std::string> &jumpers, const std::string &value) {
    std::vector<tclany> handles;
    for (const std::string &name : jumpers)
      handles.push_back(tclany::of(jumper(name)));
    HCPProperty::setProperty(nullptr, "current_value", HATAttr(value), handles);
  }
  std::string values() const {
    return prop(tclany::of(jumper("J12")), "current_value") +
           prop(tclany::of(jumper("J14")), "current_value") +
           prop(tclany::of(jumper("J15")), "current_value");
  }
  /// is_enabled of what J14 switches, as "usb connection, its first net, usb
  /// component, usb mode, pmod uart connection".
  std::string uartRoute() const {
    return prop(tclany::of(bus("part0_usb_uart_1")), "is_enabled") + " " +
           prop(tclany::of(bus("part0_usb_uart_1")->getBoardBusNets().at(0)), "is_enabled") + " " +
           comp("usb_uart")->getIsEnabled() + " " +
           prop(tclany::of(mode("usb_uart")), "is_enabled") + " " +
           prop(tclany::of(bus("part0_pmod_ja_uart")), "is_enabled");
  }
  std::string enabled(const std::string &busName) const {
    return prop(tclany::of(bus(busName)), "is_enabled");
  }
  static std::string undo() {
    std::string what;
    EXPECT_TRUE(HCPProperty::UndoHistory::undo(what));
    return what;
  }
  static std::string redo() {
    std::string what;
    EXPECT_TRUE(HCPProperty::UndoHistory::redo(what));
    return what;
  }
  /// The registered setter of current_value, used without the registry.
  static std::unique_ptr<HCPProperty::Setter> newSetter() {
    const HCPProperty::ObjectInfo *info = HCPProperty::getObjectInfo(typeid(HBOJumper *));
    return info->findSpec("current_value")->getSetterFcn()();
  }

  const std::string usbRoute = "true true true true false";
  const std::string pmodRoute = "false false false false true";
};

} // namespace

TEST_F(JumperValue, OneJumperSwitchesTheUartRoute) {
  ASSERT_EQ(usbRoute, uartRoute());
  set({"J14"}, "true");
  EXPECT_EQ("110", values());
  EXPECT_EQ(pmodRoute, uartRoute());
  EXPECT_EQ("set current_value of J14 to true", undo());
  EXPECT_EQ("100", values());
  EXPECT_EQ(usbRoute, uartRoute());
  redo();
  EXPECT_EQ(pmodRoute, uartRoute());
}

TEST_F(JumperValue, UndoRestoresEachJumpersOwnEarlierValue) {
  set({"J14"}, "1");
  set({"J12", "J14", "J15"}, "false");
  EXPECT_EQ("000", values());
  EXPECT_EQ("false", enabled("part0_fmc_lpc_1"));
  EXPECT_EQ(usbRoute, uartRoute());
  EXPECT_EQ("true", enabled("part0_qspi_flash_1"));

  EXPECT_EQ("set current_value of J12, J14, J15 to false", undo());
  EXPECT_EQ("110", values()) << "J14 was true before the second change, not as in the file";
  EXPECT_EQ("true", enabled("part0_fmc_lpc_1"));
  EXPECT_EQ(pmodRoute, uartRoute());

  redo();
  EXPECT_EQ("000", values());
  EXPECT_EQ("false", enabled("part0_fmc_lpc_1"));
  EXPECT_EQ(usbRoute, uartRoute());
}

TEST_F(JumperValue, JumperWithoutBoardChangesAlone) {
  HBOJumper loose;
  loose.setName("J1");
  HCPProperty::setProperty(nullptr, "current_value", HATAttr(false), {tclany::of(&loose)});
  EXPECT_FALSE(loose.getDefaultValue());
  EXPECT_EQ(usbRoute, uartRoute());
  undo();
  EXPECT_TRUE(loose.getDefaultValue());
}

TEST_F(JumperValue, RegistryRefusesTextThatIsNoBoolean) {
  EXPECT_THROW(set({"J12", "J14"}, "maybe"), HCPProperty::Error);
  EXPECT_EQ("100", values());
  EXPECT_EQ(0u, HCPProperty::UndoHistory::undoCount());
}

// Called directly, the setter reads its value as the platform's conversion
// does: a text that is no boolean is false.
TEST_F(JumperValue, SetterReadsTextAsTheConversionDoes) {
  for (const char *text : {"maybe", "", "TRUE", " on "}) {
    SCOPED_TRACE(text);
    jumper("J12")->setDefaultValue(!HUTConvert::toBool(text));
    zeb::tcltasks::tcl_collection objects;
    objects.append(tclany::of(jumper("J12")));
    auto setter = newSetter();
    EXPECT_EQ(0, setter->set(nullptr, &objects, HATAttr(std::string(text))));
    EXPECT_EQ(HUTConvert::toBool(text), jumper("J12")->getDefaultValue());
    EXPECT_EQ(HUTConvert::toBool(text) ? "true" : "false", enabled("part0_fmc_lpc_1"));
  }
  // No objects: nothing to change, nothing to restore.
  const std::string before = values();
  auto setter = newSetter();
  EXPECT_EQ(0, setter->set(nullptr, nullptr, HATAttr(false)));
  setter->undo();
  EXPECT_EQ(before, values());
}

TEST_F(JumperValue, UnderPythonTheOldValuesAreTheResult) {
  std::vector<HATAttrAny> delivered;
  HCPProperty::Utils::setPyResultHook([&](const HATAttrAny &v) { delivered.push_back(v); });
  HCPProperty::LaunchMode::m_isPyMode = true;
  set({"J12", "J14"}, "false");
  HCPProperty::LaunchMode::m_isPyMode = false;
  HCPProperty::Utils::setPyResultHook(nullptr);
  EXPECT_EQ((std::vector<HATAttrAny>{HATAttrAny(true), HATAttrAny(false)}), delivered);
}

TEST_F(JumperValue, ChangesOfADeletedBoardAreDropped) {
  set({"J14"}, "true");
  set({"J12"}, "false");
  undo();
  ASSERT_EQ(1u, HCPProperty::UndoHistory::undoCount());
  ASSERT_EQ(1u, HCPProperty::UndoHistory::redoCount());
  board.reset();
  EXPECT_EQ(0u, HCPProperty::UndoHistory::undoCount());
  EXPECT_EQ(0u, HCPProperty::UndoHistory::redoCount());
  std::string what;
  EXPECT_FALSE(HCPProperty::UndoHistory::undo(what));
  EXPECT_FALSE(HCPProperty::UndoHistory::redo(what));
}
