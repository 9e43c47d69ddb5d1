// Interfaces, model ports, port maps and port ranges.
#include "HBOBoard.h"
#include "HBOBusIfPreference.h"
#include "HBOParameter.h"
#include "HBOPortVector.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string_view>

using namespace modeltest;

TEST(ModelPort, RangesAndShapes) {
  // A range has the same width in both directions and refuses negative ends.
  HBOPortVector range;
  int out = 42;
  EXPECT_FALSE(range.getWidth(out));
  EXPECT_EQ(out, -1);
  out = 42;
  EXPECT_FALSE(range.getLeft(out));
  EXPECT_EQ(out, 42);
  for (auto [left, right, width] : {std::tuple<int, int, int>{7, 0, 8}, {0, 7, 8}, {3, 3, 1}}) {
    EXPECT_TRUE(range.setVec(left, right));
    range.getWidth(out);
    EXPECT_EQ(out, width) << left << ":" << right;
  }
  EXPECT_FALSE(range.setVec(-1, 0));
  EXPECT_TRUE(range.getLeft(out));
  EXPECT_EQ(out, 3);

  // A port is one bit wide until it is a vector, and a vector without a
  // range has no width and no records.
  HBOModelPort port;
  int value = 0;
  EXPECT_TRUE(port.getPortWidth(value));
  EXPECT_EQ(value, 1);
  EXPECT_FALSE(port.getPortVecLeft(value));
  EXPECT_EQ(value, -1);
  port.setIsVector(true);
  port.setRange(-1, 0);
  port.getPortWidth(value);
  EXPECT_EQ(value, -1);
  EXPECT_TRUE(port.populatePinProps());
  std::vector<HBOPinProps *> records;
  EXPECT_FALSE(port.getPortPropsSeq(records));
  port.setRange(8, 1);
  port.getPortWidth(value);
  EXPECT_EQ(value, 8);
  EXPECT_TRUE(port.getPortVecRight(value));
  EXPECT_EQ(value, 1);
}

TEST(ModelPort, PopulatePinPropsIndexesFromZero) {
  HBOModelPort vec;
  vec.setName("d");
  vec.setIsVector(true);
  vec.setRange(8, 6);
  vec.populatePinProps();
  std::vector<HBOPinProps *> records;
  ASSERT_TRUE(vec.getPortPropsSeq(records));
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0]->getName(), "d[0]");
  EXPECT_EQ(records[2]->getName(), "d[2]");
  EXPECT_EQ(records[2]->getPinIndex(), 2);
  HBOModelPort *owner = nullptr;
  EXPECT_TRUE(records[0]->getOwnerPort(owner));
  EXPECT_EQ(owner, &vec);

  HBOModelPort scalar;
  scalar.setName("rst");
  scalar.populatePinProps();
  ASSERT_TRUE(scalar.getPortPropsSeq(records));
  ASSERT_EQ(records.size(), 1u); // replaced, not appended, on an older board
  EXPECT_EQ(records[0]->getName(), "rst");
  EXPECT_EQ(records[0]->getPinIndex(), -1);
}

TEST(ModelPort, PinMapOrderIsTextualAndRenamesKeepKeys) {
  HBOBoard board;
  board.setBoardSchemaVersion("2.0");
  HBOBoardComponent *component = new HBOBoardComponent();
  component->setComponentName("fpga");
  component->setBoard(&board);
  board.addBoardComponent(component);
  for (const char *name : {"P2", "P10", "Q2"})
    component->addPin(makePin(*component, name));
  HBOBusIf *busIf = makeBusIf("bus");
  busIf->setOwnerComponent(component);
  component->setBusIf("bus", busIf);
  HBOModelPort *port = makePort("data");
  port->setOwner(busIf);
  busIf->addPort(port);
  component->setModelPort("data", port);
  port->addPinPortMap("2", "P2");
  port->addPinPortMap("10", "P10");
  port->addPinPortMap("3", "ghost");

  std::vector<HBOPinProps *> pins;
  port->getPins(pins);
  ASSERT_EQ(pins.size(), 2u);
  EXPECT_EQ(pins[0]->getName(), "P10"); // "10" sorts before "2"
  EXPECT_EQ(pins[1]->getName(), "P2");

  // On a schema 2 board the sequence appends.
  EXPECT_TRUE(port->getPortPropsSeq(pins));
  EXPECT_EQ(pins.size(), 4u);

  busIf->updatePortPinMap({{"P2", "Q2"}, {"unused", "x"}});
  for (auto [index, pin] :
       {std::pair<const char *, const char *>{"2", "Q2"}, {"10", "P10"}, {"99", ""}}) {
    std::string found = "stale";
    port->getPinPort(index, found);
    EXPECT_EQ(found, pin) << index;
  }
}

TEST(ModelBusIf, ParameterTextsFindIgnoringCaseButStoreExactly) {
  HBOBusIf busIf;
  std::string value = "untouched";
  EXPECT_FALSE(busIf.getParamValue("", value));
  EXPECT_FALSE(busIf.getParamValue("frequency", value));

  busIf.addParameter(new HBOParameter("frequency", "100", "", "", "", ""));
  EXPECT_TRUE(busIf.getParamValue("FREQUENCY", value));
  EXPECT_EQ(value, "100");
  EXPECT_TRUE(busIf.setParam("FREQUENCY", "200"));
  EXPECT_FALSE(busIf.setParam("", "1"));
  std::map<std::string, std::string> list;
  busIf.getParamList(list);
  EXPECT_EQ(list.size(), 2u);
  // The walk is in key order, so the upper-case entry is met first.
  EXPECT_TRUE(busIf.getParamValue("Frequency", value));
  EXPECT_EQ(value, "200");
  std::vector<HBOParameter *> parameters;
  busIf.getParameters(parameters);
  EXPECT_EQ(parameters.size(), 1u);
}

TEST(ModelBusIf, PortMapsAndTypeText) {
  HBOBusIf busIf;
  addPortMap(&busIf, "", "empty_lp");
  addPortMap(&busIf, "CLK_P", "clk_p");
  addPortMap(&busIf, "clk_p", "second");
  std::string physical = "untouched";
  EXPECT_FALSE(busIf.getPPortByLPort("", physical));
  EXPECT_EQ(physical, "untouched");
  EXPECT_TRUE(busIf.getPPortByLPort("clk_P", physical));
  EXPECT_EQ(physical, "clk_p");
  EXPECT_FALSE(busIf.getPPortByLPort("clk_n", physical));
  Strings ports{"kept"};
  busIf.getPhysicalPortSeq(ports);
  EXPECT_EQ(ports, (Strings{"kept", "empty_lp", "clk_p", "second"}));
  EXPECT_EQ(busIf.getPortMapSize(), 3u);

  std::unique_ptr<HBOBusIf> typed(makeBusIf("t", "quarnel-ip", "interface", "gpio_rtl", "1.0"));
  std::string vlnv;
  typed->getAbstractTypeVLNV(vlnv, ":");
  EXPECT_EQ(vlnv, "quarnel-ip:interface:gpio_rtl:1.0");
}

TEST(ModelBusIf, OwnsPreferencesAndPortMapsButNotPorts) {
  auto port = std::unique_ptr<HBOModelPort>(makePort("p"));
  {
    HBOBusIf busIf;
    busIf.addPort(port.get());
    auto *preference = new HBOBusIfPreference();
    busIf.setPreferences(preference);
    busIf.setPreference(preference);
    busIf.addJumper("j1", true);
    busIf.addJumper("j1", false);
    EXPECT_FALSE(busIf.getJumpers().at("j1"));
    EXPECT_EQ(busIf.getPortMaps().at("p"), port.get());
  }
  EXPECT_EQ(port->getName(), "p");
}

TEST(ModelPort, PinMapOverwritesAndGrowsPastItsReservation) {
  HBOModelPort port;
  port.reservePinPortMap(2, 4);
  // Out of order, a repeat that overwrites, and more than was reserved.
  const std::vector<std::pair<std::string, std::string>> adds = {
      {"9", "a9"},   {"10", "a10"}, {"1", "a1"},
      {"10", "b10"}, {"", "blank"}, {"2", "a-long-pin-name"}};
  std::map<std::string, std::string> expected;
  for (const auto &[index, pin] : adds) {
    port.addPinPortMap(index, pin);
    expected[index] = pin;
  }
  EXPECT_EQ(port.getPinPortMap(), expected);
  EXPECT_EQ(port.getPinPortMapSize(), expected.size());
  std::vector<std::string> seen;
  port.forEachPinPortMap([&](std::string_view index, std::string_view pin) {
    seen.push_back(std::string(index) + "=" + std::string(pin));
  });
  EXPECT_EQ(seen,
            (std::vector<std::string>{"=blank", "1=a1", "10=b10", "2=a-long-pin-name", "9=a9"}));
}

TEST(ModelComponent, BlockPortsAreLentToTheInterfaceAndFoundIgnoringCase) {
  HBOBoardComponent component;
  HBOBusIf *busIf = makeBusIf("bus");
  component.setBusIf("bus", busIf);
  HBOModelPortRecord *records = component.makeModelPorts(2);
  ASSERT_NE(records, nullptr);
  EXPECT_EQ(component.makeModelPorts(0), nullptr);
  for (int i = 0; i < 2; ++i) {
    HBOModelPortRecord &record = records[i];
    record.port.setName(i ? "Data_Q" : "clk");
    record.map.setPhysicalPort(record.port.getName());
    record.map.setLogicalPort(i ? "DQ" : "CLK");
    component.setModelPort(record.port.getName(), &record.port);
    busIf->addPort(&record.port);
    busIf->addLentPortMap(&record.map);
  }
  // Also a port and a map handed over the old way: both owned, freed once.
  HBOModelPort *own = makePort("extra");
  component.setModelPort("extra", own);
  HBOPortMap *ownMap = new HBOPortMap();
  busIf->populatePortMap(ownMap);

  HBOModelPort *found = nullptr;
  EXPECT_TRUE(component.getModelPortByName(found, "data_q"));
  EXPECT_EQ(found, &records[1].port);
  std::vector<std::string> keys;
  for (const auto &entry : component.getModelPorts())
    keys.push_back(entry.first);
  EXPECT_EQ(keys, (std::vector<std::string>{"CLK", "DATA_Q", "EXTRA"}));
  std::string physical;
  EXPECT_TRUE(busIf->getPPortByLPort("dq", physical));
  EXPECT_EQ(physical, "Data_Q");
  EXPECT_EQ(busIf->getPortMapSize(), 3u);
}
