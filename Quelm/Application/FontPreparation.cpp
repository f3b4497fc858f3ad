#include "Quelm/Application/FontPreparation.h"

#ifdef QUELM_HAS_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

#include <system_error>

namespace quelm {

FontPreparation::FontPreparation() {
#ifdef QUELM_HAS_FONTCONFIG
    try {
        thread_ = std::jthread([] { FcInit(); });
    } catch (const std::system_error&) {
        // Then it is read when it is needed.
    }
#endif
}

} // namespace quelm
