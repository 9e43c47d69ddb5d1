// Files and folders made to hurt: pipes and devices where a board file should
// be, packed files that are damaged or unpack to far more than they hold,
// names that lead out of the board's folder, folders that cannot be read and
// links out of a repository. Each must end in a message that names the file,
// within seconds, and leave the rest of the catalog loaded. A case that
// hangs fails the whole program at once rather than holding up the tests.
#include "HBOBoard.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HPAParamMgr.h"
#include "HUTFileUtils.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using test::dataPath;
using test::MessageRecorder;
using test::ParamScope;
using test::ScratchDir;

namespace fs = boost::filesystem;

constexpr int kSecondsPerCase = 10;

// Runs \p body on a thread of its own and waits for it at most
// kSecondsPerCase. A read stuck on a pipe cannot be ended or joined, so a
// case that overruns ends the program with a failure.
void withinTime(const std::string &what, const std::function<void()> &body) {
  std::packaged_task<void()> task(body);
  std::future<void> done = task.get_future();
  std::thread worker(std::move(task));
  if (done.wait_for(std::chrono::seconds(kSecondsPerCase)) != std::future_status::ready) {
    ADD_FAILURE() << what << " did not end within " << kSecondsPerCase << " s";
    std::fflush(nullptr);
    std::_Exit(1);
  }
  worker.join();
  done.get();
}

// The texts of the messages, one line each, for failure output.
std::string texts(const MessageRecorder &messages) {
  std::string out;
  for (const ComMsgRecord &record : messages.records)
    if (!record.id.empty())
      out += record.line + "\n";
  return out;
}

std::size_t pinCount(const HBOBoard &board) {
  const auto &components = board.getBoardComponents();
  auto part0 = components.find("part0");
  return part0 == components.end() ? 0 : part0->second->getPins().size();
}

// A copy of the minimal test board in \p dir, under \p subdir, with the
// board name \p name and \p attributes added to the root.
std::string copyMinimal(const ScratchDir &dir, const std::string &subdir, const std::string &name,
                        const std::string &attributes = "") {
  std::string board;
  {
    std::FILE *in = std::fopen(dataPath("minimal/board.xml").c_str(), "rb");
    char chunk[4096];
    for (std::size_t n; in && (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;)
      board.append(chunk, n);
    if (in)
      std::fclose(in);
  }
  board.replace(board.find("name=\"minimal\""), 14, "name=\"" + name + "\"" + attributes);
  std::string path = dir.write(subdir + "/board.xml", board);
  fs::copy_file(dataPath("minimal/part0_pins.xml"), dir.file(subdir + "/part0_pins.xml"));
  return path;
}

struct Outcome {
  bool read = false;
  std::size_t pins = 0;
};

// Reads \p path as `read` does, or as `check` does with \p asCheck.
Outcome readBoard(const std::string &path, bool asCheck) {
  Outcome outcome;
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  try {
    if (asCheck)
      outcome.read = HBOBoardParser().parseFile(path, board.get(), true, "", nullptr);
    else
      outcome.read = HBOParser().parseFile(path, board.get());
  } catch (...) {
    outcome.read = false;
  }
  outcome.pins = pinCount(*board);
  return outcome;
}

struct Case {
  const char *name;
  std::string path;             // the board.xml to read
  bool reads;                   // whether the read succeeds
  std::vector<std::string> say; // what some message must contain, each
};

// The cases a user can make with ordinary files and links, each read as
// `read` and as `check` do.
TEST(HostileFiles, EachEndsInAMessageThatNamesTheFileAndWhy) {
  ScratchDir dir;
  std::vector<Case> cases;

  std::string fifoBoard = dir.file("fifo_board/board.xml");
  fs::create_directories(dir.file("fifo_board"));
  ASSERT_EQ(::mkfifo(fifoBoard.c_str(), 0600), 0);
  cases.push_back({"board.xml a pipe", fifoBoard, false, {fifoBoard, "named pipe"}});

  copyMinimal(dir, "fifo_pins", "fifo_pins");
  fs::remove(dir.file("fifo_pins/part0_pins.xml"));
  ASSERT_EQ(::mkfifo(dir.file("fifo_pins/part0_pins.xml").c_str(), 0600), 0);
  cases.push_back({"pin file a pipe",
                   dir.file("fifo_pins/board.xml"),
                   false,
                   {dir.file("fifo_pins/part0_pins.xml"), "named pipe"}});

  copyMinimal(dir, "zero_pins", "zero_pins");
  fs::remove(dir.file("zero_pins/part0_pins.xml"));
  fs::create_symlink("/dev/zero", dir.file("zero_pins/part0_pins.xml"));
  cases.push_back({"pin file a link to /dev/zero",
                   dir.file("zero_pins/board.xml"),
                   false,
                   {dir.file("zero_pins/part0_pins.xml"), "character device"}});

  // The preset file is read before anything else of the board.
  std::string presetBoard =
      copyMinimal(dir, "random_preset", "random_preset", " preset_file=\"preset.xml\"");
  fs::create_symlink("/dev/urandom", dir.file("random_preset/preset.xml"));
  cases.push_back({"preset file a link to /dev/urandom",
                   presetBoard,
                   false,
                   {dir.file("random_preset/preset.xml"), "character device"}});

  // Sparse: it costs no disk, and its size alone refuses it.
  std::string huge = dir.write("huge/board.xml", "");
  ASSERT_EQ(::truncate(huge.c_str(), 300LL << 20), 0);
  cases.push_back({"board.xml over the size limit",
                   huge,
                   false,
                   {huge, "larger than the limit of 268435456 bytes", "board.maxFileSize"}});

  const std::string hostile = dataPath("hostile");
  cases.push_back({"truncated packed file",
                   hostile + "/gz_truncated/board.xml",
                   false,
                   {hostile + "/gz_truncated/board.xml", "truncated"}});
  cases.push_back({"packed file with a bad CRC",
                   hostile + "/gz_bad_crc/board.xml",
                   false,
                   {hostile + "/gz_bad_crc/board.xml", "bad CRC"}});
  cases.push_back({"gzip magic without gzip",
                   hostile + "/gz_not_gzip/board.xml",
                   false,
                   {hostile + "/gz_not_gzip/board.xml", "not gzip"}});
  // Names out of the board's folder are refused, and the board is read
  // without them.
  cases.push_back({"pin and preset files out of the folder",
                   hostile + "/escape/board.xml",
                   true,
                   {"pin_map_file '../../minimal/part0_pins.xml'", "preset_file '/etc/passwd'"}});
  cases.push_back({"legacy preset file out of the folder",
                   hostile + "/legacy_escape/board.xml",
                   true,
                   {"preset_file '../../legacy/reader/preset.xml'"}});

  for (const Case &c : cases) {
    // The check of a legacy file takes another reader, of its own.
    const bool legacy = std::string(c.name).find("legacy") != std::string::npos;
    for (bool asCheck : {false, true}) {
      if (asCheck && legacy)
        continue;
      SCOPED_TRACE(std::string(c.name) + (asCheck ? ", as check" : ", as read"));
      MessageRecorder messages;
      Outcome outcome;
      withinTime(c.name, [&] { outcome = readBoard(c.path, asCheck); });
      if (!asCheck || c.reads) {
        EXPECT_EQ(c.reads, outcome.read) << texts(messages);
      }
      // The check of a packed file stops before it is unpacked.
      const bool packed = std::string(c.name).find("packed") != std::string::npos ||
                          std::string(c.name).find("gzip") != std::string::npos;
      for (const std::string &part : c.say) {
        if (!(asCheck && packed)) {
          EXPECT_TRUE(messages.mentions(part)) << part << "\n" << texts(messages);
        }
      }
      EXPECT_FALSE(messages.mentions("/etc/passwd' at line")) << texts(messages);
    }
  }
}

TEST(HostileFiles, FilesInAFolderOfTheBoardAreFoundWhateverTheWorkingDirectory) {
  MessageRecorder messages;
  Outcome outcome = readBoard(dataPath("hostile/pins_sub/board.xml"), false);
  EXPECT_TRUE(outcome.read) << texts(messages);
  EXPECT_EQ(outcome.pins, 4u);
}

// Nested folders whose path grows past PATH_MAX: the deepest cannot even be
// looked at, whoever runs the test. Made and removed through descriptors,
// since the path is too long for anything else.
class DeepFolder {
public:
  DeepFolder(const std::string &under, int levels) : m_root(under), m_levels(levels) {
    const std::string part(200, 'd');
    int fd = ::open(under.c_str(), O_RDONLY | O_DIRECTORY);
    for (int i = 0; i < levels && fd >= 0; ++i) {
      ::mkdirat(fd, part.c_str(), 0755);
      int next = ::openat(fd, part.c_str(), O_RDONLY | O_DIRECTORY);
      ::close(fd);
      fd = next;
    }
    if (fd >= 0)
      ::close(fd);
  }
  ~DeepFolder() {
    const std::string part(200, 'd');
    for (int depth = m_levels; depth > 0; --depth) {
      int fd = ::open(m_root.c_str(), O_RDONLY | O_DIRECTORY);
      for (int i = 0; i + 1 < depth && fd >= 0; ++i) {
        int next = ::openat(fd, part.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(fd);
        fd = next;
      }
      if (fd >= 0) {
        ::unlinkat(fd, part.c_str(), AT_REMOVEDIR);
        ::close(fd);
      }
    }
  }

private:
  std::string m_root;
  int m_levels;
};

class HostileRepository : public ::testing::Test {
protected:
  void TearDown() override {
    if (m_built)
      for (uint32_t n = HBOBoardCReposMgr::getGlobal()->getReferenceCount(); n > 0; --n)
        HBOBoardCReposMgr::release();
  }
  HBOBoardCReposMgr *load() {
    HBOBoardCReposMgr *mgr = nullptr;
    withinTime("the catalog load", [&] { mgr = HBOBoardCReposMgr::getGlobal(); });
    m_built = true;
    return mgr;
  }
  bool has(HBOBoardCReposMgr *mgr, const std::string &key) {
    return mgr->getBoardPartMap().count(key) != 0;
  }

private:
  bool m_built = false;
};

// One bad file or folder costs its own board only.
TEST_F(HostileRepository, InstalledBoardsLoadPastPipesDevicesAndUnreadableFolders) {
  ScratchDir data;
  const std::string boards = HUTFileUtils::canonical(data.path()) + "/boards/board_files";
  copyMinimal(data, "boards/board_files/a_good/1.0", "a_good");
  copyMinimal(data, "boards/board_files/b_pipe_pins/1.0", "b_pipe_pins");
  fs::remove(boards + "/b_pipe_pins/1.0/part0_pins.xml");
  ASSERT_EQ(::mkfifo((boards + "/b_pipe_pins/1.0/part0_pins.xml").c_str(), 0600), 0);
  fs::create_directories(boards + "/c_pipe_board");
  ASSERT_EQ(::mkfifo((boards + "/c_pipe_board/board.xml").c_str(), 0600), 0);
  fs::create_directories(boards + "/d_deep");
  DeepFolder deep(boards + "/d_deep", 21);
  fs::create_symlink(boards + "/nowhere", boards + "/e_dangling");
  fs::create_directory_symlink(boards, boards + "/f_loop");
  copyMinimal(data, "boards/board_files/z_good/1.0", "z_good");
  bool closed = false;
  if (::geteuid() != 0) {
    copyMinimal(data, "boards/board_files/g_closed/1.0", "g_closed");
    closed = ::chmod((boards + "/g_closed").c_str(), 0) == 0;
  }
  test::EnvScope dirs("BOARDLIB_DATA_DIRS", data.path().c_str());
  ParamScope repos("board.repoPaths", "");

  MessageRecorder messages;
  HBOBoardCReposMgr *mgr = load();
  if (closed)
    ::chmod((boards + "/g_closed").c_str(), 0755);
  EXPECT_TRUE(has(mgr, "kestrel-boards:a_good:1.0")) << texts(messages);
  EXPECT_TRUE(has(mgr, "kestrel-boards:z_good:1.0")) << texts(messages);
  EXPECT_FALSE(has(mgr, "kestrel-boards:b_pipe_pins:1.0"));
  EXPECT_TRUE(messages.mentions(boards + "/b_pipe_pins/1.0/part0_pins.xml': it is a named pipe"))
      << texts(messages);
  // A board.xml that is a pipe is passed over by the walk, never opened.
  EXPECT_TRUE(messages.mentions(boards + "/c_pipe_board/board.xml': it is a named pipe"))
      << texts(messages);
  // The folder that cannot be looked at is named.
  const ComMsgRecord *skipped = messages.find("49-182");
  ASSERT_NE(skipped, nullptr) << texts(messages);
  EXPECT_EQ(skipped->args.at(0), boards);
  EXPECT_EQ(skipped->args.at(1).rfind(boards + "/d_deep/", 0), 0u);
  if (closed)
    EXPECT_TRUE(messages.mentions("/g_closed' cannot be read")) << texts(messages);
  else
    std::printf("note: running as root, so the folder without permissions is not tried; the "
                "folder too deep to read stands in for it\n");
}

// A link out of a user repository is not followed: one to "/" would have the
// scan read the whole file system.
TEST_F(HostileRepository, UserScanDoesNotFollowLinksOutOfTheRepository) {
  ScratchDir outside;
  copyMinimal(outside, "elsewhere/1.0", "elsewhere");
  ScratchDir user;
  copyMinimal(user, "inside/1.0", "inside");
  fs::create_directory_symlink("/", user.file("root"));
  fs::create_directory_symlink(outside.file("elsewhere"), user.file("elsewhere"));
  fs::create_directories(user.file("pipe"));
  ASSERT_EQ(::mkfifo(user.file("pipe/board.xml").c_str(), 0600), 0);
  test::EnvScope dirs("BOARDLIB_DATA_DIRS", dataPath("repo_empty").c_str());
  ParamScope repos("board.repoPaths", user.path());

  MessageRecorder messages;
  HBOBoardCReposMgr *mgr = load();
  EXPECT_TRUE(has(mgr, "kestrel-boards:inside:1.0")) << texts(messages);
  EXPECT_FALSE(has(mgr, "kestrel-boards:elsewhere:1.0"));
  EXPECT_EQ(messages.count("49-183"), 2u) << texts(messages);
  EXPECT_TRUE(messages.mentions("the link '" + user.file("root") + "' leads out of the repository"))
      << texts(messages);
  EXPECT_TRUE(messages.mentions("pipe/board.xml': it is a named pipe")) << texts(messages);

  // The project's repositories are scanned by a walk of their own.
  messages.records.clear();
  withinTime("the project scan", [&] { mgr->setProjectRepo(user.path()); });
  EXPECT_FALSE(has(mgr, "kestrel-boards:elsewhere:1.0"));
  EXPECT_GE(messages.count("49-183"), 2u) << texts(messages);
  EXPECT_TRUE(messages.mentions("pipe/board.xml': it is a named pipe")) << texts(messages);
}

} // namespace
