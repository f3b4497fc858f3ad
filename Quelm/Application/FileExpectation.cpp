#include "Quelm/Application/FileExpectation.h"

#include "Quelm/Documents/FileComparison.h"

#include <QFileInfo>

namespace quelm {

bool FileExpectation::isChanged(const std::stop_token& stop) {
    change_.reset();
    const FileComparison found = compareFile(path_, known_, stop);
    // Instead of a folder or a device no file will be saved: there is nothing to ask.
    if (found.result == FileComparison::Result::changed && found.stamp != accepted_ && QFileInfo(path_).isFile())
        change_ = found.stamp;
    return change_.has_value();
}

} // namespace quelm
