// The connections of board.xml: buses and nets, the pins they bring into
// being, what moves along them, and the faults that end a read.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "HEXError.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <boost/lexical_cast.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using test::dataPath;

namespace {

class ConnectionsBoard : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(HBOParser().parseFile(dataPath("connections_basic/board.xml"), &board));
  }
  HBOBoardBus *bus(const std::string &name) {
    for (HBOBoardBus *b : board.getBuses())
      if (b->getName() == name)
        return b;
    ADD_FAILURE() << "no bus " << name;
    return nullptr;
  }
  HBOBoardComponent *component(const std::string &name) {
    HBOBoardComponent *c = board.findBoardComponent(name);
    EXPECT_NE(nullptr, c) << name;
    return c;
  }
  std::string ioStandard(const std::string &componentName, int index) {
    HBOBoardComponent *c = component(componentName);
    HBOPinProps *pin = c ? c->getPinByIndex(index) : nullptr;
    EXPECT_NE(nullptr, pin) << componentName << " " << index;
    return pin ? pin->getPinIOStandard() : "<no pin>";
  }
  test::MessageRecorder msgs;
  HBOBoard board;
};

/// The queued messages of a read as "id: last argument".
std::vector<std::string> queued(const HBOBoardParser &parser) {
  std::vector<std::string> out;
  for (const auto &entry : parser.getMessages()) {
    EXPECT_FALSE(entry.second) << "each of these fails the read";
    out.push_back(entry.first.getId() + ": " + entry.first.getArgs().back());
  }
  return out;
}

/// Runs the connection reader alone on \p dir's board.xml, on a board
/// without components.
struct ReaderRun {
  explicit ReaderRun(const std::string &dir, bool strict = false) {
    board.setBoardFile(dataPath(dir + "/board.xml"));
    EXPECT_TRUE(doc.readFromFile(board.getBoardFile()));
    parser.setBoard(&board);
    parser.setStrictChecks(strict);
  }
  bool read() {
    std::string error;
    return parser.connectionReader().readConnections(doc.getRootElement(), error);
  }
  HBOBoard board;
  HXMLWInterface doc;
  HBOBoardParser parser;
};

} // namespace

TEST_F(ConnectionsBoard, EachMapBecomesABusWithOneNetPerPinPair) {
  EXPECT_TRUE(msgs.records.empty());
  std::vector<std::string> names;
  for (HBOBoardBus *b : board.getBuses())
    names.push_back(b->getName());
  EXPECT_EQ((std::vector<std::string>{"dq", "chips", "btn", "pmod_io", "reversed", "crossed",
                                      "ghost_io"}),
            names);

  HBOBoardBus *dq = bus("dq");
  ASSERT_NE(nullptr, dq);
  EXPECT_EQ("part0_u1", dq->getConnectionName());
  EXPECT_EQ("part0", dq->getComp1()) << "component names are lower-cased";
  EXPECT_EQ("u1", dq->getComp2());
  EXPECT_EQ(&board, dq->getOwner());
  EXPECT_EQ(7, dq->getStopIndexComp2());
  EXPECT_FLOAT_EQ(1.0f, dq->getMinDelay());

  const auto &nets = dq->getBoardBusNets();
  ASSERT_EQ(4u, nets.size());
  for (int i = 0; i < 4; ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ("dq_" + std::to_string(i), nets[i]->getName());
    EXPECT_EQ(2 + i, nets[i]->getC1PinIndex());
    EXPECT_EQ(4 + i, nets[i]->getC2PinIndex());
    EXPECT_EQ(dq, nets[i]->getOwner());
  }
  EXPECT_FLOAT_EQ(2.0f, nets[0]->getMaxDelay());
  // The net element with index 2 counts from the start of the range, so it
  // means the third net (pin 4), and it replaces all three delays.
  EXPECT_FLOAT_EQ(9.5f, nets[2]->getTypicalDelay());
  EXPECT_FLOAT_EQ(0.0f, nets[2]->getMinDelay());
  EXPECT_FLOAT_EQ(0.0f, nets[2]->getMaxDelay());
  EXPECT_FLOAT_EQ(1.5f, nets[3]->getTypicalDelay()) << "index 9 meets no net";

  EXPECT_EQ(2u, bus("ghost_io")->getBoardBusNets().size())
      << "a component the board lacks still gets its nets";
  // Ranges that run backwards pass, as empty buses.
  EXPECT_TRUE(bus("reversed")->getBoardBusNets().empty());
  EXPECT_TRUE(bus("crossed")->getBoardBusNets().empty());
}

TEST_F(ConnectionsBoard, EnablementDependencyOnTheBusAndEveryNet) {
  HBOBoardBus *dq = bus("dq");
  ASSERT_NE(nullptr, dq);
  EXPECT_EQ("{J1 0} {J2 1}", dq->getEnablementDependency());
  for (HBOBoardBusNet *net : dq->getBoardBusNets())
    EXPECT_EQ("{J1 0} {J2 1}", net->getEnablementDependency()) << net->getName();

  HBOBoardBus *pmod = bus("pmod_io");
  ASSERT_NE(nullptr, pmod);
  EXPECT_EQ("{}", pmod->getEnablementDependency()) << "a jumpers element without jumpers";
  EXPECT_EQ("{}", pmod->getBoardBusNets().at(1)->getEnablementDependency());
  EXPECT_EQ("", bus("chips")->getEnablementDependency());
}

TEST_F(ConnectionsBoard, PinsAreMadeForWhatNoFileDefines) {
  HBOBoardComponent *pmod = component("pmod_a");
  ASSERT_NE(nullptr, pmod);
  ASSERT_EQ(2u, pmod->getPins().size()) << "nothing for the crossed map's 10 to 13";
  HBOPinProps *pin = pmod->getPinByIndex(1);
  ASSERT_NE(nullptr, pin);
  EXPECT_EQ("pmod_a_1", pin->getName());
  EXPECT_EQ(pmod, pin->getOwner());

  HBOBoardComponent *part0 = component("part0");
  ASSERT_NE(nullptr, part0);
  EXPECT_EQ(8u, part0->getPins().size()) << "six from the pin file, two for the pmod";
  ASSERT_NE(nullptr, part0->getPinByIndex(9));
  EXPECT_EQ("part0_9", part0->getPinByIndex(9)->getName());

  HBOBoardComponent *u2 = component("u2");
  ASSERT_NE(nullptr, u2);
  ASSERT_NE(nullptr, u2->getPinByIndex(2));
  EXPECT_EQ("u2_2", u2->getPinByIndex(2)->getName());
}

TEST_F(ConnectionsBoard, TheFpgaPinTakesTheIOStandardOfWhatItIsWiredTo) {
  EXPECT_EQ("SSTL15", ioStandard("part0", 2)) << "the FPGA's own value is overwritten";
  EXPECT_EQ("SSTL15", ioStandard("part0", 3));
  EXPECT_EQ("LVCMOS33", ioStandard("part0", 4)) << "the chip pin has none to give";
  EXPECT_EQ("SSTL135", ioStandard("part0", 5));
  EXPECT_EQ("HSTL_I", ioStandard("part0", 1)) << "also with the FPGA as component 2";
  EXPECT_EQ("LVCMOS33", ioStandard("part0", 0));
  EXPECT_EQ("", ioStandard("u1", 6)) << "nothing moves from the FPGA to the chip";
  // Between two chips nothing moves either.
  EXPECT_EQ("SSTL15", ioStandard("u1", 4));
  EXPECT_EQ("LVCMOS18", ioStandard("u2", 0));
}

TEST(ConnectionFaults, FindingsOfTheReaderFailTheRead) {
  struct Case {
    const char *dir;
    std::string finding;
    std::size_t buses;
  } cases[] = {
      // The connection after the mismatch is not read.
      {"connections_width",
       "49-69: Bus width of Component1 and Component2 does not match for bad_width\n", 0},
      // A missing index is read as 0, and the map still stands.
      {"connections_missing_index", "49-99: no_end", 1},
      {"connections_too_wide",
       "49-69: Connection map 'huge' of connection 'part0_u1' spans 2000000001 pins; at most "
       "16384 are supported.",
       0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.dir);
    test::MessageRecorder msgs;
    HBOBoard board;
    HBOBoardParser parser;
    const std::string file = dataPath(std::string(c.dir) + "/board.xml");
    EXPECT_FALSE(parser.parseFile(file, &board, false, "", nullptr));
    EXPECT_EQ(std::vector<std::string>{c.finding}, queued(parser));
    EXPECT_EQ(file, parser.getMessages().at(0).first.getArgs().at(0));
    EXPECT_EQ(c.buses, board.getBuses().size());
    EXPECT_EQ(std::vector<std::string>{"49-56"}, msgs.ids());
  }
}

TEST(ConnectionFaults, TextThatIsNoNumberFailsTheRead) {
  for (const char *dir : {"connections_bad_delay", "connections_bad_net"}) {
    SCOPED_TRACE(dir);
    {
      test::MessageRecorder msgs;
      HBOBoard board;
      EXPECT_FALSE(HBOParser().parseFile(dataPath(std::string(dir) + "/board.xml"), &board));
      EXPECT_EQ(std::vector<std::string>{"49-56"}, msgs.ids());
      EXPECT_TRUE(board.getBuses().empty());
    }
    ReaderRun run(dir);
    EXPECT_THROW(run.read(), boost::bad_lexical_cast);
    EXPECT_TRUE(run.board.getBuses().empty());
  }
}

TEST(ConnectionFaults, IndexTextIsHeldToTheStrictFormOnlyWhenAsked) {
  ReaderRun lenient("connections_index_text");
  ASSERT_TRUE(lenient.read());
  ASSERT_EQ(1u, lenient.board.getBuses().size());
  EXPECT_EQ(2, lenient.board.getBuses()[0]->getStartIndexComp1()) << "read as far as it goes";
  EXPECT_EQ(2u, lenient.board.getBuses()[0]->getBoardBusNets().size());

  ReaderRun strict("connections_index_text", true);
  try {
    strict.read();
    FAIL() << "the strict form must raise";
  } catch (const HEXError &e) {
    EXPECT_EQ("49-69", e.getMessage().getId());
    EXPECT_EQ("connection_map c1_st_index value \"2x\" is not valid, must be a non-negative "
              "integer.",
              e.getMessage().getArgs().at(1));
  }
  EXPECT_TRUE(strict.board.getBuses().empty());
}

TEST(ValidateConnection, EachRuleQueuesItsOwnFinding) {
  HBOBoard board;
  board.setBoardFile("/boards/b/board.xml");
  HBOBoardParser parser;
  parser.setBoard(&board);
  EXPECT_FALSE(parser.connectionReader().validateConnection(nullptr));

  HBOBoardBus empty;
  empty.setName("dq");
  empty.setStopIndexComp1(3);
  empty.setStopIndexComp2(2);
  EXPECT_FALSE(parser.connectionReader().validateConnection(&empty));
  EXPECT_EQ((std::vector<std::string>{
                "49-69: Connection name cannot be empty in 'dq'.\n",
                "49-69: Component1 cannot be empty in 'dq'.\n",
                "49-69: Component2 cannot be empty in 'dq'.\n",
                "49-69: Bus width of Component1 and Component2 does not match for \n",
            }),
            queued(parser));
  EXPECT_EQ("/boards/b/board.xml", parser.getMessages()[0].first.getArgs().at(0));

  // Widths are compared without their sign.
  HBOBoardBus crossed;
  crossed.setConnectionName("c");
  crossed.setComp1("a");
  crossed.setComp2("b");
  crossed.setStartIndexComp1(3);
  crossed.setStopIndexComp2(3);
  EXPECT_TRUE(parser.connectionReader().validateConnection(&crossed));
  EXPECT_EQ(4u, parser.getMessages().size());
}
