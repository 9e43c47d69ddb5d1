#include "HBOBoardParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HPAParamMgr.h"
#include "HUTFile.h"
#include "HUTTrace.h"

HBOBoardParser::HBOBoardParser()
    : m_dtd(m_ctx), m_validator(m_ctx), m_presets(m_ctx, m_dtd), m_header(m_ctx, m_presets),
      m_pinFiles(m_ctx, m_dtd), m_interfaces(m_ctx, m_validator),
      m_components(m_ctx, m_pinFiles, m_interfaces, m_validator), m_connections(m_ctx, m_pinFiles),
      m_powerRails(m_ctx), m_dataProps(m_ctx) {}

HBOBoardParser::~HBOBoardParser() = default;

void HBOBoardParser::tellQueue_(bool send) {
  iterateMessages(send);
  if (send || !ComMsgMgr::hasScope("board.parse"))
    return;
  // A silent read keeps its findings to itself; whoever debugs it sees them.
  for (const auto &entry : m_ctx.messages)
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "queued%s: %s",
                             entry.second ? "" : " (fails the read)", entry.first.format().c_str());
}

bool HBOBoardParser::parseFile(const std::string &fileName, HBOBoard *board, bool validate,
                               const std::string &schemaDir, HBOParsedVLNVs *parsed) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "HBOBoardParser parsing '%s'\n",
                           fileName.c_str());
  HUTTraceScope trace("HBOBoardParser::parseFile", "fileName", fileName);

  if (const HPAParam *param = HPAParamMgr::getParamMgr().findParam("board.enable2020Checks"))
    m_ctx.strictChecks = param->getValueAsBool();
  m_ctx.reset(validate, schemaDir, parsed);

  HUTFile::Status status = HUTFile::status(fileName);
  if (status == HUTFile::Status::NotFound || status == HUTFile::Status::Error) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-54@%s", fileName);
    return false;
  }

  m_ctx.board = board;
  std::string errorText;
  try {
    bool result = parse(fileName) && iterateMessages(false) && !m_ctx.dtdFailed;
    m_ctx.schemaDir.clear();
    // The one point at which queued messages reach the user.
    tellQueue_(m_ctx.sendMessages);
    if (result) {
      m_ctx.board = nullptr;
      return true;
    }
  } catch (const HEXError &e) {
    if (m_ctx.sendMessages)
      ComMsgMgr::sendMessage(e.getMessage());
    tellQueue_(m_ctx.sendMessages);
  } catch (const std::exception &e) {
    if (m_ctx.sendMessages)
      errorText = e.what();
    tellQueue_(m_ctx.sendMessages);
  } catch (const std::string &e) {
    if (m_ctx.sendMessages)
      errorText = e;
    tellQueue_(m_ctx.sendMessages);
  } catch (...) {
    tellQueue_(m_ctx.sendMessages);
  }
  m_ctx.schemaDir.clear();
  ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-56@%s%s", fileName,
                     errorText.empty() ? std::string() : ", " + errorText);
  m_ctx.board = nullptr;
  return false;
}

bool HBOBoardParser::parse(const std::string &fileName) {
  if (!m_ctx.board)
    return false;
  // An empty name is no error: parseFile's status test stands in front.
  if (fileName.empty())
    return true;
  // A check reads on past the findings of the DTD, as far as the file can
  // be read, so that one run tells every finding.
  bool readable = true;
  if (m_ctx.validate && !m_dtd.isValidXML(fileName, "board", &readable)) {
    m_ctx.dtdFailed = true;
    if (!readable)
      return false;
  }

  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(fileName);
  HXMLWElement *root = doc->getRootElement();
  // The document goes with this read; so does the place to look in.
  struct RootScope {
    HBOParseContext &ctx;
    ~RootScope() { ctx.boardRoot = HXMLWElement(); }
  } rootScope{m_ctx};
  m_ctx.boardRoot = *root;

  std::string schema = root->getAttribute("schema_version");
  // The file entry sets the version before it hands the file over; a caller
  // that comes here directly, such as a checking tool, gets it from the file.
  if (m_ctx.board->getBoardSchemaVersion().empty())
    m_ctx.board->setBoardSchemaVersion(schema);
  if (HBOBoardUtils::isEqualOrGreater(schema, "2.2"))
    m_ctx.strictChecks = true;
  if (m_ctx.strictChecks)
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                             "HBOBoardParser: the strict checks of schema 2.2 apply to '%s'\n",
                             fileName.c_str());

  m_ctx.board->setBoardFile(fileName);
  std::string changeLog =
      HUTFile::parentPath(fileName) + HBOBoardUtils::getDirSeparator() + "changelog.txt";
  if (HUTFile::exists(changeLog))
    m_ctx.board->setChangeLogFilename(changeLog);

  // The order matters: each step may rely on what the ones before it read.
  std::string error;
  if (!m_header.readVlnv(root, error))
    return false;
  if (!m_header.readBoardParameters(root, error))
    return false;
  if (!m_header.readBoardJumpers(root, error))
    return false;
  if (!m_powerRails.readPowerRails(*root, error))
    return false;
  if (!m_dataProps.readDataProperties(root, error, nullptr))
    return false;
  const bool componentsRead = m_components.readComponents(root, error);
  // What could not be looked for is told once per pin file, even when the
  // components ended early.
  m_ctx.queueUncheckedPins();
  if (!componentsRead)
    return false;
  if (!m_header.readJtagChains(root, error))
    return false;
  if (!m_presets.readIpAssociatedInterfaces(root, error))
    return false;
  if (!m_header.readParamTable(root, error))
    return false;
  if (!m_connections.readConnections(root, error))
    return false;
  m_ctx.board->updateEnablement();
  if (!m_validator.validateNecessaryParameters())
    return false;
  if (!m_validator.validateOfComponent())
    return false;
  if (!m_header.readConnectedBoards(root, error))
    return false;
  if (!m_validator.validatePostParse())
    return false;
  return true;
}
