#include "Benchmarks/OffscreenApplication.h"

#include "Quelm/Application/Look.h"

namespace quelm::bench {

namespace {

/// To be done before there is an application.
int& withPlatform(int& count) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    return count;
}

} // namespace

OffscreenApplication::OffscreenApplication() : application_(withPlatform(count_), arguments_) {
    applyLook(Appearance::light);
}

} // namespace quelm::bench
