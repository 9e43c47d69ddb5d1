#include "HSTIntern.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace {

// Shards keep two workers from waiting on each other; each thread also
// remembers the texts it met last, so that the common case takes no lock.
constexpr std::size_t kShards = 32;
constexpr std::size_t kThreadCacheSlots = 1024;

// A look-up is mostly a miss of the processor's caches: an entry carries
// the hash and where the text's characters are, so that a probe reads the
// entry and the characters and nothing else, and the hash is computed once.
struct Entry {
  std::size_t hash = 0;
  const std::string *text = nullptr;
  const char *data = nullptr;
  std::size_t size = 0;

  bool holds(std::string_view other, std::size_t otherHash) const {
    return hash == otherHash && size == other.size() && std::memcmp(data, other.data(), size) == 0;
  }
};

// Open addressing with linear probing, at most half full.
struct Shard {
  std::mutex mutex;
  std::deque<std::string> texts; // stable addresses
  std::vector<Entry> table = std::vector<Entry>(64);
  std::size_t count = 0;

  const std::string &intern(std::string_view text, std::size_t hash) {
    std::size_t mask = table.size() - 1;
    std::size_t at = hash & mask;
    for (; table[at].text; at = (at + 1) & mask) {
      if (table[at].holds(text, hash))
        return *table[at].text;
    }
    const std::string &stored = texts.emplace_back(text);
    table[at] = Entry{hash, &stored, stored.data(), stored.size()};
    if (++count * 2 > table.size())
      grow();
    return stored;
  }

  void grow() {
    std::vector<Entry> bigger(table.size() * 2);
    const std::size_t mask = bigger.size() - 1;
    for (const Entry &entry : table) {
      if (!entry.text)
        continue;
      std::size_t at = entry.hash & mask;
      while (bigger[at].text)
        at = (at + 1) & mask;
      bigger[at] = entry;
    }
    table.swap(bigger);
  }
};

using Pool = std::array<Shard, kShards>;

// Never destroyed: pooled texts are referenced by objects that static
// destructors may still free at exit.
Pool &pool() {
  static Pool *p = new Pool;
  return *p;
}

} // namespace

namespace HSTIntern {

const std::string &get(std::string_view text) {
  if (text.empty())
    return empty();
  thread_local std::array<Entry, kThreadCacheSlots> recent{};
  const std::size_t hash = std::hash<std::string_view>()(text);
  // The table of a shard indexes by the low bits, so the shard takes high ones.
  Entry &slot = recent[(hash >> 12) % kThreadCacheSlots];
  if (slot.text && slot.holds(text, hash))
    return *slot.text;
  Shard &shard = pool()[(hash >> 24) % kShards];
  const std::string *stored;
  {
    std::lock_guard<std::mutex> lock(shard.mutex);
    stored = &shard.intern(text, hash);
  }
  slot = Entry{hash, stored, stored->data(), stored->size()};
  return *stored;
}

const std::string &empty() {
  static const std::string *text = new std::string;
  return *text;
}

std::size_t size() {
  std::size_t total = 0;
  for (Shard &shard : pool()) {
    std::lock_guard<std::mutex> lock(shard.mutex);
    total += shard.count;
  }
  return total;
}

} // namespace HSTIntern
