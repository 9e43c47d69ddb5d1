#include "HBOBoardDiagram.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBODiagramContent.h"
#include "HBODiagramLayout.h"
#include "HBODiagramSvgWriter.h"
#include "HUTFileUtils.h"

namespace HBOBoardDiagram {

bool checkOptions(const HBOBoard &board, const HBODiagramOptions &options) {
  return HBODiagramContent::checkJumpers(board, options);
}

std::string toSvg(const HBOBoard &board, const HBODiagramOptions &options) {
  const HBODiagramContent content(board, options);
  const HBODiagramLayout layout(content);
  return HBODiagramSvgWriter::write(content, layout);
}

bool writeSvg(const HBOBoard &board, const std::string &path, const HBODiagramOptions &options) {
  if (!checkOptions(board, options))
    return false;
  std::string error;
  if (path.empty()) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-202@%s%s", path, std::string("no file named"));
    return false;
  }
  if (!HUTFileUtils::replaceFile(path, toSvg(board, options), &error)) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-202@%s%s", path, error);
    return false;
  }
  return true;
}

} // namespace HBOBoardDiagram
