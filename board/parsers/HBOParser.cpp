#include "HBOParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOBoardUtils.h"
#include "HBOPartParser.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HUTFile.h"

bool HBOParser::parseFile(const std::string &fileName, HBOBoard *board) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "HBOParser parsing '%s'\n",
                           fileName.c_str());
  try {
    HUTFile::Status status = HUTFile::status(fileName);
    if (status == HUTFile::Status::NotFound || status == HUTFile::Status::Error) {
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", fileName);
      return false;
    }
    if (!board || fileName.empty())
      return false;

    // Only the root's attribute decides the reader; the document read for it
    // is handed on, so that the reader chosen does not parse the bytes again.
    std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(fileName);
    std::string schema = doc->getRootElement()->getAttribute("schema_version");
    HBOXMLFile::ReuseScope reuse(fileName, std::move(doc));
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                             "HBOParser found schema version '%s'\n", schema.c_str());

    if (HBOBoardUtils::isEqualOrGreater(schema, "2.0") && HBOBoardUtils::isV2SchemaEnabled()) {
      board->setBoardSchemaVersion(schema);
      HBOBoardParser parser;
      return parser.parseFile(fileName, board, false, "", nullptr);
    }
    board->setBoardSchemaVersion(schema == "1.1" ? "1.1" : "1.0");
    HBOPartParser parser;
    return parser.parseFile(fileName, board);
  } catch (const std::string &text) {
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-4@%s%s", fileName,
                       text.empty() ? std::string() : ", " + text);
  } catch (...) {
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-59@%s", fileName);
  }
  return false;
}
