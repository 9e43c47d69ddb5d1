// The rules that refuse an interface, a port or a preferred IP, and the
// checks of the board's FPGA interfaces after the read.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOModelPort.h"
#include "HSTStringUtils.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

class Rules : public ::testing::Test {
protected:
  void SetUp() override {
    board.setBoardFile("/boards/rules/board.xml");
    parser.setBoard(&board);
  }
  /// The texts queued since the last call; each must fail the read.
  std::vector<std::string> newTexts() {
    std::vector<std::string> out;
    const HBOMessageQueue &queue = parser.getMessages();
    for (; seen < queue.size(); ++seen) {
      EXPECT_EQ("49-69", queue[seen].first.getId());
      EXPECT_FALSE(queue[seen].second);
      EXPECT_EQ("/boards/rules/board.xml", queue[seen].first.getArgs().at(0));
      out.push_back(queue[seen].first.getArgs().at(1));
    }
    return out;
  }
  bool interfaceOk(const std::string &name, const std::string &mode, const std::string &of) {
    HBOBusIf intf;
    intf.setName(name);
    intf.setInterfaceMode(mode);
    intf.setOfComponent(of);
    return parser.validator().validateInterface(&intf);
  }
  bool portOk(const std::string &name, const std::string &dir, int left = -1, int right = -1) {
    HBOModelPort port;
    port.setName(name);
    port.setDirection(dir);
    if (left >= 0) {
      port.setIsVector(true);
      port.setRange(left, right);
    }
    return parser.validator().validatePort(&port, "c", "i");
  }
  bool ipOk(const std::string &vendor, const std::string &library, const std::string &name,
            int order) {
    HBOBusIfPreference ip;
    ip.setVendor(vendor);
    ip.setLibrary(library);
    ip.setName(name);
    ip.setOrder(order);
    return parser.validator().validatePreferredIP(&ip);
  }

  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  std::size_t seen = 0;
};

using Texts = std::vector<std::string>;

} // namespace

TEST_F(Rules, Interface) {
  EXPECT_TRUE(interfaceOk("uart", "Master", "usb_uart"));
  EXPECT_TRUE(interfaceOk("uart", "SLAVE", "usb_uart"));
  EXPECT_TRUE(newTexts().empty());

  EXPECT_FALSE(interfaceOk("", "master", "c"));
  EXPECT_EQ(Texts{"Component name cannot be empty."}, newTexts());
  // An empty mode breaks two rules.
  EXPECT_FALSE(interfaceOk("uart", "", "c"));
  EXPECT_EQ((Texts{"Component Mode cannot be empty for interface 'uart'.",
                   "Component Mode should be master or slave for interface 'uart'."}),
            newTexts());
  EXPECT_FALSE(interfaceOk("uart", "monitor", ""));
  EXPECT_EQ((Texts{"Component OfComponent cannot be empty for interface 'uart'.",
                   "Component Mode should be master or slave for interface 'uart'."}),
            newTexts());
}

TEST_F(Rules, Port) {
  EXPECT_TRUE(portOk("a", "INOUT"));
  EXPECT_TRUE(portOk("b", "out", 7, 0));
  EXPECT_TRUE(newTexts().empty());

  EXPECT_FALSE(portOk("", "in"));
  EXPECT_EQ(Texts{"Port name cannot be empty."}, newTexts());
  EXPECT_FALSE(portOk("p", ""));
  EXPECT_EQ((Texts{"Port direction cannot be empty for 'p'.",
                   "Port direction should be in/out/inout for 'p'."}),
            newTexts());
  EXPECT_FALSE(portOk("p", "input"));
  EXPECT_EQ(Texts{"Port direction should be in/out/inout for 'p'."}, newTexts());
  // A one-bit vector must be written as a scalar.
  EXPECT_FALSE(portOk("v", "out", 3, 3));
  EXPECT_EQ(Texts{"Port left and right cannot be same for 'v'."}, newTexts());
}

TEST_F(Rules, PreferredIp) {
  EXPECT_TRUE(ipOk("v", "l", "n", 0));
  EXPECT_TRUE(newTexts().empty());
  EXPECT_FALSE(ipOk("", "", "n", 0));
  EXPECT_EQ((Texts{"Vendor cannot be empty in preferred_ip 'n'.",
                   "Library cannot be empty in preferred_ip 'n'."}),
            newTexts());
  // The doubled blanks belong to these texts.
  EXPECT_FALSE(ipOk("v", "l", "", -1));
  EXPECT_EQ((Texts{"IP Name cannot be empty  in preferred_ip ''.",
                   "Order cannot be less than zero  in preferred_ip ''."}),
            newTexts());
}

namespace {

class FpgaInterfaces : public ::testing::Test {
protected:
  void SetUp() override {
    board.setBoardFile("/boards/fpga/board.xml");
    fpga = new HBOBoardComponent();
    fpga->setComponentName("part0");
    fpga->setType("fpga");
    board.addBoardComponent(fpga);
    HBOBoardComponent *leds = new HBOBoardComponent();
    leds->setComponentName("leds");
    board.addBoardComponent(leds);
    parser.setBoard(&board);
  }
  HBOBusIf *add(const std::string &name, const std::string &vlnv, const std::string &mode,
                const std::string &param = std::string()) {
    HBOBusIf *intf = new HBOBusIf();
    intf->setName(name);
    const std::vector<std::string> f = HSTStringUtils::split(vlnv, ":", true);
    intf->setAbstractTypeVendor(f.at(0));
    intf->setAbstractTypeLibrary(f.at(1));
    intf->setAbstractTypeName(f.at(2));
    intf->setAbstractTypeVersion(f.at(3));
    intf->setInterfaceMode(mode);
    intf->setOfComponent("LEDS");
    if (!param.empty())
      intf->setParam(param, "1");
    fpga->setBusIf(name, intf);
    return intf;
  }

  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardComponent *fpga = nullptr;
  HBOBoardParser parser;
};

const char kClock[] = "quarnel-ip:signal:clock_rtl:1.0";
const char kDiffClock[] = "Quarnel-IP:interface:DIFF_CLOCK_RTL:1.0";
const char kReset[] = "quarnel-ip:signal:reset_rtl:1.0";

} // namespace

TEST_F(FpgaInterfaces, TheFirstClockWithAFrequencySilencesTheRest) {
  add("a_clk", kDiffClock, "slave");
  add("b_clk", kClock, "master", "FREQUENCY");
  add("c_clk", kClock, "slave");
  EXPECT_TRUE(parser.validator().validateNecessaryParameters());
  // Told at once, not queued: it fails nothing.
  ASSERT_EQ((std::vector<std::string>{"49-153"}), msgs.ids());
  EXPECT_EQ((std::vector<std::string>{"a_clk", "/boards/fpga/board.xml"}), msgs.records[0].args);
  EXPECT_TRUE(parser.getMessages().empty());
}

TEST_F(FpgaInterfaces, ResetSlavesNeedAPolarity) {
  add("a_rst", kReset, "slave");
  add("c_rst", kReset, "master");
  // Without any polarity the check ends the read.
  EXPECT_FALSE(parser.validator().validateNecessaryParameters());
  EXPECT_EQ(1u, parser.getMessages().size());
  // One polarity makes the result true; the earlier finding still fails the read.
  add("b_rst", kReset, "Slave", "rst_polarity");
  HBOBoardParser again;
  again.setBoard(&board);
  EXPECT_TRUE(again.validator().validateNecessaryParameters());
  ASSERT_EQ(1u, again.getMessages().size());
  EXPECT_EQ("Polarity Parameter not provided for 'a_rst'.",
            again.getMessages()[0].first.getArgs().at(1));
  EXPECT_FALSE(again.getMessages()[0].second);
}

TEST_F(FpgaInterfaces, OfComponentMustNameAComponent) {
  add("leds_if", kClock, "master", "frequency");
  EXPECT_TRUE(parser.validator().validateOfComponent());
  add("ghost_if", kClock, "master", "frequency")->setOfComponent("ghost");
  EXPECT_FALSE(parser.validator().validateOfComponent());
  ASSERT_EQ(1u, parser.getMessages().size());
  EXPECT_EQ("Component ghost provided for interface ghost_if is not found in list of components "
            "on the board.",
            parser.getMessages()[0].first.getArgs().at(1));
}

TEST(FpgaInterfacesAbsent, NoActivePartPassesBothChecks) {
  HBOBoard board;
  HBOBoardParser parser;
  parser.setBoard(&board);
  EXPECT_TRUE(parser.validator().validateNecessaryParameters());
  EXPECT_TRUE(parser.validator().validateOfComponent());
}
