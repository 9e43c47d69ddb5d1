// The text utilities that every layer leans on: Tcl lists, both ways, and
// version comparison. A Tcl list built from the items of a list gives the
// same items back, and comparing two versions gives opposite answers in
// the two orders.
#include "FuzzSupport.h"

#include "HBOBoardUtils.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::string input = fuzz::text(data, size);

  std::vector<std::string> items = HBOBoardUtils::parseTclList(input);
  std::string list = HBOBoardUtils::asTclSpaceSeparatedStr(items);
  if (HBOBoardUtils::parseTclList(list) != items) {
    std::fprintf(stderr, "a Tcl list made of parsed items parses to other items\n");
    std::abort();
  }

  // Two versions, split at the first newline.
  size_t cut = input.find('\n');
  std::string a = input.substr(0, cut);
  std::string b = cut == std::string::npos ? std::string() : input.substr(cut + 1);
  int ab = HBOBoardUtils::version_compare(a, b);
  int ba = HBOBoardUtils::version_compare(b, a);
  if ((ab < 0) != (ba > 0) || (ab == 0) != (ba == 0)) {
    std::fprintf(stderr, "version_compare is not antisymmetric\n");
    std::abort();
  }
  HBOBoardUtils::isEqualOrGreater(a, b);
  HBOBoardUtils::getBoardPartNameFromVLNV(input);
  HBOBoardUtils::getBoardNameFromBoardPart(input);
  HBOBoardUtils::getBoardVNVFromBoardPart(input);
  return 0;
}
