#include "HUTTrace.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <thread>

namespace {

// Loads the trace with Python's JSON reader and prints one line per event:
// name, tab, the JSON text of its arguments, tab, ts, tab, dur. Empty
// result with ok=false when the file is no valid trace.
std::vector<std::string> readTrace(const std::string &path, bool &ok) {
  test::ScratchDir dir;
  dir.write(
      "check.py",
      "import json, sys\n"
      "doc = json.load(open(sys.argv[1], encoding='utf-8'))\n"
      "assert doc['displayTimeUnit'] == 'ms'\n"
      "for e in doc['traceEvents']:\n"
      "    assert e['ph'] == 'X' and isinstance(e['pid'], int) and isinstance(e['tid'], int)\n"
      "    print('%s\\t%s\\t%d\\t%d' % (e['name'], json.dumps(e['args'], ensure_ascii=True),"
      " e['ts'], e['dur']))\n");
  return test::outputLines("python3 " + dir.file("check.py") + " " + path + " 2>&1", ok);
}

std::vector<std::string> field(const std::vector<std::string> &events, int index) {
  std::vector<std::string> out;
  for (const std::string &e : events) {
    std::size_t start = 0;
    for (int i = 0; i < index; ++i)
      start = e.find('\t', start) + 1;
    out.push_back(e.substr(start, e.find('\t', start) - start));
  }
  return out;
}

} // namespace

TEST(Trace, OneEventPerScopeInValidJson) {
  test::ScratchDir dir;
  std::string path = dir.file("trace.json");
  HUTTrace::setOutput(path);
  ASSERT_TRUE(HUTTrace::enabled());
  {
    HUTTraceScope outer("HBOBoardParser::parseFile", "fileName", "boards/a/board.xml");
    HUTTraceScope inner("escape", "text", std::string("q\"b\\n\nt\t\x01 \xC2\xB5 bad\xFF"));
  }
  std::thread([] { HUTTraceScope s("worker", "fileName", "w"); }).join();
  HUTTrace::flush();

  bool ok = false;
  std::vector<std::string> events = readTrace(path, ok);
  ASSERT_TRUE(ok) << (events.empty() ? "" : events.back());
  ASSERT_EQ(events.size(), 3u);
  std::vector<std::string> names = field(events, 0);
  // Scopes are recorded as they close: inner first.
  EXPECT_EQ(names, (std::vector<std::string>{"escape", "HBOBoardParser::parseFile", "worker"}));
  std::vector<std::string> args = field(events, 1);
  EXPECT_EQ(args[0], "{\"text\": \"q\\\"b\\\\n\\nt\\t\\u0001 \\u00b5 bad\\ufffd\"}");
  EXPECT_EQ(args[1], "{\"fileName\": \"boards/a/board.xml\"}");

  // The outer scope encloses the inner one in time.
  std::vector<std::string> ts = field(events, 2), dur = field(events, 3);
  EXPECT_LE(std::stoll(ts[1]), std::stoll(ts[0]));
  EXPECT_GE(std::stoll(ts[1]) + std::stoll(dur[1]), std::stoll(ts[0]) + std::stoll(dur[0]));
  HUTTrace::setOutput("");
}

TEST(Trace, OffRecordsNothingAndEachOutputGetsItsOwnEvents) {
  test::ScratchDir dir;
  HUTTrace::setOutput(dir.file("first.json"));
  { HUTTraceScope s("first", "n", "1"); }
  HUTTrace::setOutput("");
  EXPECT_FALSE(HUTTrace::enabled());
  { HUTTraceScope s("while off", "n", "2"); }
  HUTTrace::flush(); // nowhere to write: no effect

  HUTTrace::setOutput(dir.file("second.json"));
  { HUTTraceScope s("second", "n", "3"); }
  HUTTrace::flush();
  HUTTrace::setOutput("");

  bool ok = false;
  EXPECT_EQ(field(readTrace(dir.file("first.json"), ok), 0), std::vector<std::string>{"first"});
  EXPECT_TRUE(ok);
  EXPECT_EQ(field(readTrace(dir.file("second.json"), ok), 0), std::vector<std::string>{"second"});
  EXPECT_TRUE(ok);
}

TEST(Trace, ManyThreadsAtOnce) {
  test::ScratchDir dir;
  HUTTrace::setOutput(dir.file("threads.json"));
  std::vector<std::thread> workers;
  for (int t = 0; t < 4; ++t)
    workers.emplace_back([] {
      for (int i = 0; i < 250; ++i)
        HUTTraceScope s("load", "fileName", std::to_string(i));
    });
  for (std::thread &w : workers)
    w.join();
  HUTTrace::flush();
  HUTTrace::setOutput("");
  bool ok = false;
  EXPECT_EQ(readTrace(dir.file("threads.json"), ok).size(), 1000u);
  EXPECT_TRUE(ok);
}

TEST(Trace, EnvironmentSwitchesTracingOnAndExitWritesTheFile) {
  // The variable is read once per process, so the check runs in a fresh
  // one; it re-runs this test, and learns the file name from the parent.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const char *inherited = std::getenv("BOARDLIB_TEST_TRACE_TARGET");
  std::unique_ptr<test::ScratchDir> dir;
  std::string path;
  if (inherited) {
    path = inherited;
  } else {
    dir.reset(new test::ScratchDir);
    path = dir->file("env.json");
    ::setenv("BOARDLIB_TEST_TRACE_TARGET", path.c_str(), 1);
  }
  EXPECT_EXIT(
      {
        ::setenv("BOARDLIB_TRACE", path.c_str(), 1);
        if (HUTTrace::enabled()) {
          HUTTraceScope s("from-env", "fileName", "x");
        }
        std::exit(0);
      },
      ::testing::ExitedWithCode(0), "");
  ::unsetenv("BOARDLIB_TEST_TRACE_TARGET");
  bool ok = false;
  EXPECT_EQ(field(readTrace(path, ok), 0), std::vector<std::string>{"from-env"});
  EXPECT_TRUE(ok);
}
