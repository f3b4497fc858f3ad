#include "Quelm/Application/FileExpectation.h"

#include "Quelm/Documents/FileComparison.h"

namespace quelm {

bool FileExpectation::isChanged(const std::stop_token& stop) {
    change_.reset();
    const FileComparison found = compareFile(path_, known_, stop);
    if (found.result == FileComparison::Result::changed && found.stamp != accepted_)
        change_ = found.stamp;
    return change_.has_value();
}

} // namespace quelm
