#include "HTCTclInterp.h"

#include <mutex>

namespace {
std::mutex s_mutex;
Tcl_Interp *s_interp = nullptr;
HTCTclInterp::EvalFile s_evalFile;
} // namespace

Tcl_Interp *HTCTclInterp::getDefaultInterp() {
  std::lock_guard<std::mutex> lock(s_mutex);
  return s_interp;
}

void HTCTclInterp::setDefaultInterp(Tcl_Interp *interp, EvalFile evalFile) {
  std::lock_guard<std::mutex> lock(s_mutex);
  s_interp = interp;
  s_evalFile = interp ? std::move(evalFile) : EvalFile();
}

int HTCTclInterp::evalFile(const std::string &file, std::string &errorInfo) {
  Tcl_Interp *interp = nullptr;
  EvalFile eval;
  {
    std::lock_guard<std::mutex> lock(s_mutex);
    interp = s_interp;
    eval = s_evalFile;
  }
  if (!interp || !eval) {
    errorInfo = "no Tcl interpreter is running the board commands";
    return 1;
  }
  return eval(interp, file, errorInfo);
}
