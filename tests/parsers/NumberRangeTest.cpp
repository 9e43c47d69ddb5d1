// Numbers of board, pin and legacy files that an int cannot hold, or that
// hold no number at all, end the read with a finding that names the
// attribute and the value: none is cut to 32 bits or read as 0 unseen.
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOPartParser.h"
#include "HUTConvert.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using HUTConvert::IntegerForm;
using HUTConvert::IntegerResult;

const char kRevisions[] = "  <compatible_board_revisions><revision id=\"0\">Rev 1</revision>"
                          "</compatible_board_revisions>\n";
const char kPartAndChip[] =
    "  <components>\n"
    "    <component name=\"part0\" type=\"fpga\" part_name=\"kv10-tq64-1\"/>\n"
    "    <component name=\"u1\" type=\"chip\" sub_type=\"ddr\"/>\n"
    "  </components>\n";

std::string connection(const std::string &mapAttributes, const std::string &nets = "") {
  return std::string(kRevisions) + kPartAndChip +
         "  <connections><connection name=\"part0_u1\" component1=\"part0\" component2=\"u1\">\n"
         "    <connection_map name=\"m\" " +
         mapAttributes + ">" + nets + "</connection_map>\n  </connection></connections>\n";
}

std::string portMap(const std::string &range) {
  return std::string(kRevisions) +
         "  <components><component name=\"part0\" type=\"fpga\" part_name=\"kv10-tq64-1\">\n"
         "    <interfaces><interface mode=\"master\" name=\"leds\" "
         "type=\"quarnel-ip:interface:gpio:1.0\" of_component=\"part0\">\n"
         "      <port_maps><port_map logical_port=\"TRI_O\" physical_port=\"leds_tri_o\" "
         "dir=\"out\" " +
         range + "/></port_maps>\n    </interface></interfaces>\n  </component></components>\n";
}

struct Case {
  const char *what;
  std::string body;    // after file_version
  std::string pins;    // pin elements of part0_pins.xml, or none
  const char *finding; // a part of the message that names attribute and value
};

TEST(NumberRange, BadNumbersFailTheReadNamingAttributeAndValue) {
  const Case cases[] = {
      {"a start index beyond 32 bits",
       connection("c1_st_index=\"4294967301\" c1_end_index=\"4294967301\" "
                  "c2_st_index=\"5\" c2_end_index=\"5\""),
       "", "connection_map c1_st_index value \"4294967301\" is out of range"},
      {"a 64-bit range",
       connection("c1_st_index=\"0\" c1_end_index=\"18446744073709551615\" "
                  "c2_st_index=\"0\" c2_end_index=\"18446744073709551615\""),
       "",
       "connection_map c1_end_index value \"18446744073709551615\" is out of range, must be an "
       "integer from -2147483648 to 2147483647"},
      {"a net index beyond 32 bits",
       connection("c1_st_index=\"0\" c1_end_index=\"1\" c2_st_index=\"0\" c2_end_index=\"1\"",
                  "<nets><net index=\"4294967296\" typical_delay=\"1\"/></nets>"),
       "", "net index value \"4294967296\" is not valid, must be an integer"},
      {"a delay that is no number",
       connection("c1_st_index=\"0\" c1_end_index=\"0\" c2_st_index=\"0\" c2_end_index=\"0\" "
                  "max_delay=\"slow\""),
       "", "connection_map max_delay value \"slow\" is not valid, must be a floating point number"},
      {"a port map end below the smallest int", portMap("left=\"-2147483649\" right=\"0\""), "",
       "port map left value \"-2147483649\" is out of range"},
      {"a pin index that is no number", "", "    <pin index=\"abc\" name=\"led0\" loc=\"P2\"/>\n",
       "pin index value \"abc\" is not valid"},
      {"a revision id of 2^63",
       "  <compatible_board_revisions><revision id=\"9223372036854775808\">Rev 1</revision>"
       "</compatible_board_revisions>\n",
       "",
       "revision id value \"9223372036854775808\" is out of range, must be an integer from 0 "
       "to 2147483647"},
      {"phases beyond 32 bits",
       std::string(kRevisions) + "  <power_rails><power_rail name=\"R\" num_phases=\"4294967298\"/>"
                                 "</power_rails>\n",
       "", "power rail num_phases value \"4294967298\" is out of range"},
      {"a slave bank beyond 32 bits", "",
       "    <pin index=\"0\" name=\"led0\" loc=\"P2\"/>\n  </pins>\n  <design_constrs>"
       "<dci_cascade master_bank_id=\"15\" slave_bank_ids=\"16, 99999999999\"/></design_constrs>\n"
       "  <pins>\n",
       "dci_cascade slave_bank_ids value \"99999999999\" is out of range"},
      {"a voltage beyond a float", "",
       "    <pin index=\"0\" name=\"led0\" loc=\"P2\"/>\n  </pins>\n  <design_constrs>"
       "<internal_vref bank_id=\"15\" voltage=\"1e99\"/></design_constrs>\n  <pins>\n",
       "internal_vref voltage value \"1e99\" is out of range"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    test::ScratchDir dir;
    const std::string file = test::BoardBuilder().body(c.body).pins(c.pins).writeTo(dir);
    test::MessageRecorder msgs;
    HBOBoard board;
    EXPECT_FALSE(HBOBoardParser().parseFile(file, &board, false, "", nullptr));
    HBOBoard sent;
    test::MessageRecorder told;
    EXPECT_FALSE(HBOBoardParser().parseFile(file, &sent, true, "", nullptr));
    EXPECT_TRUE(told.mentions(c.finding)) << told.ids().size() << " messages";
  }
}

TEST(NumberRange, LegacyPortsAndPinsRefuseWhatAnIntCannotHold) {
  const std::pair<const char *, const char *> cases[] = {
      {"<port name=\"bus\" dir=\"out\" left=\"4294967296\" right=\"0\"/>",
       "port 'bus' left value \"4294967296\" is out of range"},
      {"<port name=\"bus\" dir=\"out\" left=\"3\" right=\"0\"><pins><pin index=\"x1\" loc=\"P1\"/>"
       "</pins></port>",
       "pin 'bus[x1]' index value \"x1\" is not valid, must be an integer"},
  };
  for (const auto &[port, finding] : cases) {
    SCOPED_TRACE(port);
    test::ScratchDir dir;
    const std::string file = dir.write(
        "board.xml", std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<board schema_version=\"1.0\" vendor=\"kestrel-boards\" "
                                 "board_name=\"probe\" board_part=\"p\" board_revision=\"A\" "
                                 "version=\"1.0\">\n  <part_info part_name=\"kv10-tq64-1\"/>\n"
                                 "  <ports>") +
                         port + "</ports>\n</board>\n");
    test::MessageRecorder msgs;
    HBOBoard board;
    EXPECT_FALSE(HBOPartParser().parseFile(file, &board));
    EXPECT_TRUE(msgs.mentions(finding));
  }
}

// The one conversion behind them: the ends of each type's range are read,
// one step beyond is out of range, and Prefix reads as strtol does.
TEST(NumberRange, ParseIntegerHoldsEachTypeToItsRange) {
  int i = 7;
  EXPECT_EQ(IntegerResult::Ok, HUTConvert::parseInteger("2147483647", i));
  EXPECT_EQ(INT_MAX, i);
  EXPECT_EQ(IntegerResult::Ok, HUTConvert::parseInteger("-2147483648", i));
  EXPECT_EQ(INT_MIN, i);
  EXPECT_EQ(IntegerResult::OutOfRange, HUTConvert::parseInteger("2147483648", i));
  EXPECT_EQ(IntegerResult::OutOfRange, HUTConvert::parseInteger("-2147483649", i));
  EXPECT_EQ(INT_MIN, i) << "untouched on failure";
  long long ll = 0;
  EXPECT_EQ(IntegerResult::Ok, HUTConvert::parseInteger("+9223372036854775807", ll));
  EXPECT_EQ(LLONG_MAX, ll);
  EXPECT_EQ(IntegerResult::OutOfRange, HUTConvert::parseInteger("9223372036854775808", ll));
  unsigned u = 0;
  EXPECT_EQ(IntegerResult::NotANumber, HUTConvert::parseInteger("-1", u));

  for (const char *bad : {"", " 1", "1 ", "2x", "+", "+-1", "0x10"})
    EXPECT_EQ(IntegerResult::NotANumber, HUTConvert::parseInteger(bad, i)) << '"' << bad << '"';
  const std::pair<const char *, int> prefixes[] = {
      {" \t 12", 12}, {"2x", 2}, {"-7 8", -7}, {"+3", 3}, {"007", 7}};
  for (const auto &[text, value] : prefixes) {
    EXPECT_EQ(IntegerResult::Ok, HUTConvert::parseInteger(text, i, IntegerForm::Prefix)) << text;
    EXPECT_EQ(value, i) << text;
  }
  for (const char *bad : {"", "   ", "x1", "+ 1", "-"})
    EXPECT_EQ(IntegerResult::NotANumber, HUTConvert::parseInteger(bad, i, IntegerForm::Prefix))
        << '"' << bad << '"';
  EXPECT_EQ(IntegerResult::OutOfRange,
            HUTConvert::parseInteger(" 99999999999abc", i, IntegerForm::Prefix));
}

} // namespace
