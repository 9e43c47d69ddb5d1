// The reader of board files of schema 2: one read of board.xml with its pin
// files and preset file, with a message queue that decides the result at the
// end, so that every finding of a file can be told at once. Each section of
// a file has its own reader; all of them share one parse context.
#ifndef BOARDLIB_HBOBOARDPARSER_H
#define BOARDLIB_HBOBOARDPARSER_H

#include "HBOBoardValidator.h"
#include "HBOComponentReader.h"
#include "HBOConnectionReader.h"
#include "HBODataPropsReader.h"
#include "HBODtdValidator.h"
#include "HBOHeaderReader.h"
#include "HBOInterfaceReader.h"
#include "HBOParseContext.h"
#include "HBOPinFileReader.h"
#include "HBOPowerRailReader.h"
#include "HBOPresetReader.h"

#include <boost/any.hpp>

#include <map>
#include <string>

class HBOBoard;
class HBOBoardComponent;
class HXMLWElement;

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
  bool iterateMessages(bool send) { return m_ctx.iterateMessages(send); }

  bool readPowerRails(HXMLWElement &root, std::string &error) {
    return m_powerRails.readPowerRails(root, error);
  }
  bool readDataProperties(HXMLWElement *root, std::string &error, HBOBoardComponent *component) {
    return m_dataProps.readDataProperties(root, error, component);
  }
  bool isValidXML(const std::string &fileName, const std::string &type) {
    return m_dtd.isValidXML(fileName, type);
  }
  std::string createDoctypeString(const std::string &type) {
    return m_dtd.createDoctypeString(type);
  }
  bool createPinsForComponent(std::string componentName, int from, int to,
                              const std::string &connectionName) {
    return m_pinFiles.createPinsForComponent(std::move(componentName), from, to, connectionName);
  }

  // State, for callers and tests.
  HBOBoard *getBoard() const { return m_ctx.board; }
  const HBOMessageQueue &getMessages() const { return m_ctx.messages; }
  bool isStrictChecks() const { return m_ctx.strictChecks; }
  void setStrictChecks(bool on) { m_ctx.strictChecks = on; }
  /// Sets the board directly, for readers called outside parseFile.
  void setBoard(HBOBoard *board) { m_ctx.board = board; }

  // The shared context and the section readers, for callers that read or
  // check one section on its own.
  HBOParseContext &context() { return m_ctx; }
  HBOHeaderReader &headerReader() { return m_header; }
  HBOComponentReader &componentReader() { return m_components; }
  HBOPinFileReader &pinFileReader() { return m_pinFiles; }
  HBOInterfaceReader &interfaceReader() { return m_interfaces; }
  HBOPresetReader &presetReader() { return m_presets; }
  HBOConnectionReader &connectionReader() { return m_connections; }
  HBOPowerRailReader &powerRailReader() { return m_powerRails; }
  HBODataPropsReader &dataPropsReader() { return m_dataProps; }
  HBOBoardValidator &validator() { return m_validator; }
  HBODtdValidator &dtdValidator() { return m_dtd; }

private:
  /// The closing iterateMessages of a read, plus a debug trace of what a
  /// silent read does not tell.
  void tellQueue_(bool send);

  // The readers refer to the context and to one another: the context first,
  // then each reader after those it uses.
  HBOParseContext m_ctx;
  HBODtdValidator m_dtd;
  HBOBoardValidator m_validator;
  HBOPresetReader m_presets;
  HBOHeaderReader m_header;
  HBOPinFileReader m_pinFiles;
  HBOInterfaceReader m_interfaces;
  HBOComponentReader m_components;
  HBOConnectionReader m_connections;
  HBOPowerRailReader m_powerRails;
  HBODataPropsReader m_dataProps;
};

#endif
