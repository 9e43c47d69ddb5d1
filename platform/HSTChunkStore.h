// Objects of one type kept in a few large blocks instead of one allocation
// each, and destroyed with the store: for the many small records that one
// owner makes by the hundred (a component's pins) and that live exactly as
// long as it does.
//
// Addresses are stable. An object may be destroyed early; its storage stays
// with the store and is not reused, which suits records that are replaced
// rarely and only while they are read in.
#ifndef BOARDLIB_PLATFORM_HSTCHUNKSTORE_H
#define BOARDLIB_PLATFORM_HSTCHUNKSTORE_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

template <typename T> class HSTChunkStore {
public:
  HSTChunkStore() = default;
  ~HSTChunkStore() { clear(); }
  HSTChunkStore(const HSTChunkStore &) = delete;
  HSTChunkStore &operator=(const HSTChunkStore &) = delete;

  /// Makes room for \p count more objects in one block, when the current
  /// block cannot take them.
  void reserve(std::size_t count) {
    if (count == 0)
      return;
    if (m_chunks.empty() || m_chunks.back().capacity - m_chunks.back().used < count)
      addChunk_(std::max(count, nextCapacity_()));
  }

  template <typename... Args> T *create(Args &&...args) {
    if (m_chunks.empty() || m_chunks.back().used == m_chunks.back().capacity)
      addChunk_(nextCapacity_());
    Chunk &chunk = m_chunks.back();
    T *object = new (&chunk.slots[chunk.used]) T(std::forward<Args>(args)...);
    ++chunk.used;
    ++m_live;
    return object;
  }

  /// Destroys \p object, which was made here and is still alive.
  void destroy(T *object) {
    object->~T();
    m_destroyed.push_back(object);
    --m_live;
  }

  /// The number of objects alive.
  std::size_t size() const { return m_live; }

  /// True when \p object lies in this store's storage.
  bool owns(const T *object) const {
    for (const Chunk &chunk : m_chunks) {
      const T *first = reinterpret_cast<const T *>(chunk.slots.get());
      if (object >= first && object < first + chunk.used)
        return true;
    }
    return false;
  }

  /// Destroys every object still alive and frees the storage.
  void clear() {
    std::sort(m_destroyed.begin(), m_destroyed.end());
    for (Chunk &chunk : m_chunks) {
      T *first = reinterpret_cast<T *>(chunk.slots.get());
      for (std::size_t i = 0; i < chunk.used; ++i)
        if (!std::binary_search(m_destroyed.begin(), m_destroyed.end(), first + i))
          first[i].~T();
    }
    m_chunks.clear();
    m_destroyed.clear();
    m_live = 0;
  }

private:
  struct alignas(T) Slot {
    unsigned char bytes[sizeof(T)];
  };
  struct Chunk {
    std::unique_ptr<Slot[]> slots;
    std::size_t capacity;
    std::size_t used;
  };

  // Blocks double from a small first one, so that an owner of a few objects
  // wastes little and one of thousands makes few blocks.
  std::size_t nextCapacity_() const {
    if (m_chunks.empty())
      return 4;
    return std::max<std::size_t>(4, std::min<std::size_t>(2 * m_chunks.back().capacity, 256));
  }

  void addChunk_(std::size_t capacity) {
    m_chunks.push_back(Chunk{std::unique_ptr<Slot[]>(new Slot[capacity]), capacity, 0});
  }

  std::vector<Chunk> m_chunks;
  std::vector<T *> m_destroyed; // rare: objects replaced while read in
  std::size_t m_live = 0;
};

#endif
