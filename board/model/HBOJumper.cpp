#include "HBOJumper.h"

#include "HBOBoard.h"
#include "NativeCache.h"

#include <iostream>

HBOJumper::~HBOJumper() { zeb::forgetScriptHandles(this); }

void HBOJumper::setValue(bool value, bool save) {
  m_defaultValue = value;
  // Saving needs an owner; a jumper without one simply has nothing to save.
  if (!save || !m_owner)
    return;
  m_owner->saveBoard();
}

void HBOJumper::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Jumper - Name: " << m_name
            << ", Default Value: " << (m_defaultValue ? "true" : "false")
            << ", Description: " << m_description << "\n";
}
