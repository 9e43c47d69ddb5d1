// The free-form data of a board: a tree of names whose leaves are strings
// and whose inner nodes are maps of the same kind, queried by dotted paths.
// The main use is the board's operating conditions.
#ifndef BOARDLIB_HBOBOARDDATAPROPS_H
#define BOARDLIB_HBOBOARDDATAPROPS_H

#include <boost/any.hpp>

#include <cstddef>
#include <map>
#include <string>

class HBOBoardDataProps {
public:
  /// A value is a std::string (a property) or a DataMap (a group).
  using DataMap = std::map<std::string, boost::any>;
  using StringMap = std::map<std::string, std::string>;

  /// The name of the group that holds the operating conditions.
  static const char *const s_operatingConditions;

  const DataMap &getAllData() const { return m_data; }
  /// Replaces the tree; assigning the tree to itself changes nothing.
  void setData(const DataMap &data);

  /// The value at a dotted path, or null when a part is missing or a part
  /// before the last is no group.
  const boost::any *getData_(const std::string &path) const;
  /// The string at \p path, or an empty string.
  std::string getStrDataProp(const std::string &path) const;
  /// The leaves below the group at \p path, keyed by their dotted path
  /// relative to it; empty when \p path names no group.
  StringMap getMapDataProp(const std::string &path) const;

  /// Whether the operating conditions are there as a group.
  bool hasOperatingConditions() const;
  std::string getStrOperatingCondition(const std::string &key) const;
  StringMap getMapOperatingCondition(const std::string &key) const;
  /// Replaces \p out by the flattened conditions; false without any group.
  bool getOperatingConditions(StringMap &out) const;

  /// The tree as XML-like text for debug output, each line behind
  /// \p indent blanks and nested groups two more.
  std::string asXmlStr(std::size_t indent) const;

private:
  DataMap m_data;
};

#endif
