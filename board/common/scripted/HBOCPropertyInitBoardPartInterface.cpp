#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

// Placeholder until the property table is written.
void HBOCPropertyInit::board_part_interface::init() {}
void HBOCPropertyInit::board_part_interface::initV2Props() {}
