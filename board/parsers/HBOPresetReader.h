// Reader of the preset file (such as preset.xml) and of the IP associated
// rules of board.xml.
#ifndef BOARDLIB_HBOPRESETREADER_H
#define BOARDLIB_HBOPRESETREADER_H

#include "HBOIpPreset.h"

#include <map>
#include <string>

class HBODtdValidator;
class HBOParseContext;
class HXMLWElement;

class HBOPresetReader {
public:
  HBOPresetReader(HBOParseContext &ctx, HBODtdValidator &dtd) : m_ctx(ctx), m_dtd(dtd) {}

  bool parsePresetFile(const std::string &fileName, std::map<std::string, HBOIpPreset *> &presets);
  bool parsePresets(const std::string &path, std::map<std::string, HBOIpPreset *> &presets);
  bool readIpPresets(HXMLWElement *root, std::map<std::string, HBOIpPreset *> &presets,
                     std::string &error);
  bool readPresetDetails(HXMLWElement *ip, HBOIpPreset *preset);
  bool readIpAssociatedInterfaces(HXMLWElement *root, std::string &error);
  bool readAssociatedInterfacesDetails(HXMLWElement *ip, HBOIpPreset *preset);
  bool validateAssocIntf(HBOIpPreset *preset);

  /// A hierarchical user parameter as a Tcl list, appended to \p out.
  bool readHierParam(HXMLWElement *element, std::string &out);

private:
  bool readHierParamRec_(HXMLWElement *element, std::string &out, int depth);
  bool readHierParamRecOld_(HXMLWElement *element, std::string &out, int depth);

  HBOParseContext &m_ctx;
  HBODtdValidator &m_dtd;
  // The parameters of the record being read, reused from one to the next.
  HBOIpPreset::ParamMap::Builder m_params;
  std::string m_hier;
  std::string m_resolved;
};

#endif
