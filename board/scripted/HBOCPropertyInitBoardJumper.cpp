#include "HBOBoard.h"
#include "HBOCPropertyInit.h"
#include "HBOJumper.h"
#include "HBOScriptedSupport.h"
#include "HUTConvert.h"

#include <memory>
#include <string>
#include <vector>

namespace {

const char *const classNameBoardJumper = "board_jumper";

} // namespace

namespace current_value {

// Setting current_value of jumpers: each jumper takes the new state and its
// board recomputes what the jumpers enable. The earlier state of every
// jumper is kept for undo. The jumpers are held by raw pointer: the undo
// history drops this change when one of them is destroyed.
class setter : public HCPProperty::Setter {
public:
  static std::unique_ptr<HCPProperty::Setter> create() { return std::make_unique<setter>(); }

  int set(Tcl_Interp *interp, const zeb::tcltasks::tcl_collection *objects,
          const HATAttr &value) override;
  std::string getDescription() const override;
  void undo() override;
  void redo() override;
  void notify() override {}

private:
  // Every jumper gets its own recomputation, as each may be on another board.
  static void apply_(HBOJumper *jumper, bool value);

  HATAttr m_newValue;
  std::vector<HATAttr> m_oldValues;
  std::vector<HBOJumper *> m_jumpers;
};

int setter::set(Tcl_Interp *, const zeb::tcltasks::tcl_collection *objects, const HATAttr &value) {
  m_newValue = value;
  const zeb::tcltasks::tcl_collection none;
  for (const zeb::tcltasks::tclany &object : (objects ? *objects : none).objects()) {
    HBOJumper *jumper = HCPProperty::Types::any2native<HBOJumper *>::get(object);
    if (!jumper)
      continue;
    bool old = jumper->getDefaultValue();
    m_oldValues.push_back(HATAttr(old));
    m_jumpers.push_back(jumper);
    if (HCPProperty::LaunchMode::m_isPyMode)
      HCPProperty::Utils::deliverPyResult(HATAttrAny(old));
  }
  redo();
  return 0;
}

void setter::redo() {
  // A text that is no boolean reads as false, as everywhere in the platform.
  const bool value = HUTConvert::toBool(m_newValue.toString());
  for (HBOJumper *jumper : m_jumpers)
    apply_(jumper, value);
}

void setter::undo() {
  for (std::size_t i = 0; i < m_jumpers.size(); ++i)
    apply_(m_jumpers[i], m_oldValues[i].getBool());
}

void setter::apply_(HBOJumper *jumper, bool value) {
  jumper->setValue(value, true);
  if (HBOBoard *board = jumper->getOwner())
    board->updateEnablement();
}

std::string setter::getDescription() const {
  std::string names;
  for (const HBOJumper *jumper : m_jumpers)
    names += (names.empty() ? "" : ", ") + jumper->getName();
  return "set current_value of " + names + " to " +
         (HUTConvert::toBool(m_newValue.toString()) ? "true" : "false");
}

} // namespace current_value

void HBOCPropertyInit::board_jumper::init() {
  using HBOScripted::addProperty;
  using T = HBOJumper;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardJumper);
  addProperty<T>(info, "name", &T::getName);
  HCPProperty::Spec &value = addProperty<T>(info, "current_value", &T::getDefaultValue);
  value.getAttrSpec().setReadOnly(false);
  value.setSetterFcn(current_value::setter::create);
  addProperty<T>(info, "description", &T::getDescription);
}
