#include "HUTGuiEvent.h"

#include <algorithm>

using HUTGuiEvent::detail::ListenerSlot;

void HUTGuiEvent::Connection::disconnect() {
  std::shared_ptr<ListenerSlot> slot = m_slot.lock();
  if (!slot)
    return;
  // Only the first disconnect of a listener goes to the bus.
  if (!slot->live.exchange(false))
    return;
  HUTGuiEventBroker::instance().remove_(slot.get());
}

bool HUTGuiEvent::Connection::connected() const {
  std::shared_ptr<ListenerSlot> slot = m_slot.lock();
  return slot && slot->live.load();
}

HUTGuiEventBroker &HUTGuiEventBroker::instance() {
  static HUTGuiEventBroker broker;
  return broker;
}

HUTGuiEvent::Connection HUTGuiEventBroker::addListener(int type, const std::string &key,
                                                       const std::string &name,
                                                       HUTGuiEvent::Listener listener) {
  auto slot = std::make_shared<ListenerSlot>();
  slot->type = type;
  slot->key = key;
  slot->name = name;
  slot->listener = std::move(listener);
  std::lock_guard<std::mutex> lock(m_mutex);
  m_slots.push_back(slot);
  return HUTGuiEvent::Connection(slot);
}

int HUTGuiEventBroker::dispatch(const HUTGuiEvent::Event &event) {
  const int type = event.getType();
  const std::string key = event.getKey();
  std::vector<std::shared_ptr<ListenerSlot>> hearers;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    for (const auto &slot : m_slots) {
      if (slot->type != type)
        continue;
      if (!slot->key.empty() && slot->key != key)
        continue;
      hearers.push_back(slot);
    }
  }
  int sum = 0;
  for (const auto &slot : hearers) {
    // A listener disconnected by an earlier one of this firing stays quiet.
    if (!slot->live.load() || !slot->listener)
      continue;
    sum += slot->listener(event);
  }
  return sum;
}

std::size_t HUTGuiEventBroker::getListenerCount(int type) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return static_cast<std::size_t>(std::count_if(m_slots.begin(), m_slots.end(),
                                                [type](const std::shared_ptr<ListenerSlot> &slot) {
                                                  return slot->type == type && slot->live.load();
                                                }));
}

void HUTGuiEventBroker::remove_(const ListenerSlot *slot) {
  std::lock_guard<std::mutex> lock(m_mutex);
  m_slots.erase(std::remove_if(m_slots.begin(), m_slots.end(),
                               [slot](const std::shared_ptr<ListenerSlot> &held) {
                                 return held.get() == slot;
                               }),
                m_slots.end());
}
