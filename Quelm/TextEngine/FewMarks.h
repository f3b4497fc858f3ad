#pragma once

#include <QString>

namespace quelm {

/// A text that is shaped in time that grows with its length alone. Of the marks that follow each other, those after
/// the first some tens, which shaping would have to put into order, give way to joiners, which are not seen and belong
/// to clusters as marks do. Unit for unit as long; O(length).
QString withFewMarks(QString text);

} // namespace quelm
