#include "HBOParseContext.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HEXError.h"
#include "HUTConvert.h"
#include "HUTFile.h"
#include "HXMLWInterface.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

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
  dtdFailed = false;
  subject = HXMLWElement();
  pinsUnread.clear();
  uncheckedPins.clear();
}

void HBOParseContext::queueFinding(const std::string &text, bool tellOnly) {
  queueFinding(board ? board->getBoardFile() : std::string(), text, tellOnly);
}

void HBOParseContext::queueFinding(const std::string &file, const std::string &text,
                                   bool tellOnly) {
  queueMsg(tellOnly, ComMsg::Warning, "@49-69@%s%s", file, text);
}

void HBOParseContext::queueFinding(const HXMLWElement &at, const std::string &text, bool tellOnly) {
  queueFinding(at, board ? board->getBoardFile() : std::string(), text, tellOnly);
}

void HBOParseContext::queueFinding(const HXMLWElement &at, const std::string &file,
                                   const std::string &text, bool tellOnly) {
  queueMsgAt(at, tellOnly, ComMsg::Warning, "@49-69@%s%s", file, text);
}

void HBOParseContext::place(ComMsgMgrInstance &msg, const HXMLWElement &at, bool tellOnly) const {
  if (!validate)
    return;
  msg.setImpact(tellOnly ? ComMsg::Advisory : ComMsg::Blocking);
  const HXMLWElement &where = at ? at : subject;
  if (where && where.getDocument())
    msg.setPlace(where.getDocument()->getFileName(), static_cast<unsigned long>(where.getLine()));
  else if (board)
    msg.setPlace(board->getBoardFile(), 0);
}

void HBOParseContext::markPinsUnread(const HBOBoardComponent *component,
                                     const HXMLWElement &namedAt) {
  pinsUnread.insert(component);
  ComMsgMgrInstance where;
  place(where, namedAt, false);
  where.setImpact(validate ? ComMsg::Blocking : ComMsg::Unrated);
  uncheckedPins.push_back(
      {component, component->getComponentName(), component->getPinMapFile(), 0u, where});
}

void HBOParseContext::countUncheckedPin(const HBOBoardComponent *component) {
  for (UncheckedPins &entry : uncheckedPins)
    if (entry.component == component) {
      ++entry.count;
      return;
    }
}

void HBOParseContext::queueUncheckedPins() {
  for (const UncheckedPins &entry : uncheckedPins) {
    if (!entry.count)
      continue;
    ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-190@%d%s%s");
    msg.arg(entry.count).arg(entry.name).arg(entry.pinFile);
    msg.setPlace(entry.place.getPlaceFile(), entry.place.getPlaceLine());
    msg.setImpact(entry.place.getImpact());
    messages.emplace_back(std::move(msg), false);
  }
  uncheckedPins.clear();
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
  return HUTFile::parentPath(board->getBoardFile()) + HBOBoardUtils::getDirSeparator() + fileName;
}

bool HBOParseContext::isInsideBoardDir_(const char *attribute, const std::string &fileName) const {
  if (HUTFile::staysInside(fileName))
    return true;
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-181@%s%s%s", std::string(attribute), fileName,
                     board ? board->getBoardFile() : std::string());
  return false;
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
  // Digits and blanks, read as the stream conversion reads them: blanks
  // first, then the digits up to the next blank.
  int number = 0;
  if (isNonNegativeInteger(value)) {
    switch (HUTConvert::parseInteger(value, number, HUTConvert::IntegerForm::Prefix)) {
    case HUTConvert::IntegerResult::Ok:
      return number;
    case HUTConvert::IntegerResult::OutOfRange:
      raiseOutOfRange_(value, what, 0);
    case HUTConvert::IntegerResult::NotANumber:
      break;
    }
  }
  raiseNotValid_(value, what);
}

int HBOParseContext::convert2NonNegativeInteger(const char *value, const std::string &what) const {
  if (!value)
    return 0;
  // Older schemas keep their old leniency: a sign, and text after the
  // number, are let through. What holds no number, or one that an int
  // cannot hold, is refused all the same.
  if (!strictChecks) {
    int number = 0;
    switch (HUTConvert::parseInteger(std::string_view(value), number,
                                     HUTConvert::IntegerForm::Prefix)) {
    case HUTConvert::IntegerResult::Ok:
      return number;
    case HUTConvert::IntegerResult::OutOfRange:
      raiseOutOfRange_(value, what, INT_MIN);
    case HUTConvert::IntegerResult::NotANumber:
      raiseNotValid_(value, what);
    }
  }
  return convert2NonNegativeInteger(std::string(value), what);
}

int HBOParseContext::convertInteger(std::string_view value, const std::string &what) const {
  int number = 0;
  const std::string problem = readInteger(value, what, number);
  if (!problem.empty())
    raiseFinding_(problem);
  return number;
}

std::string HBOParseContext::readInteger(std::string_view value, const std::string &what,
                                         int &out) {
  switch (HUTConvert::parseInteger(value, out, HUTConvert::IntegerForm::Prefix)) {
  case HUTConvert::IntegerResult::Ok:
    return std::string();
  case HUTConvert::IntegerResult::OutOfRange:
    return outOfRangeText(what, value, INT_MIN, INT_MAX);
  case HUTConvert::IntegerResult::NotANumber:
    break;
  }
  return what + " value \"" + HUTConvert::quoteValue(value) +
         "\" is not valid, must be an integer.";
}

void HBOParseContext::raiseFinding_(const std::string &text) const {
  ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-69@%s%s");
  msg.arg(board ? board->getBoardFile() : std::string()).arg(text);
  // A check tells it at the element being read.
  place(msg, HXMLWElement(), false);
  throw HEXError(msg);
}

void HBOParseContext::raiseNotValid_(std::string_view value, const std::string &what) const {
  raiseFinding_(what + " value \"" + HUTConvert::quoteValue(value) +
                "\" is not valid, must be a non-negative integer.");
}

void HBOParseContext::raiseOutOfRange_(std::string_view value, const std::string &what,
                                       long long lowest) const {
  raiseFinding_(outOfRangeText(what, value, lowest, INT_MAX));
}

std::string HBOParseContext::outOfRangeText(const std::string &what, std::string_view value,
                                            long long lowest, long long highest) {
  return what + " value \"" + HUTConvert::quoteValue(value) +
         "\" is out of range, must be an integer from " + std::to_string(lowest) + " to " +
         std::to_string(highest) + ".";
}

bool HBOParseContext::sameIgnoringCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size())
    return false;
  auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower(a[i]) != lower(b[i]))
      return false;
  return true;
}

bool HBOParseContext::parseFloat(std::string_view text, float &out) {
  if (text.empty())
    return false;
  // The named values first: a sign, then "nan", "nan(...)", "inf" or
  // "infinity", in any case.
  std::string_view word = text;
  const bool negative = word.front() == '-';
  if (negative || word.front() == '+')
    word.remove_prefix(1);
  if (word.size() >= 3 && sameIgnoringCase(word.substr(0, 3), "nan")) {
    std::string_view rest = word.substr(3);
    if (!rest.empty() && (rest.size() < 2 || rest.front() != '(' || rest.back() != ')'))
      return false;
    out = negative ? -std::numeric_limits<float>::quiet_NaN()
                   : std::numeric_limits<float>::quiet_NaN();
    return true;
  }
  if (sameIgnoringCase(word, "inf") || sameIgnoringCase(word, "infinity")) {
    out =
        negative ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return true;
  }
  // Otherwise only what a decimal number is written with; strtof alone would
  // also take leading spaces, hexadecimal and the named values spelt other
  // ways. A number may not end in an exponent mark or a sign.
  for (char c : text)
    if (!std::isdigit(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.' &&
        c != 'e' && c != 'E')
      return false;
  const char last = text.back();
  if (last == 'e' || last == 'E' || last == '+' || last == '-')
    return false;
  // The usual number converts without a copy. The conversion takes no
  // leading '+', and gives up on what it cannot represent (strtof makes
  // tiny numbers 0): those, and all else, go the way below.
  {
    const char *start = text.data();
    if (*start == '+' && text.size() > 1 &&
        (std::isdigit(static_cast<unsigned char>(start[1])) || start[1] == '.'))
      ++start;
    float value = 0.0f;
    const auto [end, error] = std::from_chars(start, text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size()) {
      out = value;
      return true;
    }
  }
  // Short enough for the stack, and null-terminated for strtof.
  char buffer[128];
  std::string copy;
  const char *start = buffer;
  if (text.size() < sizeof(buffer)) {
    text.copy(buffer, text.size());
    buffer[text.size()] = '\0';
  } else {
    copy.assign(text);
    start = copy.c_str();
  }
  char *end = nullptr;
  const float value = std::strtof(start, &end);
  if (end != start + text.size() || std::isinf(value))
    return false;
  out = value;
  return true;
}

bool HBOParseContext::parseInt(std::string_view text, int &out) {
  return HUTConvert::parseInteger(text, out) == HUTConvert::IntegerResult::Ok;
}

HXMLWElement HBOParseContext::findNamed(const char *tag, const std::string &name,
                                        const HXMLWElement &within) const {
  if (!validate)
    return HXMLWElement();
  HXMLWElement from = within ? within : boardRoot;
  if (!from)
    return HXMLWElement();
  // Board files nest a few levels; the walk keeps its own stack so that a
  // file nested deep by mistake costs time, not the thread's stack.
  std::vector<HXMLWElement> pending{from};
  while (!pending.empty()) {
    HXMLWElement element = pending.back();
    pending.pop_back();
    if (sameIgnoringCase(element.getTagView(), tag) && element.getAttributeView("name") == name)
      return element;
    const std::size_t first = pending.size();
    for (HXMLWElement child : element.children())
      pending.push_back(child);
    std::reverse(pending.begin() + static_cast<std::ptrdiff_t>(first), pending.end());
  }
  return HXMLWElement();
}
