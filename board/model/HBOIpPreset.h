// One record of a board's preset file: either a preset (parameter values to
// apply to an IP) or an associated-interface record (an IP's interfaces
// mapped to board interfaces).
#ifndef BOARDLIB_HBOIPPRESET_H
#define BOARDLIB_HBOIPPRESET_H

#include "HBOIpPresetParams.h"
#include "HSTIntern.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

class HBOBoard;

class HBOIpPreset {
public:
  using ParamMap = HBOIpPresetParams;

  HBOIpPreset() = default;
  /// Drops the object from the script caches.
  ~HBOIpPreset();
  /// A copy owned by \p owner: the procedure name carries \p prefix, the
  /// preset name is rebuilt from it, and the parameter names of an
  /// associated-interface record (interface names) carry it too.
  HBOIpPreset(const HBOIpPreset &src, HBOBoard *owner, const std::string &prefix);
  HBOIpPreset(const HBOIpPreset &) = delete;
  HBOIpPreset &operator=(const HBOIpPreset &) = delete;

  // The IP's vendor, library, name, version and interface come from the IP
  // catalog's vocabulary, the same on many boards: they are pooled.
  const std::string &getVendor() const { return *m_vendor; }
  void setVendor(std::string_view vendor) { m_vendor = &HSTIntern::get(vendor); }
  const std::string &getLibrary() const { return *m_library; }
  void setLibrary(std::string_view library) { m_library = &HSTIntern::get(library); }
  const std::string &getName() const { return *m_name; }
  void setName(std::string_view name) { m_name = &HSTIntern::get(name); }
  /// Procedure names ("ddr4_sdram_preset") recur across the records of a
  /// procedure and across boards: pooled too.
  const std::string &getPresetProcName() const { return *m_presetProcName; }
  void setPresetProcName(std::string_view name) { m_presetProcName = &HSTIntern::get(name); }
  const std::string &getVersion() const { return *m_version; }
  void setVersion(std::string_view version) { m_version = &HSTIntern::get(version); }
  const std::string &getIpInterface() const { return *m_ipInterface; }
  void setIpInterface(std::string_view ipInterface) {
    m_ipInterface = &HSTIntern::get(ipInterface);
  }
  const std::string &getPresetName() const;
  void setPresetName(std::string presetName);
  /// The name becomes "proc:vendor:library:name:version:interface" of the
  /// identity as it stands when the name is first asked for: a catalog
  /// that never shows the record never pays for the string.
  void setPresetNameFromIdentity();

  /// "preset" or "assoc_intf".
  void setPresetorAssocIntf(std::string_view kind);
  /// The kind compared ignoring case; a kind that is neither word answers
  /// false to both.
  bool isPreset() const;
  bool isAssocIntf() const;

  /// In name order.
  const ParamMap &getParamList() const;
  /// False, \p value untouched, when \p name is not there.
  bool getParamValue(std::string_view name, std::string &value) const;
  /// Stores \p value under \p name; a bare file name ending in ".csv" is
  /// resolved beside the owner's board file when it exists there. False
  /// only for an empty name.
  bool setParam(const std::string &name, const std::string &value);
  /// A reader's way to set many at once, as setParam would each entry of
  /// \p params in turn (whose values are already resolved); the caller may
  /// reuse \p params afterwards.
  void setParams(ParamMap::Builder &params);
  /// The value to store for \p value, resolved as setParam does.
  std::string_view resolveValue(std::string_view value, std::string &scratch) const;

  const std::string &getValueType() const { return *m_valueType; }
  void setValueType(std::string_view valueType) { m_valueType = &HSTIntern::get(valueType); }
  HBOBoard *getOwner() const { return m_owner; }
  void setOwner(HBOBoard *owner) { m_owner = owner; }

  /// One debug line on standard output.
  void display(int indent) const;

private:
  enum class Kind : unsigned char { Preset, AssocIntf, Other };

  const std::string *m_vendor = &HSTIntern::empty();
  const std::string *m_library = &HSTIntern::empty();
  const std::string *m_name = &HSTIntern::empty();
  const std::string *m_version = &HSTIntern::empty();
  const std::string *m_ipInterface = &HSTIntern::empty();
  const std::string *m_valueType = &HSTIntern::empty();
  const std::string *m_presetProcName = &HSTIntern::empty();
  mutable std::string m_presetName;
  HBOBoard *m_owner = nullptr;
  Kind m_kind = Kind::Preset;
  mutable std::atomic<bool> m_presetNamePending{false};
  /// Merges what setParam added into the parameters, once, before a read.
  void settleParams_() const;

  mutable ParamMap m_params;
  // Values given one by one wait here until the next read; a reader sets
  // them in one go, and never leaves any.
  mutable std::unique_ptr<ParamMap::Builder> m_pending;
  mutable std::atomic<bool> m_paramsSettled{true};
};

#endif
