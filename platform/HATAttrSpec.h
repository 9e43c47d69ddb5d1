// How a property shows itself: its type, whether it can be set, whether a
// property listing shows it, and the hint that tells of its replacement.
#ifndef BOARDLIB_PLATFORM_HATATTRSPEC_H
#define BOARDLIB_PLATFORM_HATATTRSPEC_H

#include <string>

class HATAttrSpec {
public:
  /// The attribute type codes.
  enum Type { Bool = 0, Int = 1, String = 3, StringList = 6 };

  void setAttrType(int type) { m_type = type; }
  int getAttrType() const { return m_type; }
  void setReadOnly(bool readOnly) { m_readOnly = readOnly; }
  bool isReadOnly() const { return m_readOnly; }
  void setVisible(bool visible) { m_visible = visible; }
  bool isVisible() const { return m_visible; }
  /// The name of a type code as a property report shows it.
  static const char *typeName(int type) {
    switch (type) {
    case Bool: return "bool";
    case Int: return "int";
    case String: return "string";
    case StringList: return "string*";
    default: return "unknown";
    }
  }

  /// A deprecation hint, shown by a listing and on use; empty for none.
  std::string m_hint;

private:
  int m_type = String;
  bool m_readOnly = true;
  bool m_visible = true;
};

#endif
