// How a property shows itself: its type, whether it can be set, whether a
// property listing shows it, and the hint that tells of its replacement.
#ifndef BOARDLIB_PLATFORM_HATATTRSPEC_H
#define BOARDLIB_PLATFORM_HATATTRSPEC_H

#include "TclAny.h"

#include <string>
#include <type_traits>
#include <vector>

template <typename V, typename = void> struct HATAttrTypeOf;

class HATAttrSpec {
public:
  /// The attribute type codes.
  enum Type { Bool = 0, Int = 1, String = 3, StringList = 6 };

  void setAttrType(int type) { m_type = type; }
  /// The type of a property whose values are of C++ type \p V, so that the
  /// type a listing shows is the one the getter delivers.
  template <typename V> void setAttrTypeOf() { m_type = HATAttrTypeOf<V>::value; }
  int getAttrType() const { return m_type; }
  void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
  bool isReadOnly() const { return m_readOnly; }
  void setVisible(bool visible) { m_visible = visible; }
  bool isVisible() const { return m_visible; }
  /// The name of a type code as a property report shows it.
  static const char *typeName(int type) {
    switch (type) {
    case Bool:
      return "bool";
    case Int:
      return "int";
    case String:
      return "string";
    case StringList:
      return "string*";
    default:
      return "unknown";
    }
  }

  /// A deprecation hint, shown by a listing and on use; empty for none.
  std::string m_hint;

private:
  int m_type = String;
  bool m_readOnly = true;
  bool m_visible = true;
};

/// The attribute type of a value of C++ type \p V, as HATAttrUtils::setAny
/// stores it: bool a boolean, any other integer an integer, a text a string,
/// a vector of texts or a collection a list. Other types (a float, a map)
/// have none, and a property whose getter returns one does not compile:
/// its getter must first make the value one of these.
template <typename V, typename> struct HATAttrTypeOf {};
template <> struct HATAttrTypeOf<bool> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::Bool;
};
template <typename V>
struct HATAttrTypeOf<
    V, std::enable_if_t<std::is_integral<V>::value && !std::is_same<V, bool>::value>> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::Int;
};
template <> struct HATAttrTypeOf<std::string> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::String;
};
template <> struct HATAttrTypeOf<const char *> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::String;
};
template <> struct HATAttrTypeOf<std::vector<std::string>> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::StringList;
};
template <> struct HATAttrTypeOf<zeb::tcltasks::tcl_collection> {
  static constexpr HATAttrSpec::Type value = HATAttrSpec::StringList;
};

#endif
