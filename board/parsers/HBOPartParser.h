// The reader of legacy board files (schema 1.0 and 1.1): one file describes
// one board part, a single device with its ports, their pins and the board
// interfaces built on them. It fills the same objects as the current reader,
// one board with one component that becomes the active part.
#ifndef BOARDLIB_HBOPARTPARSER_H
#define BOARDLIB_HBOPARTPARSER_H

#include <map>
#include <string>

class HBOBoard;
class HBOBoardComponent;
class HBOIpPreset;
class HXMLWElement;

class HBOPartParser {
public:
  HBOPartParser() = default;
  HBOPartParser(const HBOPartParser &) = delete;
  HBOPartParser &operator=(const HBOPartParser &) = delete;

  /// Reads \p fileName into \p board. False, with a message, when the file
  /// is missing or was not read; the board still holds its component then.
  /// A file without identity or part information raises HEXError.
  bool parseFile(const std::string &fileName, HBOBoard *board);
  /// The body of a read; meant to be called through parseFile.
  bool parse(const std::string &fileName);

  bool readPartInfo(HXMLWElement *root);
  bool readPorts(HXMLWElement *root);
  bool readInstances(HXMLWElement *root);

  /// Reads the legacy preset file \p fileName, beside the board file when it
  /// names no folder, into the board; \p presets is left alone.
  bool parsePresetFile(const std::string &fileName, std::map<std::string, HBOIpPreset *> &presets);
  bool parsePresets(const std::string &path, std::map<std::string, HBOIpPreset *> &presets);
  bool readIpPresets(HXMLWElement *root, std::map<std::string, HBOIpPreset *> &presets,
                     std::string &error);
  bool readPresetDetails(HXMLWElement *ip, HBOIpPreset *preset);

private:
  /// The validating parse against the schema 1 DTD \p dtdName; it tells
  /// nothing, and raises HEXError only when the file cannot be parsed.
  void validate_(const std::string &fileName, const char *dtdName);

  HBOBoard *m_board = nullptr;
  HBOBoardComponent *m_component = nullptr;
};

#endif
