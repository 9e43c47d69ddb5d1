// Pin records: the port property semantics behind the compact storage, IO
// bank properties, and copying properties between pins.
#include "HBOPinProps.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

using Props = HBOPinProps::StringMap;

TEST(ModelPin, NamesAreLowerCasedAndAskingCreatesAnEmptyEntry) {
  HBOPinProps named;
  named.setPortProp("IOSTANDARD", "LVDS");
  std::string out;
  named.getPinIOStandard(out);
  EXPECT_EQ(out, "LVDS");
  named.setPinIOStandard("SSTL12");
  EXPECT_EQ(named.getPortProps(), (Props{{"iostandard", "SSTL12"}}));
  EXPECT_EQ(named.getPortProp("IoStandard"), "SSTL12");

  // The out-argument getters enter nothing; the reference getter does.
  HBOPinProps pin;
  out = "untouched";
  pin.getPinIOStandard(out);
  pin.getPortProp_("pull_type", out);
  EXPECT_EQ(out, "untouched");
  EXPECT_TRUE(pin.getPortProps().empty());
  EXPECT_EQ(pin.getPortProp("Vendor_Specific"), "");
  EXPECT_EQ(pin.getPortProp("slew"), "");
  EXPECT_EQ(pin.getPortProps(), (Props{{"slew", ""}, {"vendor_specific", ""}}));
  pin.getPinSlew(out);
  EXPECT_EQ(out, ""); // present now, so the out-argument is written

  // The reference refers to the stored value.
  pin.getPortProp("drive") = "12";
  EXPECT_EQ(pin.getPinDrive(), "12");
  pin.getPortProp("vendor_specific") = "yes";
  pin.getPortProp_("VENDOR_SPECIFIC", out);
  EXPECT_EQ(out, "yes");
}

TEST(ModelPin, EmptyValuesStayVisibleForKnownAndUnknownNames) {
  // What a reader does for every pin: all names, mostly empty values.
  HBOPinProps pin;
  for (const std::string &name : HBOPinProps::getPortPropNames())
    pin.setPortProp(name, name == "iostandard" ? "LVCMOS33" : "");
  const Props props = pin.getPortProps();
  ASSERT_EQ(props.size(), 16u);
  EXPECT_EQ(props.at("iostandard"), "LVCMOS33");
  EXPECT_EQ(props.at("pcb_max_delay"), "");
  // Overwriting a value with an empty one keeps the entry.
  pin.setPinIOStandard("");
  EXPECT_EQ(pin.getPortProps().size(), 16u);
  EXPECT_EQ(pin.getPortProps().at("iostandard"), "");
  EXPECT_EQ(HBOPinProps::getPortPropNames().front(), "diff_term");
  EXPECT_EQ(HBOPinProps::getPortPropNames().back(), "pcb_max_delay");

  // More names than fit the presence mask go through the value list alone.
  HBOPinProps many;
  for (int i = 0; i < 80; ++i)
    many.setPortProp("extra_" + std::to_string(i), i % 2 ? std::to_string(i) : "");
  const Props extra = many.getPortProps();
  ASSERT_EQ(extra.size(), 80u);
  EXPECT_EQ(extra.at("extra_79"), "79");
  EXPECT_EQ(extra.at("extra_78"), "");
  std::string out = "untouched";
  pin.getPortProp_("extra_79", out);
  EXPECT_EQ(out, "untouched");
}

TEST(ModelPin, NameTableIsSafeAcrossThreads) {
  // Both threads also make the same pooled value sets at once.
  auto work = [](int base) {
    HBOPinProps pin;
    for (int i = 0; i < 200; ++i) {
      pin.setPortProp("threaded_" + std::to_string((base + i) % 50), "v");
      pin.setIOBankProperty("bank", std::to_string(i % 7));
    }
    return pin.getPortProps().size();
  };
  std::size_t a = 0, b = 0;
  std::thread t1([&] { a = work(0); });
  std::thread t2([&] { b = work(25); });
  t1.join();
  t2.join();
  EXPECT_EQ(a, 50u);
  EXPECT_EQ(b, 50u);
}

TEST(ModelPin, IOBankPropertiesKeepCaseButFindIgnoringIt) {
  HBOPinProps pin;
  EXPECT_FALSE(pin.setIOBankProperty("", "x"));
  EXPECT_EQ(pin.getIOBankPropertyValue("vcco"), "");
  EXPECT_TRUE(pin.setIOBankProperty("VCCO", "1.8"));
  EXPECT_TRUE(pin.setIOBankProperty("vcco", "3.3"));
  EXPECT_EQ(pin.getIOBankPropertyValue("Vcco"), "1.8"); // "VCCO" sorts first
  EXPECT_EQ(pin.getIOBankPropertyValue(""), "");
  Props list{{"stale", "x"}};
  EXPECT_TRUE(pin.getIOBankPropertyList(list));
  EXPECT_EQ(list, (Props{{"VCCO", "1.8"}, {"vcco", "3.3"}}));
}

TEST(ModelPin, CopyIOPropertiesTakesOnlyWhatIsFilled) {
  HBOPinProps target;
  target.setPinLoc("A1");
  target.setPinSlew("SLOW");
  target.setPinDrive("8");
  target.setGtLoc("GT0");
  target.setIOBankProperty("vcco", "1.8");

  HBOPinProps source;
  source.setPinSlew("FAST");
  source.setPinDrive("");
  source.setPortProp("custom", "c");
  source.setPinInternalVref("0.9");
  source.setIOBankProperty("vcco", "");
  source.setIOBankProperty("vref", "0.75");
  target.copyIOPropertiesFrom(source);

  std::string vref;
  target.getPinInternalVref(vref);
  EXPECT_EQ((modeltest::Strings{target.getPinLoc(), target.getPinSlew(), target.getPinDrive(),
                                target.getPortProps().at("custom"), vref, target.getGtLoc(),
                                target.getIOBankPropertyValue("vcco"),
                                target.getIOBankPropertyValue("vref")}),
            (modeltest::Strings{"A1", "FAST", "8", "c", "0.9", "GT0", "1.8", "0.75"}));
}

TEST(ModelPin, SetPropStoresAllTenNamesAndUpperCasesTheLocation) {
  HBOPinProps pin;
  pin.setProp(3, nullptr, "d[3]", "ab12", "TRUE", "", "LVDS", "", "", "", "", "", "", "");
  EXPECT_EQ(pin.getPinLoc(), "AB12");
  EXPECT_TRUE(pin.hasPinLoc());
  EXPECT_EQ(pin.getPinIndex(), 3);
  EXPECT_EQ(pin.getPortProps().size(), 10u);
  EXPECT_EQ(pin.getPinDiffTerm(), "TRUE");
  HBOModelPort *port = nullptr;
  EXPECT_FALSE(pin.getOwnerPort(port));
}

TEST(ModelPin, InterfacePortMapKeepsTheLastPortPerInterface) {
  HBOPinProps pin;
  pin.addIntfPortMap("ddr", "dq");
  pin.addIntfPortMap("ddr", "dqs");
  pin.addIntfPortMap("cfg", "d0");
  EXPECT_EQ(pin.getIntfPortMap(), (Props{{"cfg", "d0"}, {"ddr", "dqs"}}));
  EXPECT_EQ(pin.getPortForInterface("DDR"), "");
  EXPECT_EQ(pin.getPortForInterface("ddr"), "dqs");
  pin.addPartOf({{"group", "g1"}});
  ASSERT_EQ(pin.getPartOf().size(), 1u);
  EXPECT_EQ(pin.getPartOf()[0].at("group"), "g1");
}

TEST(ModelPin, PinsWithEqualValuesStayIndependent) {
  // Equal values are shared between pins: a change to one pin, or to the
  // string handed out for it, must reach no other.
  HBOPinProps a, b;
  for (HBOPinProps *pin : {&a, &b}) {
    pin->setPinIOStandard("SSTL15");
    pin->setPinSlew("");
    pin->setIOBankProperty("bank", "14");
  }
  a.getPortProp("slew") = "FAST";
  b.setPinIOStandard("LVDS");
  a.setIOBankProperty("bank", "15");
  EXPECT_EQ(a.getPortProps(), (Props{{"iostandard", "SSTL15"}, {"slew", "FAST"}}));
  EXPECT_EQ(b.getPortProps(), (Props{{"iostandard", "LVDS"}, {"slew", ""}}));
  EXPECT_EQ(b.getIOBankPropertyValue("bank"), "14");

  // A copy takes the handed-out value; a later set replaces it.
  HBOPinProps c;
  c.copyIOPropertiesFrom(a);
  EXPECT_EQ(c.getPortProps(), a.getPortProps());
  EXPECT_EQ(c.getIOBankProperties(), (Props{{"bank", "15"}}));
  a.setPinSlew("SLOW");
  EXPECT_EQ(a.getPinSlew(), "SLOW");
  EXPECT_EQ(c.getPinSlew(), "FAST");
}

TEST(ModelPin, FilePropertiesSetOnlyTheSlotsRead) {
  const std::vector<std::string> &names = HBOPinProps::getPortPropNames();
  auto slot = [&names](const char *name) {
    return std::find(names.begin(), names.end(), name) - names.begin();
  };
  std::vector<bool> read(names.size(), true);
  read[slot("iostandard")] = false;
  std::vector<const char *> values(names.size(), nullptr);
  values[slot("iostandard")] = "LVDS";
  values[slot("slew")] = "FAST";
  HBOPinProps pin;
  pin.getPortProp("drive") = "8"; // an unread value stays, a read one goes
  pin.getPortProp("odt") = "RTT_40";
  read[slot("drive")] = false;
  pin.setFileProperties(read, values, {{"bank", "12"}, {"", "x"}, {"bank", "13"}});
  const Props props = pin.getPortProps();
  EXPECT_EQ(props.size(), names.size() - 1);
  EXPECT_EQ(props.count("iostandard"), 0u);
  EXPECT_EQ(props.at("slew"), "FAST");
  EXPECT_EQ(props.at("drive"), "8");
  EXPECT_EQ(props.at("odt"), "");
  EXPECT_EQ(pin.getIOBankProperties(), (Props{{"bank", "13"}}));
}

TEST(ModelPin, StaysCompact) {
  // Thousands of boards with a thousand pins each: the values are pooled,
  // and a pin holds little more than its name.
  EXPECT_LE(sizeof(HBOPinProps), 96u);
}
