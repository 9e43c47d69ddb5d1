// Caches that map a native object to the script handle made for it, one per
// scripting language and class. A scripted class's destructor removes its
// object, so that a handle that outlives the object is seen as stale rather
// than followed to freed memory.
#ifndef BOARDLIB_PLATFORM_NATIVECACHE_H
#define BOARDLIB_PLATFORM_NATIVECACHE_H

#include <functional>
#include <mutex>
#include <unordered_map>

namespace zeb {
namespace detail {

/// Tells the property layer that \p object is being destroyed, so that no
/// change kept for undo still points to it.
void objectGone(const void *object);

/// One cache: native object address to handle. Thread-safe.
class NativeCacheTable {
public:
  using Handle = void *;
  /// Called with the handle of an object that is removed while cached.
  using Invalidator = std::function<void(Handle)>;

  void insert(const void *object, Handle handle) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_map[object] = handle;
  }
  Handle lookup(const void *object) const {
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_map.find(object);
    return it == m_map.end() ? nullptr : it->second;
  }
  bool contains(const void *object) const { return lookup(object) != nullptr; }
  void remove(const void *object) {
    Handle handle = nullptr;
    Invalidator invalidate;
    {
      std::lock_guard<std::mutex> lock(m_mutex);
      auto it = m_map.find(object);
      if (it == m_map.end())
        return;
      handle = it->second;
      m_map.erase(it);
      invalidate = m_invalidator;
    }
    if (invalidate)
      invalidate(handle);
  }
  void forget(const void *object) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_map.erase(object);
  }
  void setInvalidator(Invalidator fn) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_invalidator = std::move(fn);
  }
  std::size_t size() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_map.size();
  }

private:
  mutable std::mutex m_mutex;
  std::unordered_map<const void *, Handle> m_map;
  Invalidator m_invalidator;
};

/// The handles of objects of pointer type \p T for one language; \p Lang
/// only tells the languages apart.
template <typename T, typename Lang> struct native_cache_of {
  static NativeCacheTable &table() {
    static NativeCacheTable t;
    return t;
  }
  static void insert(T object, void *handle) { table().insert(object, handle); }
  static void *lookup(T object) { return table().lookup(object); }
  static bool contains(T object) { return table().contains(object); }
  static void remove(T object) {
    table().remove(object);
    objectGone(object);
  }
  /// Drops the entry without telling the invalidator: the handle itself is
  /// going away.
  static void forget(T object) { table().forget(object); }
};

} // namespace detail

namespace tcltasks {
struct TclLanguage;
/// The Tcl handles of objects of pointer type \p T.
template <typename T> struct native_cache : detail::native_cache_of<T, TclLanguage> {};
} // namespace tcltasks

namespace pyinfra {
struct PythonLanguage;
/// The Python handles of objects of pointer type \p T.
template <typename T> struct py_native_cache : detail::native_cache_of<T, PythonLanguage> {};
} // namespace pyinfra
} // namespace zeb

#endif
