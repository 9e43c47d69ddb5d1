// The readers of what board.xml says of the board as a whole: identity,
// revisions, images, parameters, jumpers, JTAG chains, connected boards.
#include "HBOHeaderReader.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HBOParseContext.h"
#include "HBOPresetReader.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <map>

namespace {

const char kNullRoot[] = "Root XML element is NULL";

} // namespace

bool HBOHeaderReader::readVlnv(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  std::string vendor = root->getAttribute("vendor");
  std::string name = root->getAttribute("name");
  std::string displayName = root->getAttribute("display_name");
  std::string url = root->getAttribute("url");
  std::string presetFile = root->getAttribute("preset_file");
  std::string isIntegrated = root->getAttribute("is_integrated");
  std::string supportsCed = root->getAttribute("supports_ced");

  // The presets come first: every later check of presets needs them.
  if (!presetFile.empty()) {
    std::map<std::string, HBOIpPreset *> scratch;
    m_presets.parsePresetFile(presetFile, scratch);
  }

  const std::string &boardFile = m_ctx.board->getBoardFile();
  const std::string boardDir = HUTFile::parentPath(boardFile) + HBOBoardUtils::getDirSeparator();
  std::string version, description, boardImage;
  for (HXMLWElement child : root->children()) {
    if (child.isTag("compatible_board_revisions")) {
      std::map<int, std::string> revisions;
      for (HXMLWElement entry : child.children())
        revisions[m_ctx.convert2NonNegativeInteger(entry.getAttribute("id"), "revision id")] =
            entry.getText();
      m_ctx.board->setCompatibleBoardRevisions(revisions);
      if (child.children().empty())
        m_ctx.queueMsgAt(child, false, ComMsg::Warning, "@49-97@%s", boardFile);
    } else if (child.isTag("images")) {
      readBoardImages_(child, boardDir, boardImage);
    } else if (child.isTag("file_version")) {
      version = child.getText();
    } else if (child.isTag("description")) {
      description = child.getText();
    }
  }

  if (vendor.empty() || name.empty() || version.empty())
    m_ctx.queueMsgAt(*root, false, ComMsg::Error, "@49-108@%s", boardFile);

  m_ctx.board->setName(vendor, name, version);
  m_ctx.board->setDescription(description);
  m_ctx.board->setDisplayName(displayName);
  m_ctx.board->setBoardImage(boardImage);
  m_ctx.board->setPresetFile(presetFile);
  m_ctx.board->setSpecUrl(url);
  m_ctx.board->setLongDesc(description);

  bool ced = true;
  if (!supportsCed.empty() && !HUTConvert::stringToBoolean(supportsCed, ced, false))
    ced = false;
  m_ctx.board->setSupportsCED(ced);
  m_ctx.board->setIntegratedBoard(isIntegrated == "true");
  return true;
}

void HBOHeaderReader::readBoardImages_(HXMLWElement &images, const std::string &boardDir,
                                       std::string &boardImage) {
  for (HXMLWElement img : images.children()) {
    std::string imgName = img.getAttribute("name");
    std::string imgDisplay = img.getAttribute("display_name");
    std::string subType = img.getAttribute("sub_type");
    std::string resolution = img.getAttribute("resolution");
    if (resolution.empty())
      resolution = "high";
    std::string imgDescription;
    for (HXMLWElement d : img.children())
      if (d.isTag("description"))
        imgDescription = d.getText();
    HBOImage *image = new HBOImage();
    image->setName(boardDir + imgName);
    image->setDisplayName(imgDisplay);
    image->setResolution(resolution);
    image->setDescription(imgDescription);
    image->setSubType(subType);
    if (HSTStringUtils::iequals(subType, "board") && HSTStringUtils::iequals(resolution, "high"))
      boardImage = image->getName();
    m_ctx.board->addImage(image);
  }
}

bool HBOHeaderReader::readBoardParameters(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement section : root->children("parameters")) {
    for (HXMLWElement p : section.children())
      m_ctx.board->addParameter(new HBOParameter(
          p.getAttribute("name"), p.getAttribute("value"), p.getAttribute("value_type"),
          p.getAttribute("value_min"), p.getAttribute("value_max"), p.getAttribute("readonly")));
  }
  return true;
}

bool HBOHeaderReader::readParamTable(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  // A parameter table is accepted as it stands: it has no effect on the
  // board, so nothing in it is read.
  return true;
}

bool HBOHeaderReader::readBoardJumpers(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement section : root->children("jumpers")) {
    for (HXMLWElement j : section.children()) {
      std::string name = j.getAttribute("name");
      bool defaultValue = HSTStringUtils::iequals(j.getAttribute("default_value"), "true");
      // A jumper comes into being at its description: one without is not
      // entered, one with two is entered twice.
      for (HXMLWElement d : j.children("description")) {
        HBOJumper *jumper = new HBOJumper();
        jumper->setName(name);
        jumper->setDefaultValue(defaultValue);
        jumper->setDescription(d.getText());
        jumper->setOwner(m_ctx.board);
        m_ctx.board->addJumper(jumper);
      }
    }
  }
  return true;
}

bool HBOHeaderReader::readJtagChains(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement section : root->children("jtag_chains")) {
    for (HXMLWElement chain : section.children()) {
      std::string chainName = chain.getAttribute("name");
      m_ctx.board->addJtagChain(chainName);
      for (HXMLWElement pos : chain.children()) {
        HBOBoardComponent *component =
            m_ctx.board->findBoardComponent(pos.getAttribute("component"));
        if (!component)
          continue;
        std::string position = pos.getAttribute("name");
        component->setJtagPosition(position);
        component->addJtagPosition(chainName, position);
      }
    }
  }
  return true;
}

bool HBOHeaderReader::readConnectedBoards(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement section : root->children("connected_boards")) {
    for (HXMLWElement group : section.children()) {
      if (group.isTag("base_boards")) {
        for (HXMLWElement b : group.children())
          m_ctx.board->addConnectedBoard(b.getAttribute("alias_name"), b.getAttribute("id"));
      } else if (group.isTag("connectors")) {
        for (HXMLWElement c : group.children())
          m_ctx.board->addConnectedComponents(
              c.getAttribute("board1"), c.getAttribute("board1_connector"),
              c.getAttribute("board2"), c.getAttribute("board2_connector"));
      }
    }
  }
  return true;
}
