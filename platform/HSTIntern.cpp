#include "HSTIntern.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <vector>

namespace {

// Shards keep two workers from waiting on each other; each thread also
// remembers the texts it met last, so that the common case takes no lock.
constexpr std::size_t kShards = 32;
constexpr std::size_t kThreadCacheSlots = 1024;

inline std::uint64_t load64(const char *p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof(word));
  return word;
}

inline std::uint64_t load32(const char *p) {
  std::uint32_t word;
  std::memcpy(&word, p, sizeof(word));
  return word;
}

// Whether \p size bytes at \p a and \p b are equal. Pooled texts are mostly
// short names, for which a call to memcmp costs more than the compare.
inline bool sameBytes(const char *a, const char *b, std::size_t size) {
  if (size >= 8) {
    for (std::size_t at = 0; at + 8 < size; at += 8)
      if (load64(a + at) != load64(b + at))
        return false;
    return load64(a + size - 8) == load64(b + size - 8);
  }
  if (size >= 4)
    return load32(a) == load32(b) && load32(a + size - 4) == load32(b + size - 4);
  for (std::size_t at = 0; at < size; ++at)
    if (a[at] != b[at])
      return false;
  return true;
}

// A look-up is mostly a miss of the processor's caches: an entry of a
// thread's cache carries the hash and where the text's characters are, so
// that a probe reads the entry and the characters and nothing else, and the
// hash is computed once.
struct Entry {
  std::size_t hash = 0;
  const std::string *text = nullptr;
  const char *data = nullptr;
  std::size_t size = 0;

  bool holds(std::string_view other, std::size_t otherHash) const {
    return hash == otherHash && size == other.size() && sameBytes(data, other.data(), size);
  }
};

// A shard's entry fills one cache line and holds the start of its text, so
// that the probe for a name of up to kInline characters, the usual case,
// reads that one line.
constexpr std::size_t kInline = 32;

struct alignas(64) Slot {
  std::size_t hash = 0;
  const std::string *text = nullptr;
  const char *data = nullptr;
  std::size_t size = 0;
  char head[kInline] = {};

  Slot() = default;
  Slot(std::size_t h, const std::string &stored)
      : hash(h), text(&stored), data(stored.data()), size(stored.size()) {
    std::memcpy(head, data, std::min(size, kInline));
  }
  bool holds(std::string_view other, std::size_t otherHash) const {
    if (hash != otherHash || size != other.size())
      return false;
    if (size <= kInline)
      return sameBytes(head, other.data(), size);
    return sameBytes(head, other.data(), kInline) &&
           sameBytes(data + kInline, other.data() + kInline, size - kInline);
  }
};

// Open addressing with linear probing, at most three quarters full: an entry
// is a whole cache line, and a probe that runs on mostly reads the next one.
struct Shard {
  std::mutex mutex;
  std::deque<std::string> texts; // stable addresses
  std::vector<Slot> table = std::vector<Slot>(64);
  std::size_t count = 0;
  // Where the table is, for prefetching without the lock: a prefetch of a
  // table that has just been replaced only wastes a fetch.
  std::atomic<const Slot *> published{table.data()};
  std::atomic<std::size_t> publishedMask{table.size() - 1};

  void prefetch(std::size_t hash) const {
    const Slot *slots = published.load(std::memory_order_relaxed);
    __builtin_prefetch(slots + (hash & publishedMask.load(std::memory_order_relaxed)));
  }

  /// The entry of \p text, made if need be; a copy, as the table may move.
  Slot intern(std::string_view text, std::size_t hash) {
    std::size_t mask = table.size() - 1;
    std::size_t at = hash & mask;
    for (; table[at].text; at = (at + 1) & mask) {
      if (table[at].holds(text, hash))
        return table[at];
    }
    table[at] = Slot(hash, texts.emplace_back(text));
    Slot made = table[at];
    if (++count * 4 > table.size() * 3)
      grow();
    return made;
  }

  void grow() {
    std::vector<Slot> bigger(table.size() * 2);
    const std::size_t mask = bigger.size() - 1;
    for (const Slot &slot : table) {
      if (!slot.text)
        continue;
      std::size_t at = slot.hash & mask;
      while (bigger[at].text)
        at = (at + 1) & mask;
      bigger[at] = slot;
    }
    table.swap(bigger);
    publishedMask.store(table.size() - 1, std::memory_order_relaxed);
    published.store(table.data(), std::memory_order_relaxed);
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

namespace {

using ThreadCache = std::array<Entry, kThreadCacheSlots>;

ThreadCache &threadCache() {
  thread_local ThreadCache recent{};
  return recent;
}

// The pool hashes every text it is asked for, most of them short names, so
// the hash reads eight bytes at a time and mixes each pair of words with one
// wide multiplication, whose high and low halves folded together let every
// input bit reach every output bit. The table, the thread's cache and the
// choice of shard each take other bits of the result.
constexpr std::uint64_t kMix0 = 0xa0761d6478bd642full;
constexpr std::uint64_t kMix1 = 0xe7037ed1a0b428dbull;
constexpr std::uint64_t kMix2 = 0x8ebc6af09c88c6e3ull;

inline std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
  const unsigned __int128 product = static_cast<unsigned __int128>(a) * b;
  return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
}

inline std::size_t hashOf(std::string_view text) {
  const char *p = text.data();
  std::size_t left = text.size();
  std::uint64_t h = kMix0 ^ static_cast<std::uint64_t>(left);
  for (; left > 16; p += 16, left -= 16)
    h = mix(load64(p) ^ kMix1, load64(p + 8) ^ h);
  // The last one to sixteen bytes, in two words that may overlap: the length
  // is in the hash already, so overlapping reads tell texts apart.
  std::uint64_t a = 0;
  std::uint64_t b = 0;
  if (left > 8) {
    a = load64(p);
    b = load64(p + left - 8);
  } else if (left >= 4) {
    a = load32(p);
    b = load32(p + left - 4);
  } else if (left > 0) {
    const auto byte = [p](std::size_t i) {
      return static_cast<std::uint64_t>(static_cast<unsigned char>(p[i]));
    };
    a = (byte(0) << 16) | (byte(left >> 1) << 8) | byte(left - 1);
  }
  h = mix(a ^ kMix1, b ^ h);
  return static_cast<std::size_t>(mix(h ^ kMix2, h ^ kMix0));
}
// The table of a shard indexes by the low bits, so the others take high ones.
Entry &cacheSlot(ThreadCache &cache, std::size_t hash) {
  return cache[(hash >> 12) % kThreadCacheSlots];
}
Shard &shardOf(std::size_t hash) { return pool()[(hash >> 24) % kShards]; }

const std::string &lookUp(std::string_view text, std::size_t hash, Entry &cached) {
  if (cached.text && cached.holds(text, hash))
    return *cached.text;
  Shard &shard = shardOf(hash);
  Slot found;
  {
    std::lock_guard<std::mutex> lock(shard.mutex);
    found = shard.intern(text, hash);
  }
  cached = Entry{hash, found.text, found.data, found.size};
  return *found.text;
}

} // namespace

const std::string &get(std::string_view text) {
  if (text.empty())
    return empty();
  const std::size_t hash = hashOf(text);
  return lookUp(text, hash, cacheSlot(threadCache(), hash));
}

void getMany(const std::string_view *texts, std::size_t count, const std::string **out) {
  ThreadCache &cache = threadCache();
  // In rounds, so that the hashes stay on the stack and the fetches of one
  // round are still in the caches when they are read.
  constexpr std::size_t kRound = 32;
  std::size_t hashes[kRound];
  for (std::size_t start = 0; start < count; start += kRound) {
    const std::size_t end = std::min(count, start + kRound);
    for (std::size_t i = start; i < end; ++i) {
      hashes[i - start] = hashOf(texts[i]);
      shardOf(hashes[i - start]).prefetch(hashes[i - start]);
    }
    for (std::size_t i = start; i < end; ++i)
      out[i] = texts[i].empty()
                   ? &empty()
                   : &lookUp(texts[i], hashes[i - start], cacheSlot(cache, hashes[i - start]));
  }
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
