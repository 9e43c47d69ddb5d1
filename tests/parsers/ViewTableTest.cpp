// The duplicate checks' table: the first value of a key stands, through
// growth and from one element to the next.
#include "HBOViewTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(ViewTable, FirstValueStandsThroughGrowthAndResets) {
  std::vector<std::string> keys;
  for (int i = 0; i < 1000; ++i)
    keys.push_back("pin" + std::to_string(i));
  keys.push_back("");
  HBOViewTable table;
  for (int round = 0; round < 3; ++round) {
    // Sized for a few entries, grown to a thousand, then reused.
    table.reset(round == 1 ? keys.size() : 2);
    for (const std::string &key : keys)
      EXPECT_EQ(nullptr, table.insert(key, key)) << key;
    for (const std::string &key : keys) {
      const std::string_view *first = table.insert(key, "later");
      ASSERT_NE(nullptr, first) << key;
      EXPECT_EQ(key, *first);
    }
  }
  table.reset();
  EXPECT_EQ(nullptr, table.insert("pin7", "again"));
}
