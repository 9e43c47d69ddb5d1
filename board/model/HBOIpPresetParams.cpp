#include "HBOIpPresetParams.h"

#include "HSTIntern.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::uint32_t kDropped = UINT32_MAX;

// Eight bytes of \p text from \p at, the first the most significant, and
// zeros past its end: keys compare as the texts' bytes there do.
std::uint64_t keyAt(std::string_view text, std::size_t at) {
  if (at + 8 <= text.size()) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + at, sizeof(word));
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    word = __builtin_bswap64(word);
#endif
    return word;
  }
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    key <<= 8;
    if (at + i < text.size())
      key |= static_cast<unsigned char>(text[at + i]);
  }
  return key;
}

// Values worth sharing between boards: a word of letters (true, false,
// enumerations such as AUTO or Disabled) or a number below a thousand. Such a
// set stays small however many boards there are; anything else (other
// numbers, paths, lists) can be one board's own and is kept with the preset.
bool isCommonValue(std::string_view value) {
  if (value.empty() || value.size() > 12)
    return false;
  if (std::all_of(value.begin(), value.end(), isLetter))
    return true;
  return value.size() <= 3 && std::all_of(value.begin(), value.end(), isDigit) &&
         (value.size() == 1 || value[0] != '0');
}

} // namespace

// ---- Builder ----

void HBOIpPresetParams::Builder::clear() {
  m_items.clear();
  m_text.clear();
}

HBOIpPresetParams::Builder::Text HBOIpPresetParams::Builder::local_(std::string_view text) {
  Text out{nullptr, static_cast<std::uint32_t>(m_text.size()),
           static_cast<std::uint32_t>(text.size())};
  m_text.append(text);
  return out;
}

HBOIpPresetParams::Builder::Text HBOIpPresetParams::Builder::value_(std::string_view text) {
  if (text.empty())
    return Text{&HSTIntern::empty(), 0, 0};
  if (isCommonValue(text))
    return Text{&HSTIntern::get(text), 0, 0};
  return local_(text);
}

std::string_view HBOIpPresetParams::Builder::view_(const Text &text) const {
  if (text.pooled)
    return *text.pooled;
  return std::string_view(m_text).substr(text.offset, text.size);
}

// Pooled later, all at once: the pool is faster with many names at a time.
void HBOIpPresetParams::Builder::addPooledName(std::string_view name, std::string_view value) {
  Text nameText = local_(name);
  m_items.push_back(Item{nameText, value_(value), true});
}

void HBOIpPresetParams::Builder::addLocalName(std::string_view name, std::string_view value) {
  Text nameText = local_(name);
  m_items.push_back(Item{nameText, value_(value), false});
}

void HBOIpPresetParams::Builder::poolNames_() {
  m_toPool.clear();
  for (const Item &item : m_items)
    if (item.poolName && !item.name.pooled)
      m_toPool.push_back(view_(item.name));
  if (m_toPool.empty())
    return;
  m_pooled.resize(m_toPool.size());
  HSTIntern::getMany(m_toPool.data(), m_toPool.size(), m_pooled.data());
  std::size_t next = 0;
  for (Item &item : m_items)
    if (item.poolName && !item.name.pooled)
      item.name = Text{m_pooled[next++], 0, 0};
}

void HBOIpPresetParams::Builder::append(const Builder &other) {
  const auto shift = static_cast<std::uint32_t>(m_text.size());
  m_text += other.m_text;
  for (Item item : other.m_items) {
    if (!item.name.pooled)
      item.name.offset += shift;
    if (!item.value.pooled)
      item.value.offset += shift;
    m_items.push_back(item);
  }
}

// ---- the map ----

HBOIpPresetParams::const_iterator HBOIpPresetParams::find(std::string_view name) const {
  const Slot *first = m_slots;
  const Slot *last = m_slots + m_size;
  const Slot *it = std::lower_bound(first, last, name, [](const Slot &slot, std::string_view key) {
    return std::string_view(*slot.name) < key;
  });
  if (it != last && std::string_view(*it->name) == name)
    return const_iterator(it);
  return end();
}

void HBOIpPresetParams::release_() {
  if (!m_slots)
    return;
  auto *texts = reinterpret_cast<std::string *>(m_slots + m_size);
  for (std::uint32_t i = 0; i < m_localTexts; ++i)
    texts[i].~basic_string();
  ::operator delete(m_slots);
  m_slots = nullptr;
  m_size = 0;
  m_localTexts = 0;
}

void HBOIpPresetParams::assign(Builder &builder) {
  using Item = Builder::Item;
  builder.poolNames_();
  const std::vector<Item> &items = builder.m_items;
  // Sorted by name, and equal names by their order of arrival, so that the
  // last of each run is the value that stays. A preset's names mostly share
  // a long start ("CONFIG."), so the sort compares the sixteen bytes after
  // the start that all of them share as two numbers, and only names equal
  // in those bytes as texts.
  std::vector<std::string_view> &names = builder.m_names;
  names.resize(items.size());
  for (std::size_t i = 0; i < items.size(); ++i)
    names[i] = builder.view_(items[i].name);
  std::size_t shared = names.empty() ? 0 : names[0].size();
  for (std::size_t i = 1; i < names.size() && shared > 0; ++i) {
    const std::size_t most = std::min(shared, names[i].size());
    std::size_t same = 0;
    while (same < most && names[0][same] == names[i][same])
      ++same;
    shared = same;
  }
  std::vector<Builder::SortKey> &keys = builder.m_keys;
  keys.resize(items.size());
  for (std::uint32_t i = 0; i < items.size(); ++i)
    keys[i] = Builder::SortKey{keyAt(names[i], shared), keyAt(names[i], shared + 8), i};
  const std::size_t keyed = shared + 16;
  std::sort(keys.begin(), keys.end(), [&](const Builder::SortKey &a, const Builder::SortKey &b) {
    if (a.head != b.head)
      return a.head < b.head;
    if (a.tail != b.tail)
      return a.tail < b.tail;
    const std::string_view nameA = names[a.index];
    const std::string_view nameB = names[b.index];
    // Zeros stand for the bytes past a name's end, so only names longer than
    // the keyed bytes are known equal in them.
    const int cmp = nameA.size() > keyed && nameB.size() > keyed
                        ? nameA.substr(keyed).compare(nameB.substr(keyed))
                        : nameA.compare(nameB);
    return cmp < 0 || (cmp == 0 && a.index < b.index);
  });
  std::vector<std::uint32_t> &order = builder.m_order;
  order.resize(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i)
    order[i] = keys[i].index;
  std::size_t kept = 0;
  std::size_t localTexts = 0;
  for (std::size_t i = 0; i < order.size(); ++i) {
    // Names whose keys differ differ; a name is dropped for the next one of
    // the same name, which came later.
    if (i + 1 < order.size() && keys[i].head == keys[i + 1].head &&
        keys[i].tail == keys[i + 1].tail && names[order[i]] == names[order[i + 1]]) {
      order[i] = kDropped;
      continue;
    }
    ++kept;
    localTexts += (items[order[i]].name.pooled ? 0 : 1) + (items[order[i]].value.pooled ? 0 : 1);
  }

  release_();
  if (kept == 0)
    return;
  static_assert(sizeof(Slot) % alignof(std::string) == 0, "the texts follow the slots unpadded");
  void *block = ::operator new(kept * sizeof(Slot) + localTexts * sizeof(std::string));
  auto *slots = static_cast<Slot *>(block);
  auto *texts = reinterpret_cast<std::string *>(slots + kept);
  m_slots = slots;
  m_size = static_cast<std::uint32_t>(kept);
  // Counted as they are made: a copy that throws leaves a block that
  // release_ can take apart.
  m_localTexts = 0;
  auto textOf = [&](const Builder::Text &text) -> const std::string * {
    if (text.pooled)
      return text.pooled;
    std::string *made = new (texts + m_localTexts) std::string(builder.view_(text));
    ++m_localTexts;
    return made;
  };
  try {
    Slot *slot = slots;
    for (std::uint32_t index : order) {
      if (index == kDropped)
        continue;
      const std::string *name = textOf(items[index].name);
      const std::string *value = textOf(items[index].value);
      new (slot++) Slot{name, value};
    }
  } catch (...) {
    release_();
    throw;
  }
}

void HBOIpPresetParams::appendTo(Builder &builder) const {
  const auto *texts = reinterpret_cast<const std::string *>(m_slots + m_size);
  auto isLocal = [&](const std::string *text) {
    return text >= texts && text < texts + m_localTexts;
  };
  for (const Slot *slot = m_slots; slot != m_slots + m_size; ++slot) {
    Builder::Text name =
        isLocal(slot->name) ? builder.local_(*slot->name) : Builder::Text{slot->name, 0, 0};
    Builder::Text value =
        isLocal(slot->value) ? builder.local_(*slot->value) : Builder::Text{slot->value, 0, 0};
    builder.m_items.push_back(Builder::Item{name, value, false});
  }
}
