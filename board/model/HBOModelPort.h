// A physical port of a board interface: its name, direction and range, and
// the pins behind it. On a schema 2 board the pins are named by the pin map
// and live in the component; an older board's port holds its own records.
#ifndef BOARDLIB_HBOMODELPORT_H
#define BOARDLIB_HBOMODELPORT_H

#include "HBOPortVector.h"

#include <map>
#include <string>
#include <vector>

class HBOBusIf;
class HBOPinProps;

class HBOModelPort {
public:
  HBOModelPort() = default;
  /// Drops the object from the script caches, then deletes the pin records.
  ~HBOModelPort();
  HBOModelPort(const HBOModelPort &) = delete;
  HBOModelPort &operator=(const HBOModelPort &) = delete;

  const std::string &getName() const { return m_name; }
  bool getName(std::string &out) const;
  bool setName(const std::string &name);
  bool getPortDir(std::string &out) const;
  bool setDirection(const std::string &direction);
  bool isPortOfTypeVec(bool &out) const;
  bool setIsVector(bool isVector);
  /// Always true; a negative end leaves the range as it was.
  bool setRange(const int &left, const int &right);
  /// For a scalar -1 and false.
  bool getPortVecLeft(int &out) const;
  bool getPortVecRight(int &out) const;
  /// The range's width for a vector, 1 for a scalar; always true.
  bool getPortWidth(int &out) const;

  /// The interface that the port serves and its logical port there.
  bool setOwnerBusIf(const std::string &busIfName, const std::string &logicalPort);
  bool getOwnerBusIf(std::string &out) const;
  bool getBusIfLogicalPortName(std::string &out) const;

  /// Port index text to pin name; ordered by text, so "10" precedes "2".
  const std::map<std::string, std::string> &getPinPortMap() const { return m_pinMap; }
  /// Creates or overwrites the entry of \p index.
  void addPinPortMap(const std::string &index, const std::string &pin);
  /// The pin of \p index, or an empty \p out; always true.
  bool getPinPort(const std::string &index, std::string &out) const;

  HBOBusIf *getOwner() const { return m_owner; }
  void setOwner(HBOBusIf *owner) { m_owner = owner; }

  /// The component's pins named by the pin map, in key order; names that
  /// the component lacks are passed over.
  void getPins(std::vector<HBOPinProps *> &out) const;
  /// Schema 2: appends getPins and gives true. Older: replaces \p out by the
  /// port's own records, or gives false without any.
  bool getPortPropsSeq(std::vector<HBOPinProps *> &out) const;
  /// Creates the records of an older board's port: one per bit of a vector,
  /// indexes from 0, or one of index -1 for a scalar.
  bool populatePinProps();
  /// Renames the pins of the pin map; names not in \p pinRenames stay.
  void updatePortPinMap(const std::map<std::string, std::string> &pinRenames);

  /// Debug dump on standard output.
  void display(int indent) const;

private:
  std::string m_name;
  std::string m_direction;
  bool m_isVector = false;
  HBOPortVector m_range;
  std::string m_ownerBusIfName;
  std::string m_logicalPortName;
  std::vector<HBOPinProps *> m_pinRecords;
  std::map<std::string, std::string> m_pinMap;
  HBOBusIf *m_owner = nullptr;
};

#endif
