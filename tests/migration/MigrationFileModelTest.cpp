#include "HBMBoardMigration.h"
#include "HUTFileUtils.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using test::dataPath;
using test::MessageRecorder;
using test::ScratchDir;

std::string readBytes(const std::string &path) {
  std::string bytes;
  HUTFileUtils::readFile(path, bytes, nullptr);
  return bytes;
}

std::vector<std::string> listDir(const std::string &dir) {
  std::vector<std::string> names;
  for (const auto &entry : std::filesystem::directory_iterator(dir))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

// The one board of the model, reading from \p src and writing to \p dst.
HBMBoard &board(const std::string &src, const std::string &dst = std::string()) {
  HBMBoard &b = *HBMBoardMigration::getInstance().getBoard();
  b.setSourcePath(src);
  b.setDestinationPath(dst);
  return b;
}

// Runs parse() and gives its result, with what it printed in \p out.
bool parseCapturing(std::string &out) {
  testing::internal::CaptureStdout();
  const bool result = HBMBoardMigration::getInstance().parse();
  out = testing::internal::GetCapturedStdout();
  return result;
}

bool writeCapturing(std::string &out) {
  testing::internal::CaptureStdout();
  const bool result = HBMBoardMigration::getInstance().write();
  out = testing::internal::GetCapturedStdout();
  return result;
}

TEST(HBMBoardMigration, RewritesTheLayoutsByteForByte) {
  ScratchDir dst;
  board(dataPath("migrate_layouts"), dst.path() + "/");
  std::string printed;
  ASSERT_TRUE(parseCapturing(printed));
  const std::string src = dataPath("migrate_layouts/");
  EXPECT_EQ(printed, "Component: part0\nComponent: \nComponent: uart\n" + src +
                         "board.xml parsed\n" + src + "part0_pins.xml parsed\n" + src +
                         "preset.xml parsed\n");
  ASSERT_TRUE(writeCapturing(printed));
  EXPECT_EQ(printed, "");
  EXPECT_EQ(listDir(dst.path()),
            (std::vector<std::string>{"board.xml", "part0_pins.xml", "preset.xml"}));
  EXPECT_EQ(readBytes(dst.file("board.xml")), "");
  EXPECT_EQ(readBytes(dst.file("part0_pins.xml")), readBytes(src + "expected/part0_pins.xml"));
  EXPECT_EQ(readBytes(dst.file("preset.xml")), readBytes(src + "expected/preset.xml"));

  // The hierarchical parameters are noted but hold nothing; value types are
  // read though not written.
  const std::vector<PresetProc> procs = board("").getPresetFile().getPresetProcs();
  ASSERT_EQ(procs.size(), 2u);
  ASSERT_EQ(procs[1].presets.size(), 2u);
  EXPECT_EQ(procs[1].presets[0].hierParams.size(), 1u);
  EXPECT_TRUE(procs[1].presets[0].hierParams[0].name.empty());
  EXPECT_EQ(procs[1].presets[0].params[0].valueType, "string");
}

TEST(HBMBoardMigration, ParseOrderAndItsUnevenResult) {
  struct Case {
    const char *dir;
    bool result;
    std::vector<const char *> lines; // after the component lines
    std::vector<std::string> ids;
    std::size_t pins;
  };
  const Case cases[] = {
      {"migrate_basic",
       true,
       {"board.xml parsed", "part0_pins.xml parsed", "preset.xml parsed"},
       {},
       3},
      {"migrate_parse/no_preset",
       true,
       {"board.xml parsed", "part0_pins.xml parsed"},
       {"49-36"},
       3},
      // Not parsed, yet true, and the pins are never read.
      {"migrate_parse/bad_board", true, {"board.xml not parsed"}, {"50-1", "49-110"}, 0},
      {"migrate_parse/no_pins", false, {"board.xml parsed"}, {"49-36"}, 0},
      // The pins before the repeated LOC stay.
      {"migrate_parse/bad_pins", true, {"board.xml parsed", "part0_pins.xml not parsed"}, {}, 1},
      {"migrate_parse/bad_preset",
       false,
       {"board.xml parsed", "part0_pins.xml parsed", "preset.xml not parsed"},
       {"50-1", "49-110"},
       3},
      {"no_such_dir", false, {}, {"49-36"}, 0},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.dir);
    MessageRecorder messages;
    board(dataPath(c.dir));
    std::string printed;
    EXPECT_EQ(parseCapturing(printed), c.result);
    std::string expected;
    if (c.lines.size() > 0 && std::string(c.lines[0]) == "board.xml parsed")
      expected = "Component: part0\nComponent: leds\n";
    for (const char *line : c.lines)
      expected += dataPath(c.dir) + "/" + line + "\n";
    EXPECT_EQ(printed, expected);
    EXPECT_EQ(messages.ids(), c.ids);
    EXPECT_EQ(board("").getPinsFile().getAllPins().size(), c.pins);
  }
}

TEST(HBMBoardMigration, ReadsPackedFiles) {
  ScratchDir src, dst;
  src.write("board.xml", readBytes(dataPath("migrate_basic/board.xml")));
  src.write("preset.xml", readBytes(dataPath("migrate_basic/preset.xml")));
  const std::string pins = readBytes(dataPath("migrate_basic/part0_pins.xml"));
  gzFile out = gzopen(src.file("part0_pins.xml").c_str(), "wb");
  ASSERT_NE(out, nullptr);
  ASSERT_EQ(gzwrite(out, pins.data(), static_cast<unsigned>(pins.size())),
            static_cast<int>(pins.size()));
  ASSERT_EQ(gzclose(out), Z_OK);

  board(src.path(), dst.path());
  std::string printed;
  ASSERT_TRUE(parseCapturing(printed));
  EXPECT_EQ(board("").getPinsFile().getAllPins().size(), 3u);

  // A damaged body is no document.
  std::string packed = readBytes(src.file("part0_pins.xml"));
  src.write("part0_pins.xml", packed.substr(0, packed.size() / 2));
  MessageRecorder messages;
  board(src.path());
  EXPECT_TRUE(parseCapturing(printed));
  EXPECT_EQ(messages.count("49-110"), 1u);
}

TEST(HBMBoardMigration, FailedWriteLeavesTheFileAsItWas) {
  ScratchDir dst;
  board(dataPath("migrate_basic"), dst.path());
  std::string printed;
  ASSERT_TRUE(parseCapturing(printed));

  // No directory: one line, for board.xml, and nothing made; the separator
  // is not doubled.
  board(dataPath("migrate_basic"), dst.file("missing/"));
  EXPECT_FALSE(writeCapturing(printed));
  EXPECT_EQ(printed, "Cannot open" + dst.file("missing/board.xml") + "for output.\n");
  EXPECT_TRUE(listDir(dst.path()).empty());

  // A directory in the way of the pins: board.xml was written before, the
  // presets are not tried, and no temporary file stays.
  dst.write("board.xml", "old board");
  dst.write("preset.xml", "old presets");
  std::filesystem::create_directory(dst.file("part0_pins.xml"));
  board(dataPath("migrate_basic"), dst.path());
  EXPECT_FALSE(writeCapturing(printed));
  EXPECT_EQ(printed, "Cannot open" + dst.file("part0_pins.xml") + "for output.\n");
  EXPECT_EQ(readBytes(dst.file("board.xml")), "");
  EXPECT_EQ(readBytes(dst.file("preset.xml")), "old presets");
  EXPECT_EQ(listDir(dst.path()),
            (std::vector<std::string>{"board.xml", "part0_pins.xml", "preset.xml"}));
}

TEST(HBMBoardMigration, WriteKeepsLinksAndPermissions) {
  ScratchDir dst;
  dst.write("kept/pins.xml", "old pins");
  ASSERT_EQ(::chmod(dst.file("kept/pins.xml").c_str(), 0640), 0);
  std::filesystem::create_symlink("kept/pins.xml", dst.file("part0_pins.xml"));
  board(dataPath("migrate_basic"), dst.path());
  std::string printed;
  ASSERT_TRUE(parseCapturing(printed));
  ASSERT_TRUE(writeCapturing(printed));
  EXPECT_TRUE(std::filesystem::is_symlink(dst.file("part0_pins.xml")));
  EXPECT_EQ(readBytes(dst.file("kept/pins.xml")).substr(0, 5), "<?xml");
  EXPECT_EQ(std::filesystem::status(dst.file("kept/pins.xml")).permissions(),
            std::filesystem::perms(0640));
  EXPECT_EQ(listDir(dst.file("kept")), std::vector<std::string>{"pins.xml"});
}

TEST(HBMBoardMigration, ReadOnlyDestinationKeepsItsFiles) {
  if (::geteuid() == 0)
    GTEST_SKIP() << "permissions do not bind root";
  ScratchDir dst;
  dst.write("out/board.xml", "old board");
  board(dataPath("migrate_basic"), dst.file("out"));
  std::string printed;
  ASSERT_TRUE(parseCapturing(printed));
  ASSERT_EQ(::chmod(dst.file("out").c_str(), 0555), 0);
  const bool written = writeCapturing(printed);
  ::chmod(dst.file("out").c_str(), 0755);
  EXPECT_FALSE(written);
  EXPECT_EQ(printed, "Cannot open" + dst.file("out/board.xml") + "for output.\n");
  EXPECT_EQ(readBytes(dst.file("out/board.xml")), "old board");
  EXPECT_EQ(listDir(dst.file("out")), std::vector<std::string>{"board.xml"});

  // A file that may not be written is not replaced either.
  ASSERT_EQ(::chmod(dst.file("out/board.xml").c_str(), 0444), 0);
  EXPECT_FALSE(writeCapturing(printed));
  EXPECT_EQ(readBytes(dst.file("out/board.xml")), "old board");
  EXPECT_EQ(listDir(dst.file("out")), std::vector<std::string>{"board.xml"});
}

// Parses \p pins as the pins element of a pin file into \p file.
bool parsePins(HBMPinsFile &file, const std::string &pins) {
  HXMLWInterface doc;
  EXPECT_TRUE(
      doc.readFromBuffer("<part_info part_name=\"p\"><Pins>" + pins + "</Pins></part_info>"));
  return file.parse(doc.getRootElement());
}

TEST(HBMPinsFile, RefusesMissingIndexAndRepeatedIndexOrLoc) {
  struct Case {
    const char *pins;
    bool result;
    std::size_t kept;
  };
  const Case cases[] = {
      {R"(<pin index="1" loc="A"/><pin loc="B"/>)", false, 1},
      {R"(<pin index="1" loc="A"/><pin index="1" loc="B"/>)", false, 1},
      {R"(<pin index="1" loc="A"/><pin index="2" loc="A"/><pin index="3" loc="C"/>)", false, 1},
      {R"(<pin index="1"/><pin index="2"/>)", false, 1},
      {R"(<pin index="1"/><pin index="01" loc="A"/>)", true, 2},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.pins);
    HBMPinsFile file;
    EXPECT_EQ(parsePins(file, c.pins), c.result);
    EXPECT_EQ(file.getAllPins().size(), c.kept);
    EXPECT_EQ(file.getPartName(), "p");
  }
}

TEST(HBMPinsFile, CreateDeleteAndFindPins) {
  HBMPinsFile file;
  ASSERT_TRUE(
      parsePins(file, R"(<pin index="0" name="a" loc="A1"/><pin index="1" name="b" loc="B1"/>
                                 <pin index="2" name="a" loc="C1"/>)"));
  HBMPin *created = file.createPin("c", "9", "D1");
  EXPECT_EQ(file.getPin("c"), nullptr); // not added yet
  EXPECT_TRUE(file.addPin(created));
  EXPECT_FALSE(file.addPin(created));
  EXPECT_EQ(file.getPin("c"), created);
  EXPECT_EQ(file.getPin("a")->getLOC(), "A1");

  EXPECT_TRUE(file.deletePin(std::string("a")));
  EXPECT_EQ(file.getPin("a")->getLOC(), "C1");
  EXPECT_EQ(file.getPinByIndex(0)->getName(), "b"); // a position, not the index attribute
  EXPECT_EQ(file.getPinByIndex(3), nullptr);
  EXPECT_FALSE(file.deletePin(std::string("zz")));

  HBMPin stranger("s", "5", "E1");
  EXPECT_FALSE(file.deletePin(&stranger));
  EXPECT_TRUE(file.deletePin(file.getPin("b")));
  EXPECT_EQ(file.getAllPins().size(), 2u);

  created->setProp("IOSTANDARD", "LVCMOS18");
  created->setProp("slew", "SLOW");
  created->setProp("IOSTANDARD", "LVCMOS33");
  std::ostringstream line;
  file.writePin(line, 1);
  file.writePin(line, 7);
  EXPECT_EQ(line.str(),
            "<pin index=\"9\" name=\"c\" loc=\"D1\" IOSTANDARD\"LVCMOS33\" slew\"SLOW\"/>\n");
}

} // namespace
