#include "command/preview/LineScript.h"

#include <dtl/dtl.hpp>

namespace preview {

std::vector<Edit> lineScript(const std::vector<int>& before, const std::vector<int>& after) {
  dtl::Diff<int> difference(before, after);
  difference.compose();
  std::vector<Edit> script;
  for (const auto& [line, step] : difference.getSes().getSequence()) {
    if (step.type == dtl::SES_COMMON) {
      script.push_back(Edit::keep);
    } else {
      script.push_back(step.type == dtl::SES_ADD ? Edit::add : Edit::remove);
    }
  }
  return script;
}

}  // namespace preview
