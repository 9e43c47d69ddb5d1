// One pin of a component: its name, index and location, the IO properties
// that constraints need, and the interfaces that use it.
//
// A board carries about a thousand pins per component and an installation
// thousands of boards, so a pin is kept compact: it needs no allocation of
// its own beyond a long name. The values (locations, IO standards, bank
// numbers, the names of the interfaces and ports using the pin) repeat over
// the pins of a bank or a port and across boards, so the pin points into
// process-wide pools: its port and bank properties together are one pooled
// set, shared with every pin that has the same. What is rare (more than one
// interface, values a caller may change, groups, internal reference and
// transceiver location) lives behind one pointer.
#ifndef BOARDLIB_HBOPINPROPS_H
#define BOARDLIB_HBOPINPROPS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class HBOBoardComponent;
class HBOModelPort;

class HBOPinProps {
public:
  using StringMap = std::map<std::string, std::string>;

  HBOPinProps();
  /// Drops the object from the script caches.
  ~HBOPinProps();
  /// A copy held by \p owner, with \p port as owner port (may be null).
  HBOPinProps(const HBOPinProps &src, HBOBoardComponent *owner, HBOModelPort *port);
  HBOPinProps(const HBOPinProps &) = delete;
  HBOPinProps &operator=(const HBOPinProps &) = delete;

  /// The 16 port property names that readers look for, in their fixed order.
  static const std::vector<std::string> &getPortPropNames();

  int getPinIndex() const { return m_pinIndex; }
  bool getPinIndex(int &out) const;
  void setPinIndex(int index) { m_pinIndex = index; }
  HBOBoardComponent *getOwner() const { return m_owner; }
  void setOwner(HBOBoardComponent *owner) { m_owner = owner; }
  /// False, with \p out untouched, when there is no owner port.
  bool getOwnerPort(HBOModelPort *&out) const;
  void setOwnerPort(HBOModelPort *port);
  const std::string &getName() const { return m_name; }
  bool getName(std::string &out) const;
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getPinLoc() const { return *m_loc; }
  bool getPinLoc(std::string &out) const;
  void setPinLoc(std::string_view loc);
  bool hasPinLoc() const { return !m_loc->empty(); }
  bool getPinInternalVref(std::string &out) const;
  void setPinInternalVref(const std::string &vref);
  const std::string &getGtLoc() const;
  void setGtLoc(const std::string &gtLoc);

  // Port properties. Names are lower-cased on the way in.

  /// The stored value of \p name; asking creates an empty entry, which
  /// getPortProps shows from then on. The reference stays valid until the
  /// next change of this pin's port properties.
  std::string &getPortProp(const std::string &name) const;
  /// Creates or overwrites.
  void setPortProp(const std::string &name, const std::string &value);
  /// The value when the entry exists; otherwise \p out stays as it was and
  /// no entry is made.
  void getPortProp_(const std::string &name, std::string &out) const;
  /// All entries, present-but-empty ones included, in name order.
  StringMap getPortProps() const;

  void getPinIOStandard(std::string &out) const;
  std::string getPinIOStandard() const;
  void setPinIOStandard(const std::string &value);
  void getPinDiffTerm(std::string &out) const;
  std::string getPinDiffTerm() const;
  void setPinDiffTerm(const std::string &value);
  void getPinDqsBias(std::string &out) const;
  std::string getPinDqsBias() const;
  void setPinDqsBias(const std::string &value);
  void getPinDrive(std::string &out) const;
  std::string getPinDrive() const;
  void setPinDrive(const std::string &value);
  void getPinEqualization(std::string &out) const;
  void setPinEqualization(const std::string &value);
  void getPinIbufLowPwr(std::string &out) const;
  void setPinIbufLowPwr(const std::string &value);
  void getPinOdt(std::string &out) const;
  void setPinOdt(const std::string &value);
  void getPinOutputImpedance(std::string &out) const;
  void setPinOutputImpedance(const std::string &value);
  void getPinPreEmphasis(std::string &out) const;
  void setPinPreEmphasis(const std::string &value);
  void getPinSlew(std::string &out) const;
  std::string getPinSlew() const;
  void setPinSlew(const std::string &value);

  // IO bank properties: stored under the name as written, found ignoring case.

  /// False for an empty name; otherwise creates or overwrites.
  bool setIOBankProperty(const std::string &name, const std::string &value);
  /// What a pin file gives a pin, in one step: the port property at each
  /// slot of getPortPropNames() whose \p read flag is set (a null value as
  /// empty), then the bank properties, as the setters would one by one.
  void setFileProperties(const std::vector<bool> &read, const std::vector<const char *> &values,
                         const std::vector<std::pair<const char *, const char *>> &bankProps);
  /// What setFileProperties gave \p other, for a pin that a file gives the
  /// same texts: the pooled set is shared without being built again. This
  /// pin must be fresh from createPin, as \p other was.
  void setFilePropertiesOf(const HBOPinProps &other);
  /// The value of the first name (in name order) equal to \p name ignoring
  /// case, or an empty string.
  std::string getIOBankPropertyValue(const std::string &name) const;
  /// Replaces \p out by a copy; true.
  bool getIOBankPropertyList(StringMap &out) const;
  StringMap getIOBankProperties() const;

  /// One map per grouping that the pin belongs to.
  const std::vector<StringMap> &getPartOf() const;
  void addPartOf(const StringMap &group);

  /// Interface name to the physical port of that interface using this pin.
  StringMap getIntfPortMap() const;
  /// Creates or overwrites the entry of \p interfaceName.
  void addIntfPortMap(const std::string &interfaceName, const std::string &port);
  /// The port of that exact interface name, or an empty string.
  std::string getPortForInterface(const std::string &interfaceName) const;

  /// Takes over what \p other has filled in; empty values are not copied.
  void copyIOPropertiesFrom(const HBOPinProps &other);
  /// Fills the pin in one step; the location is upper-cased and empty
  /// values are stored as present, empty entries.
  bool setProp(int index, HBOModelPort *port, std::string name, std::string loc,
               std::string diffTerm, std::string drive, std::string ioStandard, std::string slew,
               std::string outputImpedance, std::string ibufLowPwr, std::string odt,
               std::string equalization, std::string preEmphasis, std::string dqsBias);

  /// One debug line on standard output.
  void display(int indent) const;

private:
  using PropId = std::uint32_t;
  using Text = const std::string *; // pooled
  using TextPair = std::pair<Text, Text>;
  struct Extra;
  struct IOProfile;
  struct IOProfilePool;

  bool isPresent_(PropId id) const;
  const std::string *findValue_(PropId id) const;
  std::string &materialise_(PropId id) const;
  void setById_(PropId id, std::string_view value);
  void getById_(PropId id, std::string &out) const;
  std::string getByIdOrEmpty_(PropId id) const;
  bool setIOBankPropertyView(std::string_view name, std::string_view value);
  /// Drops the value that getPortProp handed out for \p id, if any.
  void dropOwned_(PropId id);
  Extra &extra_() const;
  template <typename F> void forEachIntfPort_(F f) const;

  std::int32_t m_pinIndex = 0;
  HBOBoardComponent *m_owner = nullptr;
  std::string m_name;
  Text m_loc;
  // The port and IO bank properties, pooled as a whole: the pins of a bank
  // or of a bus have the same ones. Changing one of them points the pin to
  // another pooled set. Never null.
  mutable const IOProfile *m_io;
  // The first interface entered and its port; null when there is none.
  TextPair m_intfPort = {};
  mutable std::unique_ptr<Extra> m_extra;
};

#endif
