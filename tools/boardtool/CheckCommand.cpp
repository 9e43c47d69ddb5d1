// boardtool check: holds board files to their DTDs and to every rule of the
// readers, and tells each finding.
#include "ComMsgMgr.h"
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOBoardUtils.h"
#include "HBODtdValidator.h"
#include "HBOParseContext.h"
#include "HBOPartParser.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HUTFile.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Checks board files: each FILE (a board.xml) is validated against its DTD, together\n"
    "with the pin files and the preset file it names, and read with every rule of the\n"
    "readers, strict checks included for schema 2.2 and above (--param\n"
    "board.enable2020Checks=true applies them to older schemas too). A legacy board part\n"
    "file (schema 1.0 or 1.1) and its preset file are held to the DTDs of schema 1\n"
    "and read as they are, without lifting them to the current schema. Every finding is\n"
    "told on standard error, one per line, in the order of the file; findings of the\n"
    "DTD carry the line of the file on disk. Standard output gets one summary line\n"
    "per file.\n";

const char kNotes[] = "Exit status: 0 every file passed, 1 some file failed, 2 bad usage.\n";

const char *plural(unsigned n, const char *word) {
  static thread_local std::string text;
  text = std::to_string(n) + " " + word + (n == 1 ? "" : "s");
  return text.c_str();
}

// Whether the legacy reader takes \p path, as the catalog's load decides. A
// file that cannot be opened goes to the current reader, which tells why.
bool isLegacyFile(const std::string &path) {
  try {
    std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
    std::string schema = doc->getRootElement()->getAttribute("schema_version");
    return !(HBOBoardUtils::isEqualOrGreater(schema, "2.0") && HBOBoardUtils::isV2SchemaEnabled());
  } catch (...) {
    return false;
  }
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

int run(const Arguments &args) {
  if (args.operands.empty())
    return usageError(checkCommand, "no board file given");
  std::string schemaDir = args.value("--schema-dir");
  if (!schemaDir.empty())
    schemaDir = absolutePath(schemaDir);

  unsigned failed = 0;
  {
    MessageOutput output(args.jsonMessages());
    for (const std::string &file : args.operands) {
      output.resetCounts();
      std::string path = absolutePath(file);
      bool ok = false;
      if (isLegacyFile(path)) {
        ok = checkLegacy(path, schemaDir);
      } else {
        std::unique_ptr<HBOBoard> board(new HBOBoard());
        HBOBoardParser parser;
        ok = parser.parseFile(path, board.get(), true, schemaDir, nullptr);
      }
      if (!ok)
        ++failed;
      std::string summary = path + ": " + (ok ? "passed" : "FAILED") + " (";
      summary += plural(output.errors(), "error");
      summary += ", ";
      summary += plural(output.warnings(), "warning");
      summary += ")";
      std::cerr.flush();
      std::cout << summary << std::endl;
    }
  }
  if (args.operands.size() > 1)
    std::cout << (args.operands.size() - failed) << " of " << args.operands.size()
              << " files passed" << std::endl;
  return failed ? Failure : Success;
}

} // namespace

const Command checkCommand = {
    "check",
    cmd::check,
    "check board files against their DTDs and every rule, and tell each finding",
    "FILE...",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
