// A preset procedure of a preset file: its name and the presets of its IPs.
#ifndef BOARDLIB_PRESETPROC_H
#define BOARDLIB_PRESETPROC_H

#include "IPPresets.h"

#include <string>
#include <vector>

struct PresetProc {
  std::string name;
  std::vector<IPPresets> presets;
};

#endif
