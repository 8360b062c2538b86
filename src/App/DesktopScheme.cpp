#include "App/DesktopScheme.h"

namespace tarnwell {

void DesktopScheme::set(Scheme scheme) {
  if (scheme != scheme_) {
    scheme_ = scheme;
    Q_EMIT changed(scheme);
  }
}

}  // namespace tarnwell
