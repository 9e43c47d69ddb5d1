// One pin of a pin file as the rewrite tool holds it: the index as the file
// wrote it, the name, the LOC and the known port properties in the order
// they were first set.
#ifndef BOARDLIB_HBMPIN_H
#define BOARDLIB_HBMPIN_H

#include <string>
#include <utility>
#include <vector>

class HBMPin {
public:
  using Props = std::vector<std::pair<std::string, std::string>>;

  HBMPin() = default;
  HBMPin(std::string name, std::string index, std::string loc, Props props = Props());

  std::string getIndex() const { return m_index; }
  void setIndex(const std::string &index) { m_index = index; }
  const std::string &getName() const { return m_name; }
  void setName(const std::string &name) { m_name = name; }
  const std::string &getLOC() const { return m_loc; }
  void setLOC(const std::string &loc) { m_loc = loc; }

  const Props &getAllProps() const { return m_props; }
  /// The value of \p name, or the empty text when the pin has none.
  std::string getProp(const std::string &name) const;
  /// Overwrites the value of a property the pin has, else appends it, so
  /// that the properties keep the order in which they were first set.
  void setProp(const std::string &name, const std::string &value);

private:
  std::string m_index;
  std::string m_name;
  std::string m_loc;
  Props m_props;
};

#endif
