#include "HSTIntern.h"

#include <array>
#include <deque>
#include <functional>
#include <mutex>
#include <unordered_map>

namespace {

// Shards keep two workers from waiting on each other; each thread also
// remembers the texts it met last, so that the common case takes no lock.
constexpr std::size_t kShards = 32;
constexpr std::size_t kThreadCacheSlots = 1024;

struct Shard {
  std::mutex mutex;
  std::deque<std::string> texts; // stable addresses
  std::unordered_map<std::string_view, const std::string *> index;
};

using Pool = std::array<Shard, kShards>;

// Never destroyed: pooled texts are referenced by objects that static
// destructors may still free at exit.
Pool &pool() {
  static Pool *p = new Pool;
  return *p;
}

const std::string &internSlow(std::string_view text, std::size_t hash) {
  Shard &shard = pool()[(hash >> 10) % kShards];
  std::lock_guard<std::mutex> lock(shard.mutex);
  auto it = shard.index.find(text);
  if (it != shard.index.end())
    return *it->second;
  const std::string &stored = shard.texts.emplace_back(text);
  shard.index.emplace(std::string_view(stored), &stored);
  return stored;
}

} // namespace

namespace HSTIntern {

const std::string &get(std::string_view text) {
  if (text.empty())
    return empty();
  thread_local std::array<const std::string *, kThreadCacheSlots> recent{};
  const std::size_t hash = std::hash<std::string_view>()(text);
  const std::string *&slot = recent[hash % kThreadCacheSlots];
  if (slot && *slot == text)
    return *slot;
  const std::string &stored = internSlow(text, hash);
  slot = &stored;
  return stored;
}

const std::string &empty() {
  static const std::string *text = new std::string;
  return *text;
}

std::size_t size() {
  std::size_t total = 0;
  for (Shard &shard : pool()) {
    std::lock_guard<std::mutex> lock(shard.mutex);
    total += shard.texts.size();
  }
  return total;
}

} // namespace HSTIntern
