#include "HBOPortVector.h"

bool HBOPortVector::setVec(int left, int right) {
  if (left < 0 || right < 0)
    return false;
  m_left = left;
  m_right = right;
  return true;
}

bool HBOPortVector::getLeft(int &out) const {
  if (m_left < 0)
    return false;
  out = m_left;
  return true;
}

bool HBOPortVector::getRight(int &out) const {
  if (m_right < 0)
    return false;
  out = m_right;
  return true;
}

bool HBOPortVector::getWidth(int &out) const {
  if (m_left < 0 || m_right < 0) {
    out = -1;
    return false;
  }
  // Both ends are non-negative 32-bit values, so the difference cannot overflow.
  out = (m_left > m_right ? m_left - m_right : m_right - m_left) + 1;
  return true;
}
