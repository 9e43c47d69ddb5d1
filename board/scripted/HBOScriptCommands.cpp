#include "HBOScriptCommands.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBoardDiagram.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPartCReposMgr.h"
#include "HBOPinProps.h"
#include "HBOScriptFilter.h"
#include "HBOScriptedClasses.h"
#include "HBOScriptedGraph.h"
#include "HPAParamMgr.h"
#include "HSTStringUtils.h"

#include <boost/regex.hpp>

#include <algorithm>
#include <set>
#include <sstream>

namespace {

using tclany = zeb::tcltasks::tclany;
using Error = HCPProperty::Error;

template <typename T> bool is(const tclany &h) { return h.type && *h.type == typeid(T *); }

// The component an object of a part command hangs on.
const HBOBoardComponent *componentOf(const tclany &h) {
  if (is<HBOBoardComponent>(h))
    return static_cast<const HBOBoardComponent *>(h.object);
  if (is<HBOBusIf>(h))
    return static_cast<const HBOBusIf *>(h.object)->getOwnerComponent();
  if (is<HBOPinProps>(h))
    return static_cast<const HBOPinProps *>(h.object)->getOwner();
  return nullptr;
}

bool isActivePart(const tclany &h) {
  const HBOBoardComponent *component = componentOf(h);
  if (!component || !component->getBoard())
    return false;
  return component->getBoard()->getActivePart() == component;
}

// "get_board_component_pins" -> "board component pins", for messages.
std::string nounOf(const std::string &command) {
  std::string noun = command.compare(0, 4, "get_") == 0 ? command.substr(4) : command;
  std::replace(noun.begin(), noun.end(), '_', ' ');
  return noun;
}

std::string className(const std::type_info &type) {
  std::string name = HCPProperty::getClassName(type);
  if (name.empty())
    if (const HBOScriptedClass *c = HBOScriptedClasses::find(type))
      name = c->structName;
  return name;
}

// A filter reads properties as text; one the object lacks reads empty.
HBOScriptFilter::PropertyReader propertyReader(const tclany &object) {
  return [object](const std::string &property) {
    HATAttrAny value;
    try {
      HCPProperty::getProperty(nullptr, object, property, value);
    } catch (const Error &) {
      return std::string();
    }
    return value.toString();
  };
}

} // namespace

HBOScriptCommands::HBOScriptCommands() {
  HBOScriptedClasses::registerAll();
  m_manager = std::make_unique<HBOBoardCDataManager>();
}

HBOScriptCommands::~HBOScriptCommands() = default;

const std::vector<HBOScriptCommands::QueryCommand> &HBOScriptCommands::queryCommands() {
  static const std::vector<QueryCommand> commands = {
      {"get_boards", &typeid(HBOBoard *), "the boards of the catalog"},
      {"get_board_parts", &typeid(HBOBoardComponent *), "the active part of each board"},
      {"get_board_components", &typeid(HBOBoardComponent *), "the components of boards"},
      {"get_board_component_interfaces", &typeid(HBOBusIf *), "the interfaces of components"},
      {"get_board_part_interfaces", &typeid(HBOBusIf *), "the interfaces of the active parts"},
      {"get_board_interface_ports", &typeid(HBOModelPort *), "the ports of interfaces"},
      {"get_board_component_pins", &typeid(HBOPinProps *), "the pins of components"},
      {"get_board_part_pins", &typeid(HBOPinProps *), "the pins of the active parts"},
      {"get_board_buses", &typeid(HBOBoardBus *), "the connections of boards"},
      {"get_board_bus_nets", &typeid(HBOBoardBusNet *), "the nets of connections"},
      {"get_board_component_modes", &typeid(HBOComponentMode *), "the modes of components"},
      {"get_board_parameters", &typeid(HBOParameter *), "the parameters of boards and components"},
      {"get_board_jumpers", &typeid(HBOJumper *), "the jumpers of boards"},
      {"get_board_ip_presets", &typeid(HBOIpPreset *), "the IP presets of boards and interfaces"},
      {"get_board_ip_preferences", &typeid(HBOBusIfPreference *),
       "the preferred IPs of interfaces and modes"},
  };
  return commands;
}

const HBOScriptCommands::QueryCommand *
HBOScriptCommands::findQueryCommand(const std::string &name) {
  for (const QueryCommand &c : queryCommands())
    if (name == c.name)
      return &c;
  return nullptr;
}

std::vector<HBOBoard *> HBOScriptCommands::getCatalogBoards() const {
  std::vector<HBOBoard *> boards;
  if (HBOPartCReposMgr *repo = m_manager->getBoardPartReposMgr())
    repo->getAllBoardParts(boards);
  boards.erase(std::remove(boards.begin(), boards.end(), nullptr), boards.end());
  std::stable_sort(boards.begin(), boards.end(), [](const HBOBoard *a, const HBOBoard *b) {
    return a->getName() < b->getName();
  });
  boards.erase(std::unique(boards.begin(), boards.end()), boards.end());
  return boards;
}

std::vector<tclany> HBOScriptCommands::findObjectsByName(const std::string &name) const {
  std::vector<tclany> found;
  if (name.empty())
    return found;
  const std::vector<HBOBoard *> boards = getCatalogBoards();
  for (HBOBoard *board : boards)
    if (board->getName() == name)
      found.push_back(tclany::of(board));
  if (!found.empty())
    return found;

  // A component is vendor:board:component:version, on the board
  // vendor:board:version: only that board's components need a look.
  const std::vector<std::string> fields = HSTStringUtils::split(name, ":", true);
  if (fields.size() == 4) {
    const std::string boardName = fields[0] + ":" + fields[1] + ":" + fields[3];
    for (HBOBoard *board : boards) {
      if (board->getName() != boardName)
        continue;
      std::vector<tclany> components;
      HBOScriptedGraph::related(tclany::of(board), typeid(HBOBoardComponent *), boards, components);
      for (const tclany &component : components)
        if (HCPProperty::getObjectName(component) == name)
          found.push_back(component);
    }
    if (!found.empty())
      return found;
  }

  HBOBoard *current = m_manager->getBoardStrategy();
  if (!current)
    return found;
  std::set<const void *> seen;
  std::set<std::string> classesDone;
  for (const QueryCommand &query : queryCommands()) {
    if (*query.type == typeid(HBOBoard *) || !classesDone.insert(query.type->name()).second)
      continue;
    std::vector<tclany> objects;
    HBOScriptedGraph::related(tclany::of(current), *query.type, boards, objects);
    for (const tclany &object : objects)
      if (HCPProperty::getObjectName(object) == name && seen.insert(object.object).second)
        found.push_back(object);
  }
  return found;
}

std::vector<tclany> HBOScriptCommands::getObjects(const std::string &command,
                                                  const QueryOptions &options) {
  const QueryCommand *query = findQueryCommand(command);
  if (!query)
    throw Error("'" + command + "' is not a board query command.");
  const std::type_info &want = *query->type;
  const bool wantsBoards = want == typeid(HBOBoard *);
  std::vector<HBOBoard *> boards = getCatalogBoards();

  std::vector<tclany> found;
  if (options.hasOfObjects) {
    for (const tclany &from : options.ofObjects) {
      HCPProperty::infoOf(from);
      if (!HBOScriptedGraph::related(from, want, boards, found))
        throw Error(command + ": -of_objects cannot take " + HCPProperty::describe(from) + ": a " +
                    HCPProperty::getClassName(from) + " has no " + className(want) + " objects.");
    }
  } else if (wantsBoards) {
    for (HBOBoard *board : boards)
      found.push_back(tclany::of(board));
  } else {
    HBOBoard *current = m_manager->getBoardStrategy();
    if (!current)
      throw Error(command + ": there is no current board. Set one with current_board NAME, or "
                            "give the objects with -of_objects.");
    HBOScriptedGraph::related(tclany::of(current), want, boards, found);
  }

  // The same object reached from two sources is listed once.
  std::set<const void *> seen;
  std::vector<tclany> result;
  const bool partsOnly = command == "get_board_parts" || command == "get_board_part_interfaces" ||
                         command == "get_board_part_pins";
  // Boost's matcher keeps its backtracking on the heap and gives up with an
  // exception where the standard one recurses once per character and runs
  // off the stack on a long name; its parser likewise refuses a pattern
  // nested too deep instead of recursing into it.
  std::vector<boost::regex> regexes;
  if (options.regexp) {
    for (const std::string &pattern : options.patterns) {
      try {
        regexes.emplace_back(pattern, options.nocase
                                          ? boost::regex::ECMAScript | boost::regex::icase
                                          : boost::regex::ECMAScript);
      } catch (const std::exception &e) {
        throw Error(command + ": bad regular expression '" + pattern + "': " + e.what());
      }
    }
  }
  std::unique_ptr<HBOScriptFilter> filter;
  if (!options.filter.empty())
    filter = std::make_unique<HBOScriptFilter>(options.filter, options.nocase);

  for (const tclany &object : found) {
    if (!seen.insert(object.object).second)
      continue;
    if (partsOnly && !isActivePart(object))
      continue;
    if (!options.patterns.empty()) {
      std::string name = HCPProperty::getObjectName(object);
      bool match = false;
      if (options.regexp) {
        for (std::size_t i = 0; i < regexes.size() && !match; ++i) {
          try {
            match = boost::regex_match(name, regexes[i]);
          } catch (const std::exception &e) {
            throw Error(command + ": the regular expression '" + options.patterns[i] +
                        "' cannot be matched against the name of " + std::to_string(name.size()) +
                        " characters: " + e.what());
          }
        }
      } else {
        for (const std::string &pattern : options.patterns)
          match = match || HBOScriptFilter::globMatch(pattern, name, options.nocase);
      }
      if (!match)
        continue;
    }
    if (filter && !filter->matches(propertyReader(object)))
      continue;
    result.push_back(object);
  }

  if (result.empty() && !options.quiet) {
    std::string what;
    for (const std::string &pattern : options.patterns)
      what += (what.empty() ? "" : " ") + pattern;
    if (!options.filter.empty())
      what += (what.empty() ? "" : " ") + std::string("-filter ") + options.filter;
    ComMsgMgr::sendMsg("common", ComMsg::Warning, "@1-2@%s%s", nounOf(command),
                       what.empty() ? std::string("*") : what);
  }
  return result;
}

bool HBOScriptCommands::getProperty(const std::string &name, const tclany &object, HATAttrAny &out,
                                    bool quiet, Tcl_Interp *interp) {
  out.clear();
  try {
    bool ok = HCPProperty::getProperty(interp, object, name, out);
    HATAttrSpec spec;
    std::string canonical;
    bool dynamic = false;
    if (!quiet && HCPProperty::findPropertySpec(object, name, spec, canonical, dynamic) &&
        !spec.m_hint.empty())
      ComMsgMgr::sendMsg("common", ComMsg::Warning, "@1-3@%s%s%s", canonical,
                         HCPProperty::describe(object), spec.m_hint);
    if (!ok)
      out.clear();
    return ok;
  } catch (const Error &) {
    if (quiet) {
      out.clear();
      return false;
    }
    throw;
  }
}

void HBOScriptCommands::setProperty(const std::string &name, const std::string &value,
                                    const std::vector<tclany> &objects, Tcl_Interp *interp) {
  HCPProperty::setProperty(interp, name, HATAttr(HATAttrAny(value)), objects);
}

std::vector<std::string> HBOScriptCommands::listProperty(const tclany &object, bool all) {
  std::vector<std::string> names;
  for (const HCPProperty::PropertyRow &row : HCPProperty::listProperties(nullptr, object, all))
    names.push_back(HSTStringUtils::toUpper(row.name));
  return names;
}

std::string HBOScriptCommands::reportProperty(const tclany &object, bool all) {
  std::vector<HCPProperty::PropertyRow> rows = HCPProperty::listProperties(nullptr, object, all);
  std::vector<std::vector<std::string>> table = {{"Property", "Type", "Read-only", "Value"}};
  for (const HCPProperty::PropertyRow &row : rows)
    table.push_back({HSTStringUtils::toUpper(row.name),
                     HATAttrSpec::typeName(row.spec.getAttrType()),
                     row.spec.isReadOnly() ? "true" : "false", row.value.toString()});
  std::vector<std::size_t> widths(4, 0);
  for (const auto &line : table)
    for (std::size_t i = 0; i < 3; ++i)
      widths[i] = std::max(widths[i], line[i].size());
  std::string out;
  for (const auto &line : table) {
    std::string text;
    for (std::size_t i = 0; i < 3; ++i)
      text += line[i] + std::string(widths[i] - line[i].size() + 2, ' ');
    text += line[3];
    while (!text.empty() && text.back() == ' ')
      text.pop_back();
    out += text + "\n";
  }
  // Deprecated properties still answer; the listing says what replaces them.
  std::string hints;
  for (const HCPProperty::PropertyRow &row : rows)
    if (!row.spec.m_hint.empty())
      hints += "  " + HSTStringUtils::toUpper(row.name) + ": " + row.spec.m_hint + "\n";
  if (!hints.empty())
    out += "Deprecated:\n" + hints;
  return out;
}

std::string HBOScriptCommands::undo() {
  std::string what;
  if (!HCPProperty::UndoHistory::undo(what))
    throw Error("There is nothing to undo.");
  return what;
}

std::string HBOScriptCommands::redo() {
  std::string what;
  if (!HCPProperty::UndoHistory::redo(what))
    throw Error("There is nothing to redo.");
  return what;
}

void HBOScriptCommands::setParam(const std::string &name, const std::string &value) {
  std::string error;
  if (!HPAParamMgr::getParamMgr().setValue(name, value, &error))
    throw Error(error.empty() ? "Cannot set parameter '" + name + "'." : error);
  // New user repositories take effect at once, as they would in the
  // console of the suite.
  if (name == "board.repoPaths")
    refreshBoards();
  // The integrated board flow brings the board commands written in Tcl.
  if (name == "project.enableBITabFlow")
    m_manager->loadBoardTcl();
}

std::string HBOScriptCommands::getParam(const std::string &name) {
  const HPAParam *param = HPAParamMgr::getParamMgr().findParam(name);
  if (!param)
    throw Error("There is no parameter '" + name + "'. report_param lists them.");
  return param->getValueAsString();
}

std::string HBOScriptCommands::reportParam(const std::string &pattern) {
  std::vector<const HPAParam *> params;
  for (const HPAParam *param : HPAParamMgr::getParamMgr().listParams()) {
    // Hidden parameters show only when asked for by their exact name.
    if (param->isHidden()
            ? param->getName() != pattern
            : !pattern.empty() && !HBOScriptFilter::globMatch(pattern, param->getName()))
      continue;
    params.push_back(param);
  }
  std::size_t nameWidth = 4, valueWidth = 5;
  for (const HPAParam *param : params) {
    nameWidth = std::max(nameWidth, param->getName().size());
    valueWidth = std::max(valueWidth, param->getValueAsString().size());
  }
  std::ostringstream out;
  auto line = [&](const std::string &name, const std::string &value, const std::string &def,
                  const std::string &type) {
    out << name << std::string(nameWidth - name.size() + 2, ' ') << value
        << std::string(valueWidth - value.size() + 2, ' ') << type
        << std::string(8 - std::min<std::size_t>(type.size(), 6), ' ') << def << "\n";
  };
  line("Name", "Value", "Default", "Type");
  for (const HPAParam *param : params)
    line(param->getName(), param->getValueAsString(), param->getDefault(), param->getKindName());
  return out.str();
}

tclany HBOScriptCommands::currentBoard() const {
  HBOBoard *board = m_manager->getBoardStrategy();
  return board ? tclany::of(board) : tclany();
}

tclany HBOScriptCommands::setCurrentBoard(const std::string &name) {
  // The data manager decides, so that a script sees the same lookup, legacy
  // names and [Board 49-71] as the rest of the suite; an unknown name leaves
  // the current board alone.
  m_manager->setBoard(name, std::string(), false, true);
  return currentBoard();
}

tclany HBOScriptCommands::setCurrentBoard(const tclany &board) {
  HCPProperty::infoOf(board);
  if (!is<HBOBoard>(board))
    throw Error("current_board takes a board, not " + HCPProperty::describe(board) + ".");
  m_manager->setBoard(static_cast<HBOBoard *>(board.object));
  return board;
}

tclany HBOScriptCommands::createIntegratedBoard(
    const std::string &base, const std::string &name,
    const std::vector<std::pair<std::string, std::string>> &connections) {
  std::string boardName = name;
  if (boardName.empty()) {
    bool usedLegacy = false;
    const HBOBoard *baseBoard = m_manager->getBoard(base, usedLegacy, true);
    boardName = HBOBoardCDataManager::createUniqBoardNameForIntegratedBoard(
        baseBoard ? baseBoard->getBoardName() : base, connections);
  }
  HBOBoard *board = m_manager->createIntegratdBoard(base, connections, boardName);
  const std::string fullName = board->getName();
  if (!m_manager->registerIntegratedBoard(board))
    throw Error("A user board named '" + fullName +
                "' already exists and is no integrated board; choose another name with -name.");
  return tclany::of(board);
}

void HBOScriptCommands::refreshBoards() {
  HBOBoard *current = m_manager->getBoardStrategy();
  std::string currentName = current ? current->getName() : std::string();
  // An integrated board goes with the reload; it is kept as names.
  const bool integrated = current && current->isIntegratedBoard();
  const std::string basePart = integrated ? current->getBaseBoardActivePartName() : std::string();
  const std::string integratedName = integrated ? current->getBoardName() : std::string();
  const HBOBoardCDataManager::ConnectionPairs connections =
      integrated ? HBOBoardCDataManager::getIntegratedBoardConnectionPairs(*current)
                 : HBOBoardCDataManager::ConnectionPairs();
  m_manager->setBoard(static_cast<HBOBoard *>(nullptr));
  HBOBoardCReposMgr *global = HBOBoardCReposMgr::getGlobal();
  global->refreshBoards();
  global->decrementRefCount();
  if (HBOPartCReposMgr *repo = m_manager->getBoardPartReposMgr())
    repo->refreshBoardParts();
  if (integrated) {
    HBOBoard *board = m_manager->createIntegratdBoard(basePart, connections, integratedName);
    if (HBOBoard *registered = m_manager->registerIntegratedBoard(board))
      m_manager->setBoard(registered);
    return;
  }
  if (!currentName.empty()) {
    bool usedLegacy = false;
    if (HBOBoard *board = m_manager->getBoard(currentName, usedLegacy, false))
      m_manager->setBoard(board);
  }
}

std::vector<tclany> HBOScriptCommands::getCompatibleConnectors(const tclany &object, bool latest) {
  HCPProperty::infoOf(object);
  const HBOBoardComponent *connector = is<HBOBoardComponent>(object)
                                           ? static_cast<const HBOBoardComponent *>(object.object)
                                           : nullptr;
  if (!connector || !connector->isConnector())
    throw Error("get_compatible_connectors: " + HCPProperty::describe(object) +
                " is not a connector.");
  HSTVector<HBOBoardComponent *> list;
  if (const HBOBoard *board = connector->getBoard()) {
    if (latest)
      board->getLatestCompatibleConnectorsList(*connector, list);
    else
      board->getCompatibleConnectorsList(*connector, list);
  }
  if (latest) {
    // That list comes in no order a script could rely on.
    std::stable_sort(list.begin(), list.end(),
                     [](const HBOBoardComponent *a, const HBOBoardComponent *b) {
                       return a->getName() < b->getName();
                     });
  }
  std::vector<tclany> result;
  for (HBOBoardComponent *component : list)
    if (component)
      result.push_back(tclany::of(component));
  return result;
}

void HBOScriptCommands::writeBoardDiagram(
    const tclany &object, const std::string &file,
    const std::vector<std::pair<std::string, std::string>> &jumpers) {
  HCPProperty::infoOf(object);
  if (!is<HBOBoard>(object))
    throw Error("write_board_diagram takes a board, not " + HCPProperty::describe(object) + ".");
  const HBOBoard &board = *static_cast<const HBOBoard *>(object.object);
  HBODiagramOptions options;
  options.jumpers = jumpers;
  if (!HBOBoardDiagram::checkOptions(board, options))
    throw Error("write_board_diagram: board '" + board.getName() +
                "' cannot be drawn with that jumper setting.");
  if (!HBOBoardDiagram::writeSvg(board, file, options))
    throw Error("write_board_diagram: cannot write '" + file + "'.");
}

void HBOScriptCommands::writeBoardDiagram(
    const std::string &name, const std::string &file,
    const std::vector<std::pair<std::string, std::string>> &jumpers) {
  bool usedLegacy = false;
  HBOBoard *board = name.empty() ? nullptr : m_manager->getBoard(name, usedLegacy, true);
  if (!board)
    throw Error("write_board_diagram: no board is named '" + name + "'.");
  writeBoardDiagram(tclany::of(board), file, jumpers);
}
