// The connection reader on its own, and the rules of a connection. The
// test boards' connections are read whole in ReadGoldenTest.
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
