#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

// Placeholder until the property table is written.
void HBOCPropertyInit::board_part_pin::init() {}
void HBOCPropertyInit::board_part_pin::initV2Props() {}
