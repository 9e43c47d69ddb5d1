// A software driver that goes with a component.
#ifndef BOARDLIB_HBOBOARDCOMPONENTDRIVER_H
#define BOARDLIB_HBOBOARDCOMPONENTDRIVER_H

#include <map>
#include <string>
#include <vector>

class HBOBoardComponent;

class HBOBoardComponentDriver {
public:
  HBOBoardComponentDriver() = default;
  /// A copy that belongs to \p component.
  HBOBoardComponentDriver(const HBOBoardComponentDriver &src, HBOBoardComponent *component);

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getVersion() const { return m_version; }
  void setVersion(std::string version) { m_version = std::move(version); }
  const std::string &getVendor() const { return m_vendor; }
  void setVendor(std::string vendor) { m_vendor = std::move(vendor); }
  const std::string &getPreCompiled() const { return m_preCompiled; }
  void setPreCompiled(std::string preCompiled) { m_preCompiled = std::move(preCompiled); }
  /// The three lists are replaced whole by their setters.
  const std::vector<std::string> &getOs() const { return m_os; }
  void setOs(const std::vector<std::string> &os) { m_os = os; }
  const std::vector<std::string> &getPlatform() const { return m_platform; }
  void setPlatform(const std::vector<std::string> &platform) { m_platform = platform; }
  const std::vector<std::string> &getProcessorArchitecture() const { return m_processorArch; }
  void setProcessorArchitecture(const std::vector<std::string> &arch) { m_processorArch = arch; }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }
  /// File name to file type.
  const std::map<std::string, std::string> &getFiles() const { return m_files; }
  /// A name that is already there gets the new type.
  void addFile(const std::string &name, const std::string &type) { m_files[name] = type; }
  const std::string &getDriverPath() const { return m_driverPath; }
  void setDriverPath(std::string driverPath) { m_driverPath = std::move(driverPath); }
  HBOBoardComponent *getBoardComponent() const { return m_boardComponent; }
  void setBoardComponent(HBOBoardComponent *component) { m_boardComponent = component; }

private:
  std::string m_name;
  std::string m_version;
  std::string m_vendor;
  std::string m_preCompiled;
  std::vector<std::string> m_os;
  std::vector<std::string> m_platform;
  std::vector<std::string> m_processorArch;
  std::string m_description;
  std::map<std::string, std::string> m_files;
  std::string m_driverPath;
  HBOBoardComponent *m_boardComponent = nullptr;
};

#endif
