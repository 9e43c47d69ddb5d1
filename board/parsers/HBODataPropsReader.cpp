// The reader of data_properties: a free-form tree of named groups and
// values, kept as it stands. Its main use is the operating conditions.
#include "HBODataPropsReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardDataProps.h"
#include "HBOParseContext.h"
#include "HPAParamMgr.h"
#include "HXMLWElement.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using DataMap = std::map<std::string, boost::any>;

// How deep groups may nest under one data_properties element. The tree is
// built without recursion, but copying and destroying nested maps recurse,
// so a hostile file must not get an unbounded tree onto the board. A group
// beyond the bound queues a finding that fails the file, nothing of the
// file's data properties reaches the board, and the read stops there. Real
// boards nest three or four levels.
const std::size_t kMaxDataPropDepth = 256;

DataMap makeStubData() {
  auto text = [](const char *value) { return boost::any(std::string(value)); };
  DataMap budget{
      {"BOARD_VCC_IO_RAM", text("2.0")},
      {"BOARD_PARENT_RAIL", text("4.0")},
      {"BOARD_TOP", text("6.0")},
      {"AUX", text("1.5")},
      {"AUX_IO", text("0.5")},
      {"IO_MEM", text("0.8")},
      {"MEM", text("1.2")},
      {"AUX_MEM", text("0.3")},
      {"XCVR_AUX", text("0.4")},
      {"XCVR_VCC", text("2.5")},
      {"XCVR_VTT", text("1.8")},
      {"ADC", text("0.1")},
      {"BOARD_12V_PEX", text("5.5")},
  };
  DataMap voltage{
      {"AUX", text("1.8")},      {"AUX_IO", text("1.8")},   {"IO_MEM", text("1.2")},
      {"MEM", text("1.2")},      {"AUX_MEM", text("1.8")},  {"XCVR_AUX", text("1.8")},
      {"XCVR_VCC", text("0.9")}, {"XCVR_VTT", text("1.2")}, {"ADC", text("1.8")},
  };
  DataMap conditions{
      {"SUPPLY_CURRENT_BUDGET", budget},
      {"VOLTAGE", voltage},
      {"THETAJA", text("1.9")},
      {"AMBIENT_TEMP", text("25.0")},
      {"DESIGN_POWER_BUDGET", text("30.0")},
  };
  return DataMap{{HBOBoardDataProps::s_operatingConditions, conditions}};
}

} // namespace

bool HBODataPropsReader::readDataProperties(HXMLWElement *root, std::string &error,
                                            HBOBoardComponent *) {
  if (!root) {
    error = "HBOBoardParser::readBoardDataProperties: Root XML element is NULL";
    return false;
  }
  if (!m_ctx.board) {
    error = "HBOBoardParser::readBoardDataProperties: no board to read into";
    return false;
  }
  DataMap data;
  for (HXMLWElement child : root->children("data_properties")) {
    // Only a tree nested beyond the bound stops the walk; its finding is
    // queued, and there is no point in reading further.
    if (!readDataPropGroupsAndProps(&child, data)) {
      error = "HBOBoardParser::readBoardDataProperties: data properties nest too deep";
      return false;
    }
  }

  if (HPAParamMgr::getParamMgr().getValueAsBool("board.dataProps.stubData"))
    data = makeStubData();

  m_ctx.board->setBoardDataProps(data);
  if (ComMsgMgr::hasScope("board.dataProps"))
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.dataProps",
                             "HBOBoardParser just read the following data for board %s:\n%s\n",
                             m_ctx.board->getName().c_str(),
                             m_ctx.board->getBoardDataProps().asXmlStr(0).c_str());
  return true;
}

bool HBODataPropsReader::readDataPropGroupsAndProps(HXMLWElement *element, DataMap &out) {
  if (!element)
    return false;
  // One frame per open group, walked with an explicit stack: the depth comes
  // from the file. A group's map enters its parent when the group is done,
  // so that, as in document order, a later entry of one name replaces an
  // earlier one.
  struct Frame {
    HXMLWElement::ChildRange::iterator next;
    std::string name;
    DataMap data;
  };
  std::vector<Frame> stack;
  stack.push_back(Frame{element->children().begin(), std::string(), DataMap()});
  while (true) {
    Frame &frame = stack.back();
    if (frame.next == HXMLWElement::ChildRange::iterator()) {
      if (stack.size() == 1)
        break;
      Frame done = std::move(frame);
      stack.pop_back();
      stack.back().data[done.name] = std::move(done.data);
      continue;
    }
    HXMLWElement child = *frame.next++;
    if (child.isTag("data_property")) {
      if (!readDataProp(&child, frame.data))
        return false;
      continue;
    }
    if (!child.isTag("data_property_group"))
      continue;
    if (stack.size() > kMaxDataPropDepth) {
      m_ctx.queueFinding(child,
                         "The data property group '" + child.getAttribute("name") + "' on line " +
                             std::to_string(child.getLine()) + " lies deeper than " +
                             std::to_string(kMaxDataPropDepth) +
                             " levels of data_property_group. The data properties are not read.");
      return false;
    }
    // frame is not used below: the push may move it.
    stack.push_back(Frame{child.children().begin(), child.getAttribute("name"), DataMap()});
  }
  for (auto &entry : stack.front().data)
    out[entry.first] = std::move(entry.second);
  return true;
}

bool HBODataPropsReader::readDataPropGroup(HXMLWElement *element, DataMap &out) {
  if (!element)
    return false;
  DataMap group;
  if (!readDataPropGroupsAndProps(element, group))
    return false;
  out[element->getAttribute("name")] = std::move(group);
  return true;
}

bool HBODataPropsReader::readDataProp(HXMLWElement *element, DataMap &out) {
  if (!element)
    return false;
  out[element->getAttribute("name")] = element->getAttribute("value");
  return true;
}
