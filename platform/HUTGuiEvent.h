// The event bus of the suite's user interface, as far as the board layer
// uses it: services announce changes as typed events, and whoever cares adds
// a listener for a type number. Listeners run on the thread that fires.
//
// An event has a type number, says whether it comes before or after the
// change it announces, may carry a key that narrows who hears it, and
// carries one datum. The listeners' results are added up and the sum is what
// firing returns: a listener that has nothing to say returns 0, so firing an
// event that nobody hears gives 0.
#ifndef BOARDLIB_PLATFORM_HUTGUIEVENT_H
#define BOARDLIB_PLATFORM_HUTGUIEVENT_H

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

class HUTGuiEventBroker;

namespace HUTGuiEvent {

/// Type numbers of the events known here. The content-store numbers belong
/// to that service; listeners of the board layer only react to them.
enum Type : int {
  ContentStoreInstall = 603,
  ContentStoreUninstall = 604,
  ContentStoreUpdate = 605,
  BoardCatalogModify = 609,
};

/// What every listener is handed.
class Event {
public:
  virtual ~Event() = default;
  virtual int getType() const = 0;
  virtual bool isPreEvent() const { return false; }
  virtual bool isPostEvent() const { return false; }
  /// Empty for an event without a key, which every listener of its type hears.
  virtual std::string getKey() const { return std::string(); }
};

namespace detail {

/// The template of the concrete events: one datum of type \p Data, fixed at
/// construction. A concrete event derives from it and answers getType and,
/// where it applies, isPreEvent, isPostEvent and getKey.
template <typename Data> class gui_native_event : public Event {
public:
  using data_type = Data;
  explicit gui_native_event(Data data) : m_data(std::move(data)) {}
  const Data &getData() const { return m_data; }

private:
  Data m_data;
};

} // namespace detail

using Listener = std::function<int(const Event &)>;

namespace detail {
/// One added listener; shared by the bus and the handles.
struct ListenerSlot {
  int type = 0;
  std::string key;
  std::string name;
  Listener listener;
  std::atomic<bool> live{true};
};
} // namespace detail

/// The content-store events: the datum is the path of what changed, which
/// the board layer does not look at.
template <int TypeNumber, bool Post>
class ContentStoreEvent : public detail::gui_native_event<std::string> {
public:
  explicit ContentStoreEvent(std::string path) : gui_native_event(std::move(path)) {}
  int getType() const override { return TypeNumber; }
  bool isPreEvent() const override { return !Post; }
  bool isPostEvent() const override { return Post; }
};
using ContentStoreInstallPreEvent = ContentStoreEvent<ContentStoreInstall, false>;
using ContentStoreInstallPostEvent = ContentStoreEvent<ContentStoreInstall, true>;
using ContentStoreUninstallPreEvent = ContentStoreEvent<ContentStoreUninstall, false>;
using ContentStoreUninstallPostEvent = ContentStoreEvent<ContentStoreUninstall, true>;
using ContentStoreUpdatePreEvent = ContentStoreEvent<ContentStoreUpdate, false>;
using ContentStoreUpdatePostEvent = ContentStoreEvent<ContentStoreUpdate, true>;

/// The handle of one listener. Copies share the listener: disconnecting one
/// disconnects them all. Letting a handle go does not disconnect.
class Connection {
public:
  Connection() = default;
  /// Removes the listener from the bus; it is not called from then on, even
  /// by a firing already under way. A second call does nothing.
  void disconnect();
  bool connected() const;

private:
  friend class ::HUTGuiEventBroker;
  explicit Connection(std::weak_ptr<detail::ListenerSlot> slot) : m_slot(std::move(slot)) {}
  std::weak_ptr<detail::ListenerSlot> m_slot;
};

/// Builds an event of class \p E around \p data and hands it to every
/// listener of its type and key, in the order in which they were added.
/// Returns the sum of their results.
template <typename E> int fire(typename E::data_type data);

} // namespace HUTGuiEvent

class HUTGuiEventBroker {
public:
  /// The one bus of the process.
  static HUTGuiEventBroker &instance();

  /// Adds \p listener for events of \p type. A listener with a \p key hears
  /// only events of that key; one without hears every event of the type.
  /// \p name says who listens, for debugging only.
  HUTGuiEvent::Connection addListener(int type, const std::string &key, const std::string &name,
                                      HUTGuiEvent::Listener listener);

  /// Calls the listeners of \p event outside the bus's lock, so that a
  /// listener may fire events and add or remove listeners itself. Listeners
  /// added during a firing are not called by it.
  int dispatch(const HUTGuiEvent::Event &event);

  /// How many listeners are connected for \p type.
  std::size_t getListenerCount(int type) const;

  HUTGuiEventBroker(const HUTGuiEventBroker &) = delete;
  HUTGuiEventBroker &operator=(const HUTGuiEventBroker &) = delete;

private:
  friend class HUTGuiEvent::Connection;
  HUTGuiEventBroker() = default;
  void remove_(const HUTGuiEvent::detail::ListenerSlot *slot);

  mutable std::mutex m_mutex;
  std::vector<std::shared_ptr<HUTGuiEvent::detail::ListenerSlot>> m_slots;
};

template <typename E> int HUTGuiEvent::fire(typename E::data_type data) {
  const E event(std::move(data));
  return HUTGuiEventBroker::instance().dispatch(event);
}

#endif
