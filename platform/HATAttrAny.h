// A property value as the interpreters receive it: nothing, a boolean, an
// integer, a text, or a list of texts or of object handles.
#ifndef BOARDLIB_PLATFORM_HATATTRANY_H
#define BOARDLIB_PLATFORM_HATATTRANY_H

#include "TclAny.h"

#include <cstdint>
#include <string>
#include <vector>

class HATAttrAny {
public:
  enum class Kind { Empty, Bool, Int, String, List };

  HATAttrAny() = default;
  explicit HATAttrAny(bool value) { setBool(value); }
  explicit HATAttrAny(std::int64_t value) { setInt(value); }
  explicit HATAttrAny(std::string value) { setString(std::move(value)); }

  void clear();
  void setBool(bool value);
  void setInt(std::int64_t value);
  void setString(std::string value);
  void setList(zeb::tcltasks::tcl_collection list);

  Kind getKind() const { return m_kind; }
  bool isEmpty() const { return m_kind == Kind::Empty; }
  bool getBool() const { return m_bool; }
  std::int64_t getInt() const { return m_int; }
  /// The text of a String value; empty for other kinds.
  const std::string &getString() const { return m_string; }
  const zeb::tcltasks::tcl_collection &getList() const { return m_list; }

  /// The value as a Tcl script would print it: "1"/"0" for a boolean, a
  /// Tcl list (elements quoted as Tcl quotes them) for a list, with objects
  /// shown by their names.
  std::string toString() const;
  bool operator==(const HATAttrAny &other) const;
  bool operator!=(const HATAttrAny &other) const { return !(*this == other); }

private:
  Kind m_kind = Kind::Empty;
  bool m_bool = false;
  std::int64_t m_int = 0;
  std::string m_string;
  zeb::tcltasks::tcl_collection m_list;
};

/// One attribute value kept by itself, as an undo record keeps the value
/// it restores.
class HATAttr : public HATAttrAny {
public:
  using HATAttrAny::HATAttrAny;
  HATAttr() = default;
  HATAttr(const HATAttrAny &value) : HATAttrAny(value) {}
};

namespace HATAttrUtils {
void setAny(HATAttrAny &result, bool value);
void setAny(HATAttrAny &result, int value);
void setAny(HATAttrAny &result, long value);
void setAny(HATAttrAny &result, long long value);
void setAny(HATAttrAny &result, unsigned value);
void setAny(HATAttrAny &result, unsigned long value);
void setAny(HATAttrAny &result, const std::string &value);
void setAny(HATAttrAny &result, const char *value);
void setAny(HATAttrAny &result, const std::vector<std::string> &value);
void setAny(HATAttrAny &result, const zeb::tcltasks::tcl_collection &value);
void setAny(HATAttrAny &result, const HATAttrAny &value);
} // namespace HATAttrUtils

#endif
