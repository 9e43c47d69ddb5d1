// The range of a vector port. A negative end means that it is not set.
#ifndef BOARDLIB_HBOPORTVECTOR_H
#define BOARDLIB_HBOPORTVECTOR_H

#include <cstdint>

class HBOPortVector {
public:
  HBOPortVector() = default;

  /// Stores both ends only when neither is negative.
  bool setVec(int left, int right);
  /// False, with \p out untouched, while the end is not set.
  bool getLeft(int &out) const;
  bool getRight(int &out) const;
  /// |left - right| + 1; with an end not set, -1 and false.
  bool getWidth(int &out) const;

private:
  std::int32_t m_left = -1;
  std::int32_t m_right = -1;
};

#endif
