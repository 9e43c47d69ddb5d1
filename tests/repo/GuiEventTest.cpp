#include "HUTGuiEvent.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class KeyedEvent : public HUTGuiEvent::detail::gui_native_event<int> {
public:
  explicit KeyedEvent(int value) : gui_native_event(value) {}
  int getType() const override { return 7001; }
  std::string getKey() const override { return getData() % 2 ? "odd" : "even"; }
};

TEST(GuiEvent, ListenersOfTheTypeAndKeyHearAndTheirResultsAddUp) {
  HUTGuiEventBroker &bus = HUTGuiEventBroker::instance();
  std::vector<std::string> heard;
  auto any = bus.addListener(7001, "", "", [&](const HUTGuiEvent::Event &e) {
    heard.push_back("any " + std::to_string(static_cast<const KeyedEvent &>(e).getData()));
    return 1;
  });
  auto odd = bus.addListener(7001, "odd", "test", [&](const HUTGuiEvent::Event &) {
    heard.push_back("odd");
    return 10;
  });
  auto other = bus.addListener(7002, "", "", [&](const HUTGuiEvent::Event &) {
    heard.push_back("other type");
    return 100;
  });

  EXPECT_EQ(11, HUTGuiEvent::fire<KeyedEvent>(3));
  EXPECT_EQ(1, HUTGuiEvent::fire<KeyedEvent>(4));
  EXPECT_EQ((std::vector<std::string>{"any 3", "odd", "any 4"}), heard);

  any.disconnect();
  odd.disconnect();
  other.disconnect();
  EXPECT_EQ(0, HUTGuiEvent::fire<KeyedEvent>(5));
  EXPECT_EQ(0u, bus.getListenerCount(7001));
}

TEST(GuiEvent, DisconnectTakesEffectInsideAFiring) {
  HUTGuiEventBroker &bus = HUTGuiEventBroker::instance();
  HUTGuiEvent::Connection second;
  int secondCalls = 0;
  auto first = bus.addListener(7001, "", "", [&](const HUTGuiEvent::Event &) {
    second.disconnect();
    second.disconnect(); // a second disconnect does nothing
    return 0;
  });
  second = bus.addListener(7001, "", "", [&](const HUTGuiEvent::Event &) {
    ++secondCalls;
    return 0;
  });
  HUTGuiEvent::Connection copy = second;
  EXPECT_TRUE(copy.connected());
  HUTGuiEvent::fire<KeyedEvent>(1);
  EXPECT_EQ(0, secondCalls);
  EXPECT_FALSE(copy.connected());
  first.disconnect();
  EXPECT_FALSE(HUTGuiEvent::Connection().connected());
}

} // namespace
