// An ordered map kept as one sorted vector of pairs: the std::map operations
// that the library uses (ordered iteration, find, count, lower_bound,
// operator[], emplace/insert, erase), for the many small maps of a board.
// A vector costs one allocation for all its entries where std::map costs one
// per entry, and is walked without chasing pointers.
//
// Unlike std::map, an insertion or erasure moves the entries after it, so
// iterators and references into the map are invalidated by any change.
//
// A map read in one go from a file can be filled with appendUnsorted and
// settled once with sortKeepLast (or sortKeepFirst), which is what a run of
// operator[] assignments (or of emplace calls) would have left, at the cost
// of one sort.
#ifndef BOARDLIB_PLATFORM_HSTFLATMAP_H
#define BOARDLIB_PLATFORM_HSTFLATMAP_H

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

template <typename Key, typename T, typename Compare = std::less<Key>> class HSTFlatMap {
public:
  using key_type = Key;
  using mapped_type = T;
  // Not pair<const Key, T>: the vector moves its entries around.
  using value_type = std::pair<Key, T>;
  using container_type = std::vector<value_type>;
  using size_type = typename container_type::size_type;
  using iterator = typename container_type::iterator;
  using const_iterator = typename container_type::const_iterator;
  using reverse_iterator = typename container_type::reverse_iterator;
  using const_reverse_iterator = typename container_type::const_reverse_iterator;

  HSTFlatMap() = default;
  HSTFlatMap(std::initializer_list<value_type> entries) {
    for (const value_type &entry : entries)
      emplace(entry.first, entry.second);
  }
  template <typename InputIt> HSTFlatMap(InputIt first, InputIt last) {
    for (; first != last; ++first)
      emplace(first->first, first->second);
  }

  iterator begin() { return m_entries.begin(); }
  iterator end() { return m_entries.end(); }
  const_iterator begin() const { return m_entries.begin(); }
  const_iterator end() const { return m_entries.end(); }
  const_iterator cbegin() const { return m_entries.cbegin(); }
  const_iterator cend() const { return m_entries.cend(); }
  reverse_iterator rbegin() { return m_entries.rbegin(); }
  reverse_iterator rend() { return m_entries.rend(); }
  const_reverse_iterator rbegin() const { return m_entries.rbegin(); }
  const_reverse_iterator rend() const { return m_entries.rend(); }

  bool empty() const { return m_entries.empty(); }
  size_type size() const { return m_entries.size(); }
  void clear() { m_entries.clear(); }
  void reserve(size_type count) { m_entries.reserve(count); }
  size_type capacity() const { return m_entries.capacity(); }
  void shrink_to_fit() { m_entries.shrink_to_fit(); }

  template <typename K> iterator lower_bound(const K &key) {
    return std::lower_bound(m_entries.begin(), m_entries.end(), key, KeyLess());
  }
  template <typename K> const_iterator lower_bound(const K &key) const {
    return std::lower_bound(m_entries.begin(), m_entries.end(), key, KeyLess());
  }
  template <typename K> iterator upper_bound(const K &key) {
    return std::upper_bound(m_entries.begin(), m_entries.end(), key, KeyLess());
  }
  template <typename K> const_iterator upper_bound(const K &key) const {
    return std::upper_bound(m_entries.begin(), m_entries.end(), key, KeyLess());
  }
  template <typename K> iterator find(const K &key) {
    iterator it = lower_bound(key);
    return it != end() && !Compare()(key, it->first) ? it : end();
  }
  template <typename K> const_iterator find(const K &key) const {
    const_iterator it = lower_bound(key);
    return it != end() && !Compare()(key, it->first) ? it : end();
  }
  template <typename K> size_type count(const K &key) const { return find(key) != end() ? 1 : 0; }

  T &operator[](const Key &key) { return try_emplace(key).first->second; }
  T &operator[](Key &&key) { return try_emplace(std::move(key)).first->second; }
  T &at(const Key &key) {
    iterator it = find(key);
    if (it == end())
      throwOutOfRange();
    return it->second;
  }
  const T &at(const Key &key) const {
    const_iterator it = find(key);
    if (it == end())
      throwOutOfRange();
    return it->second;
  }

  /// Like std::map: an existing entry is kept and the arguments are unused.
  template <typename K, typename... Args>
  std::pair<iterator, bool> try_emplace(K &&key, Args &&...args) {
    // Entries often arrive in order, so the end is tried first.
    if (m_entries.empty() || Compare()(m_entries.back().first, key)) {
      m_entries.emplace_back(std::piecewise_construct, std::forward_as_tuple(std::forward<K>(key)),
                             std::forward_as_tuple(std::forward<Args>(args)...));
      return {m_entries.end() - 1, true};
    }
    iterator it = lower_bound(key);
    if (it != end() && !Compare()(key, it->first))
      return {it, false};
    it =
        m_entries.emplace(it, std::piecewise_construct, std::forward_as_tuple(std::forward<K>(key)),
                          std::forward_as_tuple(std::forward<Args>(args)...));
    return {it, true};
  }
  /// try_emplace for a caller that has searched already: \p hint is where
  /// \p key would go (its lower_bound), which spares a second search; a hint
  /// that is not that place is searched for as try_emplace does.
  template <typename K, typename... Args>
  iterator emplace_hint(const_iterator hint, K &&key, Args &&...args) {
    const bool fits = (hint == cend() || Compare()(key, hint->first)) &&
                      (hint == cbegin() || Compare()((hint - 1)->first, key));
    if (!fits)
      return try_emplace(std::forward<K>(key), std::forward<Args>(args)...).first;
    return m_entries.emplace(hint, std::piecewise_construct,
                             std::forward_as_tuple(std::forward<K>(key)),
                             std::forward_as_tuple(std::forward<Args>(args)...));
  }
  template <typename K, typename V> std::pair<iterator, bool> emplace(K &&key, V &&value) {
    return try_emplace(std::forward<K>(key), std::forward<V>(value));
  }
  std::pair<iterator, bool> insert(const value_type &entry) {
    return try_emplace(entry.first, entry.second);
  }
  std::pair<iterator, bool> insert(value_type &&entry) {
    return try_emplace(std::move(entry.first), std::move(entry.second));
  }
  template <typename K, typename V> std::pair<iterator, bool> insert_or_assign(K &&key, V &&value) {
    auto result = try_emplace(std::forward<K>(key));
    result.first->second = std::forward<V>(value);
    return result;
  }

  iterator erase(const_iterator pos) { return m_entries.erase(pos); }
  iterator erase(const_iterator first, const_iterator last) { return m_entries.erase(first, last); }
  template <typename K> size_type erase(const K &key) {
    iterator it = find(key);
    if (it == end())
      return 0;
    m_entries.erase(it);
    return 1;
  }

  // ---- filling in bulk ----

  /// Appends without keeping the order; the map may not be searched until
  /// sortKeepLast or sortKeepFirst has settled it.
  template <typename K, typename V> void appendUnsorted(K &&key, V &&value) {
    m_entries.emplace_back(std::forward<K>(key), std::forward<V>(value));
  }
  /// True when the entries are in strictly increasing key order.
  bool isSettled() const {
    return std::adjacent_find(m_entries.begin(), m_entries.end(),
                              [](const value_type &a, const value_type &b) {
                                return !Compare()(a.first, b.first);
                              }) == m_entries.end();
  }
  /// Sorts; of entries with equal keys the one appended last stays, as a
  /// run of operator[] assignments would have left it.
  void sortKeepLast() { settle_(true); }
  /// Sorts; of entries with equal keys the one appended first stays, as a
  /// run of emplace calls would have left it.
  void sortKeepFirst() { settle_(false); }

  friend bool operator==(const HSTFlatMap &a, const HSTFlatMap &b) {
    return a.m_entries == b.m_entries;
  }
  friend bool operator!=(const HSTFlatMap &a, const HSTFlatMap &b) { return !(a == b); }
  /// The same entries as a std::map, which callers may still build.
  template <typename Alloc>
  friend bool operator==(const std::map<Key, T, Compare, Alloc> &a, const HSTFlatMap &b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](const auto &x, const value_type &y) {
             return x.first == y.first && x.second == y.second;
           });
  }
  template <typename Alloc>
  friend bool operator==(const HSTFlatMap &a, const std::map<Key, T, Compare, Alloc> &b) {
    return b == a;
  }

private:
  struct KeyLess {
    template <typename K> bool operator()(const value_type &entry, const K &key) const {
      return Compare()(entry.first, key);
    }
    template <typename K> bool operator()(const K &key, const value_type &entry) const {
      return Compare()(key, entry.first);
    }
  };

  [[noreturn]] static void throwOutOfRange();

  void settle_(bool keepLast) {
    if (isSettled())
      return;
    auto byKey = [](const value_type &a, const value_type &b) {
      return Compare()(a.first, b.first);
    };
    std::stable_sort(m_entries.begin(), m_entries.end(), byKey);
    // Equal keys now stand in their order of arrival; keep one of each run.
    auto out = m_entries.begin();
    for (auto it = m_entries.begin(); it != m_entries.end();) {
      auto runEnd = it + 1;
      while (runEnd != m_entries.end() && !Compare()(it->first, runEnd->first))
        ++runEnd;
      auto keep = keepLast ? runEnd - 1 : it;
      if (out != keep)
        *out = std::move(*keep);
      ++out;
      it = runEnd;
    }
    m_entries.erase(out, m_entries.end());
  }

  container_type m_entries;
};

#include <stdexcept>

template <typename Key, typename T, typename Compare>
void HSTFlatMap<Key, T, Compare>::throwOutOfRange() {
  throw std::out_of_range("HSTFlatMap::at: no such key");
}

#endif
