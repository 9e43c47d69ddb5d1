// Must not compile: the composition of boards knows nothing of their
// diagrams, which are drawn from what it composed.
#include "HBOBoardDiagram.h"
