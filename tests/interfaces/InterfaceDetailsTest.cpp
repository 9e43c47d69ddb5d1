// The interface, port map and mode readers on single elements: preset
// look-up, number conversion, and what a failure leaves behind.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "HEXError.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

class Details : public ::testing::Test {
protected:
  void SetUp() override {
    board.setName("kestrel-boards", "unit", "1.0");
    board.setBoardFile("/boards/unit/board.xml");
    part0 = new HBOBoardComponent();
    part0->setComponentName("part0");
    part0->setType("fpga");
    part0->setBoard(&board);
    board.addBoardComponent(part0);
    for (const char *name : {"p0", "p1"}) {
      HBOPinProps *pin = new HBOPinProps();
      pin->setName(name);
      part0->addPin(pin);
    }
    parser.setBoard(&board);
  }

  HXMLWElement *xml(const std::string &text) {
    doc.reset(new HXMLWInterface());
    EXPECT_TRUE(doc->readFromBuffer(text, "unit.xml"));
    return doc->getRootElement();
  }
  /// A fresh interface of part0, owned by the test.
  HBOBusIf *newInterface() {
    interfaces.emplace_back(new HBOBusIf());
    interfaces.back()->setOwnerComponent(part0);
    return interfaces.back().get();
  }
  void addPreset(const std::string &proc, const std::string &file) {
    HBOIpPreset *preset = new HBOIpPreset();
    preset->setOwner(&board);
    preset->setPresetProcName(proc);
    if (!file.empty())
      preset->setParam("CONFIG.XML_INPUT_FILE", file);
    board.setIpPreset(proc, {preset});
  }
  std::vector<std::string> queuedTexts() const {
    std::vector<std::string> out;
    for (const auto &entry : parser.getMessages())
      out.push_back(entry.first.getArgs().back());
    return out;
  }

  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardComponent *part0 = nullptr;
  HBOBoardParser parser;
  std::unique_ptr<HXMLWInterface> doc;
  std::vector<std::unique_ptr<HBOBusIf>> interfaces;
};

} // namespace

TEST_F(Details, PresetProcedureGivesTheInterfaceItsFile) {
  addPreset("LED_PRESET", "led_preset.xml");
  addPreset("bare_preset", "");
  // The procedure is found whatever its case.
  HBOBusIf *found = newInterface();
  ASSERT_TRUE(parser.interfaceReader().readInterfacesDetails(
      xml(R"(<interface name="a" type="v:l:n:1" preset_proc="Led_Preset"/>)"), found));
  EXPECT_EQ("led_preset.xml", found->getPresetFile());
  EXPECT_EQ("Led_Preset", found->getPresetProcName());

  // A preset_file element overrides what the preset said.
  HBOBusIf *overridden = newInterface();
  ASSERT_TRUE(parser.interfaceReader().readInterfacesDetails(
      xml(R"(<interface name="b" type="v:l:n:1" preset_proc="led_preset">
               <preset_file name="own.xml"/>
             </interface>)"),
      overridden));
  EXPECT_EQ("own.xml", overridden->getPresetFile());

  // A preset without the file parameter, or an unknown procedure, leaves the
  // file empty; without the send flag even strict checks stay silent.
  parser.setStrictChecks(true);
  for (const std::string proc : {"bare_preset", "nowhere"}) {
    HBOBusIf *intf = newInterface();
    ASSERT_TRUE(parser.interfaceReader().readInterfacesDetails(
        xml(R"(<interface name="c" type="v:l:n:1" preset_proc=")" + proc + R"("/>)"), intf));
    EXPECT_EQ("", intf->getPresetFile()) << proc;
  }
  EXPECT_TRUE(parser.getMessages().empty());
}

TEST_F(Details, TypesWithOtherThanFourFields) {
  for (const std::string type : {"", "v:l:n", "v:l:n:1:extra", "v::n:1:"}) {
    const std::string text = R"(<interface name="t" type=")" + type + R"("/>)";
    EXPECT_TRUE(parser.interfaceReader().readInterfacesDetails(xml(text), newInterface())) << type;
  }
  EXPECT_EQ(4u, parser.getMessages().size());
  for (const auto &entry : parser.getMessages()) {
    EXPECT_EQ("49-37", entry.first.getId());
    EXPECT_FALSE(entry.second) << "fails the read";
  }
  // Empty fields are fields: four of them are accepted.
  ASSERT_TRUE(parser.interfaceReader().readInterfacesDetails(
      xml(R"(<interface name="e" type=":::"/>)"), newInterface()));
  EXPECT_EQ(4u, parser.getMessages().size());
}

TEST_F(Details, StrictChecksHoldNumbersToTheirForm) {
  const char *port = R"(<port_map logical_port="L" physical_port="pp" dir="out" left="x"/>)";
  const char *ip = R"(<interface name="i" type="v:l:n:1"><preferred_ips>
      <preferred_ip vendor="v" library="l" name="n" order="first"/></preferred_ips></interface>)";
  const char *mode = R"(<component_mode name="m"><interfaces>
      <interface name="a" order="-2"/></interfaces></component_mode>)";
  {
    // Lenient: strtol takes what it can.
    HBOBusIf *intf = newInterface();
    std::unique_ptr<HBOModelPort> p(new HBOModelPort());
    HBOPortMap map;
    p->setOwner(intf);
    ASSERT_TRUE(parser.interfaceReader().readPortMapDetails(xml(port), p.get(), &map));
    p.release(); // kept by part0 now
    HBOModelPort *kept = nullptr;
    ASSERT_TRUE(part0->getModelPortByName(kept, "PP"));
    int left = -1;
    kept->getPortVecLeft(left);
    EXPECT_EQ(0, left);

    ASSERT_TRUE(parser.interfaceReader().readInterfacesDetails(xml(ip), newInterface()));
    HBOComponentMode m;
    ASSERT_TRUE(parser.interfaceReader().readComponentModeDetails(xml(mode), &m));
    HBOComponentMode::InterfaceMap entries;
    m.getInterfaces(entries);
    EXPECT_EQ(1u, entries.count(-2));
  }
  parser.setStrictChecks(true);
  HBOBusIf *intf = newInterface();
  HBOModelPort p;
  HBOPortMap map;
  p.setOwner(intf);
  EXPECT_THROW(parser.interfaceReader().readPortMapDetails(xml(port), &p, &map), HEXError);
  EXPECT_THROW(parser.interfaceReader().readInterfacesDetails(xml(ip), newInterface()), HEXError);
  HBOComponentMode m;
  EXPECT_THROW(parser.interfaceReader().readComponentModeDetails(xml(mode), &m), HEXError);
}

TEST_F(Details, AFailedPreferredIpOrPortFailsTheInterface) {
  HBOBusIf *badIp = newInterface();
  EXPECT_FALSE(parser.interfaceReader().readInterfacesDetails(
      xml(R"(<interface name="i" type="v:l:n:1" mode="master" of_component="c"><preferred_ips>
               <preferred_ip vendor="v" library="" name="n" order="1"/>
             </preferred_ips></interface>)"),
      badIp));
  std::vector<HBOBusIfPreference *> prefs;
  badIp->getPreferences(prefs);
  EXPECT_TRUE(prefs.empty());

  HBOBusIf *badPort = newInterface();
  EXPECT_FALSE(parser.interfaceReader().readInterfacesDetails(
      xml(R"(<interface name="j" type="v:l:n:1" mode="master" of_component="c"><port_maps>
               <port_map logical_port="A" physical_port="good" dir="in"/>
               <port_map logical_port="B" physical_port="" dir="in"/>
               <port_map logical_port="C" physical_port="never_read" dir="in"/>
             </port_maps></interface>)"),
      badPort));
  EXPECT_EQ(1u, badPort->getPortMapSize());
  HBOModelPort *kept = nullptr;
  EXPECT_TRUE(part0->getModelPortByName(kept, "good"));
  EXPECT_FALSE(part0->getModelPortByName(kept, "never_read"));
  EXPECT_EQ((std::vector<std::string>{"Library cannot be empty in preferred_ip 'n'.",
                                      "Port name cannot be empty."}),
            queuedTexts());
}

TEST_F(Details, NullElementsAndObjects) {
  HBOBusIf *intf = newInterface();
  HBOModelPort port;
  HBOPortMap map;
  HBOComponentMode mode;
  EXPECT_FALSE(parser.interfaceReader().readInterfacesDetails(nullptr, intf));
  EXPECT_FALSE(parser.interfaceReader().readPortMapDetails(nullptr, &port, &map));
  EXPECT_FALSE(parser.interfaceReader().readComponentModeDetails(nullptr, &mode));
  HXMLWElement empty;
  EXPECT_FALSE(parser.interfaceReader().readInterfacesDetails(&empty, intf));
  EXPECT_FALSE(parser.interfaceReader().readInterfacesDetails(xml("<interface/>"), nullptr));
  // Without its component an interface cannot keep its model ports.
  HBOBusIf loose;
  EXPECT_FALSE(
      parser.interfaceReader().readInterfacesDetails(xml(R"(<interface name="x"/>)"), &loose));
  EXPECT_FALSE(parser.validator().validateInterface(nullptr));
  EXPECT_FALSE(parser.validator().validatePort(nullptr, "c", "i"));
  EXPECT_FALSE(parser.validator().validatePreferredIP(nullptr));
  EXPECT_TRUE(parser.getMessages().empty());
}
