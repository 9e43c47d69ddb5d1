// boardtool check: holds board files to their DTDs and to every rule of the
// readers, and tells each finding.
#include "ComMsgMgr.h"
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardParser.h"
#include "HBOBoardUtils.h"
#include "HBODtdValidator.h"
#include "HBOParseContext.h"
#include "HBOPartParser.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HUTFile.h"
#include "HUTFileUtils.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <condition_variable>
#include <iostream>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace boardtool {
namespace {

const char kAbout[] =
    "Checks board files the way a linter does. Each FILE is a board.xml, a pin file\n"
    "(such as part0_pins.xml) or a preset file, told apart by their root element; a\n"
    "directory stands for every board.xml under it (a board directory, or a whole\n"
    "data directory). A board file is validated against its DTD together with the pin\n"
    "files and the preset file it names, and read with every rule of the readers,\n"
    "also where the DTD validation found something, so that one run tells every\n"
    "mistake; the strict checks apply to schema 2.2 and above (--param\n"
    "board.enable2020Checks=true applies them to older schemas too). Pins that cannot\n"
    "be looked for because their pin file could not be read are told once, with their\n"
    "number. A pin or preset file given alone is validated against its own DTD. A\n"
    "legacy board part file (schema 1.0 or 1.1) and its preset file are held to the\n"
    "DTDs of schema 1 and read as they are.\n"
    "\n"
    "Every finding goes to standard error, one per line, as\n"
    "  FILE:LINE: SEVERITY: [Board 49-NNN] text\n"
    "(FILE: alone when the finding concerns a file as a whole); with --messages=json\n"
    "each object has \"file\" and \"line\" fields. Standard output gets one summary line\n"
    "per file: passed or FAILED, with its errors (findings that make the board\n"
    "unusable) and its warnings (advisory findings) counted apart, whatever severity\n"
    "the message carries. Files are checked by as many workers as general.maxThreads\n"
    "says (--param general.maxThreads=1 for one) and told in their order.\n";

const char kNotes[] = "Exit status: 0 every file passed, 1 some file failed, 2 bad usage.\n";

// Folders deeper than this below a directory given are not searched for
// boards: an installation is four levels deep.
constexpr std::size_t kMaxSearchDepth = 16;

const char *plural(unsigned n, const char *word) {
  static thread_local std::string text;
  text = std::to_string(n) + " " + word + (n == 1 ? "" : "s");
  return text.c_str();
}

// The preset file that a legacy file names, in its folder; empty when there
// is none or when it leads out of the folder (the reader tells that). The
// preset files of its interfaces are settings of their IP, in forms of the
// IP's own, and are not checked.
std::string legacyPresetFile(const std::string &path) {
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
  std::string file = doc->getRootElement()->getAttribute("preset_file");
  if (file.empty() || !HUTFile::staysInside(file))
    return std::string();
  return HUTFile::parentPath(path) + HBOBoardUtils::getDirSeparator() + file;
}

// A legacy file against the DTDs of schema 1, then read with the rules of
// the legacy reader; the board is not lifted.
bool checkLegacy(const std::string &path, const std::string &schemaDir) {
  bool ok = true;
  try {
    HBOParseContext ctx;
    ctx.validate = true;
    ctx.schemaDir = schemaDir;
    HBODtdValidator dtd(ctx);
    ok = dtd.isValidXML(path, "board_part");
    std::string preset = legacyPresetFile(path);
    if (!preset.empty() && HUTFile::exists(preset) && !dtd.isValidXML(preset, "legacy_preset"))
      ok = false;
  } catch (const HEXError &e) {
    ComMsgMgr::sendMessage(e.getMessage());
    return false;
  }
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  try {
    if (!HBOPartParser().parseFile(path, board.get()))
      ok = false;
  } catch (const HEXError &e) {
    ComMsgMgr::sendMessage(e.getMessage());
    ok = false;
  }
  return ok;
}

// Whether \p text is a version number: digits, in groups parted by dots.
bool isVersionNumber(const std::string &text) {
  if (text.empty() || text.front() == '.' || text.back() == '.')
    return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (!std::isdigit(static_cast<unsigned char>(text[i])) &&
        !(text[i] == '.' && text[i - 1] != '.'))
      return false;
  return true;
}

// Which way \p path is checked, told by its root element as the catalog's
// load tells it: "part0_pins" or "preset" for a pin or preset file given
// alone, "legacy" for a board that the legacy reader takes, empty for a
// board of the current reader and for what cannot be read (its reader says
// why), "bad" with the finding in \p bad for a board that no reader can
// take. The document read is left in \p doc, for the reader to take.
std::string kindOfFile(const std::string &path, std::unique_ptr<HXMLWInterface> &doc,
                       ComMsgMgrInstance &bad) {
  if (!HUTFile::exists(path))
    return std::string();
  try {
    // What is wrong with the file is told by the check itself.
    ComMsgCapture quiet;
    doc = HBOXMLFile::open(path);
    const HXMLWElement *root = doc->getRootElement();
    std::string_view tag = root->getTagView();
    if (tag == "part_info")
      return "part0_pins";
    if (tag == "ip_presets")
      return "preset";
    std::string schema;
    // A version that is none makes the catalog's load take the board for a
    // legacy one, whose reader then fails on what it does not know. The
    // check says what is really wrong instead.
    if (root->getAttribute("schema_version", schema) && !isVersionNumber(schema)) {
      ComMsgMgrInstance msg("board", ComMsg::Error, "@49-192@%s%s");
      msg.arg(path).arg(schema);
      msg.setPlace(path, static_cast<unsigned long>(root->getLine()));
      msg.setImpact(ComMsg::Blocking);
      bad = msg;
      return "bad";
    }
    if (!(HBOBoardUtils::isEqualOrGreater(schema, "2.0") && HBOBoardUtils::isV2SchemaEnabled()))
      return "legacy";
  } catch (...) {
    doc.reset();
  }
  return std::string();
}

bool checkFile(const std::string &path, const std::string &schemaDir) {
  std::unique_ptr<HXMLWInterface> doc;
  ComMsgMgrInstance bad;
  const std::string kind = kindOfFile(path, doc, bad);
  if (kind == "bad") {
    ComMsgMgr::sendMessage(bad);
    return false;
  }
  if (kind == "legacy") {
    doc.reset();
    return checkLegacy(path, schemaDir);
  }
  if (!kind.empty()) {
    HBOParseContext ctx;
    ctx.validate = true;
    ctx.schemaDir = schemaDir;
    try {
      return HBODtdValidator(ctx).isValidXML(path, kind);
    } catch (const HEXError &e) {
      ComMsgMgr::sendMessage(e.getMessage());
      return false;
    }
  }
  // The reader takes the document already read instead of parsing again.
  std::unique_ptr<HBOXMLFile::ReuseScope> reuse;
  if (doc)
    reuse.reset(new HBOXMLFile::ReuseScope(path, std::move(doc)));
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  HBOBoardParser parser;
  return parser.parseFile(path, board.get(), true, schemaDir, nullptr);
}

// How many files are checked at once: as many workers as the load of the
// catalog takes, no more than the files, and one while debug output is on,
// which would otherwise mix.
unsigned workerCount(std::size_t files) {
  if (ComMsgMgr::hasScope("board.parse"))
    return 1;
  return static_cast<unsigned>(
      std::min<std::size_t>(static_cast<std::size_t>(HBOBoardCReposMgr::getWorkerCount()),
                            std::max<std::size_t>(files, 1)));
}

int run(const Arguments &args) {
  if (args.operands.empty())
    return usageError(checkCommand, "no board file given");
  std::string schemaDir = args.value("--schema-dir");
  if (!schemaDir.empty())
    schemaDir = absolutePath(schemaDir);

  std::vector<std::string> files;
  for (const std::string &operand : args.operands) {
    std::string path = absolutePath(operand);
    if (!HUTFile::isDirectory(path)) {
      files.push_back(path);
      continue;
    }
    // As the catalog's scan finds them: links to board files count, links
    // to folders are not followed, a folder that cannot be read is passed
    // over.
    std::vector<std::string> found =
        HUTFileUtils::findFiles(path, "board.xml", nullptr, nullptr, kMaxSearchDepth);
    if (found.empty())
      // Told as a file that does not exist would be: the board is missing.
      files.push_back(path + "/board.xml");
    files.insert(files.end(), found.begin(), found.end());
  }

  // Files are checked by several workers, each keeping the messages of its
  // file; they are told in the order of the files, as one worker would.
  struct Result {
    bool done = false;
    bool ok = false;
    std::vector<ComMsgMgrInstance> messages;
  };
  std::vector<Result> results(files.size());
  std::mutex mutex;
  std::condition_variable ready;
  std::atomic<std::size_t> next{0};
  auto work = [&]() {
    for (std::size_t i = next++; i < files.size(); i = next++) {
      bool ok = false;
      std::vector<ComMsgMgrInstance> messages;
      {
        ComMsgCapture capture;
        try {
          ok = checkFile(files[i], schemaDir);
        } catch (...) {
          // Nothing may leave a worker; the file failed, and said why if it could.
          ok = false;
        }
        messages = capture.take();
      }
      std::lock_guard<std::mutex> lock(mutex);
      results[i].ok = ok;
      results[i].messages = std::move(messages);
      results[i].done = true;
      ready.notify_all();
    }
  };
  std::vector<std::thread> workers;
  const unsigned jobs = workerCount(files.size());
  // With one job the files are checked on this thread, below.
  for (unsigned w = 0; jobs > 1 && w < jobs; ++w)
    workers.emplace_back(work);

  unsigned failed = 0;
  {
    // The closing messages of a failed read only sum up the findings.
    MessageOutput output(args.jsonMessages(), true, {"49-56", "49-4", "49-59"});
    for (std::size_t i = 0; i < files.size(); ++i) {
      output.resetCounts();
      if (jobs == 1) {
        // Alone, the file is checked here and its messages go out at once.
        results[i].ok = checkFile(files[i], schemaDir);
      } else {
        std::unique_lock<std::mutex> lock(mutex);
        ready.wait(lock, [&] { return results[i].done; });
      }
      for (const ComMsgMgrInstance &msg : results[i].messages)
        ComMsgMgr::sendMessage(msg);
      std::vector<ComMsgMgrInstance>().swap(results[i].messages);
      output.flush();
      const bool ok = results[i].ok;
      const std::string &path = files[i];
      if (!ok)
        ++failed;
      // A file that fails has at least the error that it failed for.
      unsigned errors = output.errors();
      if (!ok && errors == 0)
        errors = 1;
      std::string summary = path + ": " + (ok ? "passed" : "FAILED") + " (";
      summary += plural(errors, "error");
      summary += ", ";
      summary += plural(output.warnings(), "warning");
      summary += ")";
      std::cerr.flush();
      std::cout << summary << std::endl;
    }
  }
  for (std::thread &worker : workers)
    worker.join();
  if (files.size() > 1)
    std::cout << (files.size() - failed) << " of " << files.size() << " files passed" << std::endl;
  return failed ? Failure : Success;
}

} // namespace

const Command checkCommand = {
    "check",
    cmd::check,
    "check board files against their DTDs and every rule, and tell each finding",
    "FILE|DIR...",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
