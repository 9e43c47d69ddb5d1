#include "HBOBoardComponentDriver.h"

// All of the driver record is inline; this unit keeps the class's own pair
// of files, where its copy constructor will go.
