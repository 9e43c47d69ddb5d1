// Must not compile: a reader knows nothing of the repositories.
#include "HBOBoardCReposMgr.h"
