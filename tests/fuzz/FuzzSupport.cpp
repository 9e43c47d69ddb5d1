#include "FuzzSupport.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBODtdValidator.h"
#include "HBOParseContext.h"
#include "HBOPinFileReader.h"
#include "HBOPinProps.h"
#include "HBOPresetReader.h"
#include "HEXError.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <system_error>

#ifndef BOARDLIB_FUZZ_FIXED_DIR
#error "BOARDLIB_FUZZ_FIXED_DIR must name the board whose files the targets read beside an input"
#endif

namespace fs = std::filesystem;

namespace fuzz {
namespace {

const char *const kFixedFiles[] = {"board.xml", "part0_pins.xml", "preset.xml"};

class Scratch {
public:
  Scratch() {
    std::string pattern = (fs::temp_directory_path() / "boardlib-fuzz-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
      std::perror("boardlib fuzz: mkdtemp");
      std::abort();
    }
    m_dir = pattern;
    for (const char *name : kFixedFiles)
      copyFixed(name);
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(m_dir, ignored);
  }

  void copyFixed(const std::string &name) const {
    fs::copy_file(fs::path(BOARDLIB_FUZZ_FIXED_DIR) / name, fs::path(m_dir) / name,
                  fs::copy_options::overwrite_existing);
  }

  const std::string &dir() const { return m_dir; }

private:
  std::string m_dir;
};

Scratch &scratch() {
  static Scratch instance;
  return instance;
}

class NullSink : public ComMsgSink {
public:
  void receive(const ComMsgRecord &) override {}
};

} // namespace

const std::string &scratchDir() { return scratch().dir(); }

std::string writeInput(const std::string &name, const uint8_t *data, size_t size) {
  std::string path = scratchDir() + "/" + name;
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
  out.close();
  if (!out) {
    std::fprintf(stderr, "boardlib fuzz: cannot write %s\n", path.c_str());
    std::abort();
  }
  return path;
}

void readBoardWith(const std::string &name, const uint8_t *data, size_t size) {
  silenceMessages();
  writeInput(name, data, size);
  std::string board = scratchDir() + "/board.xml";
  for (bool validate : {false, true}) {
    try {
      std::unique_ptr<HBOBoard> read(new HBOBoard());
      if (HBOBoardParser().parseFile(board, read.get(), validate, "", nullptr) && !validate)
        read->display(0);
    } catch (const HEXError &) {
    }
  }
}

namespace {

// Runs \p read twice over the input written as \p name, as the board parser
// would: with a board of the scratch folder to read for, the messages it
// queues told at the end, and what the parser catches caught.
template <typename Read>
void readAlone(const char *name, const uint8_t *data, size_t size, Read read) {
  silenceMessages();
  writeInput(name, data, size);
  for (bool validate : {false, true}) {
    HBOBoard board;
    board.setBoardFile(scratchDir() + "/board.xml");
    HBOParseContext ctx;
    ctx.reset(validate, std::string(), nullptr);
    ctx.board = &board;
    HBODtdValidator dtd(ctx);
    try {
      read(ctx, dtd, board, name);
      ctx.iterateMessages(true);
      if (!validate)
        board.display(0);
    } catch (const HEXError &) {
    } catch (const std::exception &) {
    } catch (const std::string &) {
    }
  }
}

} // namespace

void readPinFileAlone(const uint8_t *data, size_t size) {
  readAlone("part0_pins.xml", data, size,
            [](HBOParseContext &ctx, HBODtdValidator &dtd, HBOBoard &board, const char *name) {
              auto *component = new HBOBoardComponent();
              component->setName("part0");
              component->setType("fpga");
              board.addBoardComponent(component);
              component->setBoard(&board);
              board.setActivePart(component);
              std::vector<HBOPinProps *> pins;
              std::vector<HBODesignConstr> constrs;
              HBOPinFileReader(ctx, dtd).parsePinFile(name, *component, pins, constrs);
              component->setDesignConstrs(constrs);
              component->addPins(pins);
              for (HBOPinProps *pin : pins)
                pin->setOwner(component);
            });
}

void readPresetFileAlone(const uint8_t *data, size_t size) {
  readAlone("preset.xml", data, size,
            [](HBOParseContext &ctx, HBODtdValidator &dtd, HBOBoard &, const char *name) {
              std::map<std::string, HBOIpPreset *> scratch;
              HBOPresetReader(ctx, dtd).parsePresetFile(name, scratch);
            });
}

void restoreFixed(const std::string &name) { scratch().copyFixed(name); }

void silenceMessages() {
  static NullSink sink;
  static bool once = [] {
    ComMsgMgr::setSink(&sink);
    // What a read prints goes nowhere: a stream in a failed state skips its
    // output without formatting it.
    std::cout.setstate(std::ios::badbit);
    return true;
  }();
  (void)once;
}

} // namespace fuzz
