// One preferred IP of a component mode or a board interface: the IP by its
// VLNV fields, and the preset to apply with it. The IP's fields and groups
// name IPs of the catalog, the same few across the boards, so they are
// pooled; the preset's procedure and file are the board's own.
#ifndef BOARDLIB_HBOBUSIFPREFERENCE_H
#define BOARDLIB_HBOBUSIFPREFERENCE_H

#include <cstdint>
#include <string>
#include <string_view>

class HBOBoard;

class HBOBusIfPreference {
public:
  HBOBusIfPreference();
  /// Drops the object from the script caches.
  ~HBOBusIfPreference();
  /// A copy owned by \p owner.
  HBOBusIfPreference(const HBOBusIfPreference &src, HBOBoard *owner);
  HBOBusIfPreference(const HBOBusIfPreference &) = delete;
  HBOBusIfPreference &operator=(const HBOBusIfPreference &) = delete;

  const std::string &getMajorGroup() const { return *m_majorGroup; }
  /// An empty group is refused with false and the old one stays.
  bool setMajorGroup(std::string_view group);
  const std::string &getMinorGroup() const { return *m_minorGroup; }
  bool setMinorGroup(std::string_view group);
  std::string getDefaultIpVlnv() const { return *m_defaultIpVlnv; }
  bool setDefaultIpVlnv(std::string_view vlnv);
  const std::string &getPresetProc() const { return m_presetProc; }
  bool setPresetProc(std::string_view proc);
  const std::string &getPresetFile() const { return m_presetFile; }
  bool setPresetFile(std::string_view file);
  const std::string &getName() const { return *m_name; }
  bool setName(std::string_view name);
  /// The name under which scripts see the preference.
  const std::string &getPrefName() const { return *m_prefName; }
  bool setPrefName(std::string_view name);
  const std::string &getVendor() const { return *m_vendor; }
  bool setVendor(std::string_view vendor);
  const std::string &getLibrary() const { return *m_library; }
  bool setLibrary(std::string_view library);
  const std::string &getVersion() const { return *m_version; }
  bool setVersion(std::string_view version);
  std::int32_t getOrder() const { return m_order; }
  bool setOrder(std::int32_t order);
  HBOBoard *getOwner() const { return m_owner; }
  void setOwner(HBOBoard *owner) { m_owner = owner; }

  /// Always false, \p value untouched: preset values are read from the
  /// preset records, not through the preference.
  bool getParamValue(const std::string &name, const std::string &ip, std::string &value) const;

  /// One debug line on standard output.
  void display(int indent) const;

private:
  const std::string *m_majorGroup;
  const std::string *m_minorGroup;
  const std::string *m_defaultIpVlnv;
  const std::string *m_name;
  const std::string *m_prefName;
  const std::string *m_vendor;
  const std::string *m_library;
  const std::string *m_version;
  std::string m_presetProc;
  std::string m_presetFile;
  std::int32_t m_order = 0;
  HBOBoard *m_owner = nullptr;
};

#endif
