// One read of a test board with the queue kept for inspection: a read that
// sends nothing still queues every finding.
#ifndef BOARDLIB_TESTS_POWER_READBOARD_H
#define BOARDLIB_TESTS_POWER_READBOARD_H

#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "TestSupport.h"

#include <string>
#include <vector>

namespace test {

struct ReadBoard {
  explicit ReadBoard(const std::string &dir) {
    ok = parser.parseFile(dataPath(dir + "/board.xml"), &board, false, "", nullptr);
  }
  /// The arguments of each queued message of \p id, in queue order.
  std::vector<std::vector<std::string>> queued(const std::string &id) const {
    std::vector<std::vector<std::string>> out;
    for (const auto &entry : parser.getMessages())
      if (entry.first.getId() == id)
        out.push_back(entry.first.getArgs());
    return out;
  }

  MessageRecorder sent; // keeps the closing message of a failed read off the console
  HBOBoard board;
  HBOBoardParser parser;
  bool ok = false;
};

} // namespace test

#endif
