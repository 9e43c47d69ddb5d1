// boardtool as a user runs it: exit codes, standard output, and messages in
// text and JSON form.
#include "BoardtoolRunner.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Result = test::ToolResult;

Result boardtool(const std::string &args) { return test::runBoardtool(args); }

std::string data(const std::string &rel) { return std::string(BOARDLIB_TEST_DATA) + "/" + rel; }

} // namespace

TEST(BoardtoolRead, SampleBoardPrintsAndExitsZero) {
  Result r = boardtool(std::string("read ") + BOARDLIB_SAMPLE_BOARD);
  EXPECT_EQ(0, r.status) << r.err;
  EXPECT_EQ("", r.err);
  EXPECT_EQ(0u, r.out.find("Board - Name: falcon_eval, Fullname: kestrel-boards:falcon_eval:1.0"))
      << r.out.substr(0, 200);
  EXPECT_NE(std::string::npos, r.out.find("Pin - index:"));
}

TEST(BoardtoolRead, FailuresExitOneWithTheirMessages) {
  Result dup = boardtool("read " + data("dup_pin_index/board.xml"));
  EXPECT_EQ(1, dup.status);
  EXPECT_EQ("", dup.out);
  EXPECT_NE(std::string::npos, dup.err.find("CRITICAL WARNING: [Board 49-56] "));

  Result type = boardtool("read " + data("bad_component_type/board.xml"));
  EXPECT_EQ(1, type.status);
  EXPECT_NE(std::string::npos, type.err.find("[Board 49-56]"));

  // With debug output of the reader, the findings behind a failure are shown.
  Result debug = boardtool("read --debug board.parse " + data("dup_pin_index/board.xml"));
  EXPECT_NE(std::string::npos, debug.err.find("[Board 49-170]"));

  Result missing = boardtool("read " + data("no_such_dir/board.xml"));
  EXPECT_EQ(1, missing.status);
  EXPECT_NE(std::string::npos, missing.err.find("WARNING: [Board 49-36] "));
}

TEST(BoardtoolRead, MissingPinFileWarnsAndTheBoardStillReads) {
  Result r = boardtool("read " + data("missing_pin_file/board.xml"));
  EXPECT_EQ(0, r.status);
  EXPECT_NE(std::string::npos, r.err.find("WARNING: [Board 49-55] "));
}

TEST(BoardtoolRead, JsonMessagesAreOneArray) {
  Result r = boardtool("read --messages=json " + data("malformed/unclosed/board.xml"));
  EXPECT_EQ(1, r.status);
  ASSERT_FALSE(r.err.empty());
  EXPECT_EQ('[', r.err.front());
  EXPECT_NE(std::string::npos, r.err.find("\"id\": \"50-1\""));
  EXPECT_NE(std::string::npos, r.err.find("\"severity\": \"CRITICAL WARNING\""));
  EXPECT_NE(std::string::npos, r.err.find("\"key\": \"@49-59@%s\""));
  // The line of the fault is an argument of the syntax message.
  EXPECT_NE(std::string::npos, r.err.find("\"6\""));
  std::string check = "python3 -c 'import json,sys; json.loads(sys.stdin.read())' <<'EOF'\n" +
                      r.err + "\nEOF";
  EXPECT_EQ(0, std::system(check.c_str()));

  Result ok = boardtool(std::string("read --messages=json ") + BOARDLIB_SAMPLE_BOARD);
  EXPECT_EQ(0, ok.status);
  EXPECT_EQ("[]\n", ok.err);
}

TEST(BoardtoolRead, ParametersFromTheCommandLineAndTheEnvironment) {
  // With schema 2 switched off the file goes to the legacy reader.
  Result off = boardtool("read --param board.enableSchemaV2=false " + data("minimal/board.xml"));
  EXPECT_EQ(1, off.status);
  EXPECT_NE(std::string::npos, off.err.find("[Board 49-4]"));
  std::string env = std::string("env BOARDLIB_PARAMS='board.enableSchemaV2=0' ") + BOARDTOOL_PATH +
                    " read " + data("minimal/board.xml") + " >/dev/null 2>&1";
  int raw = std::system(env.c_str());
  EXPECT_EQ(1, WEXITSTATUS(raw));

  Result bad = boardtool("read --param board.enableSchemaV2=perhaps " + data("minimal/board.xml"));
  EXPECT_EQ(2, bad.status);
  EXPECT_NE(std::string::npos, bad.err.find("board.enableSchemaV2"));
  Result unknown = boardtool("read --param no.such.param=1 " + data("minimal/board.xml"));
  EXPECT_EQ(2, unknown.status);
}

TEST(BoardtoolUsage, HelpAndBadUsage) {
  Result help = boardtool("--help");
  EXPECT_EQ(0, help.status);
  EXPECT_NE(std::string::npos, help.out.find("read"));
  Result readHelp = boardtool("read --help");
  EXPECT_EQ(0, readHelp.status);
  EXPECT_NE(std::string::npos, readHelp.out.find("--messages=json"));
  EXPECT_EQ(2, boardtool("").status);
  EXPECT_EQ(2, boardtool("read").status);
  EXPECT_EQ(2, boardtool("read a.xml b.xml").status);
  EXPECT_EQ(2, boardtool("read --frobnicate a.xml").status);
  EXPECT_EQ(2, boardtool("frobnicate").status);
  Result params = boardtool("params");
  EXPECT_EQ(0, params.status);
  EXPECT_NE(std::string::npos, params.out.find("board.enableSchemaV2"));
  EXPECT_EQ(std::string::npos, params.out.find("board.debugMemory")) << "hidden without --all";
}

namespace {

std::string sample(const std::string &board) {
  std::string path = BOARDLIB_SAMPLE_BOARD;
  return path.substr(0, path.find("/falcon_eval/")) + "/" + board + "/1.0/board.xml";
}

std::size_t countOf(const std::string &text, const std::string &part) {
  std::size_t n = 0;
  for (std::size_t pos = 0; (pos = text.find(part, pos)) != std::string::npos; ++pos)
    ++n;
  return n;
}

} // namespace

TEST(BoardtoolCheck, BothSampleBoardsPassWithNoFinding) {
  Result r = boardtool("check " + sample("falcon_eval") + " " + sample("heron_adc"));
  EXPECT_EQ(0, r.status) << r.err;
  EXPECT_EQ("", r.err);
  EXPECT_EQ(2u, countOf(r.out, ": passed (0 errors, 0 warnings)"));
  EXPECT_NE(std::string::npos, r.out.find("2 of 2 files passed"));
  // The strict checks of the newer schema, applied to the older sample too.
  Result strict = boardtool("check --param board.enable2020Checks=true " + sample("falcon_eval"));
  EXPECT_EQ(0, strict.status) << strict.err;
}

TEST(BoardtoolCheck, FaultyBoardsTellTheirFindingsAndFail) {
  struct Case {
    const char *dir;
    const char *finding;
  } cases[] = {
      {"faulty_port_width", "Necessary component pins not provided for 'leds_tri_o'."},
      {"faulty_reset_polarity", "Polarity Parameter not provided for 'reset'."},
      {"faulty_power_phases", "[Board 49-142]"},
      {"faulty_connection_width", "Bus width of Component1 and Component2 does not match"},
      {"faulty_preferred_ip_vendor", "Vendor cannot be empty in preferred_ip 'gpio_ctl'."},
      {"dup_pin_index", "[Board 49-170]"},
      {"bad_component_type", "Component Type should be fpga/chip/connector"},
  };
  std::string all;
  for (const Case &c : cases) {
    Result r = boardtool("check " + data(std::string(c.dir) + "/board.xml"));
    EXPECT_EQ(1, r.status) << c.dir;
    EXPECT_NE(std::string::npos, r.err.find(c.finding)) << c.dir << "\n" << r.err;
    EXPECT_NE(std::string::npos, r.out.find(": FAILED (")) << c.dir;
    all += " " + data(std::string(c.dir) + "/board.xml");
  }
  // A clock without a frequency is told but fails nothing.
  Result clock = boardtool("check " + data("faulty_clock_frequency/board.xml"));
  EXPECT_EQ(0, clock.status);
  EXPECT_NE(std::string::npos, clock.err.find("WARNING: [Board 49-153]"));
  EXPECT_NE(std::string::npos, clock.out.find("passed (0 errors, 1 warning)"));

  // Several files: one summary each, in the order given, and the total.
  Result many = boardtool("check" + all + " " + sample("heron_adc"));
  EXPECT_EQ(1, many.status);
  EXPECT_EQ(8u, countOf(many.out, "board.xml: "));
  EXPECT_NE(std::string::npos, many.out.find("1 of 8 files passed"));
  EXPECT_LT(many.out.find("faulty_port_width"), many.out.find("heron_adc"));
}

TEST(BoardtoolCheck, DtdFindingsCarryTheLineOfTheFileOnDisk) {
  char dir[] = "/tmp/boardtool-check-XXXXXX";
  ASSERT_NE(nullptr, mkdtemp(dir));
  std::string file = std::string(dir) + "/board.xml";
  {
    std::ofstream out(file);
    out << "<?xml version=\"1.0\"?>\n"
        << "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\">\n"
        << "  <file_version>1.0</file_version>\n"
        << "  <gadgets/>\n"
        << "</board>\n";
  }
  Result r = boardtool("check --messages=json " + file);
  EXPECT_EQ(1, r.status);
  EXPECT_NE(std::string::npos, r.err.find("\"id\": \"49-105\""));
  EXPECT_NE(std::string::npos, r.err.find("\"args\": [\"" + file + "\", \"4\""))
      << r.err;
  EXPECT_NE(std::string::npos, r.out.find(file + ": FAILED"));
  std::system(("rm -rf " + std::string(dir)).c_str());
}
