#include "HTCTclUtils.h"

namespace {
HTCTclUtils::ResultHook &hook() {
  static HTCTclUtils::ResultHook h;
  return h;
}
} // namespace

void HTCTclUtils::setResultHook(ResultHook h) { hook() = std::move(h); }

void HTCTclUtils::setResult(Tcl_Interp *interp, const HATAttrAny &value) {
  if (interp && hook())
    hook()(interp, value);
}
