#include "HBMPresetFile.h"

#include "HXMLWElement.h"

bool HBMPresetFile::parse(HXMLWElement *root) {
  clear();
  if (!root || root->isNull())
    return false;
  std::string schema;
  if (root->getAttribute("schema", schema))
    setSchema(schema);
  for (HXMLWElement presetElement : root->children("ip_preset")) {
    PresetProc proc;
    proc.name = presetElement.getAttribute("preset_proc_name");
    for (HXMLWElement ipElement : presetElement.children()) {
      IPPresets record;
      readPresetDetails(ipElement, record);
      proc.presets.push_back(std::move(record));
    }
    addPresetProc(proc);
  }
  return true;
}

bool HBMPresetFile::readPresetDetails(const HXMLWElement &element, IPPresets &record) const {
  record.vendor = element.getAttribute("vendor");
  record.library = element.getAttribute("library");
  record.name = element.getAttribute("name");
  record.version = element.getAttribute("version");
  record.ipInterface = element.getAttribute("ip_interface");
  for (HXMLWElement params : element.children("user_parameters")) {
    for (HXMLWElement child : params.children()) {
      if (child.isTagExactly("user_hier_parameter")) {
        UserHierParam hier;
        readHierParam(&child, hier);
        record.hierParams.push_back(std::move(hier));
      } else {
        UserParam param;
        param.name = child.getAttribute("name");
        param.value = child.getAttribute("value");
        param.valueType = child.getAttribute("value_type");
        record.params.push_back(std::move(param));
      }
    }
  }
  return true;
}

bool HBMPresetFile::readHierParam(const HXMLWElement *element, UserHierParam &) const {
  return element && !element->isNull();
}

void HBMPresetFile::write(std::ofstream &out) const {
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n\n";
  out << "<ip_presets schema=\"" << getSchema() << "\">\n";
  for (const PresetProc &proc : getPresetProcs()) {
    out << "  <ip_preset preset_proc_name=\"" << proc.name << "\">\n";
    for (const IPPresets &ip : proc.presets) {
      out << "    <ip vendor=\"" << ip.vendor << "\" library=\"" << ip.library << "\" name=\""
          << ip.name << "\" version=\"" << ip.version << "\" ip_interface=\"" << ip.ipInterface
          << "\">\n";
      for (const UserParam &param : ip.params)
        out << "      <user_parameter name=\"" << param.name << "\" value=\"" << param.value
            << "\"/>\n";
      out << "    </ip>\n";
    }
    out << "  </ip_preset>\n";
  }
  out << "</ip_presets>\n";
}

void HBMPresetFile::writePreset(std::ostream &) const {}
