// One preferred IP of a component mode or a board interface: the IP by its
// VLNV fields, and the preset to apply with it.
#ifndef BOARDLIB_HBOBUSIFPREFERENCE_H
#define BOARDLIB_HBOBUSIFPREFERENCE_H

#include <cstdint>
#include <string>

class HBOBoard;

class HBOBusIfPreference {
public:
  HBOBusIfPreference() = default;
  /// Drops the object from the script caches.
  ~HBOBusIfPreference();
  HBOBusIfPreference(const HBOBusIfPreference &) = delete;
  HBOBusIfPreference &operator=(const HBOBusIfPreference &) = delete;

  const std::string &getMajorGroup() const { return m_majorGroup; }
  /// An empty group is refused with false and the old one stays.
  bool setMajorGroup(const std::string &group);
  const std::string &getMinorGroup() const { return m_minorGroup; }
  bool setMinorGroup(const std::string &group);
  std::string getDefaultIpVlnv() const { return m_defaultIpVlnv; }
  bool setDefaultIpVlnv(const std::string &vlnv);
  const std::string &getPresetProc() const { return m_presetProc; }
  bool setPresetProc(const std::string &proc);
  const std::string &getPresetFile() const { return m_presetFile; }
  bool setPresetFile(const std::string &file);
  const std::string &getName() const { return m_name; }
  bool setName(const std::string &name);
  /// The name under which scripts see the preference.
  const std::string &getPrefName() const { return m_prefName; }
  bool setPrefName(const std::string &name);
  const std::string &getVendor() const { return m_vendor; }
  bool setVendor(const std::string &vendor);
  const std::string &getLibrary() const { return m_library; }
  bool setLibrary(const std::string &library);
  const std::string &getVersion() const { return m_version; }
  bool setVersion(const std::string &version);
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
  std::string m_majorGroup;
  std::string m_minorGroup;
  std::string m_defaultIpVlnv;
  std::string m_presetProc;
  std::string m_presetFile;
  std::string m_name;
  std::string m_prefName;
  std::string m_vendor;
  std::string m_library;
  std::string m_version;
  std::int32_t m_order = 0;
  HBOBoard *m_owner = nullptr;
};

#endif
