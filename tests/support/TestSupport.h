// What the tests share: where the test boards are, golden files, one
// recorder of the messages sent, one scratch directory, one writer of small
// boards, and scopes that set a parameter or an environment variable.
#ifndef BOARDLIB_TESTS_SUPPORT_TESTSUPPORT_H
#define BOARDLIB_TESTS_SUPPORT_TESTSUPPORT_H

#include "ComMsgMgr.h"

#include <cstddef>
#include <string>
#include <vector>

namespace test {

/// A path below tests/data.
std::string dataPath(const std::string &relative);

/// Compares \p actual with the golden file tests/data/golden/\p name, the
/// paths of the test data and of the source tree written as @DATA@/ and
/// @SOURCE@/; with BOARDLIB_UPDATE_GOLDEN set in the environment, writes the
/// file instead. Read the diff of such a change before committing it.
void expectGolden(const std::string &name, std::string actual);

/// Keeps every message sent while it lives, in the order sent. A recorder
/// made while another lives takes over until it ends, then hands back.
class MessageRecorder : public ComMsgSink {
public:
  MessageRecorder();
  ~MessageRecorder() override;
  MessageRecorder(const MessageRecorder &) = delete;
  MessageRecorder &operator=(const MessageRecorder &) = delete;

  void receive(const ComMsgRecord &record) override { records.push_back(record); }

  /// The ids of the messages, debug lines left out.
  std::vector<std::string> ids() const;
  std::size_t count(const std::string &id) const;
  /// The first message of \p id, or null.
  const ComMsgRecord *find(const std::string &id) const;
  /// Whether the text of some message contains \p part.
  bool mentions(const std::string &part) const;

  std::vector<ComMsgRecord> records;

private:
  MessageRecorder *m_previous;
};

/// The ids of what a reader queued, in queue order.
template <typename Reader> std::vector<std::string> queuedIds(const Reader &reader) {
  std::vector<std::string> out;
  for (const auto &entry : reader.getMessages())
    out.push_back(entry.first.getId());
  return out;
}

/// Whether the text of some message that a reader queued contains \p part.
template <typename Reader> bool queuedMentions(const Reader &reader, const std::string &part) {
  for (const auto &entry : reader.getMessages())
    if (entry.first.getText().find(part) != std::string::npos)
      return true;
  return false;
}

/// A fresh directory, removed with all it holds when the object ends.
class ScratchDir {
public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir &) = delete;
  ScratchDir &operator=(const ScratchDir &) = delete;

  const std::string &path() const { return m_path; }
  std::string file(const std::string &name) const { return m_path + "/" + name; }
  /// Writes \p bytes to \p name, making the directories on the way; gives
  /// the file's path.
  std::string write(const std::string &name, const std::string &bytes) const;

private:
  std::string m_path;
};

/// A small board directory written from snippets. board.xml holds the XML
/// declaration on line 1, then the DOCTYPE if one is given, then the root
/// element on a line of its own, file_version on the next, and the body
/// after it. A pin file makes part0 an FPGA whose pins are in
/// part0_pins.xml; a preset file is named by the root as preset.xml.
class BoardBuilder {
public:
  explicit BoardBuilder(const std::string &schemaVersion = "2.1") : m_schema(schemaVersion) {}

  BoardBuilder &doctype(const std::string &line);
  /// Attributes added to the root element, each with its leading blank.
  BoardBuilder &rootAttributes(const std::string &attributes);
  BoardBuilder &body(const std::string &xml);
  /// The content of the pin file's pins element.
  BoardBuilder &pins(const std::string &pinElements);
  /// The content of the preset file's ip_presets element.
  BoardBuilder &presets(const std::string &presetElements);

  std::string boardXml() const;
  /// Writes the files into \p dir; gives the path of board.xml.
  std::string writeTo(const ScratchDir &dir, const std::string &subdir = "board") const;

private:
  std::string m_schema, m_doctype, m_attributes, m_body, m_pins, m_presets;
};

/// Runs \p command in the shell and gives its standard output split at new
/// lines; \p ok tells whether it exited with status 0.
std::vector<std::string> outputLines(const std::string &command, bool &ok);

/// Sets a parameter, and puts its value back at the end.
class ParamScope {
public:
  ParamScope(const std::string &name, const std::string &value);
  ~ParamScope();

private:
  std::string m_name, m_old;
};

/// Sets an environment variable, or unsets it for a null \p value, and
/// puts it back at the end.
class EnvScope {
public:
  EnvScope(const std::string &name, const char *value);
  ~EnvScope();

private:
  std::string m_name, m_old;
  bool m_had = false;
};

} // namespace test

#endif
