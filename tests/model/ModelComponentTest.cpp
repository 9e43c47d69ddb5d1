// The component: interface and port look-ups, pins and their index slots,
// part swapping, connector kinds and the old constraint file.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

namespace {

HBOPinProps *makePin(const std::string &name, int index) {
  auto *pin = new HBOPinProps();
  pin->setName(name);
  pin->setPinIndex(index);
  return pin;
}

HBOBusIf *makeBusIf(const std::string &name, const std::string &vendor,
                    const std::string &library, const std::string &type,
                    const std::string &version) {
  auto *busIf = new HBOBusIf();
  busIf->setName(name);
  busIf->setAbstractTypeVendor(vendor);
  busIf->setAbstractTypeLibrary(library);
  busIf->setAbstractTypeName(type);
  busIf->setAbstractTypeVersion(version);
  return busIf;
}

HBOModelPort *makePort(const std::string &name) {
  auto *port = new HBOModelPort();
  port->setName(name);
  return port;
}

void addPortMap(HBOBusIf *busIf, const std::string &logical, const std::string &physical) {
  HBOPortMap *portMap = new HBOPortMap();
  portMap->setLogicalPort(logical);
  portMap->setPhysicalPort(physical);
  busIf->populatePortMap(portMap);
}

} // namespace

TEST(ModelComponent, LegacyIdentitySettersLowerCaseAllButVersion) {
  HBOBoardComponent component;
  component.setName("ACME", "Board", "Part0", "1.0A");
  EXPECT_EQ(component.getName(), "acme:board:part0:1.0a");
  EXPECT_EQ(component.getVersion(), "1.0A");
  EXPECT_EQ(component.getPartName(), "part0");
  component.setVLNV("ACME", "Lib", "Brd", "Rev_B");
  EXPECT_EQ(component.getLibrary(), "lib");
  EXPECT_EQ(component.getBoardRevision(), "rev_b");
  EXPECT_EQ(component.getVendor(), "acme");
}

TEST(ModelComponent, InterfaceLookupIgnoresCaseAndEmptyFindsNothing) {
  HBOBoardComponent component;
  HBOBusIf *busIf = makeBusIf("Led_4bits", "v", "l", "n", "1");
  component.setBusIf("Led_4bits", busIf);
  EXPECT_EQ(component.getBusIfByName("led_4BITS"), busIf);
  EXPECT_EQ(busIf->getOwnerComponent(), &component);
  EXPECT_EQ(component.getBusIfByName(""), nullptr);
  HBOBusIf *out = busIf;
  EXPECT_FALSE(component.getBusIfByName(out, "other"));
  EXPECT_EQ(out, busIf);

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
  HBOBusIf *busIf = makeBusIf("sys_clock", "v", "l", "n", "1");
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
  auto *component = new HBOBoardComponent();
  component->setComponentName("fpga");
  component->setBoard(&board);
  board.addBoardComponent(component);
  component->addPin(makePin("A1", 1));
  component->addPin(makePin("B1", 2));
  HBOModelPort *port = makePort("led");
  port->addPinPortMap("0", "B1");
  port->addPinPortMap("1", "A1");
  port->addPinPortMap("2", "missing");
  component->setModelPort("led", port);
  HBOBusIf *busIf = makeBusIf("leds", "v", "l", "n", "1");
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
  HBOBusIf *gpio = makeBusIf("gpio", "quarnel-ip", "interface", "gpio_rtl", "1.0");
  component.setBusIf("clk", clock);
  component.setBusIf("gpio", gpio);

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
  component.setBusIf("real_clk", makeBusIf("real_clk", "quarnel-ip", "interface", "clock_rtl",
                                           "1.0"));
  // A one-letter library is what the pattern's bracket set really matches.
  component.setBusIf("odd_clk", makeBusIf("odd_clk", "quarnel-ip", "s", "clock_rtl", "1.0"));

  std::vector<std::string> names;
  component.getBusIfSeq(names, "QUARNEL-IP:INTERFACE:CLOCK_RTL:1.0");
  EXPECT_EQ(names, std::vector<std::string>{"real_clk"});
  names.clear();
  component.getBusIfSeq(names, "quarnel-ip:i:clock_rtl:1.0");
  EXPECT_EQ(names, std::vector<std::string>{"odd_clk"});
  names.clear();
  component.getBusIfSeq(names, "quarnel-ip:signal:clock_rtl:1.0");
  EXPECT_TRUE(names.empty());
}

TEST(ModelComponent, AddPinResolvesCollisionsSilently) {
  HBOBoardComponent component;
  HBOPinProps *a1 = makePin("A1", 5);
  component.addPin(a1);
  component.addPin(a1); // the same pointer twice changes nothing
  EXPECT_EQ(component.getPins().size(), 1u);
  EXPECT_EQ(component.getPinByIndex(5), a1);

  // Same index, other name: both stay, the new one takes the slot.
  HBOPinProps *b1 = makePin("B1", 5);
  component.addPin(b1);
  EXPECT_EQ(component.getPinByIndex(5), b1);
  EXPECT_EQ(component.findPin("A1"), a1);

  // Same name, other index: the old pin is replaced, its slot freed.
  HBOPinProps *newB1 = makePin("B1", 7);
  component.addPin(newB1);
  EXPECT_EQ(component.findPin("B1"), newB1);
  EXPECT_EQ(component.getPinByIndex(5), nullptr);
  EXPECT_EQ(component.getPinByIndex(7), newB1);
  EXPECT_EQ(component.findPinIndex("B1"), 7);
  EXPECT_EQ(component.findPinIndex("b1"), -1);
  EXPECT_EQ(component.findPin("a1"), nullptr);
}

TEST(ModelComponent, IndexesOutsideTheSlotsAreFoundByWalking) {
  HBOBoardComponent component;
  HBOPinProps *p400 = makePin("P400", 400);
  HBOPinProps *p401 = makePin("P401", 401);
  HBOPinProps *scalar = makePin("SCALAR", -1);
  component.addPin(p400);
  component.addPin(p401);
  component.addPin(scalar);
  EXPECT_EQ(component.getPinByIndex(400), p400);
  EXPECT_EQ(component.getPinByIndex(401), p401);
  EXPECT_EQ(component.getPinByIndex(-1), scalar);
  EXPECT_EQ(component.getPinByIndex(0), nullptr);
  EXPECT_EQ(component.getPinByIndex(100000), nullptr);
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
  std::vector<std::string> parts;
  component.getAdditionalSupportedPartNames(parts, true);
  EXPECT_EQ(parts, (std::vector<std::string>{"xc_c", "xc_b", "xc_a"}));
  EXPECT_TRUE(component.isPartNameSupported("xc_a"));
  EXPECT_FALSE(component.isPartNameSupported("xc_d"));
}

TEST(ModelComponent, SmallQueries) {
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

TEST(ModelComponent, ImageFileIsPlacedBesideTheBoardFile) {
  HBOBoardComponent component;
  component.setBoardFile("/boards/acme/big/1.0/board.xml");
  component.setImageFile("pic.png");
  EXPECT_EQ(component.getImageFile(), "/boards/acme/big/1.0/pic.png");
  component.setImageFile("./pic.png");
  EXPECT_EQ(component.getImageFile(), "/boards/acme/big/1.0/./pic.png");
  component.setImageFile("img/pic.png");
  EXPECT_EQ(component.getImageFile(), "img/pic.png");
  component.setImageFile("");
  EXPECT_EQ(component.getImageFile(), "");
}

TEST(ModelComponent, ConstraintsFileFillsPortRecordsOnce) {
  modeltest::ScratchDir dir;
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
  modeltest::MessageRecorder recorder;
  EXPECT_FALSE(component.populateConstraintsData(""));
  EXPECT_TRUE(component.isConstraintsDataPopulated());
  EXPECT_EQ(recorder.keys(), std::vector<std::string>{"@49-43@%s"});

  std::vector<HBOPinProps *> records;
  ASSERT_TRUE(data->getPortPropsSeq(records));
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[2]->getName(), "data[6]");
  EXPECT_EQ(records[2]->getPinLoc(), "A1");
  EXPECT_EQ(records[2]->getPinIOStandard(), "LVCMOS18");
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

TEST(ModelComponent, DisplayListsTheSections) {
  HBOBoardComponent component;
  component.setName("acme:big:fpga:1.0");
  component.setType("fpga");
  testing::internal::CaptureStdout();
  component.display(0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Component - Display Name: , Name: acme:big:fpga:1.0, Type: fpga, Sub-Type: , "
            "Part Name: , Pin Map File: \n--Parameters:\n--Component Modes:\n--Interfaces:\n"
            "--Model Ports:\n--Pins:\n");
}
