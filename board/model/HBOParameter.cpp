#include "HBOParameter.h"

#include "NativeCache.h"

#include <iostream>

HBOParameter::HBOParameter(std::string name, std::string value, std::string valueType,
                           std::string valueMin, std::string valueMax, std::string readOnly)
    : m_name(std::move(name)), m_value(std::move(value)), m_valueType(std::move(valueType)),
      m_valueMin(std::move(valueMin)), m_valueMax(std::move(valueMax)),
      m_readOnly(std::move(readOnly)) {}

HBOParameter::~HBOParameter() { zeb::forgetScriptHandles(this); }

void HBOParameter::getSupportedValues(std::vector<std::string> &out) const {
  out.push_back(m_valueMin);
  out.push_back(m_valueMax);
}

void HBOParameter::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Parameter - Name: " << m_name
            << ", Value: " << m_value << ", Type: " << m_valueType << ", Min: " << m_valueMin
            << ", Max: " << m_valueMax << ", Read Only: " << m_readOnly << "\n";
}
