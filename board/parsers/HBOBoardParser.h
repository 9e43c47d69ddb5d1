// The reader of board files of schema 2: one read of board.xml with its pin
// files and preset file, with a message queue that decides the result at the
// end, so that every finding of a file can be told at once.
#ifndef BOARDLIB_HBOBOARDPARSER_H
#define BOARDLIB_HBOBOARDPARSER_H

#include "ComMsgMgrInstance.h"
#include "HBOBoardComponent.h"

#include <boost/any.hpp>

#include <map>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

class HBOBoard;
class HBOBoardBus;
class HBOBusIf;
class HBOBusIfPreference;
class HBOComponentMode;
class HBOIpPreset;
class HBOModelPort;
class HBOPinProps;
class HBOPortMap;
class HXMLWElement;

/// What a file says of one board interface, for callers that want to know
/// what a file uses without looking at the board.
struct HBOParsedInterface {
  std::unordered_set<std::string> logicalPorts;
  std::string type;
};

struct HBOParsedVLNVs {
  std::vector<HBOParsedInterface> interfaces;
  std::unordered_set<std::string> preferredIpVlnvs;
};

using HBODesignConstr = HBOBoardComponent::DesignConstr;
using HBOMessageQueue = std::vector<std::pair<ComMsgMgrInstance, bool>>;

class HBOBoardParser {
public:
  HBOBoardParser();
  ~HBOBoardParser();
  HBOBoardParser(const HBOBoardParser &) = delete;
  HBOBoardParser &operator=(const HBOBoardParser &) = delete;

  /// Reads one schema 2 file into \p board. With \p validate the file is
  /// held to its DTD and every queued message is told.
  bool parseFile(const std::string &fileName, HBOBoard *board, bool validate,
                 const std::string &schemaDir, HBOParsedVLNVs *parsed);
  /// The body of a read; meant to be called through parseFile.
  bool parse(const std::string &fileName);
  /// True when no queued message fails the read; with \p send every queued
  /// message is sent, in queue order.
  bool iterateMessages(bool send);

  // Board header.
  bool readVlnv(HXMLWElement *root, std::string &error);
  bool readBoardParameters(HXMLWElement *root, std::string &error);
  bool readParamTable(HXMLWElement *root, std::string &error);
  bool readBoardJumpers(HXMLWElement *root, std::string &error);
  bool readJtagChains(HXMLWElement *root, std::string &error);
  bool readConnectedBoards(HXMLWElement *root, std::string &error);
  bool readHierParam(HXMLWElement *element, std::string &out);
  bool readHierParamRec_(HXMLWElement *element, std::string &out, int depth);
  bool readHierParamRecOld_(HXMLWElement *element, std::string &out, int depth);
  static bool isNonNegativeInteger(const std::string &value);
  int convert2NonNegativeInteger(const std::string &value, const std::string &what) const;
  int convert2NonNegativeInteger(const char *value, const std::string &what) const;

  // Power rails.
  bool readPowerRails(HXMLWElement &root, std::string &error);

  // Data properties: a free-form tree of names and values.
  bool readDataProperties(HXMLWElement *root, std::string &error, HBOBoardComponent *component);
  bool readDataPropGroupsAndProps(HXMLWElement *element, std::map<std::string, boost::any> &out);
  bool readDataPropGroup(HXMLWElement *element, std::map<std::string, boost::any> &out);
  bool readDataProp(HXMLWElement *element, std::map<std::string, boost::any> &out);

  // Presets and IP associated rules.
  bool parsePresetFile(const std::string &fileName, std::map<std::string, HBOIpPreset *> &presets);
  bool parsePresets(const std::string &path, std::map<std::string, HBOIpPreset *> &presets);
  bool readIpPresets(HXMLWElement *root, std::map<std::string, HBOIpPreset *> &presets,
                     std::string &error);
  bool readPresetDetails(HXMLWElement *ip, HBOIpPreset *preset);
  bool readIpAssociatedInterfaces(HXMLWElement *root, std::string &error);
  bool readAssociatedInterfacesDetails(HXMLWElement *ip, HBOIpPreset *preset);
  bool validateAssocIntf(HBOIpPreset *preset);

  // Connections.
  bool readConnections(HXMLWElement *root, std::string &error);
  bool readConnectionDetails(HXMLWElement *connection);
  bool validateConnection(HBOBoardBus *bus);

  // Components.
  bool readComponents(HXMLWElement *root, std::string &errorText);
  bool readComponentDetails(HXMLWElement *element, HBOBoardComponent *component);

  // Interfaces, port maps and component modes.
  bool readInterfacesDetails(HXMLWElement *element, HBOBusIf *interface);
  bool readPortMapDetails(HXMLWElement *element, HBOModelPort *port, HBOPortMap *map);
  bool readComponentModeDetails(HXMLWElement *element, HBOComponentMode *mode);

  // Pin files.
  bool parsePinFile(const std::string &fileName, std::map<std::string, HBOPinProps *> &pins,
                    std::vector<HBODesignConstr> &constrs);
  bool parsePins(const std::string &path, std::map<std::string, HBOPinProps *> &pins,
                 std::vector<HBODesignConstr> &constrs);
  bool createPinsForComponent(std::string componentName, int from, int to,
                              const std::string &connectionName);

  // Validation.
  bool validateComponent(HBOBoardComponent *component);
  bool validateInterface(HBOBusIf *interface);
  bool validatePort(HBOModelPort *port, std::string ofComponent, std::string interfaceName);
  bool validatePreferredIP(HBOBusIfPreference *preference);
  bool validateNecessaryParameters();
  bool validateOfComponent();
  bool validatePostParse() const;

  // DTD validation of the checking path.
  bool isValidXML(const std::string &fileName, const std::string &type);
  std::string createDoctypeString(const std::string &type);

  // State, for callers and tests.
  HBOBoard *getBoard() const { return m_board; }
  const HBOMessageQueue &getMessages() const { return m_messages; }
  bool isStrictChecks() const { return m_strictChecks; }
  void setStrictChecks(bool on) { m_strictChecks = on; }
  bool isSendMessages() const { return m_sendMessages; }
  /// Sets the board directly, for readers called outside parseFile.
  void setBoard(HBOBoard *board) { m_board = board; }
  const std::unordered_set<std::string> &getPortPropNamesToSkip() const { return m_portPropsToSkip; }

  /// Puts a message on the queue: with \p tellOnly false it fails the read.
  template <typename... Args>
  void queueMsg(bool tellOnly, unsigned severity, const std::string &key, const Args &...args) {
    ComMsgMgrInstance msg("board", severity, key);
    (msg.arg(args), ...);
    m_messages.emplace_back(std::move(msg), tellOnly);
  }
  /// The frequent finding "@49-69@%s%s": the board file and a composed text.
  void queueFinding(const std::string &text, bool tellOnly = false);
  void queueFinding(const std::string &file, const std::string &text, bool tellOnly);

private:
  /// The findings of one validator: each rule's text is queued at once as
  /// "@49-69@", and the validator passes when no rule made one.
  class Findings {
  public:
    explicit Findings(HBOBoardParser &parser) : m_parser(parser) {}
    void operator()(const std::string &text) {
      m_last = text;
      m_parser.queueFinding(text);
    }
    bool none() const { return m_last.empty(); }

  private:
    HBOBoardParser &m_parser;
    std::string m_last;
  };

  /// A file named by board.xml: a bare name (or "./name") lies beside
  /// board.xml whatever the working directory; any other is used as given.
  std::string resolveBesideBoard_(const std::string &fileName) const;
  /// One interfaces element of a component, with its uniqueness checks.
  bool readInterfaces_(HXMLWElement &element, HBOBoardComponent *component);
  /// The closing iterateMessages of a read, plus a debug trace of what a
  /// silent read does not tell.
  void tellQueue_(bool send);

  HBOBoard *m_board = nullptr;
  bool m_sendMessages = false;
  bool m_validate = false;
  bool m_strictChecks = false;
  std::unordered_set<std::string> m_portPropsToSkip;
  HBOParsedVLNVs *m_parsed = nullptr;
  std::unordered_set<std::string> m_interfaceNames;
  std::map<std::string, std::unordered_set<std::string>> m_portRecords;
  std::string m_schemaDir;
  HBOMessageQueue m_messages;
};

/// The set of pin properties that a board does not carry.
std::unordered_set<std::string> getPortPropNamesToSkip_(std::string const &boardName);

/// Reads the design_constrs element of a pin file.
bool parseDesignConstrs_(HXMLWElement &element, std::string const &boardFile,
                         HBOBoardParser const &parser, std::vector<HBODesignConstr> &constrs,
                         HBOMessageQueue &messages);

#endif
