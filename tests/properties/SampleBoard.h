// The sample board with its scripted classes registered, and short ways to
// reach its objects and read their properties as a script would.
#ifndef BOARDLIB_TESTS_PROPERTIES_SAMPLEBOARD_H
#define BOARDLIB_TESTS_PROPERTIES_SAMPLEBOARD_H

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "HBOComponentMode.h"
#include "HBOJumper.h"
#include "HBOParser.h"
#include "HBOScriptedClasses.h"
#include "HCPProperty.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace test {

using zeb::tcltasks::tclany;

/// A property's value as a script prints it; "<none>" when there is none.
inline std::string prop(const tclany &object, const std::string &name) {
  HATAttrAny value;
  return HCPProperty::getProperty(nullptr, object, name, value) ? value.toString() : "<none>";
}

/// The sample board, read afresh for each test, its classes registered
/// under the parameters as they stand, and an empty undo history.
class SampleBoard : public ::testing::Test {
protected:
  void SetUp() override {
    HBOScriptedClasses::reregisterAll();
    HCPProperty::UndoHistory::clear();
    ASSERT_TRUE(HBOParser().parseFile(BOARDLIB_SAMPLE_BOARD, board.get()));
  }
  void TearDown() override {
    HCPProperty::UndoHistory::clear();
    HBOScriptedClasses::reregisterAll();
  }

  HBOJumper *jumper(const std::string &name) const {
    for (HBOJumper *j : board->getJumpers())
      if (j->getName() == name)
        return j;
    throw std::logic_error("no jumper " + name);
  }
  HBOBoardBus *bus(const std::string &name) const {
    for (HBOBoardBus *b : board->getBuses())
      if (b->getName() == name)
        return b;
    throw std::logic_error("no connection " + name);
  }
  HBOBoardComponent *comp(const std::string &name) const {
    HBOBoardComponent *c = board->findBoardComponent(name);
    if (!c)
      throw std::logic_error("no component " + name);
    return c;
  }
  /// The first mode of a component.
  HBOComponentMode *mode(const std::string &componentName) const {
    std::vector<HBOComponentMode *> modes;
    comp(componentName)->getComponentModes(modes);
    if (modes.empty())
      throw std::logic_error("no mode on " + componentName);
    return modes.front();
  }

  MessageRecorder msgs;
  std::unique_ptr<HBOBoard> board = std::make_unique<HBOBoard>();
};

} // namespace test

#endif
