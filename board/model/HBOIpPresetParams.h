// The parameters of one preset: name and value texts, in name order, a name
// at most once.
//
// A board's preset file holds thousands of parameters, most of them a name
// from the IPs' vocabulary and a short value, so the map is built in one go
// from a Builder and kept in one block: a sorted array of two pointers per
// entry, followed by the texts that belong to this preset alone. Parameter
// names and the values that recur everywhere (true, false, small numbers,
// enumeration words) point into the process-wide pool instead (HSTIntern).
// Numbers, file paths and the Tcl lists of hierarchical parameters are
// local, so they go with their preset.
//
// Iteration yields entries whose first and second are const std::string &,
// as the pairs of a std::map<std::string, std::string> read.
#ifndef BOARDLIB_HBOIPPRESETPARAMS_H
#define BOARDLIB_HBOIPPRESETPARAMS_H

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

class HBOIpPresetParams {
  struct Slot {
    const std::string *name;
    const std::string *value;
  };

public:
  struct Entry {
    const std::string &first;
    const std::string &second;
  };

  class const_iterator {
  public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = Entry;
    using reference = Entry;
    using difference_type = std::ptrdiff_t;
    struct pointer {
      Entry entry;
      const Entry *operator->() const { return &entry; }
    };

    const_iterator() = default;
    Entry operator*() const { return {*m_slot->name, *m_slot->value}; }
    pointer operator->() const { return {**this}; }
    const_iterator &operator++() {
      ++m_slot;
      return *this;
    }
    const_iterator operator++(int) {
      const_iterator old = *this;
      ++m_slot;
      return old;
    }
    const_iterator &operator--() {
      --m_slot;
      return *this;
    }
    const_iterator operator--(int) {
      const_iterator old = *this;
      --m_slot;
      return old;
    }
    friend bool operator==(const_iterator a, const_iterator b) { return a.m_slot == b.m_slot; }
    friend bool operator!=(const_iterator a, const_iterator b) { return a.m_slot != b.m_slot; }

  private:
    friend class HBOIpPresetParams;
    explicit const_iterator(const Slot *slot) : m_slot(slot) {}
    const Slot *m_slot = nullptr;
  };
  using iterator = const_iterator;
  using size_type = std::size_t;

  /// Collects entries in file order; reused from one preset to the next, so
  /// that a read allocates for its texts once, not once per parameter.
  class Builder {
  public:
    void clear();
    bool empty() const { return m_items.empty(); }
    /// \p name is pooled: only names from a vocabulary shared by many
    /// boards may come this way.
    void addPooledName(std::string_view name, std::string_view value);
    /// \p name is kept with the preset.
    void addLocalName(std::string_view name, std::string_view value);
    /// The entries of \p other after these.
    void append(const Builder &other);

  private:
    friend class HBOIpPresetParams;
    struct Text {
      const std::string *pooled; // or, when null, the range in m_text
      std::uint32_t offset;
      std::uint32_t size;
    };
    struct Item {
      Text name;
      Text value;
      bool poolName; // and the name is still in m_text
    };
    Text local_(std::string_view text);
    Text value_(std::string_view text);
    std::string_view view_(const Text &text) const;

    std::vector<Item> m_items;
    std::string m_text;
    void poolNames_();

    struct SortKey {
      std::uint64_t head; // the bytes after the names' shared start
      std::uint64_t tail; // and the eight after those
      std::uint32_t index;
    };
    std::vector<SortKey> m_keys; // scratch of assign
    std::vector<std::string_view> m_names;
    std::vector<std::uint32_t> m_order;
    std::vector<std::string_view> m_toPool;
    std::vector<const std::string *> m_pooled;
  };

  HBOIpPresetParams() = default;
  ~HBOIpPresetParams() { release_(); }
  HBOIpPresetParams(const HBOIpPresetParams &) = delete;
  HBOIpPresetParams &operator=(const HBOIpPresetParams &) = delete;

  const_iterator begin() const { return const_iterator(m_slots); }
  const_iterator end() const { return const_iterator(m_slots + m_size); }
  bool empty() const { return m_size == 0; }
  size_type size() const { return m_size; }
  const_iterator find(std::string_view name) const;
  size_type count(std::string_view name) const { return find(name) != end() ? 1 : 0; }

  /// Replaces the entries with those of \p builder, sorted by name; of a
  /// name given more than once the last value stays.
  void assign(Builder &builder);
  /// Adds the entries, in name order, to \p builder.
  void appendTo(Builder &builder) const;

private:
  void release_();

  Slot *m_slots = nullptr;
  std::uint32_t m_size = 0;
  std::uint32_t m_localTexts = 0;
};

#endif
