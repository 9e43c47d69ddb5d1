// Reader of what board.xml says of the board as a whole: identity,
// revisions, images, parameters, jumpers, JTAG chains, connected boards.
#ifndef BOARDLIB_HBOHEADERREADER_H
#define BOARDLIB_HBOHEADERREADER_H

#include <string>

class HBOParseContext;
class HBOPresetReader;
class HXMLWElement;

class HBOHeaderReader {
public:
  HBOHeaderReader(HBOParseContext &ctx, HBOPresetReader &presets)
      : m_ctx(ctx), m_presets(presets) {}

  /// The board's identity; reads the preset file first.
  bool readVlnv(HXMLWElement *root, std::string &error);
  bool readBoardParameters(HXMLWElement *root, std::string &error);
  bool readParamTable(HXMLWElement *root, std::string &error);
  bool readBoardJumpers(HXMLWElement *root, std::string &error);
  bool readJtagChains(HXMLWElement *root, std::string &error);
  bool readConnectedBoards(HXMLWElement *root, std::string &error);

private:
  /// The board's images; the last high resolution one of sub_type "board"
  /// is the board's picture.
  void readBoardImages_(HXMLWElement &images, const std::string &boardDir, std::string &boardImage);

  HBOParseContext &m_ctx;
  HBOPresetReader &m_presets;
};

#endif
