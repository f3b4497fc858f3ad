#pragma once

#include <QString>

namespace quelm {

/// Where journals and backups are: `$XDG_STATE_HOME/quelm/recovery`, by default below `~/.local/state`. Whoever writes
/// there first creates it.
QString recoveryFolder();

} // namespace quelm
