// The readers of what board.xml says of the board as a whole: identity,
// revisions, images, parameters, jumpers, JTAG chains, connected boards;
// and the number conversions that all readers share.
#include "HBOBoardParser.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HEXError.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <cctype>
#include <cstdlib>
#include <map>

namespace {

const char kNullRoot[] = "Root XML element is NULL";

// Hierarchical parameters nest as deep as a file says; a hostile file must
// not exhaust the stack.
const int kMaxHierDepth = 256;

void appendHierName(std::string &out, const HXMLWElement &element, int depth) {
  if (depth == 0)
    out += ' ';
  out += element.getAttribute("name");
  out += ' ';
}

// Children of a hierarchical parameter as a Tcl list: each braced, and the
// whole braced again when there is more than one.
template <typename Recurse>
void appendHierChildren(std::string &out, const HXMLWElement &element, Recurse recurse) {
  std::vector<HXMLWElement> children = element.getChildren();
  if (children.size() > 1)
    out += '{';
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (i)
      out += ' ';
    out += '{';
    recurse(children[i]);
    out += '}';
  }
  if (children.size() > 1)
    out += '}';
}

} // namespace

bool HBOBoardParser::readVlnv(HXMLWElement *root, std::string &error) {
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
    parsePresetFile(presetFile, scratch);
  }

  const std::string &boardFile = m_board->getBoardFile();
  const std::string boardDir = HUTFile::parentPath(boardFile) + HBOBoardUtils::getDirSeparator();
  std::string version, description, boardImage;
  for (HXMLWElement &child : root->getChildren()) {
    if (child.isTag("compatible_board_revisions")) {
      std::vector<HXMLWElement> entries = child.getChildren();
      std::map<int, std::string> revisions;
      for (HXMLWElement &entry : entries)
        revisions[convert2NonNegativeInteger(entry.getAttribute("id"), "revision id")] =
            entry.getText();
      m_board->setCompatibleBoardRevisions(revisions);
      if (entries.empty())
        queueMsg(false, ComMsg::Warning, "@49-97@%s", boardFile);
    } else if (child.isTag("images")) {
      for (HXMLWElement &img : child.getChildren()) {
        std::string imgName = img.getAttribute("name");
        std::string imgDisplay = img.getAttribute("display_name");
        std::string subType = img.getAttribute("sub_type");
        std::string resolution = img.getAttribute("resolution");
        if (resolution.empty())
          resolution = "high";
        std::string imgDescription;
        for (HXMLWElement &d : img.getChildren())
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
        m_board->addImage(image);
      }
    } else if (child.isTag("file_version")) {
      version = child.getText();
    } else if (child.isTag("description")) {
      description = child.getText();
    }
  }

  if (vendor.empty() || name.empty() || version.empty())
    queueMsg(false, ComMsg::Error, "@49-108@%s", boardFile);

  m_board->setName(vendor, name, version);
  m_board->setDescription(description);
  m_board->setDisplayName(displayName);
  m_board->setBoardImage(boardImage);
  m_board->setPresetFile(presetFile);
  m_board->setSpecUrl(url);
  m_board->setLongDesc(description);

  bool ced = true;
  if (!supportsCed.empty() && !HUTConvert::stringToBoolean(supportsCed, ced, false))
    ced = false;
  m_board->setSupportsCED(ced);
  m_board->setIntegratedBoard(isIntegrated == "true");
  return true;
}

bool HBOBoardParser::readBoardParameters(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement &section : root->getChildren()) {
    if (!section.isTag("parameters"))
      continue;
    for (HXMLWElement &p : section.getChildren())
      m_board->addParameter(new HBOParameter(p.getAttribute("name"), p.getAttribute("value"),
                                             p.getAttribute("value_type"),
                                             p.getAttribute("value_min"),
                                             p.getAttribute("value_max"),
                                             p.getAttribute("readonly")));
  }
  return true;
}

bool HBOBoardParser::readParamTable(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  // Accepted and walked; a parameter table has no effect on the board.
  for (HXMLWElement &table : root->getChildren()) {
    if (!table.isTag("param_table"))
      continue;
    std::string tableName = table.getAttribute("name");
    for (HXMLWElement &list : table.getChildren()) {
      std::string listName = list.getAttribute("name");
      for (HXMLWElement &entry : list.getChildren()) {
        std::string entryName = entry.getAttribute("name");
        std::string component = entry.getAttribute("component");
        (void)entryName;
        (void)component;
      }
      (void)listName;
    }
    (void)tableName;
  }
  return true;
}

bool HBOBoardParser::readBoardJumpers(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement &section : root->getChildren()) {
    if (!section.isTag("jumpers"))
      continue;
    for (HXMLWElement &j : section.getChildren()) {
      std::string name = j.getAttribute("name");
      bool defaultValue = HSTStringUtils::iequals(j.getAttribute("default_value"), "true");
      // A jumper comes into being at its description: one without is not
      // entered, one with two is entered twice.
      for (HXMLWElement &d : j.getChildren()) {
        if (!d.isTag("description"))
          continue;
        HBOJumper *jumper = new HBOJumper();
        jumper->setName(name);
        jumper->setDefaultValue(defaultValue);
        jumper->setDescription(d.getText());
        jumper->setOwner(m_board);
        m_board->addJumper(jumper);
      }
    }
  }
  return true;
}

bool HBOBoardParser::readJtagChains(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement &section : root->getChildren()) {
    if (!section.isTag("jtag_chains"))
      continue;
    for (HXMLWElement &chain : section.getChildren()) {
      std::string chainName = chain.getAttribute("name");
      m_board->addJtagChain(chainName);
      for (HXMLWElement &pos : chain.getChildren()) {
        HBOBoardComponent *component = m_board->findBoardComponent(pos.getAttribute("component"));
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

bool HBOBoardParser::readConnectedBoards(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = kNullRoot;
    return false;
  }
  for (HXMLWElement &section : root->getChildren()) {
    if (!section.isTag("connected_boards"))
      continue;
    for (HXMLWElement &group : section.getChildren()) {
      if (group.isTag("base_boards")) {
        for (HXMLWElement &b : group.getChildren())
          m_board->addConnectedBoard(b.getAttribute("alias_name"), b.getAttribute("id"));
      } else if (group.isTag("connectors")) {
        for (HXMLWElement &c : group.getChildren())
          m_board->addConnectedComponents(c.getAttribute("board1"),
                                          c.getAttribute("board1_connector"),
                                          c.getAttribute("board2"),
                                          c.getAttribute("board2_connector"));
      }
    }
  }
  return true;
}

bool HBOBoardParser::readHierParam(HXMLWElement *element, std::string &out) {
  if (!element)
    return false;
  bool newForm = element->isTag("user_hier_parameter");
  for (HXMLWElement &child : element->getChildren()) {
    if (newForm)
      readHierParamRec_(&child, out, 0);
    else
      readHierParamRecOld_(&child, out, 0);
  }
  if (!out.empty() && out[0] == ' ')
    out.erase(0, 1);
  return true;
}

bool HBOBoardParser::readHierParamRec_(HXMLWElement *element, std::string &out, int depth) {
  if (!element || depth > kMaxHierDepth)
    return false;
  appendHierName(out, *element, depth);
  if (element->isTagExactly("user_parameter"))
    out += element->getAttribute("value");
  else if (element->isTagExactly("user_hier_parameter"))
    appendHierChildren(out, *element, [&](HXMLWElement &child) {
      readHierParamRec_(&child, out, depth + 1);
    });
  return true;
}

bool HBOBoardParser::readHierParamRecOld_(HXMLWElement *element, std::string &out, int depth) {
  if (!element || depth > kMaxHierDepth)
    return false;
  appendHierName(out, *element, depth);
  if (element->getAttribute("value_type") == "hier")
    appendHierChildren(out, *element, [&](HXMLWElement &child) {
      readHierParamRecOld_(&child, out, depth + 1);
    });
  else
    out += element->getAttribute("value");
  return true;
}

bool HBOBoardParser::isNonNegativeInteger(const std::string &value) {
  if (value.empty())
    return false;
  for (char c : value)
    if (c != ' ' && !std::isdigit(static_cast<unsigned char>(c)))
      return false;
  return true;
}

int HBOBoardParser::convert2NonNegativeInteger(const std::string &value,
                                               const std::string &what) const {
  if (isNonNegativeInteger(value))
    return std::stoi(value);
  HEXError::raise("board", ComMsg::Warning, "@49-69@%s%s",
                  m_board ? m_board->getBoardFile() : std::string(),
                  what + " value \"" + value + "\" is not valid, must be a non-negative integer.");
}

int HBOBoardParser::convert2NonNegativeInteger(const char *value, const std::string &what) const {
  if (!value)
    return 0;
  // Older schemas keep their old leniency.
  if (!m_strictChecks)
    return static_cast<int>(std::strtol(value, nullptr, 10));
  return convert2NonNegativeInteger(std::string(value), what);
}
