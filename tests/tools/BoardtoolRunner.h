// Runs boardtool as a user would, for the end-to-end tests: exit status,
// standard output and standard error of one call.
#ifndef BOARDLIB_TESTS_BOARDTOOLRUNNER_H
#define BOARDLIB_TESTS_BOARDTOOLRUNNER_H

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

struct ToolResult {
  int status = -1;
  std::string out, err;
};

inline std::string slurp(const std::string &path) {
  std::ifstream in(path);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

/// Runs `boardtool ARGS` with no terminal on either stream and without the
/// caller's parameter and debug settings; \p env is put in front as
/// "NAME=VALUE ..." settings of the environment.
inline ToolResult runBoardtool(const std::string &args, const std::string &env = std::string()) {
  char outName[] = "/tmp/boardtool-out-XXXXXX";
  char errName[] = "/tmp/boardtool-err-XXXXXX";
  close(mkstemp(outName));
  close(mkstemp(errName));
  std::string cmd = "env -u BOARDLIB_PARAMS -u BOARDLIB_DEBUG " + env + " " + BOARDTOOL_PATH +
                    " " + args + " >" + outName + " 2>" + errName;
  ToolResult r;
  int raw = std::system(cmd.c_str());
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  r.out = slurp(outName);
  r.err = slurp(errName);
  unlink(outName);
  unlink(errName);
  return r;
}

} // namespace test

#endif
