// A hierarchical user parameter of an IP preset. The rewrite tool notes only
// that one stood there: it neither reads nor writes what it holds.
#ifndef BOARDLIB_USERHIERPARAM_H
#define BOARDLIB_USERHIERPARAM_H

#include "UserParam.h"

#include <string>
#include <vector>

struct UserHierParam {
  std::string name;
  std::vector<UserHierParam> children;
  std::vector<UserParam> params;
};

#endif
