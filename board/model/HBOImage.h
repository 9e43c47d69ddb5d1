// A picture or document reference of a board or a component.
#ifndef BOARDLIB_HBOIMAGE_H
#define BOARDLIB_HBOIMAGE_H

#include <string>

class HBOImage {
public:
  HBOImage() = default;
  HBOImage(std::string name, std::string displayName, std::string description,
           std::string resolution, std::string subType);
  /// Drops the object from the script caches first.
  ~HBOImage();
  /// A copy whose name carries \p prefix.
  HBOImage(const HBOImage &src, const std::string &prefix);
  HBOImage(const HBOImage &) = delete;
  HBOImage &operator=(const HBOImage &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getDisplayName() const { return m_displayName; }
  void setDisplayName(std::string displayName) { m_displayName = std::move(displayName); }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }
  const std::string &getResolution() const { return m_resolution; }
  void setResolution(std::string resolution) { m_resolution = std::move(resolution); }
  const std::string &getSubType() const { return m_subType; }
  void setSubType(std::string subType) { m_subType = std::move(subType); }

private:
  std::string m_name;
  std::string m_displayName;
  std::string m_description;
  std::string m_resolution;
  std::string m_subType;
};

#endif
