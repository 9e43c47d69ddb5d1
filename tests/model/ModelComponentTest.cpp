// The component: interface and port look-ups, pins and their index slots,
// part swapping, connector kinds and the old constraint file.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOParameter.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

using namespace modeltest;

TEST(ModelComponent, LegacyIdentitySettersLowerCaseAllButVersion) {
  HBOBoardComponent component;
  component.setName("ACME", "Board", "Part0", "1.0A");
  EXPECT_EQ((Strings{component.getName(), component.getVersion(), component.getPartName()}),
            (Strings{"acme:board:part0:1.0a", "1.0A", "part0"}));
  component.setVLNV("ACME", "Lib", "Brd", "Rev_B");
  EXPECT_EQ((Strings{component.getLibrary(), component.getBoardRevision(), component.getVendor()}),
            (Strings{"lib", "rev_b", "acme"}));
}

TEST(ModelComponent, InterfaceLookupIgnoresCaseAndEmptyFindsNothing) {
  HBOBoardComponent component;
  HBOBusIf *busIf = makeBusIf("Led_4bits");
  component.setBusIf("Led_4bits", busIf);
  EXPECT_EQ(component.getBusIfByName("led_4BITS"), busIf);
  EXPECT_EQ(busIf->getOwnerComponent(), &component);
  EXPECT_EQ(component.getBusIfByName(""), nullptr);
  HBOBusIf *out = busIf;
  EXPECT_FALSE(component.getBusIfByName(out, "other"));
  EXPECT_EQ(out, busIf);

  // A null interface or an empty name is not entered.
  HBOBusIf *none = nullptr;
  component.setBusIf("x", none);
  component.setBusIf("", busIf);
  std::vector<HBOBusIf *> all;
  component.getInterfacesVec(all);
  EXPECT_EQ(all.size(), 1u);
}

TEST(ModelComponent, SetBusIfTellsModelPortsTheirInterface) {
  HBOBoardComponent component;
  HBOModelPort *p = makePort("clk_p");
  HBOModelPort *n = makePort("clk_n");
  component.setModelPort("clk_p", p);
  component.setModelPort("CLK_N", n);
  HBOBusIf *busIf = makeBusIf("sys_clock");
  addPortMap(busIf, "CLK_P", "clk_p");
  addPortMap(busIf, "CLK_N", "clk_n");
  addPortMap(busIf, "CLK_X", "not_a_port");
  busIf->addPort(p);
  busIf->addPort(n);
  component.setBusIf("sys_clock", busIf);

  std::string owner, logical;
  p->getOwnerBusIf(owner);
  p->getBusIfLogicalPortName(logical);
  EXPECT_EQ(owner, "sys_clock");
  EXPECT_EQ(logical, "CLK_P");

  std::vector<HBOModelPort *> ports{p};
  EXPECT_TRUE(component.getModelPortsByBusIf(ports, "SYS_CLOCK"));
  EXPECT_EQ(ports, (std::vector<HBOModelPort *>{p, n}));
  EXPECT_FALSE(component.getModelPortsByBusIf(ports, "nothing"));
  EXPECT_TRUE(ports.empty());

  // Entering the interface's own ports again keeps each port owned once.
  EXPECT_TRUE(component.createModelPortsForInterfaces());
  std::vector<HBOModelPort *> seq;
  component.getModelPortSeq(seq);
  EXPECT_EQ(seq, (std::vector<HBOModelPort *>{n, p}));
}

TEST(ModelComponent, PinPropsByBusIfOnSchemaTwoFollowPinMaps) {
  HBOBoard board;
  board.setBoardSchemaVersion("2.2");
  auto *component = makeComponent("fpga", "");
  component->setBoard(&board);
  board.addBoardComponent(component);
  component->addPin(makePin(*component, "A1", 1));
  component->addPin(makePin(*component, "B1", 2));
  HBOModelPort *port = makePort("led");
  port->addPinPortMap("0", "B1");
  port->addPinPortMap("1", "A1");
  port->addPinPortMap("2", "missing");
  component->setModelPort("led", port);
  HBOBusIf *busIf = makeBusIf("leds");
  addPortMap(busIf, "TRI_O", "led");
  busIf->addPort(port);
  port->setOwner(busIf);
  component->setBusIf("leds", busIf);

  std::vector<HBOPinProps *> pins;
  EXPECT_TRUE(component->getPinPropsByBusIf(pins, "LEDS"));
  ASSERT_EQ(pins.size(), 2u);
  EXPECT_EQ(pins[0]->getName(), "B1");
  EXPECT_EQ(pins[1]->getName(), "A1");
}

TEST(ModelComponent, BusIfSeqByFourFieldsIgnoresCaseAndMatchesClockLibraries) {
  HBOBoardComponent component;
  HBOBusIf *clock = makeBusIf("clk", "quarnel-ip", "signal", "clock_rtl", "1.0");
  component.setBusIf("clk", clock);
  component.setBusIf("gpio", makeBusIf("gpio", "quarnel-ip", "interface", "gpio_rtl", "1.0"));

  std::vector<HBOBusIf *> out;
  component.getBusIfSeq(out, "QUARNEL-IP", "interface", "CLOCK_RTL", "1.0");
  EXPECT_EQ(out, std::vector<HBOBusIf *>{clock});
  out.clear();
  component.getBusIfSeq(out, "quarnel-ip", "whatever", "clock_rtl", "");
  EXPECT_EQ(out, std::vector<HBOBusIf *>{clock});
  out.clear();
  component.getBusIfSeq(out, "quarnel-ip", "signal", "gpio_rtl", "");
  EXPECT_TRUE(out.empty());
  EXPECT_TRUE(component.getBusIfSeq(out, "quarnel-ip", "interface", "gpio_rtl", "2.0"));
  EXPECT_TRUE(out.empty());
}

TEST(ModelComponent, BusIfSeqByVlnvTextKeepsTheClockPatternOddity) {
  HBOBoardComponent component;
  component.setBusIf("real_clk",
                     makeBusIf("real_clk", "quarnel-ip", "interface", "clock_rtl", "1.0"));
  // A one-letter library is what the pattern's bracket set really matches.
  component.setBusIf("odd_clk", makeBusIf("odd_clk", "quarnel-ip", "s", "clock_rtl", "1.0"));
  const std::pair<const char *, Strings> cases[] = {
      {"QUARNEL-IP:INTERFACE:CLOCK_RTL:1.0", {"real_clk"}},
      {"quarnel-ip:i:clock_rtl:1.0", {"odd_clk"}},
      {"quarnel-ip:signal:clock_rtl:1.0", {}}};
  for (const auto &c : cases) {
    Strings names;
    component.getBusIfSeq(names, c.first);
    EXPECT_EQ(names, c.second) << c.first;
  }
}

TEST(ModelComponent, AddPinResolvesCollisionsSilently) {
  HBOBoardComponent component;
  HBOPinProps *a1 = makePin(component, "A1", 5);
  component.addPin(a1);
  component.addPin(a1); // the same pointer twice changes nothing
  EXPECT_EQ(component.getPins().size(), 1u);
  EXPECT_EQ(component.getPinByIndex(5), a1);

  // Same index, other name: both stay, the new one takes the slot.
  HBOPinProps *b1 = makePin(component, "B1", 5);
  component.addPin(b1);
  EXPECT_EQ(component.getPinByIndex(5), b1);
  EXPECT_EQ(component.findPin("A1"), a1);

  // Same name, other index: the old pin is replaced, its slot freed.
  HBOPinProps *newB1 = makePin(component, "B1", 7);
  component.addPin(newB1);
  EXPECT_EQ(component.findPin("B1"), newB1);
  EXPECT_EQ(component.getPinByIndex(5), nullptr);
  EXPECT_EQ(component.getPinByIndex(7), newB1);
  EXPECT_EQ(component.findPinIndex("B1"), 7);
  EXPECT_EQ(component.findPinIndex("b1"), -1);
  EXPECT_EQ(component.findPin("a1"), nullptr);
}

TEST(ModelComponent, IndexesOutsideTheSlotsAnswerTheFirstPinInNameOrder) {
  HBOBoardComponent component;
  std::map<int, HBOPinProps *> pins{{400, makePin(component, "P400", 400)},
                                    {401, makePin(component, "P401", 401)},
                                    {-1, makePin(component, "SCALAR", -1)},
                                    {0, nullptr},
                                    {100000, nullptr}};
  for (const auto &entry : pins)
    if (entry.second)
      component.addPin(entry.second);
  for (const auto &entry : pins)
    EXPECT_EQ(component.getPinByIndex(entry.first), entry.second) << entry.first;

  // A repeated index answers the first pin in name order, whatever the
  // order of entry; a replaced pin no longer answers.
  HBOPinProps *z = makePin(component, "Z500", 500);
  component.addPin(z);
  component.addPin(makePin(component, "M500", 500));
  component.addPin(makePin(component, "M500", 500));
  EXPECT_EQ(component.getPinByIndex(500)->getName(), "M500");
  component.addPin(makePin(component, "M500", 501));
  EXPECT_EQ(component.getPinByIndex(500), z);
  EXPECT_EQ(component.getPinByIndex(501), component.findPin("M500"));
}

TEST(ModelComponent, AddPinsEntersInNameOrderAndKeepsTheLastOfAName) {
  HBOBoardComponent component;
  HBOPinProps *a = makePin(component, "A", 3);
  HBOPinProps *lastB = makePin(component, "B", 4);
  std::vector<HBOPinProps *> pins{makePin(component, "B", 3), a, lastB};
  component.addPins(pins);
  EXPECT_EQ(pins, (std::vector<HBOPinProps *>{a, lastB}));
  EXPECT_EQ(component.getPins().size(), 2u);
  EXPECT_EQ(component.findPin("B"), lastB);
  // The first B is never entered, so it takes no slot from A.
  EXPECT_EQ(component.getPinByIndex(3), a);
  EXPECT_EQ(component.getPinByIndex(4), lastB);

  // Into a filled map, as addPin would.
  HBOPinProps *newA = makePin(component, "A", 7);
  std::vector<HBOPinProps *> more{newA};
  component.addPins(more);
  EXPECT_EQ(component.findPin("A"), newA);
  EXPECT_EQ(component.getPinByIndex(7), newA);

  // The map keeps the name a pin was entered under.
  newA->setName("Z");
  EXPECT_EQ(component.findPin("A"), newA);
  EXPECT_EQ(component.findPin("Z"), nullptr);
}

TEST(ModelComponent, ConnectorPredicatesCompareExactly) {
  struct Case {
    const char *type;
    const char *subType;
    bool connector;
  };
  for (const Case &c : {Case{"connector", "fmc_lpc", true}, Case{"connector", "fmc_plus", true},
                        Case{"connector", "som", true}, Case{"connector", "dockline160", true},
                        Case{"Connector", "fmc_hpc", false}, Case{"connector", "FMC_HPC", false},
                        Case{"connector", "usb", false}, Case{"chip", "dimm", false}}) {
    HBOBoardComponent component;
    component.setType(c.type);
    component.setSubType(c.subType);
    EXPECT_EQ(component.isConnector(), c.connector) << c.type << "/" << c.subType;
  }
  HBOBoardComponent component;
  component.setType("connector");
  component.setSubType("fmc_lpc_plus");
  EXPECT_TRUE(component.isLPCPlusConnector());
  EXPECT_TRUE(component.isLPCCategoryConnector());
  EXPECT_FALSE(component.isSOMCategoryConnector());
  component.setSubType("som480");
  EXPECT_TRUE(component.isSOMCategoryConnector());
  EXPECT_FALSE(component.isSOM240Connector());
}

TEST(ModelComponent, UpdatePartNameSwapsWithTheSupportedPart) {
  HBOBoardComponent component;
  component.setPartString("xc_a");
  component.addAdditionalSupportedPart("xc_b");
  component.addAdditionalSupportedPart("xc_c");
  EXPECT_TRUE(component.updatePartName("xc_a"));
  EXPECT_FALSE(component.isPartUpdated());
  EXPECT_FALSE(component.updatePartName("XC_B"));
  EXPECT_TRUE(component.updatePartName("xc_c"));
  EXPECT_TRUE(component.isPartUpdated());
  Strings parts;
  component.getAdditionalSupportedPartNames(parts, true);
  EXPECT_EQ(parts, (Strings{"xc_c", "xc_b", "xc_a"}));
  EXPECT_TRUE(component.isPartNameSupported("xc_a"));
  EXPECT_FALSE(component.isPartNameSupported("xc_d"));
}

TEST(ModelComponent, SmallQueriesAndTheirFallbacks) {
  HBOBoardComponent component;
  EXPECT_EQ(component.getConnectorCategory(), "Others");
  component.setMajorGroup("FMC");
  EXPECT_EQ(component.getConnectorCategory(), "FMC");

  EXPECT_TRUE(component.isCompatibleWithSomVLN("anything"));
  component.addParameter(new HBOParameter("compatible_som_vln", "Acme:Som:1", "", "", "", ""));
  EXPECT_TRUE(component.isCompatibleWithSomVLN("ACME:SOM:1"));
  EXPECT_FALSE(component.isCompatibleWithSomVLN("acme:som:2"));

  EXPECT_FALSE(component.isConnectedToLogicOnly());
  component.setConnectedToLogicStr("PS_and_PL");
  EXPECT_TRUE(component.isConnectedToPSAndLogic());
  EXPECT_FALSE(component.isConnectedToPSOnly());

  // The single-chain position is told only when there is exactly one chain.
  std::string position = "stale";
  EXPECT_EQ(component.getJtagPositionForSingleChain(position), 0);
  EXPECT_EQ(position, "");
  component.addJtagPosition("chain1", "2");
  EXPECT_EQ(component.getJtagPositionForSingleChain(position), 1);
  EXPECT_EQ(position, "2");
  component.addJtagPosition("chain2", "0");
  EXPECT_EQ(component.getJtagPositionForSingleChain(position), 2);
  EXPECT_EQ(position, "");
  EXPECT_EQ(component.getJtagPosition("chain2"), "0");
  EXPECT_EQ(component.getJtagPosition("nope"), "");

  component.setName("full");
  EXPECT_EQ(component.getDisplayNameORVLNVName(), "full");
  component.setDisplayName("Nice");
  EXPECT_EQ(component.getDisplayNameORVLNVName(), "Nice");
}

TEST(ModelComponent, ImageFileIsPlacedBesideTheBoardFileWhenBare) {
  HBOBoardComponent component;
  component.setBoardFile("/boards/acme/big/1.0/board.xml");
  for (const auto &c :
       std::map<std::string, std::string>{{"pic.png", "/boards/acme/big/1.0/pic.png"},
                                          {"./pic.png", "/boards/acme/big/1.0/./pic.png"},
                                          {"img/pic.png", "img/pic.png"},
                                          {"", ""}}) {
    component.setImageFile(c.first);
    EXPECT_EQ(component.getImageFile(), c.second) << c.first;
  }
}

TEST(ModelComponent, ConstraintsFileFillsPortRecordsOnce) {
  ScratchDir dir;
  const std::string file =
      dir.write("pins.xml", "<PINS>"
                            "<PIN><NAME>data</NAME><INDEX>6</INDEX><LOC>a1</LOC>"
                            "<IOSTANDARD>LVCMOS18</IOSTANDARD><ODT>RTT_40</ODT></PIN>"
                            "<PIN><NAME>data</NAME><INDEX>2</INDEX><LOC>a9</LOC></PIN>"
                            "<PIN><NAME>rst</NAME><LOC>b2</LOC><SLEW>FAST</SLEW></PIN>"
                            "<PIN><NAME>nothing</NAME></PIN>"
                            "<BOGUS/>"
                            "</PINS>");
  HBOBoardComponent component;
  HBOModelPort *data = makePort("data");
  data->setIsVector(true);
  data->setRange(7, 4);
  data->populatePinProps();
  HBOModelPort *rst = makePort("rst");
  rst->populatePinProps();
  component.setModelPort("data", data);
  component.setModelPort("rst", rst);

  // Without the file field the argument alone does nothing.
  EXPECT_FALSE(component.populateConstraintsData(file));
  EXPECT_FALSE(component.isConstraintsDataPopulated());

  component.setConstraintsFile(file);
  MessageRecorder recorder;
  EXPECT_FALSE(component.populateConstraintsData(""));
  EXPECT_TRUE(component.isConstraintsDataPopulated());
  EXPECT_EQ(recorder.ids(), Strings{"49-43"});

  std::vector<HBOPinProps *> records;
  ASSERT_TRUE(data->getPortPropsSeq(records));
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(
      (Strings{records[2]->getName(), records[2]->getPinLoc(), records[2]->getPinIOStandard()}),
      (Strings{"data[6]", "A1", "LVCMOS18"}));
  EXPECT_EQ(records[2]->getPinIndex(), 6);
  // Only seven columns are read: ODT stays empty but present.
  EXPECT_EQ(records[2]->getPortProps().at("odt"), "");
  EXPECT_EQ(records[0]->getPinLoc(), ""); // index 2 is below the range
  ASSERT_TRUE(rst->getPortPropsSeq(records));
  EXPECT_EQ(records[0]->getPinLoc(), "B2");
  EXPECT_EQ(records[0]->getPinSlew(), "FAST");

  // Once populated, a second call does nothing.
  records[0]->setPinLoc("changed");
  component.populateConstraintsData("");
  EXPECT_EQ(records[0]->getPinLoc(), "changed");
}
