// A board directory for the rewrite tool: its three files as records, and
// where they are read from and written to.
#ifndef BOARDLIB_HBMBOARD_H
#define BOARDLIB_HBMBOARD_H

#include "HBMBoardFile.h"
#include "HBMPinsFile.h"
#include "HBMPresetFile.h"

#include <fstream>
#include <functional>
#include <string>

class HBMBoard {
public:
  HBMPinsFile &getPinsFile() { return m_pinsFile; }
  HBMPresetFile &getPresetFile() { return m_presetFile; }
  HBMBoardFile &getBoardFile() { return m_boardFile; }

  const std::string &getSourcePath() const { return m_sourcePath; }
  void setSourcePath(const std::string &path) { m_sourcePath = path; }
  const std::string &getDestinationPath() const { return m_destinationPath; }
  void setDestinationPath(const std::string &path) { m_destinationPath = path; }

  /// \p dir and \p name joined by one separator, in \p out. When nothing
  /// exists there, tells "@49-36@%s" with \p name and gives false, leaving
  /// \p out alone.
  bool XmlFilePath(const std::string &dir, const std::string &name, std::string &out) const;

  /// Each reads its file, plain or packed, and hands the root to its
  /// record. A file that cannot be read is told as "@49-110@%s" and gives
  /// false; else the record's parse decides.
  bool parseBoardFile(std::string path);
  bool parsePins(std::string path);
  bool parsePresets(std::string path);

  /// Each writes its file into \p dir. The bytes go to a new file beside
  /// the target, which replaces the target only once it is whole, so that
  /// a failure leaves what stood there before. A target that may not be
  /// written is not replaced; one that may keeps its permissions, and a
  /// link keeps pointing where it did while the file it points to is
  /// replaced. When the file cannot be written, "Cannot open<path>for
  /// output." goes to standard output and the result is false.
  bool writeBoardFile(std::string dir);
  bool writePinsFile(std::string dir);
  bool writePresetsFile(std::string dir);

private:
  bool writeFile_(const std::string &dir, const char *name,
                  const std::function<void(std::ofstream &)> &body) const;

  HBMPinsFile m_pinsFile;
  HBMPresetFile m_presetFile;
  HBMBoardFile m_boardFile;
  std::string m_sourcePath;
  std::string m_destinationPath;
};

#endif
