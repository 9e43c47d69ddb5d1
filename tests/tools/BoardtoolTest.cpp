// boardtool as a user runs it: exit codes, standard output, and messages in
// text and JSON form.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Result {
  int status = -1;
  std::string out, err;
};

std::string slurp(const std::string &path) {
  std::ifstream in(path);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

Result boardtool(const std::string &args) {
  char outName[] = "/tmp/boardtool-out-XXXXXX";
  char errName[] = "/tmp/boardtool-err-XXXXXX";
  close(mkstemp(outName));
  close(mkstemp(errName));
  std::string cmd = std::string("env -u BOARDLIB_PARAMS -u BOARDLIB_DEBUG ") + BOARDTOOL_PATH +
                    " " + args + " >" + outName + " 2>" + errName;
  Result r;
  int raw = std::system(cmd.c_str());
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  r.out = slurp(outName);
  r.err = slurp(errName);
  unlink(outName);
  unlink(errName);
  return r;
}

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
