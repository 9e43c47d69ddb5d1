// The content of a preset file for the rewrite tool: the schema it came
// with and its preset procedures, held by value.
#ifndef BOARDLIB_HBMPRESETPROC_H
#define BOARDLIB_HBMPRESETPROC_H

#include "PresetProc.h"

#include <string>
#include <vector>

class HBMPresetProc {
public:
  const std::string &getSchema() const { return m_schema; }
  void setSchema(const std::string &schema) { m_schema = schema; }

  /// A copy of the procedures.
  std::vector<PresetProc> getPresetProcs() const { return m_presetProcs; }
  /// Appends a copy of \p proc.
  void addPresetProc(PresetProc &proc) { m_presetProcs.push_back(proc); }
  /// Replaces the procedures, so that a caller can change those it read.
  void setPresetProcs(const std::vector<PresetProc> &procs) { m_presetProcs = procs; }
  /// Forgets the schema and the procedures.
  void clear();

private:
  std::string m_schema;
  std::vector<PresetProc> m_presetProcs;
};

#endif
