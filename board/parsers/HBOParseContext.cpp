#include "HBOParseContext.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HEXError.h"
#include "HUTFile.h"

#include <cctype>
#include <cstdlib>

void HBOParseContext::reset(bool validateFiles, const std::string &dtdDir,
                            HBOParsedVLNVs *collector) {
  sendMessages = validateFiles;
  validate = validateFiles;
  portPropsToSkip.clear();
  interfaceNames.clear();
  portRecords.clear();
  parsed = collector;
  schemaDir = dtdDir;
  messages.clear();
}

void HBOParseContext::queueFinding(const std::string &text, bool tellOnly) {
  queueFinding(board ? board->getBoardFile() : std::string(), text, tellOnly);
}

void HBOParseContext::queueFinding(const std::string &file, const std::string &text,
                                   bool tellOnly) {
  queueMsg(tellOnly, ComMsg::Warning, "@49-69@%s%s", file, text);
}

bool HBOParseContext::iterateMessages(bool send) const {
  bool passed = true;
  for (const auto &entry : messages) {
    if (!entry.second)
      passed = false;
    if (send)
      ComMsgMgr::sendMessage(entry.first);
  }
  return passed;
}

std::string HBOParseContext::resolveBesideBoard_(const std::string &fileName) const {
  std::string parent = HUTFile::parentPath(fileName);
  if (!parent.empty() && parent != ".")
    return fileName;
  return HUTFile::parentPath(board->getBoardFile()) + HBOBoardUtils::getDirSeparator() + fileName;
}

bool HBOParseContext::isNonNegativeInteger(const std::string &value) {
  if (value.empty())
    return false;
  for (char c : value)
    if (c != ' ' && !std::isdigit(static_cast<unsigned char>(c)))
      return false;
  return true;
}

int HBOParseContext::convert2NonNegativeInteger(const std::string &value,
                                                const std::string &what) const {
  if (isNonNegativeInteger(value))
    return std::stoi(value);
  HEXError::raise("board", ComMsg::Warning, "@49-69@%s%s",
                  board ? board->getBoardFile() : std::string(),
                  what + " value \"" + value + "\" is not valid, must be a non-negative integer.");
}

int HBOParseContext::convert2NonNegativeInteger(const char *value, const std::string &what) const {
  if (!value)
    return 0;
  // Older schemas keep their old leniency.
  if (!strictChecks)
    return static_cast<int>(std::strtol(value, nullptr, 10));
  return convert2NonNegativeInteger(std::string(value), what);
}
