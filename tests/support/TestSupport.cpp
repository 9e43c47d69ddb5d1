#include "TestSupport.h"

#include "HPAParamMgr.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace fs = std::filesystem;

namespace test {

std::string dataPath(const std::string &relative) {
  return std::string(BOARDLIB_TEST_DATA) + "/" + relative;
}

void expectGolden(const std::string &name, std::string actual) {
  for (const std::string &dir : {dataPath(""), std::string(BOARDLIB_SOURCE_DIR) + "/"}) {
    const std::string mark = dir == dataPath("") ? "@DATA@/" : "@SOURCE@/";
    for (std::size_t at; (at = actual.find(dir)) != std::string::npos;)
      actual.replace(at, dir.size(), mark);
  }
  const std::string golden = dataPath("golden/" + name);
  if (std::getenv("BOARDLIB_UPDATE_GOLDEN")) {
    std::ofstream(golden, std::ios::binary) << actual;
    return;
  }
  std::ifstream in(golden, std::ios::binary);
  ASSERT_TRUE(in) << "no golden file " << golden << "; the test gave:\n" << actual;
  std::stringstream expected;
  expected << in.rdbuf();
  EXPECT_EQ(expected.str(), actual) << golden;
}

namespace {
// The recorder that is the sink now; the manager itself cannot be asked.
MessageRecorder *s_current = nullptr;
} // namespace

MessageRecorder::MessageRecorder() : m_previous(s_current) {
  s_current = this;
  ComMsgMgr::resetCounts();
  ComMsgMgr::setSink(this);
}

MessageRecorder::~MessageRecorder() {
  s_current = m_previous;
  ComMsgMgr::setSink(m_previous);
}

std::vector<std::string> MessageRecorder::ids() const {
  std::vector<std::string> out;
  for (const ComMsgRecord &r : records)
    if (r.severityName != "DEBUG")
      out.push_back(r.id);
  return out;
}

std::size_t MessageRecorder::count(const std::string &id) const {
  return std::count_if(records.begin(), records.end(),
                       [&](const ComMsgRecord &r) { return r.id == id; });
}

const ComMsgRecord *MessageRecorder::find(const std::string &id) const {
  for (const ComMsgRecord &r : records)
    if (r.id == id)
      return &r;
  return nullptr;
}

bool MessageRecorder::mentions(const std::string &part) const {
  return std::any_of(records.begin(), records.end(),
                     [&](const ComMsgRecord &r) { return r.text.find(part) != std::string::npos; });
}

ScratchDir::ScratchDir() {
  std::string pattern = (fs::temp_directory_path() / "boardlib-test-XXXXXX").string();
  if (!::mkdtemp(pattern.data()))
    throw std::runtime_error("no scratch directory under " + pattern);
  m_path = pattern;
}

ScratchDir::~ScratchDir() {
  std::error_code ec;
  fs::remove_all(m_path, ec);
}

std::string ScratchDir::write(const std::string &name, const std::string &bytes) const {
  const fs::path file = fs::path(m_path) / name;
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << bytes;
  return file.string();
}

BoardBuilder &BoardBuilder::doctype(const std::string &line) {
  m_doctype = line;
  return *this;
}

BoardBuilder &BoardBuilder::rootAttributes(const std::string &attributes) {
  m_attributes += attributes;
  return *this;
}

BoardBuilder &BoardBuilder::body(const std::string &xml) {
  m_body += xml;
  return *this;
}

BoardBuilder &BoardBuilder::pins(const std::string &pinElements) {
  m_pins = pinElements;
  return *this;
}

BoardBuilder &BoardBuilder::presets(const std::string &presetElements) {
  m_presets = presetElements;
  return *this;
}

std::string BoardBuilder::boardXml() const {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  if (!m_doctype.empty())
    text += m_doctype + "\n";
  text += "<board schema_version=\"" + m_schema + "\" vendor=\"kestrel-boards\" name=\"probe\"" +
          (m_presets.empty() ? "" : " preset_file=\"preset.xml\"") + m_attributes + ">\n";
  text += "  <file_version>1.0</file_version>\n" + m_body;
  if (!m_pins.empty())
    text += "  <compatible_board_revisions><revision id=\"0\">Rev 1</revision>"
            "</compatible_board_revisions>\n"
            "  <components>\n    <component name=\"part0\" type=\"fpga\" part_name=\"kv10-tq64-1\""
            " pin_map_file=\"part0_pins.xml\"/>\n  </components>\n";
  return text + "</board>\n";
}

std::string BoardBuilder::writeTo(const ScratchDir &dir, const std::string &subdir) const {
  if (!m_pins.empty())
    dir.write(subdir + "/part0_pins.xml",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<part_info part_name=\"kv10-tq64-1\">\n"
              "  <pins>\n" +
                  m_pins + "  </pins>\n</part_info>\n");
  if (!m_presets.empty())
    dir.write(subdir + "/preset.xml",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ip_presets schema=\"1.0\">\n" +
                  m_presets + "</ip_presets>\n");
  return dir.write(subdir + "/board.xml", boardXml());
}

std::vector<std::string> outputLines(const std::string &command, bool &ok) {
  std::vector<std::string> out;
  ok = false;
  FILE *pipe = ::popen(command.c_str(), "r");
  if (!pipe)
    return out;
  std::string line;
  for (int c; (c = std::fgetc(pipe)) != EOF;) {
    if (c != '\n') {
      line += static_cast<char>(c);
    } else {
      out.push_back(line);
      line.clear();
    }
  }
  ok = ::pclose(pipe) == 0;
  return out;
}

ParamScope::ParamScope(const std::string &name, const std::string &value) : m_name(name) {
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  m_old = params.getValueAsString(name);
  std::string error;
  if (!params.setValue(name, value, &error))
    throw std::invalid_argument(error);
}

ParamScope::~ParamScope() { HPAParamMgr::getParamMgr().setValue(m_name, m_old); }

EnvScope::EnvScope(const std::string &name, const char *value) : m_name(name) {
  if (const char *old = std::getenv(name.c_str())) {
    m_had = true;
    m_old = old;
  }
  if (value)
    ::setenv(name.c_str(), value, 1);
  else
    ::unsetenv(name.c_str());
}

EnvScope::~EnvScope() {
  if (m_had)
    ::setenv(m_name.c_str(), m_old.c_str(), 1);
  else
    ::unsetenv(m_name.c_str());
}

} // namespace test
