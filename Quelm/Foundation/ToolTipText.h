#pragma once

#include <QString>

#include <string_view>

namespace quelm {

/// A text of any length as a tooltip shows it: its first few hundred characters, in lines short enough to be read,
/// never taken for markup. The text must be well-formed UTF-8.
QString toolTipText(std::string_view utf8);

} // namespace quelm
