#include "HBOBoardParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HPAParamMgr.h"
#include "HUTFile.h"
#include "HUTTrace.h"

HBOBoardParser::HBOBoardParser() = default;

HBOBoardParser::~HBOBoardParser() = default;

void HBOBoardParser::queueFinding(const std::string &text, bool tellOnly) {
  queueFinding(m_board ? m_board->getBoardFile() : std::string(), text, tellOnly);
}

void HBOBoardParser::queueFinding(const std::string &file, const std::string &text,
                                  bool tellOnly) {
  queueMsg(tellOnly, ComMsg::Warning, "@49-69@%s%s", file, text);
}

bool HBOBoardParser::iterateMessages(bool send) {
  bool passed = true;
  for (const auto &entry : m_messages) {
    if (!entry.second)
      passed = false;
    if (send)
      ComMsgMgr::sendMessage(entry.first);
  }
  return passed;
}

void HBOBoardParser::tellQueue_(bool send) {
  iterateMessages(send);
  if (send || !ComMsgMgr::hasScope("board.parse"))
    return;
  // A silent read keeps its findings to itself; whoever debugs it sees them.
  for (const auto &entry : m_messages)
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "queued%s: %s",
                             entry.second ? "" : " (fails the read)",
                             entry.first.format().c_str());
}

bool HBOBoardParser::parseFile(const std::string &fileName, HBOBoard *board, bool validate,
                               const std::string &schemaDir, HBOParsedVLNVs *parsed) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "HBOBoardParser parsing '%s'\n",
                           fileName.c_str());
  HUTTraceScope trace("HBOBoardParser::parseFile", "fileName", fileName);

  if (const HPAParam *param = HPAParamMgr::getParamMgr().findParam("board.enable2020Checks"))
    m_strictChecks = param->getValueAsBool();
  m_sendMessages = validate;
  m_validate = validate;
  m_portPropsToSkip.clear();
  m_interfaceNames.clear();
  m_portRecords.clear();
  m_parsed = parsed;
  m_schemaDir = schemaDir;
  m_messages.clear();

  HUTFile::Status status = HUTFile::status(fileName);
  if (status == HUTFile::Status::NotFound || status == HUTFile::Status::Error) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-54@%s", fileName);
    return false;
  }

  m_board = board;
  std::string errorText;
  try {
    bool result = parse(fileName) && iterateMessages(false);
    m_schemaDir.clear();
    // The one point at which queued messages reach the user.
    tellQueue_(m_sendMessages);
    if (result) {
      m_board = nullptr;
      return true;
    }
  } catch (const HEXError &e) {
    if (m_sendMessages)
      ComMsgMgr::sendMessage(e.getMessage());
    tellQueue_(m_sendMessages);
  } catch (const std::exception &e) {
    if (m_sendMessages)
      errorText = e.what();
    tellQueue_(m_sendMessages);
  } catch (const std::string &e) {
    if (m_sendMessages)
      errorText = e;
    tellQueue_(m_sendMessages);
  } catch (...) {
    tellQueue_(m_sendMessages);
  }
  m_schemaDir.clear();
  ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-56@%s%s", fileName,
                     errorText.empty() ? std::string() : ", " + errorText);
  m_board = nullptr;
  return false;
}

bool HBOBoardParser::parse(const std::string &fileName) {
  if (!m_board)
    return false;
  // An empty name is no error: parseFile's status test stands in front.
  if (fileName.empty())
    return true;
  if (m_validate && !isValidXML(fileName, "board"))
    return false;

  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(fileName);
  HXMLWElement *root = doc->getRootElement();

  std::string schema = root->getAttribute("schema_version");
  // The file entry sets the version before it hands the file over; a caller
  // that comes here directly, such as a checking tool, gets it from the file.
  if (m_board->getBoardSchemaVersion().empty())
    m_board->setBoardSchemaVersion(schema);
  if (HBOBoardUtils::isEqualOrGreater(schema, "2.2"))
    m_strictChecks = true;
  if (m_strictChecks)
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                             "HBOBoardParser: 2020.1 DRC checks enabled for '%s'\n",
                             fileName.c_str());

  m_board->setBoardFile(fileName);
  std::string changeLog =
      HUTFile::parentPath(fileName) + HBOBoardUtils::getDirSeparator() + "changelog.txt";
  if (HUTFile::exists(changeLog))
    m_board->setChangeLogFilename(changeLog);

  // The order matters: each step may rely on what the ones before it read.
  std::string error;
  if (!readVlnv(root, error))
    return false;
  if (!readBoardParameters(root, error))
    return false;
  if (!readBoardJumpers(root, error))
    return false;
  if (!readPowerRails(*root, error))
    return false;
  if (!readDataProperties(root, error, nullptr))
    return false;
  if (!readComponents(root, error))
    return false;
  if (!readJtagChains(root, error))
    return false;
  if (!readIpAssociatedInterfaces(root, error))
    return false;
  if (!readParamTable(root, error))
    return false;
  if (!readConnections(root, error))
    return false;
  m_board->updateEnablement();
  if (!validateNecessaryParameters())
    return false;
  if (!validateOfComponent())
    return false;
  if (!readConnectedBoards(root, error))
    return false;
  if (!validatePostParse())
    return false;
  return true;
}
