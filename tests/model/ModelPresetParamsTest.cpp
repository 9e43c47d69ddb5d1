// A preset's parameters: one sorted block built from a reused builder, the
// last value of a repeated name winning, common values shared through the
// pool and the others kept by the preset alone.
#include "HBOIpPreset.h"
#include "HSTIntern.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

Entries entriesOf(const HBOIpPreset::ParamMap &params) {
  Entries out;
  for (const auto &entry : params)
    out.emplace_back(entry.first, entry.second);
  return out;
}

} // namespace

TEST(ModelPresetParams, SortedByNameAndTheLastOfARepeatedNameWins) {
  HBOIpPreset::ParamMap::Builder builder;
  builder.addPooledName("CONFIG.WIDTH", "32");
  builder.addLocalName("ddr4_sdram", "first");
  builder.addPooledName("CONFIG.ENABLE", "true");
  builder.addLocalName("ddr4_sdram", "");
  builder.addPooledName("CONFIG.WIDTH", "{a b} {c d} {e f} {g h}");
  builder.addLocalName("CONFIG.ENABLE", "440.914");
  HBOIpPreset::ParamMap params;
  params.assign(builder);
  const Entries expected{{"CONFIG.ENABLE", "440.914"},
                         {"CONFIG.WIDTH", "{a b} {c d} {e f} {g h}"},
                         {"ddr4_sdram", ""}};
  EXPECT_EQ(expected, entriesOf(params));

  auto found = params.find("CONFIG.WIDTH");
  ASSERT_NE(params.end(), found);
  EXPECT_EQ("{a b} {c d} {e f} {g h}", found->second);
  EXPECT_EQ(params.end(), params.find("CONFIG"));
  EXPECT_EQ(0u, params.count("config.width")) << "names compare exactly";

  // The builder is reused for the next preset; the first keeps its texts.
  builder.clear();
  builder.addLocalName("other", "1234567890123456789");
  HBOIpPreset::ParamMap next;
  next.assign(builder);
  EXPECT_EQ((Entries{{"other", "1234567890123456789"}}), entriesOf(next));
  EXPECT_EQ(expected, entriesOf(params));
  builder.clear();
  next.assign(builder);
  EXPECT_TRUE(next.empty());
  EXPECT_EQ(next.begin(), next.end());
}

// Names share a long start and differ before, inside and after the bytes
// that the sort compares as numbers, or end there; the order must be the
// texts' own, and the last of a repeated name must still win.
TEST(ModelPresetParams, NamesWithALongSharedStartSortAsTexts) {
  const std::vector<std::string> tails = {"",
                                          "A",
                                          "AB",
                                          "ABCDEFGH",
                                          "ABCDEFGHI",
                                          "ABCDEFGHIJKLMNOP",
                                          "ABCDEFGHIJKLMNOPQ",
                                          "ABCDEFGHIJKLMNOPQR",
                                          "ABCDEFGHIJKLMNOPR",
                                          "ABCDEFGHIJKLMNOz",
                                          "ABCDEFGz",
                                          "B",
                                          std::string("A\0B", 3),
                                          std::string("A\0", 2)};
  HBOIpPreset::ParamMap::Builder builder;
  std::map<std::string, std::string> expected;
  int round = 0;
  for (const char *start : {"CONFIG.C0.DDR4_", "CONFIG.C0.DDR4_X"}) {
    for (std::size_t i = 0; i < tails.size(); ++i) {
      // Backwards and again, so that the sort has work and names repeat.
      const std::string name = start + tails[tails.size() - 1 - i];
      const std::string value = "v" + std::to_string(round++);
      builder.addLocalName(name, value);
      expected[name] = value;
    }
    builder.addLocalName(start + tails[3], "last");
    expected[start + tails[3]] = "last";
  }
  HBOIpPreset::ParamMap params;
  params.assign(builder);
  EXPECT_EQ(Entries(expected.begin(), expected.end()), entriesOf(params));
}

TEST(ModelPresetParams, OnlyCommonValuesGoToThePool) {
  HBOIpPreset::ParamMap::Builder builder;
  for (const char *value : {"true", "Disabled", "999", "0"})
    builder.addPooledName(std::string("common.") + value, value);
  HBOIpPreset::ParamMap common;
  common.assign(builder);
  for (const auto &entry : common)
    EXPECT_EQ(&HSTIntern::get(entry.second), &entry.second) << entry.second;

  // Numbers, paths, lists and words with digits can be one board's own:
  // the pool must not grow for them.
  const std::size_t pooled = HSTIntern::size();
  builder.clear();
  for (const char *value :
       {"440.914", "1000", "012", "-1", "x16", "ddr3_pinout.csv", "a b", "Abcdefghijklm", ""})
    builder.addLocalName(std::string("board.") + value, value);
  HBOIpPreset::ParamMap own;
  own.assign(builder);
  EXPECT_EQ(pooled, HSTIntern::size());
  EXPECT_EQ(9u, own.size());
}

TEST(ModelPresetParams, SetParamAfterABulkSetActsAsOneMoreCall) {
  HBOIpPreset preset;
  HBOIpPreset::ParamMap::Builder builder;
  builder.addPooledName("a", "1");
  builder.addPooledName("c", "3");
  preset.setParams(builder);
  EXPECT_TRUE(preset.setParam("b", "2"));
  EXPECT_TRUE(preset.setParam("a", "9"));
  builder.clear();
  builder.addPooledName("c", "7");
  builder.addPooledName("d", "4");
  preset.setParams(builder);
  EXPECT_TRUE(preset.setParam("d", "5"));
  EXPECT_EQ((Entries{{"a", "9"}, {"b", "2"}, {"c", "7"}, {"d", "5"}}),
            entriesOf(preset.getParamList()));
}

TEST(ModelPresetParams, ThreadsReadingAtOnceSeeOneSettledMapAndName) {
  HBOIpPreset preset;
  preset.setPresetProcName("led_preset");
  preset.setVendor("quarnel-ip");
  preset.setLibrary("ip");
  preset.setName("gpio_ctl");
  preset.setVersion("*");
  preset.setIpInterface("GPIO");
  preset.setPresetNameFromIdentity();
  Entries expected;
  for (int i = 99; i >= 0; --i) {
    const std::string name = "CONFIG.PARAMETER_" + std::to_string(i);
    preset.setParam(name, "stale");
    preset.setParam(name, std::to_string(i));
  }
  for (int i = 0; i < 100; ++i)
    expected.emplace_back("CONFIG.PARAMETER_" + std::to_string(i), std::to_string(i));
  std::sort(expected.begin(), expected.end());

  std::vector<Entries> seen(4);
  std::vector<std::thread> readers;
  for (Entries &out : seen)
    readers.emplace_back([&preset, &out] {
      out.emplace_back("name", preset.getPresetName());
      std::string value;
      if (preset.getParamValue("CONFIG.PARAMETER_7", value))
        out.emplace_back("value", value);
      Entries all = entriesOf(preset.getParamList());
      out.insert(out.end(), all.begin(), all.end());
    });
  for (std::thread &reader : readers)
    reader.join();
  expected.insert(expected.begin(),
                  {{"name", "led_preset:quarnel-ip:ip:gpio_ctl:*:GPIO"}, {"value", "7"}});
  for (const Entries &out : seen)
    EXPECT_EQ(expected, out);
}
