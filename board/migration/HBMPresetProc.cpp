#include "HBMPresetProc.h"

void HBMPresetProc::clear() {
  m_schema.clear();
  m_presetProcs.clear();
}
