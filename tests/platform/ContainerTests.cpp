// The flat ordered map, the block store and the string pool behind the
// compact board model.
#include "HSTChunkStore.h"
#include "HSTFlatMap.h"
#include "HSTIntern.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using Map = HSTFlatMap<std::string, std::string>;

TEST(HSTFlatMap, BehavesAsAnOrderedMap) {
  Map map;
  std::map<std::string, std::string> reference;
  // Out of order, repeated keys, operator[] and emplace mixed.
  const std::vector<std::pair<std::string, std::string>> steps{{"m", "1"}, {"b", "2"}, {"z", "3"},
                                                               {"b", "4"}, {"a", "5"}, {"m", "6"}};
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (i % 2) {
      map[steps[i].first] = steps[i].second;
      reference[steps[i].first] = steps[i].second;
    } else {
      EXPECT_EQ(map.emplace(steps[i].first, steps[i].second).second,
                reference.emplace(steps[i].first, steps[i].second).second);
    }
  }
  EXPECT_EQ(reference, map);
  EXPECT_EQ(map.lower_bound("c")->first, "m");
  EXPECT_EQ(map.count("z"), 1u);
  EXPECT_EQ(map.find("y"), map.end());
  EXPECT_EQ(map.erase("b"), 1u);
  EXPECT_EQ(map.erase("b"), 0u);
  reference.erase("b");
  EXPECT_EQ(reference, map);
  EXPECT_THROW(map.at("b"), std::out_of_range);

  // A hint from lower_bound is taken; a wrong one, or a key already there,
  // ends as try_emplace would.
  EXPECT_EQ(map.emplace_hint(map.lower_bound("c"), "c", "7")->second, "7");
  EXPECT_EQ(map.emplace_hint(map.begin(), "y", "8")->second, "8");
  EXPECT_EQ(map.emplace_hint(map.end(), "a", "9")->second, "5");
  reference.emplace("c", "7");
  reference.emplace("y", "8");
  EXPECT_EQ(reference, map);
}

TEST(HSTFlatMap, BulkFillKeepsTheLastOrTheFirstOfARepeatedKey) {
  Map last, first;
  for (Map *map : {&last, &first}) {
    map->appendUnsorted("k", "1");
    map->appendUnsorted("a", "x");
    map->appendUnsorted("k", "2");
    map->appendUnsorted("k", "3");
  }
  EXPECT_FALSE(last.isSettled());
  last.sortKeepLast();
  first.sortKeepFirst();
  EXPECT_EQ((std::map<std::string, std::string>{{"a", "x"}, {"k", "3"}}), last);
  EXPECT_EQ((std::map<std::string, std::string>{{"a", "x"}, {"k", "1"}}), first);
  EXPECT_TRUE(last.isSettled());
}

TEST(HSTIntern, EqualTextsShareOneCopyAcrossThreads) {
  const std::string &empty = HSTIntern::get("");
  EXPECT_EQ(&empty, &HSTIntern::empty());
  // Enough texts that every shard's table grows several times while the
  // threads race: a text lost in a move would be pooled twice.
  const std::size_t pooled = HSTIntern::size();
  std::vector<std::vector<const std::string *>> seen(4);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < seen.size(); ++t)
    threads.emplace_back([&seen, t] {
      for (int i = 0; i < 2000; ++i)
        seen[t].push_back(&HSTIntern::get("value_" + std::to_string(i)));
      seen[t].push_back(&HSTIntern::get(std::string("LVCMOS18")));
    });
  for (std::thread &thread : threads)
    thread.join();
  for (const std::vector<const std::string *> &texts : seen)
    EXPECT_EQ(texts, seen[0]);
  EXPECT_EQ(*seen[0].back(), "LVCMOS18");
  EXPECT_EQ(seen[0][7], &HSTIntern::get(std::string("value_") + "7"));
  EXPECT_EQ(*seen[0][7], "value_7");
  EXPECT_EQ(pooled + 2001, HSTIntern::size());

  // Many at once, in more than one round, give what one at a time gave.
  std::vector<std::string> names;
  for (int i = 0; i < 100; ++i)
    names.push_back("value_" + std::to_string(i % 2 ? i : 1999 - i));
  names.push_back("");
  std::vector<std::string_view> views(names.begin(), names.end());
  std::vector<const std::string *> many(views.size());
  HSTIntern::getMany(views.data(), views.size(), many.data());
  for (std::size_t i = 0; i < names.size(); ++i)
    EXPECT_EQ(&HSTIntern::get(names[i]), many[i]) << names[i];
  EXPECT_EQ(pooled + 2001, HSTIntern::size());
}

TEST(HSTChunkStore, DestroysEveryObjectOnceAndKeepsAddresses) {
  struct Counted {
    explicit Counted(int &alive) : alive(alive) { ++alive; }
    ~Counted() { --alive; }
    int &alive;
  };
  int alive = 0;
  {
    HSTChunkStore<Counted> store;
    store.reserve(3);
    std::vector<Counted *> made;
    for (int i = 0; i < 40; ++i)
      made.push_back(store.create(alive));
    EXPECT_EQ(alive, 40);
    EXPECT_TRUE(store.owns(made[0]) && store.owns(made[39]));
    Counted other(alive);
    EXPECT_FALSE(store.owns(&other));
    store.destroy(made[1]);
    store.destroy(made[39]);
    EXPECT_EQ(store.size(), 38u);
    EXPECT_EQ(alive, 39);
    // Addresses stay while blocks are added.
    Counted *first = made[0];
    for (int i = 0; i < 300; ++i)
      store.create(alive);
    EXPECT_EQ(made[0], first);
    EXPECT_EQ(&made[0]->alive, &alive);
  }
  EXPECT_EQ(alive, 0);
}
