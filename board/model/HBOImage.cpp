#include "HBOImage.h"

#include "NativeCache.h"

HBOImage::HBOImage(std::string name, std::string displayName, std::string description,
                   std::string resolution, std::string subType)
    : m_name(std::move(name)), m_displayName(std::move(displayName)),
      m_description(std::move(description)), m_resolution(std::move(resolution)),
      m_subType(std::move(subType)) {}

HBOImage::~HBOImage() { zeb::forgetScriptHandles(this); }
