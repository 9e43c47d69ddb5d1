#include "FuzzSupport.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
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
