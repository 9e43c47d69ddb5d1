// Caches that map a native object to the script handle made for it, one per
// scripting language and class. A scripted class's destructor removes its
// object, so that a handle that outlives the object is seen as stale rather
// than followed to freed memory.
#ifndef BOARDLIB_PLATFORM_NATIVECACHE_H
#define BOARDLIB_PLATFORM_NATIVECACHE_H

#include <boost/thread/locks.hpp>
#include <boost/thread/shared_mutex.hpp>

#include <atomic>
#include <functional>
#include <unordered_map>

namespace zeb {
namespace detail {

/// Tells the property layer that \p object is being destroyed, so that no
/// change kept for undo still points to it.
void objectGone(const void *object);

/// One cache: native object address to handle and back. Thread-safe: one
/// shared mutex per direction, taken native-to-handle first, then
/// handle-to-native, so readers of either direction never wait on each other.
class NativeCacheTable {
public:
  using Handle = void *;
  /// Called with the handle of an object that is removed while cached.
  using Invalidator = std::function<void(Handle)>;
  using Mutex = boost::shared_mutex;

  void insert(const void *object, Handle handle) {
    boost::unique_lock<Mutex> toHandle(m_toHandleMutex);
    boost::unique_lock<Mutex> toObject(m_toObjectMutex);
    auto old = m_toHandle.find(object);
    if (old != m_toHandle.end())
      m_toObject.erase(old->second);
    m_toHandle[object] = handle;
    m_toObject[handle] = object;
    m_count.store(m_toHandle.size(), std::memory_order_release);
  }
  Handle lookup(const void *object) const {
    boost::shared_lock<Mutex> lock(m_toHandleMutex);
    auto it = m_toHandle.find(object);
    return it == m_toHandle.end() ? nullptr : it->second;
  }
  /// The native object a handle was made for, or null.
  const void *lookupObject(Handle handle) const {
    boost::shared_lock<Mutex> lock(m_toObjectMutex);
    auto it = m_toObject.find(handle);
    return it == m_toObject.end() ? nullptr : it->second;
  }
  bool contains(const void *object) const { return lookup(object) != nullptr; }
  /// Drops the object and tells the invalidator its handle: the object is
  /// being destroyed. Does nothing for an object that was never cached.
  void remove(const void *object) {
    // Most objects never get a handle, and a board frees thousands of them
    // at once: an empty cache answers without a lock. An object being
    // destroyed cannot be entered at the same time.
    if (m_count.load(std::memory_order_acquire) == 0)
      return;
    Handle handle = nullptr;
    Invalidator invalidate;
    {
      boost::upgrade_lock<Mutex> read(m_toHandleMutex);
      auto it = m_toHandle.find(object);
      if (it == m_toHandle.end())
        return;
      boost::upgrade_to_unique_lock<Mutex> write(read);
      boost::unique_lock<Mutex> toObject(m_toObjectMutex);
      handle = it->second;
      m_toObject.erase(handle);
      m_toHandle.erase(it);
      m_count.store(m_toHandle.size(), std::memory_order_release);
      invalidate = m_invalidator;
    }
    if (invalidate)
      invalidate(handle);
  }
  /// Drops the entry without telling the invalidator: the handle itself is
  /// going away.
  void forget(const void *object) {
    boost::unique_lock<Mutex> toHandle(m_toHandleMutex);
    boost::unique_lock<Mutex> toObject(m_toObjectMutex);
    auto it = m_toHandle.find(object);
    if (it == m_toHandle.end())
      return;
    m_toObject.erase(it->second);
    m_toHandle.erase(it);
    m_count.store(m_toHandle.size(), std::memory_order_release);
  }
  void setInvalidator(Invalidator fn) {
    boost::unique_lock<Mutex> lock(m_toHandleMutex);
    m_invalidator = std::move(fn);
  }
  std::size_t size() const {
    boost::shared_lock<Mutex> lock(m_toHandleMutex);
    return m_toHandle.size();
  }

private:
  mutable Mutex m_toHandleMutex;
  mutable Mutex m_toObjectMutex;
  std::unordered_map<const void *, Handle> m_toHandle;
  std::unordered_map<Handle, const void *> m_toObject;
  std::atomic<std::size_t> m_count{0};
  Invalidator m_invalidator;
};

/// The handles of objects of pointer type \p T for one language; \p Lang
/// only tells the languages apart.
template <typename T, typename Lang> struct native_cache_of {
  // Never destroyed: objects that die during the process's exit (boards
  // released by other static destructors) still remove themselves here.
  static NativeCacheTable &table() {
    static NativeCacheTable *t = new NativeCacheTable;
    return *t;
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
  static const void *lookupObject(void *handle) { return table().lookupObject(handle); }
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

/// Called by the destructor of every class that scripts can hold: drops
/// \p object from the Tcl and Python caches (telling each handle that it
/// is stale) and from the property layer's undo history. Cheap for an
/// object that never had a handle.
template <typename T> void forgetScriptHandles(T *object) {
  tcltasks::native_cache<T *>::remove(object);
  pyinfra::py_native_cache<T *>::remove(object);
}
} // namespace zeb

#endif
