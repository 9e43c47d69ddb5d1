// What a scripting interpreter holds for a native object: the object's
// address and its pointer type. Both interpreters (Tcl and Python) wrap one
// of these; the property registry and the board commands work on it alone,
// so that neither needs an interpreter to be present.
#ifndef BOARDLIB_PLATFORM_TCLANY_H
#define BOARDLIB_PLATFORM_TCLANY_H

#include <string>
#include <typeinfo>
#include <vector>

namespace zeb {
namespace tcltasks {

/// A handle: a native object of a registered class, with its pointer type.
struct tclany {
  const std::type_info *type = nullptr;
  void *object = nullptr;

  tclany() = default;
  tclany(const std::type_info &t, void *o) : type(&t), object(o) {}
  /// The handle of \p object, typed as \p T (a pointer type).
  template <typename T> static tclany of(T object) {
    return tclany(typeid(T), const_cast<void *>(static_cast<const void *>(object)));
  }
  bool empty() const { return type == nullptr || object == nullptr; }
  /// The run-time name of the handle's type; "*" for a handle without one,
  /// a name that matches no class.
  const char *typeName() const { return type ? type->name() : "*"; }
  bool operator==(const tclany &other) const {
    return object == other.object &&
           (type == other.type || (type && other.type && *type == *other.type));
  }
  bool operator!=(const tclany &other) const { return !(*this == other); }
};

/// A list as the interpreters see it: either texts or handles, never both.
class tcl_collection {
public:
  void append(std::string text) { m_strings.push_back(std::move(text)); }
  void append(const tclany &object) { m_objects.push_back(object); }
  bool holdsObjects() const { return !m_objects.empty(); }
  std::size_t size() const { return m_strings.size() + m_objects.size(); }
  bool empty() const { return size() == 0; }
  const std::vector<std::string> &strings() const { return m_strings; }
  const std::vector<tclany> &objects() const { return m_objects; }

private:
  std::vector<std::string> m_strings;
  std::vector<tclany> m_objects;
};

} // namespace tcltasks
} // namespace zeb

#endif
