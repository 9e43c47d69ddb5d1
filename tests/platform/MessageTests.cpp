#include "ComMsgCatalog.h"
#include "ComMsgMgr.h"
#include "HEXError.h"
#include "HUTConvert.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <thread>

namespace {

// The %s and %d placeholders of a text, in order, as one string such as "sds".
std::string placeholders(const std::string &text) {
  std::string out;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '%')
      continue;
    char c = text[i + 1];
    if (c == 's' || c == 'd')
      out += c;
    ++i; // "%%" and the letter after a placeholder are consumed alike
  }
  return out;
}

// "49-170" as the pair (49, 170), for ordering.
std::pair<int, int> keyNumber(const std::string &key) {
  int group = 0, number = 0;
  std::sscanf(key.c_str(), "@%d-%d@", &group, &number);
  return {group, number};
}

} // namespace

// --- Catalog ---------------------------------------------------------------

TEST(MessageCatalog, TemplatesHoldExactlyTheirKeysPlaceholders) {
  std::vector<std::string> keys = ComMsgCatalog::allKeys();
  ASSERT_GE(keys.size(), 75u);
  for (const std::string &key : keys) {
    const char *tmpl = ComMsgCatalog::findTemplate(key);
    ASSERT_NE(tmpl, nullptr) << key;
    std::string body = key.substr(key.find('@', 1) + 1);
    EXPECT_EQ(placeholders(tmpl), placeholders(body)) << key << " -> " << tmpl;
    EXPECT_GT(std::string(tmpl).size(), body.size() + 10) << key << " has no real text";
  }
}

TEST(MessageCatalog, KeysAreUniqueAndSortedByNumber) {
  std::vector<std::string> keys = ComMsgCatalog::allKeys();
  std::set<std::string> unique(keys.begin(), keys.end());
  EXPECT_EQ(unique.size(), keys.size());
  // Two keys with the same id but other placeholders would be two messages
  // under one number.
  std::set<std::pair<int, int>> ids;
  for (const std::string &key : keys)
    EXPECT_TRUE(ids.insert(keyNumber(key)).second) << "id used twice: " << key;
  EXPECT_TRUE(
      std::is_sorted(keys.begin(), keys.end(), [](const std::string &a, const std::string &b) {
        return keyNumber(a) < keyNumber(b);
      }));
}

TEST(MessageCatalog, FillPutsArgumentsInOrderAndKeepsSurplus) {
  EXPECT_EQ(ComMsgCatalog::fill("a %s b %d c", {"x", "7"}), "a x b 7 c");
  EXPECT_EQ(ComMsgCatalog::fill("100%% %s", {"done"}), "100% done");
  EXPECT_EQ(ComMsgCatalog::fill("%s and %s", {"one"}), "one and ");
  EXPECT_EQ(ComMsgCatalog::fill("%s", {"one", "two"}), "one : two");
  EXPECT_EQ(ComMsgCatalog::fill("ends in %", {}), "ends in %");
}

// --- Formatting ------------------------------------------------------------

TEST(MessageFormat, NumbersFillPercentD) {
  ComMsgMgrInstance msg("board", ComMsg::Info, "@49-169@%d%d");
  msg.arg(100).arg(-250);
  std::string text = msg.getText();
  std::size_t first = text.find("100");
  std::size_t second = text.find("-250");
  ASSERT_NE(first, std::string::npos) << text;
  ASSERT_NE(second, std::string::npos) << text;
  EXPECT_LT(first, second);
  EXPECT_EQ(text.find("%d"), std::string::npos);

  ComMsgMgrInstance mixed("board", ComMsg::Warning, "@49-170@%d%s%s%s");
  mixed.arg(12u).arg("A1").arg("B2").arg("part0");
  EXPECT_EQ(mixed.getArgs(), (std::vector<std::string>{"12", "A1", "B2", "part0"}));
  EXPECT_NE(mixed.getText().find("12"), std::string::npos);
}

TEST(MessageFormat, KeyOutsideCatalogStillShowsItsArguments) {
  ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-999@%s:%d");
  msg.arg("file").arg(5).arg("extra");
  EXPECT_EQ(msg.getId(), "49-999");
  EXPECT_EQ(msg.format(), "WARNING: [Board 49-999] file:5 : extra");

  ComMsgMgrInstance noId("board", ComMsg::Info, "no id here %s");
  noId.arg("x");
  EXPECT_EQ(noId.getId(), "");
  EXPECT_EQ(noId.format(), "INFO: no id here x");
}

TEST(MessageFormat, ErrorCarriesItsMessage) {
  try {
    HEXError::raise("board", ComMsg::Error, "@49-110@%s", "a.xml.kq");
    FAIL() << "raise returned";
  } catch (const HEXAll &e) {
    const HEXError *err = dynamic_cast<const HEXError *>(&e);
    ASSERT_NE(err, nullptr);
    EXPECT_EQ(err->getMessage().getKey(), "@49-110@%s");
    EXPECT_EQ(std::string(e.what()), err->getMessage().format());
    EXPECT_NE(std::string(e.what()).find("a.xml.kq"), std::string::npos);
  }
}

TEST(MessageFormat, BooleanRefusalIsReported) {
  test::MessageRecorder sink;
  bool value = true;
  EXPECT_FALSE(HUTConvert::stringToBoolean("maybe", value, true));
  EXPECT_TRUE(value);
  ASSERT_EQ(sink.records.size(), 1u);
  EXPECT_EQ(sink.records[0].key, "@1-1@%s");
  EXPECT_EQ(sink.records[0].line.rfind("WARNING: [Common 1-1] ", 0), 0u);
  EXPECT_NE(sink.records[0].text.find("'maybe'"), std::string::npos);
  EXPECT_FALSE(HUTConvert::stringToBoolean("maybe", value, false));
  EXPECT_EQ(sink.records.size(), 1u);
}

// --- Delivery --------------------------------------------------------------

TEST(MessageDelivery, SinkReceivesFullRecords) {
  test::MessageRecorder sink;
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-98@%s%s", "part0_pins.xml", "FOO");
  ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-108@%s", std::string("b.xml"));
  ASSERT_EQ(sink.records.size(), 2u);
  const ComMsgRecord &r = sink.records[0];
  EXPECT_EQ(r.severity, ComMsg::Warning);
  EXPECT_EQ(r.severityName, "WARNING");
  EXPECT_EQ(r.category, "board");
  EXPECT_EQ(r.id, "49-98");
  EXPECT_EQ(r.key, "@49-98@%s%s");
  EXPECT_EQ(r.args, (std::vector<std::string>{"part0_pins.xml", "FOO"}));
  EXPECT_EQ(r.line, "WARNING: [Board 49-98] " + r.text);
  EXPECT_EQ(ComMsgMgr::getCount(ComMsg::Warning), 1u);
  EXPECT_EQ(ComMsgMgr::getCount(ComMsg::Error), 1u);
  EXPECT_EQ(ComMsgMgr::getCount(ComMsg::Info), 0u);
}

TEST(MessageDelivery, LimitDropsAndCountsTheRest) {
  test::MessageRecorder sink;
  ComMsgMgr::setMsgLimit("49-69", 2);
  for (int i = 0; i < 5; ++i)
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-69@%s%s", "f", std::to_string(i));
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", "other id");
  ASSERT_EQ(sink.records.size(), 3u);
  EXPECT_EQ(sink.records[1].args[1], "1");
  EXPECT_EQ(sink.records[2].id, "49-36");
  EXPECT_EQ(ComMsgMgr::getSuppressedCount("49-69"), 3u);

  ComMsgMgr::setMsgLimit("49-69", -1);
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-69@%s%s", "f", "after");
  EXPECT_EQ(sink.records.size(), 4u);

  ComMsgMgr::setMsgLimit("49-69", 0);
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-69@%s%s", "f", "none");
  EXPECT_EQ(sink.records.size(), 4u);
  ComMsgMgr::setMsgLimit("49-69", -1);
}

TEST(MessageDelivery, ScopedDebugFollowsItsScope) {
  test::MessageRecorder sink;
  ComMsgMgr::enableScope("all", false);
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "hidden %d", 1);
  EXPECT_TRUE(sink.records.empty());

  ComMsgMgr::enableScope("board.parse");
  EXPECT_TRUE(ComMsgMgr::hasScope("board.parse"));
  EXPECT_FALSE(ComMsgMgr::hasScope("board.event"));
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                           "HBOParser found schema version '%s'\n", "2.1");
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug4, "board.event", "not shown");
  ASSERT_EQ(sink.records.size(), 1u);
  EXPECT_EQ(sink.records[0].line, "DEBUG: [board.parse] HBOParser found schema version '2.1'");
  EXPECT_EQ(sink.records[0].severity, ComMsgMgr::Debug1);

  ComMsgMgr::enableScope("board.parse", false);
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "off again");
  EXPECT_EQ(sink.records.size(), 1u);

  ComMsgMgr::enableScope("all");
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug2, "board.dataProps", "%s",
                           std::string(5000, 'x').c_str());
  ComMsgMgr::enableScope("all", false);
  ASSERT_EQ(sink.records.size(), 2u);
  EXPECT_EQ(sink.records[1].text.size(), 5000u);
}

TEST(MessageDelivery, CaptureKeepsItsThreadsMessagesAndReplaysInOrder) {
  test::MessageRecorder sink;
  {
    ComMsgCapture capture;
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", "first");
    std::thread other(
        [] { ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", "other thread"); });
    other.join();
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-108@%s", "second");
    // Only the other thread's message got through.
    ASSERT_EQ(sink.records.size(), 1u);
    EXPECT_EQ(sink.records[0].args[0], "other thread");
    ASSERT_EQ(capture.messages().size(), 2u);

    capture.replay();
    EXPECT_TRUE(capture.messages().empty());
    ASSERT_EQ(sink.records.size(), 3u);
    EXPECT_EQ(sink.records[1].args[0], "first");
    EXPECT_EQ(sink.records[2].args[0], "second");

    // Still capturing after a replay.
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", "late");
    EXPECT_EQ(sink.records.size(), 3u);
    EXPECT_EQ(capture.take().size(), 1u);
  }
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", "after");
  EXPECT_EQ(sink.records.size(), 4u);
}

TEST(MessageDelivery, NestedCapturesReplayIntoTheOuterOne) {
  test::MessageRecorder sink;
  ComMsgCapture outer;
  ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-36@%s", "a");
  {
    ComMsgCapture inner;
    ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-36@%s", "b");
    EXPECT_EQ(outer.messages().size(), 1u);
    inner.replay();
    ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-36@%s", "dropped with inner");
  }
  ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-36@%s", "c");
  EXPECT_TRUE(sink.records.empty());
  ASSERT_EQ(outer.messages().size(), 3u);
  outer.replay();
  ASSERT_EQ(sink.records.size(), 3u);
  EXPECT_EQ(sink.records[0].args[0], "a");
  EXPECT_EQ(sink.records[1].args[0], "b");
  EXPECT_EQ(sink.records[2].args[0], "c");
}

TEST(MessageDelivery, ManyThreadsDeliverWholeMessagesInTheirOwnOrder) {
  test::MessageRecorder sink;
  const int threads = 6, perThread = 400;
  std::vector<std::thread> workers;
  for (int t = 0; t < threads; ++t)
    workers.emplace_back([t] {
      for (int i = 0; i < perThread; ++i)
        ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-69@%s%s", "t" + std::to_string(t),
                           std::to_string(i));
    });
  for (std::thread &w : workers)
    w.join();
  ASSERT_EQ(sink.records.size(), static_cast<std::size_t>(threads * perThread));
  EXPECT_EQ(ComMsgMgr::getCount(ComMsg::Warning), static_cast<unsigned>(threads * perThread));
  std::vector<int> next(threads, 0);
  for (const ComMsgRecord &r : sink.records) {
    ASSERT_EQ(r.args.size(), 2u);
    int t = std::stoi(r.args[0].substr(1));
    EXPECT_EQ(std::stoi(r.args[1]), next[t]++) << "thread " << t << " out of order";
    EXPECT_EQ(r.line, "WARNING: [Board 49-69] " + r.text);
  }
}
