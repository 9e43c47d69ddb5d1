// The preset of one IP within a preset procedure: the IP's identity and the
// interface it serves, with its parameters.
#ifndef BOARDLIB_IPPRESETS_H
#define BOARDLIB_IPPRESETS_H

#include "UserHierParam.h"
#include "UserParam.h"

#include <string>
#include <vector>

struct IPPresets {
  std::string vendor;
  std::string library;
  std::string name;
  std::string version;
  std::string ipInterface;
  std::vector<UserHierParam> hierParams;
  std::vector<UserParam> params;
};

#endif
