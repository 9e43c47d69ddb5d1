#include "HBOBoardUtils.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HPAParamMgr.h"

#include <cctype>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

bool isSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// A version is "numbered" when it starts with a digit; everything else
// (empty, "beta", "v1.0") sorts as text below every numbered one.
bool isNumbered(const std::string &s) { return !s.empty() && isDigit(s[0]); }

// Field 0 starts at the beginning, field 1 behind the first dot. The value is
// the sum of the leading digits, not their positional number: the catalog has
// always ranked versions this way, and the choice of the latest board of a
// family depends on it, so "1.10" stays below "1.2".
long long versionField(const std::string &s, int index) {
  std::string::size_type pos = 0;
  if (index == 1) {
    pos = s.find('.');
    if (pos == std::string::npos)
      return 0;
    ++pos;
  }
  long long sum = 0;
  for (; pos < s.size() && isDigit(s[pos]); ++pos)
    sum += s[pos] - '0';
  return sum;
}

int clampToInt(long long v) {
  if (v > INT_MAX)
    return INT_MAX;
  if (v < INT_MIN)
    return INT_MIN;
  return static_cast<int>(v);
}

// Every separator counts, so adjacent separators give empty fields and an
// empty text is one empty field.
std::vector<std::string> splitAll(const std::string &text, char sep) {
  std::vector<std::string> fields;
  std::string::size_type start = 0;
  for (;;) {
    std::string::size_type end = text.find(sep, start);
    if (end == std::string::npos) {
      fields.push_back(text.substr(start));
      return fields;
    }
    fields.push_back(text.substr(start, end - start));
    start = end + 1;
  }
}

// strtol's reading (blanks, sign, digits up to the first other character),
// cut to 32 bits as the schema check has always done.
int32_t schemaField(const std::string &field) {
  long v = std::strtol(field.c_str(), nullptr, 10);
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<unsigned long>(v)));
}

bool equalsIgnoringCase(const std::string &a, const std::string &b) {
  if (a.size() != b.size())
    return false;
  for (std::string::size_type i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

bool boolParam(const std::string &name) {
  const HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  return mgr.paramExists(name) && mgr.getValueAsBool(name);
}

} // namespace

namespace HBOBoardUtils {

std::string getDirSeparator() {
  // A function-local constant, so that other load-time initialisers that
  // build paths can use it whatever order the loader runs them in.
  static const std::string separator("/");
  return separator;
}

const char *valueOrEmpty(const char *text) { return text ? text : ""; }

int changeDir(const std::string &dir) { return ::chdir(dir.c_str()); }

int getCurrDir(std::string &out) {
  char buffer[1024];
  if (!::getcwd(buffer, sizeof buffer))
    return 1;
  out = buffer;
  return 0;
}

bool isV2SchemaEnabled() { return boolParam("board.enableSchemaV2"); }

bool isBoardIntegraterSupportEnabled() { return boolParam("board.enableBoardIntegratorSupport"); }

int version_compare(std::string a, std::string b) {
  if (a.empty() && b.empty())
    return 0;
  if (a.empty())
    return -1;
  if (!isNumbered(a)) {
    if (isNumbered(b))
      return -1;
    if (b.empty())
      return 1;
    return a.compare(b);
  }
  if (!isNumbered(b))
    return 1;
  if (a == b)
    return 0;
  long long majorA = versionField(a, 0);
  long long majorB = versionField(b, 0);
  if (majorA != majorB)
    return clampToInt(majorA - majorB);
  return clampToInt(versionField(a, 1) - versionField(b, 1));
}

bool isEqualOrGreater(std::string a, std::string b) {
  if (equalsIgnoringCase(a, b))
    return true;
  std::vector<std::string> fieldsA = splitAll(a, '.');
  std::vector<std::string> fieldsB = splitAll(b, '.');
  if (fieldsA.size() != fieldsB.size())
    return false;
  int32_t firstA = schemaField(fieldsA[0]);
  int32_t firstB = schemaField(fieldsB[0]);
  if (fieldsA.size() == 1)
    return firstA >= firstB;
  if (firstA != firstB)
    return firstA > firstB;
  // Equal second fields answer false: only a text equal to the other one
  // (handled above) counts as "equal".
  return schemaField(fieldsA[1]) > schemaField(fieldsB[1]);
}

std::string join(std::vector<std::string> items, std::string separator) {
  std::string out;
  for (std::vector<std::string>::size_type i = 0; i < items.size(); ++i) {
    if (i)
      out += separator;
    out += items[i];
  }
  return out;
}

bool getUserRepoPathFromParam(std::string &out) {
  const HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  // The project-level setting is no longer honoured; say so rather than
  // silently reading repositories from it.
  if (mgr.paramExists("project.boardPartRepoPaths") &&
      !mgr.getValueAsString("project.boardPartRepoPaths").empty()) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-73@");
    return false;
  }
  if (mgr.paramExists("board.repoPaths")) {
    out = mgr.getValueAsString("board.repoPaths");
    return true;
  }
  out.clear();
  return false;
}

std::string asTclSpaceSeparatedStr(std::vector<std::string> items) {
  std::string out;
  for (std::vector<std::string>::size_type i = 0; i < items.size(); ++i) {
    if (i)
      out += ' ';
    const std::string &item = items[i];
    bool hasSpace = false;
    for (char c : item) {
      if (isSpace(c)) {
        hasSpace = true;
        break;
      }
    }
    if (hasSpace)
      out += '{' + item + '}';
    else
      out += item;
  }
  return out;
}

std::vector<std::string> parseTclList(std::string text) {
  // Deliberately simpler than a real Tcl list: braces group but don't nest,
  // and there are no escapes or quotes. Repository path lists are written
  // this way and read back this way.
  std::vector<std::string> words;
  std::string word;
  bool braced = false;
  for (char c : text) {
    if (braced) {
      if (c == '}') {
        if (!word.empty())
          words.push_back(word);
        word.clear();
        braced = false;
      } else {
        word += c == '{' ? ' ' : c;
      }
      continue;
    }
    if (isSpace(c) || c == '{' || c == '}') {
      if (!word.empty())
        words.push_back(word);
      word.clear();
      braced = c == '{';
      continue;
    }
    word += c;
  }
  if (!word.empty())
    words.push_back(word);
  return words;
}

std::string indent(const std::string &text, unsigned count) {
  if (count == 0)
    return text;
  if (text.empty())
    return std::string();
  std::string body(text.c_str()); // the text ends at the first NUL
  std::string prefix(count, ' ');
  std::string out;
  std::string::size_type start = 0;
  while (start < body.size()) {
    std::string::size_type end = body.find('\n', start);
    if (end == std::string::npos)
      end = body.size();
    out += prefix;
    out.append(body, start, end - start);
    out += '\n';
    start = end + 1;
  }
  return out;
}

void DumpDebugStr(const std::string &param, const std::string &label, const HBOBoard *board) {
  // Only these two boards are traced: the trace exists to follow them through
  // the repository, and every other board would drown them out.
  if (!board)
    return;
  const std::string &boardName = board->getBoardName();
  if (boardName != "rb60" && boardName != "rb61")
    return;
  // Callers also pass names that are no parameter; those stay silent.
  if (!boolParam(param))
    return;
  std::cout << param << " : " << label << " for board address " << static_cast<const void *>(board)
            << " " << board->getDescription() << std::endl;
}

void getBoardFileParamList(std::vector<std::string> &out) {
  static const char *const boardLevel = "<board><parameters>";
  static const char *const componentLevel = "<board><component><parameters>";
  static const char *const interfaceLevel = "<board><component><interface><parameters>";
  struct Row {
    const char *name;
    const char *path;
    const char *description;
  };
  // The texts are shown to users as they stand, misspelling included.
  static const Row rows[] = {
      {"heat_sink_temperature", boardLevel, "as implied"},
      {"heat_sink_type", boardLevel, "as implied"},
      {"SLR", componentLevel, "SLR value for memory component"},
      {"connects_with", componentLevel, "connector name"},
      {"ddr_type", componentLevel, "type of ddr memory"},
      {"frequency", componentLevel, "clock frequency of a clock component"},
      {"mode", componentLevel, "mode parameter different from component_mode"},
      {"size", componentLevel, "size of memory for a memory component"},
      {"type", componentLevel, "can indicate type. For a clock component it gives the clock type"},
      {"TYPE", interfaceLevel, "indicates type like memory channel"},
      {"block_location", interfaceLevel, "as implied"},
      {"buffer_inst_name", interfaceLevel, "name of utility buffer instance for nevrin_gt_flow"},
      {"frequency", interfaceLevel, "clock frequency"},
      {"gt_endpoint_interface_type", interfaceLevel, "vlnv of the gt cell"},
      {"gt_flow_interface_master_name", interfaceLevel,
       "name of the master interface for nevrin_gt_flow"},
      {"gt_inst_name", interfaceLevel, "gt cell inst name for nevrin_gt_flow"},
      {"gt_lanes", interfaceLevel, "gt lane numbers that the gt bank interface connects"},
      {"gt_loc", interfaceLevel, "loc of the gt cell"},
      {"is_gt_flow_interface_master", interfaceLevel,
       "indicates if the interface is a mater in for nevrin_gt_flow"},
      {"presets_special_handling", interfaceLevel,
       "to enable designer assistance for HSB and NoC (DDR)"},
      {"ref_clk_inst", interfaceLevel, "ref clock instance name for nevrin_gt_flow"},
      {"rst_polarity", interfaceLevel, "as implied"},
      {"type", interfaceLevel, "can indicate type. For a clock interface it gives the clock type"},
  };
  out.clear();
  for (const Row &row : rows)
    out.push_back(std::string(row.name) + ":" + row.path + ":" + row.description);
}

std::string getBoardPartNameFromVLNV(std::string name) {
  std::vector<std::string> fields = splitAll(name, ':');
  if (fields.size() != 4)
    return name;
  return fields[2];
}

std::string getBoardNameFromBoardPart(std::string name) {
  std::vector<std::string> fields = splitAll(name, ':');
  if (fields.size() != 3 && fields.size() != 4)
    return name;
  return fields[1];
}

std::string getBoardVNVFromBoardPart(std::string name) {
  std::vector<std::string> fields = splitAll(name, ':');
  if (fields.size() != 4)
    return name;
  return fields[0] + ":" + fields[1] + ":" + fields[3];
}

bool isSchema20OrGreater(const HBOBoard *board) {
  if (!board)
    return false;
  return isEqualOrGreater(board->getBoardSchemaVersion(), "2.0");
}

bool isV2SchemaBoard(const HBOBoard *board) { return isSchema20OrGreater(board); }

bool isV2SchemaBoard(const HBOBoardComponent *component) {
  if (!component)
    return false;
  return isV2SchemaBoard(component->getBoard());
}

bool isV2SchemaBoard(const HBOBusIf *busIf) {
  if (!busIf)
    return false;
  return isV2SchemaBoard(busIf->getOwnerComponent());
}

bool isV2SchemaBoard(const HBOModelPort *port) {
  if (!port)
    return false;
  return isV2SchemaBoard(port->getOwner());
}

} // namespace HBOBoardUtils
