// Texts of a document being read, looked up by other texts of it: the
// duplicate checks of pin indexes, locations and port indexes. One block of
// slots serves element after element, where a hash map would take a node
// per entry; the texts themselves stay in the document.
#ifndef BOARDLIB_HBOVIEWTABLE_H
#define BOARDLIB_HBOVIEWTABLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

class HBOViewTable {
public:
  /// Empties the table, with room for \p expected entries.
  void reset(std::size_t expected = 0) {
    if (++m_generation == 0) {
      // After 2^32 resets the old marks could come back: wipe them.
      for (Slot &slot : m_slots)
        slot.generation = 0;
      m_generation = 1;
    }
    m_count = 0;
    if (m_slots.size() < 2 * expected)
      rehash_(2 * expected);
  }

  /// Enters \p value under \p key and gives null; a key already entered keeps
  /// its value, which is given instead.
  const std::string_view *insert(std::string_view key, std::string_view value) {
    if (2 * (m_count + 1) > m_slots.size())
      rehash_(2 * (m_count + 1));
    Slot &slot = find_(key);
    if (slot.generation == m_generation)
      return &slot.value;
    slot = Slot{key, value, m_generation};
    ++m_count;
    return nullptr;
  }

private:
  struct Slot {
    std::string_view key, value;
    std::uint32_t generation = 0;
  };

  // The slot of \p key, or the free one where it would go.
  Slot &find_(std::string_view key) {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t i = std::hash<std::string_view>()(key) & mask;; i = (i + 1) & mask) {
      Slot &slot = m_slots[i];
      if (slot.generation != m_generation || slot.key == key)
        return slot;
    }
  }

  void rehash_(std::size_t atLeast) {
    std::size_t size = 16;
    while (size < atLeast)
      size *= 2;
    std::vector<Slot> old;
    old.swap(m_slots);
    m_slots.resize(size);
    const std::uint32_t live = m_generation;
    m_generation = 1;
    m_count = 0;
    for (const Slot &slot : old)
      if (slot.generation == live)
        insert(slot.key, slot.value);
  }

  std::vector<Slot> m_slots;
  std::size_t m_count = 0;
  std::uint32_t m_generation = 1;
};

#endif
