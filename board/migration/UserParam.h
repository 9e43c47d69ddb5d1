// A user parameter of an IP preset, as the rewrite tool copies it.
#ifndef BOARDLIB_USERPARAM_H
#define BOARDLIB_USERPARAM_H

#include <string>

struct UserParam {
  std::string name;
  std::string value;
  std::string valueType;
};

#endif
