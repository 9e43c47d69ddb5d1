// boardtool dump: writes the whole object graph of one board as JSON, each
// object as the properties a script sees through list_property, read through
// the same property registry, so the dump and get_property always agree.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "HBOScriptedClasses.h"
#include "HBOScriptedGraph.h"
#include "HCPProperty.h"
#include "HSTStringUtils.h"

#include <boost/filesystem.hpp>

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

using tclany = zeb::tcltasks::tclany;

const char kAbout[] =
    "Writes one board's object graph as JSON on standard output: the board, its\n"
    "components with their interfaces (with ports and preferred IPs), pins, modes\n"
    "and parameters, its connections with their nets, its jumpers, parameters and IP\n"
    "presets. Each object is written as the properties that list_property shows in\n"
    "the Tcl and Python consoles, with upper-case keys; booleans, integers, texts and\n"
    "lists keep their types. NAME is a board name from the catalog (any of the\n"
    "names 'boardtool show' takes), FILE the path of a board.xml.\n";

const char kNotes[] =
    "Exit status: 0 written, 1 no such board or the file did not read, 2 bad usage.\n";

// The child arrays of each class, in the order they are written.
struct ChildArray {
  const char *key;
  const std::type_info *type;
  bool namesOnly;
};

std::vector<ChildArray> childArrays(const std::type_info &type) {
  if (type == typeid(HBOBoard *))
    return {{"components", &typeid(HBOBoardComponent *), false},
            {"buses", &typeid(HBOBoardBus *), false},
            {"jumpers", &typeid(HBOJumper *), false},
            {"parameters", &typeid(HBOParameter *), false},
            {"presets", &typeid(HBOIpPreset *), false}};
  if (type == typeid(HBOBoardComponent *))
    return {{"interfaces", &typeid(HBOBusIf *), false},
            {"pins", &typeid(HBOPinProps *), false},
            {"modes", &typeid(HBOComponentMode *), false},
            {"parameters", &typeid(HBOParameter *), false}};
  if (type == typeid(HBOBusIf *))
    return {{"ports", &typeid(HBOModelPort *), false},
            {"preferences", &typeid(HBOBusIfPreference *), false}};
  if (type == typeid(HBOModelPort *))
    return {{"pins", &typeid(HBOPinProps *), true}};
  if (type == typeid(HBOBoardBus *))
    return {{"nets", &typeid(HBOBoardBusNet *), false}};
  return {};
}

class JsonWriter {
public:
  explicit JsonWriter(bool all) : m_all(all) {}

  void object(const tclany &object, int depth) {
    std::string pad(2 * depth, ' ');
    m_out += "{";
    bool first = true;
    for (const HCPProperty::PropertyRow &row :
         HCPProperty::listProperties(nullptr, object, m_all)) {
      key(HSTStringUtils::toUpper(row.name), first, depth + 1);
      value(row.value);
    }
    std::vector<HBOBoard *> none;
    for (const ChildArray &array : childArrays(*object.type)) {
      std::vector<tclany> children;
      HBOScriptedGraph::related(object, *array.type, none, children);
      key(array.key, first, depth + 1);
      m_out += "[";
      for (std::size_t i = 0; i < children.size(); ++i) {
        m_out += i ? ",\n" : "\n";
        m_out += std::string(2 * (depth + 2), ' ');
        if (array.namesOnly)
          HSTStringUtils::appendJsonQuoted(m_out, HCPProperty::getObjectName(children[i]));
        else
          this->object(children[i], depth + 2);
      }
      if (!children.empty())
        m_out += "\n" + std::string(2 * (depth + 1), ' ');
      m_out += "]";
    }
    m_out += "\n" + pad + "}";
  }

  const std::string &text() const { return m_out; }

private:
  void key(const std::string &name, bool &first, int depth) {
    m_out += first ? "\n" : ",\n";
    first = false;
    m_out += std::string(2 * depth, ' ');
    HSTStringUtils::appendJsonQuoted(m_out, name);
    m_out += ": ";
  }

  void value(const HATAttrAny &v) {
    switch (v.getKind()) {
    case HATAttrAny::Kind::Empty:
      m_out += "\"\"";
      return;
    case HATAttrAny::Kind::Bool:
      m_out += v.getBool() ? "true" : "false";
      return;
    case HATAttrAny::Kind::Int:
      m_out += std::to_string(v.getInt());
      return;
    case HATAttrAny::Kind::String:
      HSTStringUtils::appendJsonQuoted(m_out, v.getString());
      return;
    case HATAttrAny::Kind::List:
      break;
    }
    m_out += "[";
    bool first = true;
    auto element = [&](const std::string &text) {
      m_out += first ? "" : ", ";
      first = false;
      HSTStringUtils::appendJsonQuoted(m_out, text);
    };
    for (const std::string &text : v.getList().strings())
      element(text);
    for (const tclany &object : v.getList().objects())
      element(HCPProperty::getObjectName(object));
    m_out += "]";
  }

  bool m_all;
  std::string m_out;
};

} // namespace

int writeDump(const HBOBoard &board, bool all, const char *command) {
  HBOScriptedClasses::registerAll();
  JsonWriter writer(all);
  try {
    writer.object(tclany::of(const_cast<HBOBoard *>(&board)), 0);
  } catch (const HCPProperty::Error &e) {
    std::cerr << "boardtool " << command << ": " << e.what() << "\n";
    return Failure;
  }
  std::cout << writer.text() << "\n";
  return Success;
}

bool looksLikeBoardFile(const std::string &source) {
  boost::system::error_code ec;
  return source.find('/') != std::string::npos || boost::filesystem::is_regular_file(source, ec) ||
         HSTStringUtils::endsWith(source, ".xml");
}

namespace {

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  if (!load.take(args, error))
    return usageError(dumpCommand, error);
  if (args.operands.size() != 1)
    return usageError(dumpCommand, args.operands.empty()
                                       ? "no board name or file given"
                                       : "one board only, not also '" + args.operands[1] + "'");
  const std::string source = args.operands.front();
  const bool all = args.has("--all");
  load.apply();
  MessageOutput output(args.jsonMessages());
  HBOScriptedClasses::registerAll();

  if (looksLikeBoardFile(source)) {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOParser parser;
    if (!parser.parseFile(absolutePath(source), board.get())) {
      std::cerr << "boardtool dump: '" << source << "' did not read as a board\n";
      return Failure;
    }
    return writeDump(*board, all, "dump");
  }

  LoadedCatalog catalog(dumpCommand, false);
  if (!catalog.ok())
    return Failure;
  bool usedLegacyMap = false;
  HBOBoard *board = catalog.manager().getBoard(source, usedLegacyMap, true);
  if (!board)
    board = catalog.global().getInfoForBoard(source);
  if (!board) {
    std::cerr << "boardtool dump: no board matches '" << source
              << "'; 'boardtool catalog' lists the boards\n";
    return Failure;
  }
  return writeDump(*board, all, "dump");
}

} // namespace

const Command dumpCommand = {
    "dump",
    cmd::dump,
    "write one board's object graph with its script properties as JSON",
    "NAME|FILE",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
