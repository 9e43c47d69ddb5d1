#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include "HBOBoard.h"
#include "HBOBoardDataProps.h"
#include "HBOParameter.h"
#include "HPAParamMgr.h"

#include <boost/any.hpp>

#include <cstring>
#include <string>
#include <vector>

namespace {

using HBOScripted::afterTag;

using HBOScripted::tclany;

const char *const classNameBoard = "board";
constexpr char PARAM_SCOPE_TAG[] = "PARAM.";

bool dataPropsAsProperties() {
  return HPAParamMgr::getParamMgr().getValueAsBool("board.dataProps.enableTclProps");
}

// A data property at a dotted path: a scalar as text, a group as one flat
// list of its leaves, path and value in turn. False when the path names
// nothing.
bool dataPropValue(const HBOBoardDataProps &props, const std::string &path, HATAttrAny &out) {
  const boost::any *value = props.getData_(path);
  if (!value)
    return false;
  if (value->type() == typeid(std::string)) {
    HATAttrUtils::setAny(out, props.getStrDataProp(path));
    return true;
  }
  std::vector<std::string> flat;
  for (const auto &leaf : props.getMapDataProp(path)) {
    flat.push_back(leaf.first);
    flat.push_back(leaf.second);
  }
  HATAttrUtils::setAny(out, flat);
  return true;
}

// Board parameters under "PARAM.", then the board's data properties when
// scripts may see them.
bool readDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                 HATAttrAny &result) {
  const HBOBoard *board = HCPProperty::Types::any2native<HBOBoard *>::get(handle);
  if (!board)
    return false;
  std::string parameter;
  if (afterTag(name, PARAM_SCOPE_TAG, parameter)) {
    std::string value;
    if (!board->getParamValue(parameter, value))
      return false;
    HCPProperty::Utils::saveResult(interp, value, result);
    return true;
  }
  HATAttrAny value;
  if (!dataPropsAsProperties() || !dataPropValue(board->getBoardDataProps(), name, value))
    return false;
  HCPProperty::Utils::saveResult(interp, value, result);
  return true;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOBoard *board = HCPProperty::Types::any2native<HBOBoard *>::get(handle);
  if (!board)
    return false;
  for (const HBOParameter *parameter : board->getParameters())
    if (parameter)
      out.emplace_back(std::string(PARAM_SCOPE_TAG) + parameter->getName(),
                       HATAttrAny(parameter->getValue()));
  if (dataPropsAsProperties()) {
    const HBOBoardDataProps &props = board->getBoardDataProps();
    for (const auto &entry : props.getAllData()) {
      HATAttrAny value;
      if (dataPropValue(props, entry.first, value))
        out.emplace_back(entry.first, value);
    }
  }
  return true;
}

} // namespace

void HBOCPropertyInit::board::init() {
  using namespace HBOScripted;
  using B = HBOBoard;
  HCPProperty::ObjectInfo &info = registerClass<B>();

  addClassProperty<B>(info, classNameBoard);
  addProperty<B>(info, "name", [](const B &b) { return b.getName(); });
  addProperty<B>(info, "board_name", &B::getBoardName);
  addProperty<B>(info, "display_name", &B::getDisplayName);
  addProperty<B>(info, "file_version", &B::getVersion);
  addProperty<B>(info, "Compatible_board_revisions", [](const B &b) {
    std::vector<std::string> revisions;
    b.getCompatibleBoardRevisionsAsVec(revisions);
    return revisions;
  });
  addProperty<B>(info, "vendor_name", &B::getVendor);
  addProperty<B>(info, "spec_url", &B::getSpecUrl);
  addProperty<B>(info, "FILE_NAME", &B::getBoardFile);
  addProperty<B>(info, "REPOSITORY", &B::getRepository);
  addProperty<B>(info, "jtag_chains", &B::getJtagChains);
  addProperty<B>(info, "description", &B::getDescription);
  addProperty<B>(info, "supports_ced",
                 [](const B &b) { return std::string(b.getSupportsCED() ? "true" : "false"); });

  HBOScripted::addDynamic(info, readDynamic, listDynamic, false);
}
