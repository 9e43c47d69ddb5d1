// A named value of a board, a component or an interface, with its type and
// bounds, all kept as the text the file gave. Nothing here parses or checks.
#ifndef BOARDLIB_HBOPARAMETER_H
#define BOARDLIB_HBOPARAMETER_H

#include <string>
#include <vector>

class HBOParameter {
public:
  HBOParameter() = default;
  HBOParameter(std::string name, std::string value, std::string valueType, std::string valueMin,
               std::string valueMax, std::string readOnly);
  /// Drops the object from the script caches first.
  ~HBOParameter();
  /// A copy whose name carries \p prefix.
  HBOParameter(const HBOParameter &src, const std::string &prefix);
  HBOParameter(const HBOParameter &) = delete;
  HBOParameter &operator=(const HBOParameter &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getValue() const { return m_value; }
  void setValue(std::string value) { m_value = std::move(value); }
  const std::string &getValueType() const { return m_valueType; }
  void setValueType(std::string valueType) { m_valueType = std::move(valueType); }
  const std::string &getValueMin() const { return m_valueMin; }
  void setValueMin(std::string valueMin) { m_valueMin = std::move(valueMin); }
  const std::string &getValueMax() const { return m_valueMax; }
  void setValueMax(std::string valueMax) { m_valueMax = std::move(valueMax); }
  const std::string &getReadOnly() const { return m_readOnly; }
  void setReadOnly(std::string readOnly) { m_readOnly = std::move(readOnly); }

  /// Appends the minimum and then the maximum, always these two, also when
  /// empty; \p out is not cleared.
  void getSupportedValues(std::vector<std::string> &out) const;

  /// One debug line on standard output, behind \p indent hyphens.
  void display(int indent) const;

private:
  std::string m_name;
  std::string m_value;
  std::string m_valueType;
  std::string m_valueMin;
  std::string m_valueMax;
  std::string m_readOnly;
};

#endif
